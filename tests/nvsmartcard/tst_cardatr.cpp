#include <cardatr.h>
#include <cardlayout.h>

#include <QtTest>

using namespace nvsmartcard;

class TestCardAtr : public QObject
{
    Q_OBJECT

private slots:
    void classify_data();
    void classify();
};

namespace {

// A PC/SC storage card ATR for the given card name code, with its TCK.
QByteArray storageAtr(quint16 name)
{
    QByteArray atr = QByteArray::fromHex("3B8F8001804F0CA000000306030000000000");
    atr[13] = char(name >> 8);
    atr[14] = char(name & 0xFF);
    char tck = 0;
    for (int i = 1; i < atr.size(); ++i)
        tck = char(tck ^ atr[i]);
    return atr + tck;
}

} // namespace

void TestCardAtr::classify_data()
{
    QTest::addColumn<QByteArray>("atr");
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("subType");
    QTest::addColumn<bool>("blockCard");
    QTest::addColumn<bool>("iso14443_4");
    QTest::addColumn<quint32>("memSize");

    QTest::newRow("classic 1K") << storageAtr(0x0001) << int(MifareClassic) << 1 << true << false << 1024u;
    QTest::newRow("classic 4K") << storageAtr(0x0002) << int(MifareClassic) << 4 << true << false << 4096u;
    QTest::newRow("mini") << storageAtr(0x0026) << int(MifareClassic) << 0 << true << false << 320u;
    QTest::newRow("plus 2K SL1") << storageAtr(0x0036) << int(MifarePlus) << 2 << true << false << 2048u;
    QTest::newRow("plus 4K SL1") << storageAtr(0x0037) << int(MifarePlus) << 4 << true << false << 4096u;
    QTest::newRow("plus 4K SL2") << storageAtr(0x0039) << int(MifarePlus) << 4 << false << false << 4096u;
    QTest::newRow("ultralight: a name we do not drive") << storageAtr(0x0003) << int(UnknownCard) << 0 << false
                                                         << false << 0u;
    QTest::newRow("desfire EV1") << QByteArray::fromHex("3B8180018080") << int(UnknownCard) << 0 << false << true
                                 << 0u;
    QTest::newRow("plus SL3 with ATS bytes") << QByteArray::fromHex("3B8B80018031C0641A01000000000000")
                                             << int(UnknownCard) << 0 << false << true << 0u;
    // The historical bytes claim more than the ATR holds.
    QTest::newRow("truncated storage ATR") << storageAtr(0x0001).left(12) << int(UnknownCard) << 0 << false << false
                                           << 0u;
    QTest::newRow("contact card") << QByteArray::fromHex("3B6800000073C84013009000") << int(UnknownCard) << 0
                                  << false << false << 0u;
    QTest::newRow("empty") << QByteArray() << int(UnknownCard) << 0 << false << false << 0u;
}

void TestCardAtr::classify()
{
    QFETCH(QByteArray, atr);
    QFETCH(int, type);
    QFETCH(int, subType);
    QFETCH(bool, blockCard);
    QFETCH(bool, iso14443_4);
    QFETCH(quint32, memSize);

    const AtrInfo info = classifyAtr(atr);
    QCOMPARE(int(info.type), type);
    QCOMPARE(info.subType, subType);
    QCOMPARE(info.isBlockCard(), blockCard);
    QCOMPARE(info.iso14443_4, iso14443_4);
    QCOMPARE(info.memSize, memSize);
    if (memSize > 0)
        QCOMPARE(info.userMemSize, quint32(dataBlocksBefore(int(memSize / CardBlockSize)) * CardBlockSize));
    QCOMPARE(info.name.isEmpty(), type == UnknownCard && !iso14443_4);
}

QTEST_GUILESS_MAIN(TestCardAtr)
#include "tst_cardatr.moc"
