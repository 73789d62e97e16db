#pragma once

namespace tavero {

// Initialises COM (single-threaded apartment) for the thread that loads the program, before main
// runs, and uninitialises it at exit: the network switch-off talks to the connection manager from
// the main thread only. One instance exists, defined in cominitializer.cpp.
class ComInitializer {
public:
    ComInitializer();
    ~ComInitializer();
    ComInitializer(const ComInitializer&) = delete;
    ComInitializer& operator=(const ComInitializer&) = delete;

private:
    bool m_initialized = false;
};

} // namespace tavero
