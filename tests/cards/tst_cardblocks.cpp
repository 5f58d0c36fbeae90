#include <cardblocks_p.h>

#include <QtTest>

using nivaro::_TEMPLATE_DATA;

namespace {

// Bit by bit, straight from the polynomial: what the table form must equal.
quint16 crcBitwise(const QByteArray &bytes)
{
    quint16 crc = 0xFFFF;
    for (const char c : bytes) {
        crc ^= quint8(c);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1) ? quint16((crc >> 1) ^ 0xA001) : quint16(crc >> 1);
    }
    return crc;
}

QByteArray le(quint64 value, int width)
{
    QByteArray bytes;
    for (int i = 0; i < width; ++i)
        bytes.append(char((value >> (8 * i)) & 0xFF));
    return bytes;
}

QByteArray filled(int size, int seed)
{
    QByteArray bytes(size, '\0');
    for (int i = 0; i < size; ++i)
        bytes[i] = char((i * 31 + seed) & 0xFF);
    return bytes;
}

_TEMPLATE_DATA tpl(int type, const QByteArray &data)
{
    _TEMPLATE_DATA t;
    t.type = type;
    t.data = data;
    return t;
}

} // namespace

class TestCardBlocks : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void crcCheckValue();
    void crcMatchesBitwise_data();
    void crcMatchesBitwise();
    void version1_data();
    void version1();
    void version2_data();
    void version2();
    void lenientHex_data();
    void lenientHex();
};

void TestCardBlocks::crcCheckValue()
{
    // The catalogued check value of CRC-16/MODBUS.
    QCOMPARE(cardblocks::crc16Modbus(QByteArray("123456789")), quint16(0x4B37));
    QCOMPARE(cardblocks::crc16Modbus(QByteArray()), quint16(0xFFFF));
}

void TestCardBlocks::crcMatchesBitwise_data()
{
    QTest::addColumn<QByteArray>("bytes");
    // Lengths around the eight-byte steps of the table form.
    for (const int size : {1, 7, 8, 9, 15, 16, 17, 255, 4099})
        QTest::addRow("%d bytes", size) << filled(size, size);
    QTest::newRow("all 0xFF") << QByteArray(64, char(0xFF));
}

void TestCardBlocks::crcMatchesBitwise()
{
    QFETCH(QByteArray, bytes);
    QCOMPARE(cardblocks::crc16Modbus(bytes), crcBitwise(bytes));
    // Any start offset: the table form must not assume alignment.
    const QByteArray shifted = bytes.mid(1);
    QCOMPARE(cardblocks::crc16Modbus(shifted), crcBitwise(shifted));
}

void TestCardBlocks::version1_data()
{
    QTest::addColumn<quint8>("type");
    QTest::addColumn<QList<QByteArray>>("records");
    QTest::addColumn<QByteArray>("header");

    QTest::newRow("empty") << quint8(2) << QList<QByteArray>()
                           << QByteArray::fromHex("00 4E56 0000000000 00 0000 02 0000 FFFF");

    const QList<QByteArray> one{QByteArray("04A1B2C3")};
    const QByteArray onePayload = le(8, 2) + one.first();
    QTest::newRow("one record") << quint8(2) << one
                                << QByteArray::fromHex("01 4E56 0000000000 01 0A00 02 0000")
                                           + le(crcBitwise(onePayload), 2);

    QList<QByteArray> many;
    QByteArray manyPayload;
    for (int i = 0; i < 256; ++i) {
        many.append(filled(i % 5, i));
        manyPayload += le(quint64(i % 5), 2) + many.last();
    }
    // 256 records: the count wraps to 0 in both places.
    QTest::newRow("256 records") << quint8(1) << many
                                 << QByteArray::fromHex("00 4E56 0000000000 00") + le(manyPayload.size(), 2)
                                            + QByteArray::fromHex("01 0000") + le(crcBitwise(manyPayload), 2);

    const QList<QByteArray> huge{filled(65540, 3)};
    const QByteArray hugePayload = le(65540 & 0xFFFF, 2) + huge.first();
    QTest::newRow("record over 64 KiB") << quint8(5) << huge
                                        << QByteArray::fromHex("01 4E56 0000000000 01") + le((65540 + 2) & 0xFFFF, 2)
                                                   + QByteArray::fromHex("05 0000") + le(crcBitwise(hugePayload), 2);
}

