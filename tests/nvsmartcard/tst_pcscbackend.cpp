#include <pcscbackend.h>
#include <readerbackend.h>

#include <QtTest>

using nvsmartcard::PcscBackend;

// What of the PC/SC backend needs no pcscd. A trailer written with broken
// access bits locks its sector for good, so the encoding is checked over
// every combination the profile can give.
class TestPcscBackend : public QObject
{
    Q_OBJECT

private slots:
    void everyConditionRoundTrips();
    void factoryAndRejected();
    void chosenByEnvironment();
};

void TestPcscBackend::everyConditionRoundTrips()
{
    for (int code = 0; code < 8 * 8 * 8 * 8; ++code) {
        const QVector<quint8> groups{quint8(code & 7), quint8((code >> 3) & 7), quint8((code >> 6) & 7),
                                     quint8((code >> 9) & 7)};
        const QByteArray bytes = PcscBackend::accessBytes(groups);
        QCOMPARE(bytes.size(), 4);
        QVERIFY(PcscBackend::accessBytesValid(bytes));
        // Decode C1..C3 of each group back from bytes 7 and 8.
        const uint c1 = uchar(bytes[1]) >> 4, c2 = uchar(bytes[2]) & 0xF, c3 = uchar(bytes[2]) >> 4;
        for (int i = 0; i < 4; ++i)
            QCOMPARE(quint8((((c1 >> i) & 1) << 2) | (((c2 >> i) & 1) << 1) | ((c3 >> i) & 1)), groups.at(i));
        // Any single flipped bit of the first three bytes breaks a complement.
        for (int bit = 0; bit < 24; ++bit) {
            QByteArray broken = bytes;
            broken[bit / 8] = char(broken[bit / 8] ^ (1 << (bit % 8)));
            QVERIFY(!PcscBackend::accessBytesValid(broken));
        }
    }
}

void TestPcscBackend::factoryAndRejected()
{
    QCOMPARE(PcscBackend::accessBytes({}).toHex(), QByteArray("ff078069"));
    QCOMPARE(PcscBackend::accessBytes({0, 0, 0, 1}).toHex(), QByteArray("ff078069"));
    QVERIFY(PcscBackend::accessBytes({0, 0, 1}).isEmpty());
    QVERIFY(PcscBackend::accessBytes({0, 0, 0, 8}).isEmpty());
}

void TestPcscBackend::chosenByEnvironment()
{
    qputenv("NV_CARD_BACKEND", " PCSC ");
    nvsmartcard::setDefaultBackend(nullptr);
    QCOMPARE(nvsmartcard::defaultBackend()->backendName(), QStringLiteral("pcsc"));
    qunsetenv("NV_CARD_BACKEND");
    nvsmartcard::setDefaultBackend(nullptr);
    // Without a daemon a host must fall back to the simulated readers. A
    // daemon of the machine's own (or another tree's rig) may be up on a
    // developer's machine; the rig tests cover the other way.
    const QString socket = qEnvironmentVariable("PCSCLITE_CSOCK_NAME", QStringLiteral("/run/pcscd/pcscd.comm"));
    if (QFileInfo::exists(socket))
        QSKIP("a pcscd is running on this machine");
    QVERIFY(!nvsmartcard::probePcscBackend());
}

QTEST_GUILESS_MAIN(TestPcscBackend)
#include "tst_pcscbackend.moc"
