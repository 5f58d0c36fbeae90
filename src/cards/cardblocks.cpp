#include "cardblocks_p.h"

#include <array>
#include <cstring>

namespace cardblocks {

namespace {

// Eight tables for slicing-by-8. Table 0 is the byte-wise table of the
// reflected polynomial; its high and low bytes are exactly the Modbus
// reference's auchCRCHi/auchCRCLo pair (the reference keeps the CRC byte
// swapped, which is why its tables look different). The other seven let
// the loop take eight bytes per step: a full 64 KiB block must be checked
// while the operator waits, and on small boards too.
using CrcTables = std::array<std::array<quint16, 256>, 8>;

constexpr CrcTables makeTables()
{
    CrcTables t{};
    for (int i = 0; i < 256; ++i) {
        quint16 crc = quint16(i);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1) ? quint16((crc >> 1) ^ 0xA001) : quint16(crc >> 1);
        t[0][std::size_t(i)] = crc;
    }
    for (std::size_t i = 0; i < 256; ++i) {
        for (std::size_t k = 1; k < 8; ++k) {
            const quint16 prev = t[k - 1][i];
            t[k][i] = quint16((prev >> 8) ^ t[0][prev & 0xFF]);
        }
    }
    return t;
}

constexpr CrcTables Tables = makeTables();

inline void putLe16(char *p, quint32 v)
{
    p[0] = char(v & 0xFF);
    p[1] = char((v >> 8) & 0xFF);
}

inline void putLe32(char *p, quint32 v)
{
    putLe16(p, v & 0xFFFF);
    putLe16(p + 2, v >> 16);
}

inline void putLe64(char *p, quint64 v)
{
    putLe32(p, quint32(v & 0xFFFFFFFFu));
    putLe32(p + 4, quint32(v >> 32));
}

inline int hexValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

} // namespace

quint16 crc16Modbus(const char *data, qsizetype size)
{
    const auto *p = reinterpret_cast<const uchar *>(data);
    quint16 crc = 0xFFFF;
    while (size >= 8) {
        const quint32 lo = quint32(p[0] ^ (crc & 0xFF)) | (quint32(p[1] ^ (crc >> 8)) << 8);
        crc = Tables[7][lo & 0xFF] ^ Tables[6][lo >> 8] ^ Tables[5][p[2]] ^ Tables[4][p[3]] ^ Tables[3][p[4]]
            ^ Tables[2][p[5]] ^ Tables[1][p[6]] ^ Tables[0][p[7]];
        p += 8;
        size -= 8;
    }
    while (size-- > 0)
        crc = quint16((crc >> 8) ^ Tables[0][(crc ^ *p++) & 0xFF]);
    return crc;
}

QByteArray prepareData(quint8 type, const QList<QByteArray> &records)
{
    qsizetype payloadSize = 0;
    for (const QByteArray &record : records)
        payloadSize += record.size() + 2;

    QByteArray block(int(HeaderSize + payloadSize), '\0');
    char *out = block.data();
    char *payload = out + HeaderSize;
    char *p = payload;
    for (const QByteArray &record : records) {
        putLe16(p, quint32(record.size()) & 0xFFFF);
        if (!record.isEmpty())
            std::memcpy(p + 2, record.constData(), std::size_t(record.size()));
        p += 2 + record.size();
    }

    const auto count = char(quint8(records.size()));
    out[0] = count;
    out[1] = 'N';
    out[2] = 'V';
    out[8] = count;
    putLe16(out + 9, quint32(payloadSize) & 0xFFFF);
    out[11] = char(type);
    putLe16(out + 14, crc16Modbus(payload, payloadSize));
    return block;
}

int templateKindV2(int templateType)
{
    switch (templateType) {
    case nivaro::_TEMPLATE_DATA::Fingerprint:
        return 1;
    case nivaro::_TEMPLATE_DATA::PalmVein:
        return 3;
    case nivaro::_TEMPLATE_DATA::Face:
        return 4;
    case nivaro::_TEMPLATE_DATA::FingerVein:
        return 5;
    default:
        return -1;
    }
}

QByteArray prepareData_v2(const QList<nivaro::_TEMPLATE_DATA> &templates, quint64 uid, const QByteArray &extra)
{
    qsizetype recordsSize = 0;
    for (const nivaro::_TEMPLATE_DATA &tpl : templates)
        recordsSize += tpl.data.size() + RecordHeaderSizeV2;

    QByteArray block(int(HeaderSizeV2 + extra.size() + recordsSize), '\0');
    char *out = block.data();
    char *payload = out + HeaderSizeV2;
    char *p = payload;
    if (!extra.isEmpty()) {
        std::memcpy(p, extra.constData(), std::size_t(extra.size()));
        p += extra.size();
    }
    // The terminals' readers take a record whose type they do not know as
    // one more record of the kind before it, so an unknown type keeps the
    // previous kind byte instead of getting one of its own. Before any
    // known type the byte is 0, which no terminal reads as a template kind.
    char kind = 0;
    for (const nivaro::_TEMPLATE_DATA &tpl : templates) {
        const int known = templateKindV2(tpl.type);
        if (known >= 0)
            kind = char(known);
        p[0] = char(RecordHeaderSizeV2);
        putLe32(p + 1, quint32(tpl.data.size()));
        p[5] = kind;
        if (!tpl.data.isEmpty())
            std::memcpy(p + RecordHeaderSizeV2, tpl.data.constData(), std::size_t(tpl.data.size()));
        p += RecordHeaderSizeV2 + tpl.data.size();
    }

    out[0] = char(HeaderSizeV2);
    out[1] = 'N';
    out[2] = '2';
    putLe32(out + 3, quint32(extra.size()));
    putLe32(out + 7, quint32(recordsSize));
    putLe16(out + 14, crc16Modbus(payload, extra.size() + recordsSize));
    putLe64(out + 24, uid);
    return block;
}

quint64 uidNumber(const QByteArray &uid)
{
    quint64 number = 0;
    for (int i = qMax(0, uid.size() - 8); i < uid.size(); ++i)
        number = (number << 8) | quint8(uid.at(i));
    return number;
}

QByteArray fromHexLenient(const QByteArray &text)
{
    QByteArray bytes;
    bytes.reserve(text.size() / 2);
    int high = -1;
    for (const char c : text) {
        const int v = hexValue(c);
        if (v < 0)
            continue;
        if (high < 0) {
            high = v;
        } else {
            bytes.append(char((high << 4) | v));
            high = -1;
        }
    }
    return bytes;
}

} // namespace cardblocks