void TestCardBlocks::version1()
{
    QFETCH(quint8, type);
    QFETCH(QList<QByteArray>, records);
    QFETCH(QByteArray, header);

    QByteArray payload;
    for (const QByteArray &record : records)
        payload += le(quint64(record.size()) & 0xFFFF, 2) + record;

    const QByteArray block = cardblocks::prepareData(type, records);
    QCOMPARE(block.left(16).toHex(' '), header.toHex(' '));
    // The records follow whole even where their length field wrapped.
    QCOMPARE(block.size(), 16 + payload.size());
    QVERIFY(block.mid(16) == payload);
}

void TestCardBlocks::version2_data()
{
    QTest::addColumn<QList<_TEMPLATE_DATA>>("templates");
    QTest::addColumn<quint64>("uid");
    QTest::addColumn<QByteArray>("extra");
    QTest::addColumn<QByteArray>("kinds");

    QTest::newRow("empty") << QList<_TEMPLATE_DATA>() << quint64(0) << QByteArray() << QByteArray();
    QTest::newRow("extra only") << QList<_TEMPLATE_DATA>() << quint64(0x04A1B2C3D4E5F6) << QByteArray("employee 42")
                                << QByteArray();
    QTest::newRow("known kinds") << QList<_TEMPLATE_DATA>{tpl(2001, "fp"), tpl(2, "palm"), tpl(13, "face!"),
                                                          tpl(3, "fv")}
                                 << quint64(0x1122334455667788) << QByteArray("x") << QByteArray::fromHex("01030405");
    // An unknown type keeps the kind of the record before it; before any
    // known one the byte is 0.
    QTest::newRow("unknown kinds") << QList<_TEMPLATE_DATA>{tpl(7, "a"), tpl(13, "bb"), tpl(99, ""), tpl(-1, "ccc"),
                                                            tpl(2001, "d")}
                                   << quint64(1) << QByteArray() << QByteArray::fromHex("0004040401");
    QTest::newRow("template over 64 KiB") << QList<_TEMPLATE_DATA>{tpl(2, filled(70000, 9))} << quint64(7)
                                          << QByteArray() << QByteArray::fromHex("03");
}

void TestCardBlocks::version2()
{
    QFETCH(QList<_TEMPLATE_DATA>, templates);
    QFETCH(quint64, uid);
    QFETCH(QByteArray, extra);
    QFETCH(QByteArray, kinds);

    QByteArray records;
    for (int i = 0; i < templates.size(); ++i)
        records += QByteArray(1, char(6)) + le(quint64(templates.at(i).data.size()), 4) + kinds.mid(i, 1)
                + templates.at(i).data;
    const QByteArray payload = extra + records;
    const QByteArray header = QByteArray(1, char(0x20)) + "N2" + le(quint64(extra.size()), 4)
            + le(quint64(records.size()), 4) + QByteArray(3, '\0') + le(crcBitwise(payload), 2) + QByteArray(8, '\0')
            + le(uid, 8);

    const QByteArray block = cardblocks::prepareData_v2(templates, uid, extra);
    QCOMPARE(block.left(32).toHex(' '), header.toHex(' '));
    QCOMPARE(block.size(), 32 + payload.size());
    QVERIFY(block.mid(32) == payload);
}

void TestCardBlocks::lenientHex_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("plain") << QByteArray("A0a1FF") << QByteArray::fromHex("A0A1FF");
    QTest::newRow("separators") << QByteArray("a0:b1-c2 d3\n") << QByteArray::fromHex("A0B1C2D3");
    // A separator inside a pair does not split it.
    QTest::newRow("split pair") << QByteArray("a 0b1") << QByteArray::fromHex("A0B1");
    QTest::newRow("odd digit dropped") << QByteArray("abc") << QByteArray::fromHex("AB");
    QTest::newRow("no digits") << QByteArray("xyz, ") << QByteArray();
    QTest::newRow("8-bit text") << QByteArray("\xd0\xb0" "12") << QByteArray::fromHex("12");
}

void TestCardBlocks::lenientHex()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, bytes);
    QCOMPARE(cardblocks::fromHexLenient(text).toHex(), bytes.toHex());
}

QTEST_GUILESS_MAIN(TestCardBlocks)
#include "tst_cardblocks.moc"
