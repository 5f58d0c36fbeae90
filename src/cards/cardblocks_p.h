#ifndef CARDBLOCKS_P_H
#define CARDBLOCKS_P_H

#include "nvdialogs_export.h"

#include <templatedata.h>

#include <QByteArray>
#include <QList>

// The byte forms written to a card's user memory, kept apart from the
// reader manager so that tests, benchmarks and fuzzers reach them without
// a reader. Not installed: the block layout is the card's business, not
// an API for hosts.
namespace cardblocks {

// Header lengths of the two block versions.
constexpr int HeaderSize = 16;
constexpr int HeaderSizeV2 = 32;
constexpr int RecordHeaderSizeV2 = 6;

// CRC-16/MODBUS: reflected polynomial 0xA001, initial value 0xFFFF, no
// final XOR. The terminals that read the cards check it with the Modbus
// reference tables, so the value must match that form bit for bit.
NVDIALOGS_EXPORT quint16 crc16Modbus(const char *data, qsizetype size);
inline quint16 crc16Modbus(const QByteArray &data) { return crc16Modbus(data.constData(), data.size()); }

// Version 1: a 16-byte header, then each record as a 16-bit length and
// its bytes. The count (one byte) is stored twice and lengths wrap at 16
// bits: terminals in the field read exactly this, so keep it.
NVDIALOGS_EXPORT QByteArray prepareData(quint8 type, const QList<QByteArray> &records);

// Version 2: a 32-byte header carrying the card's UID, then extra, then
// each template with a 6-byte record header.
NVDIALOGS_EXPORT QByteArray prepareData_v2(const QList<nivaro::_TEMPLATE_DATA> &templates, quint64 uid,
                                           const QByteArray &extra);

// The kind byte of a version-2 record for a template type; -1 for a type
// the terminals do not know (such a record keeps the previous kind byte).
NVDIALOGS_EXPORT int templateKindV2(int templateType);

// A card's number from its UID bytes, in the order the card sends them,
// read as one big-endian number; of a UID longer than 8 bytes the last 8
// count. The version-2 header and the store's card numbers both use it.
NVDIALOGS_EXPORT quint64 uidNumber(const QByteArray &uid);

// Hex text as profiles store keys: every pair of hex digits gives a byte,
// anything that is not a hex digit is skipped (spaces, colons, dashes from
// copied key listings). An odd last digit is dropped.
NVDIALOGS_EXPORT QByteArray fromHexLenient(const QByteArray &text);

} // namespace cardblocks

#endif
