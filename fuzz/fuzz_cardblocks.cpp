// Builds both card data blocks from records cut out of arbitrary bytes and
// reads them back the way a terminal does: the header must describe the
// payload that follows (count, lengths, kinds, CRC), and the records must
// come back unchanged.
#include <cardblocks_p.h>

#include <cstdint>
#include <cstdlib>

namespace {

quint32 le(const QByteArray &b, int at, int width)
{
    quint32 v = 0;
    for (int i = width - 1; i >= 0; --i)
        v = (v << 8) | quint8(b.at(at + i));
    return v;
}

quint16 crcBitwise(const char *p, int size)
{
    quint16 crc = 0xFFFF;
    for (int i = 0; i < size; ++i) {
        crc ^= quint8(p[i]);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1) ? quint16((crc >> 1) ^ 0xA001) : quint16(crc >> 1);
    }
    return crc;
}

void check(bool ok)
{
    if (!ok)
        abort();
}

void checkVersion1(quint8 type, const QList<QByteArray> &records)
{
    const QByteArray block = cardblocks::prepareData(type, records);
    check(block.size() >= 16);
    check(quint8(block.at(0)) == quint8(records.size()) && block.at(8) == block.at(0));
    check(block.mid(1, 2) == "NV" && block.mid(3, 5) == QByteArray(5, '\0') && block.mid(12, 2) == QByteArray(2, '\0'));
    check(quint8(block.at(11)) == type);
    const int payloadSize = block.size() - 16;
    check(le(block, 9, 2) == (quint32(payloadSize) & 0xFFFF));
    check(le(block, 14, 2) == crcBitwise(block.constData() + 16, payloadSize));
    int at = 16;
    for (const QByteArray &record : records) {
        check(at + 2 <= block.size());
        check(le(block, at, 2) == (quint32(record.size()) & 0xFFFF));
        check(block.mid(at + 2, record.size()) == record);
        at += 2 + record.size();
    }
    check(at == block.size());
}

void checkVersion2(const QList<nivaro::_TEMPLATE_DATA> &templates, quint64 uid, const QByteArray &extra)
{
    const QByteArray block = cardblocks::prepareData_v2(templates, uid, extra);
    check(block.size() >= 32 && quint8(block.at(0)) == 32 && block.mid(1, 2) == "N2");
    check(block.mid(11, 3) == QByteArray(3, '\0') && block.mid(16, 8) == QByteArray(8, '\0'));
    check((quint64(le(block, 28, 4)) << 32 | le(block, 24, 4)) == uid);
    const quint32 extraSize = le(block, 3, 4);
    const quint32 recordsSize = le(block, 7, 4);
    check(32 + quint64(extraSize) + recordsSize == quint64(block.size()));
    check(le(block, 14, 2) == crcBitwise(block.constData() + 32, block.size() - 32));
    check(block.mid(32, int(extraSize)) == extra);
    int at = 32 + int(extraSize);
    int kind = 0;
    for (const nivaro::_TEMPLATE_DATA &t : templates) {
        check(at + 6 <= block.size() && block.at(at) == 6);
        check(le(block, at + 1, 4) == quint32(t.data.size()));
        const int known = cardblocks::templateKindV2(t.type);
        if (known >= 0)
            kind = known;
        check(quint8(block.at(at + 5)) == kind);
        check(block.mid(at + 6, t.data.size()) == t.data);
        at += 6 + t.data.size();
    }
    check(at == block.size());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size));
    if (bytes.size() < 2)
        return 0;
    // Byte 0: data type; then records, each a length byte (scaled, so that
    // records past 64 KiB appear) and that many bytes of the input,
    // repeated when the input runs short.
    const quint8 type = quint8(bytes.at(0));
    QList<QByteArray> records;
    QList<nivaro::_TEMPLATE_DATA> templates;
    static const int types[] = {2001, 2, 13, 3, 0, 7, -1};
    int at = 1;
    while (at < bytes.size() && records.size() < 300) {
        const quint8 head = quint8(bytes.at(at++));
        const int length = (head & 0x80) ? (head & 0x7F) * 1031 : head;
        QByteArray record = bytes.mid(at, length);
        while (record.size() < length && !bytes.isEmpty())
            record += bytes.left(length - record.size());
        at += length;
        records.append(record);
        nivaro::_TEMPLATE_DATA t;
        t.type = types[head % 7];
        t.data = record;
        templates.append(t);
    }
    checkVersion1(type, records);
    const QByteArray extra = records.isEmpty() ? QByteArray() : records.takeFirst();
    checkVersion2(templates, quint64(bytes.size()) * 0x9E3779B97F4A7C15ull, extra);
    return 0;
}
