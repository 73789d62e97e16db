<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name>QObject</name>
    <message>
        <source>TAVERO</source>
        <translation>TAVERO</translation>
    </message>
</context>
</TS>
