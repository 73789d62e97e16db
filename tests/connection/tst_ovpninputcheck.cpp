#include "connection/ovpninputcheck.h"
#include "support/testmain.h"

using tavero::OvpnInputCheck;

namespace {

QString block(const QString& label, const QByteArray& payload)
{
    const QByteArray base64 = payload.toBase64();
    QString body;
    for (int i = 0; i < base64.size(); i += 64)
        body += QString::fromLatin1(base64.mid(i, 64)) + QLatin1Char('\n');
    return QStringLiteral("-----BEGIN %1-----\n%2-----END %1-----").arg(label, body);
}

const QString certificate = block(QStringLiteral("CERTIFICATE"), QByteArray(200, '\x30'));
const QString ecKey = block(QStringLiteral("EC PRIVATE KEY"), QByteArray(121, '\x07'));

} // namespace

class TestOvpnInputCheck : public QObject {
    Q_OBJECT
private slots:
    void hosts_data()
    {
        QTest::addColumn<QString>("host");
        QTest::addColumn<bool>("accepted");
        const QString label63(63, QLatin1Char('a'));
        QTest::newRow("name") << "vpn.example.net" << true;
        QTest::newRow("63-character label") << label63 + ".net" << true;
        QTest::newRow("IPv4") << "10.231.0.1" << true;
        QTest::newRow("IPv6") << "2001:db8::1" << true;
        QTest::newRow("empty") << "" << false;
        QTest::newRow("new line and directive") << "vpn.example.net\nscript-security 2" << false;
        QTest::newRow("blank and port") << "vpn.example.net 443" << false;
        QTest::newRow("leading hyphen") << "-vpn.example.net" << false;
        QTest::newRow("empty label") << "vpn..example.net" << false;
        QTest::newRow("trailing dot") << "vpn.example.net." << false;
        QTest::newRow("64-character label") << label63 + "a.net" << false;
        const QString three = label63 + "." + label63 + "." + label63; // 191 characters
        QTest::newRow("253 characters") << three + "." + QString(61, 'b') << true;
        QTest::newRow("254 characters") << three + "." + QString(62, 'b') << false;
        QTest::newRow("underscore") << "vpn_1.example.net" << false;
        QTest::newRow("non-ASCII") << QStringLiteral("m\u00fcnchen.example.de") << false;
        QTest::newRow("IPv6 with scope") << "fe80::1%eth0" << false;
        QTest::newRow("inline tag") << "</ca>" << false;
    }
    void hosts()
    {
        QFETCH(QString, host);
        QFETCH(bool, accepted);
        QCOMPARE(OvpnInputCheck::isPlainHost(host), accepted);
    }

    void pemTexts_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("accepted");
        QTest::newRow("one certificate") << certificate << true;
        QTest::newRow("chain with blank lines") << "\n" + certificate + "\n\n" + certificate + "\n"
                                                << true;
        QTest::newRow("CR LF line ends") << QString(certificate).replace("\n", "\r\n") << true;
        QTest::newRow("EC key") << ecKey << true;
        QTest::newRow("no material") << "" << true;

        QTest::newRow("closes the tag and adds directives")
            << certificate + "\n</ca>\nscript-security 2\nup /bin/sh\n<ca>\n" + certificate
            << false;
        QTest::newRow("text before the block") << "Certificate:\n" + certificate << false;
        QTest::newRow("text after the end line") << certificate + " up /bin/sh" << false;
        QTest::newRow("END label differs")
            << QString(certificate).replace("END CERTIFICATE", "END PRIVATE KEY") << false;
        QTest::newRow("END line missing")
            << certificate.left(certificate.lastIndexOf("-----END")) << false;
        QTest::newRow("encryption headers")
            << QString(ecKey).replace("KEY-----\n", "KEY-----\nProc-Type: 4,ENCRYPTED\n\n")
            << false;
        QTest::newRow("blank inside base64")
            << QString(certificate).replace("MDAw", "MD Aw") << false;
        QTest::newRow("base64 that does not decode")
            << "-----BEGIN CERTIFICATE-----\nA\n-----END CERTIFICATE-----" << false;
        QTest::newRow("line longer than 128")
            << "-----BEGIN CERTIFICATE-----\n" + QString(132, 'A') + "\n-----END CERTIFICATE-----"
            << false;
        QTest::newRow("line of 128")
            << "-----BEGIN CERTIFICATE-----\n" + QString(128, 'A') + "\n-----END CERTIFICATE-----"
            << true;
        QTest::newRow("lone carriage return in a line")
            << QString(certificate).replace("MDAw", "MD\rAw") << false;
        QTest::newRow("NUL character") << certificate + QChar(0) << false;
        QTest::newRow("larger than the maximum")
            << block("CERTIFICATE", QByteArray(OvpnInputCheck::maximumPemLength, 'x')) << false;
    }
    void pemTexts()
    {
        QFETCH(QString, text);
        QFETCH(bool, accepted);
        QCOMPARE(OvpnInputCheck::isPemText(text), accepted);
    }
};

TAVERO_TEST_GUILESS_MAIN(TestOvpnInputCheck)
#include "tst_ovpninputcheck.moc"
