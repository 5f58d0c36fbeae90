#include "cardatr.h"
#include "cardlayout.h"

namespace nvsmartcard {

namespace {

// Registered application provider id of the PC/SC workgroup.
const QByteArray PcscRid = QByteArray::fromHex("A000000306");

// The historical bytes, or nothing when the interface bytes run past the end.
QByteArray historicalBytes(const QByteArray &atr)
{
    if (atr.size() < 2)
        return QByteArray();
    const int count = uchar(atr[1]) & 0x0F;
    int pos = 1;
    uchar td = uchar(atr[1]);
    while (true) {
        const int present = (td >> 4) & 0x0F;
        int next = pos + 1;
        for (int bit = 0; bit < 3; ++bit)
            next += (present >> bit) & 1; // TA, TB, TC
        if (!(present & 0x8)) {
            pos = next;
            break;
        }
        if (next >= atr.size())
            return QByteArray();
        pos = next;
        td = uchar(atr[pos]);
    }
    if (pos + count > atr.size())
        return QByteArray();
    return atr.mid(pos, count);
}

} // namespace

AtrInfo classifyAtr(const QByteArray &atr)
{
    AtrInfo info;
    if (atr.size() < 2 || (uchar(atr[0]) != 0x3B && uchar(atr[0]) != 0x3F))
        return info;
    const QByteArray hist = historicalBytes(atr);
    // Storage card: category 80, then tag 4F with RID, standard and name.
    const int aid = hist.indexOf(QByteArray::fromHex("4F0C") + PcscRid);
    if (hist.startsWith('\x80') && aid >= 0 && hist.size() >= aid + 2 + 5 + 3) {
        const int at = aid + 2 + 5 + 1; // after RID and the standard byte
        info.cardName = quint16((uchar(hist[at]) << 8) | uchar(hist[at + 1]));
        switch (info.cardName) {
        case 0x0001:
            info.type = MifareClassic;
            info.subType = 1;
            info.memSize = 1024;
            info.name = QStringLiteral("Mifare Classic 1K");
            break;
        case 0x0002:
            info.type = MifareClassic;
            info.subType = 4;
            info.memSize = 4096;
            info.name = QStringLiteral("Mifare Classic 4K");
            break;
        case 0x0026:
            info.type = MifareClassic;
            info.subType = 0;
            info.memSize = 320;
            info.name = QStringLiteral("Mifare Mini");
            break;
        case 0x0036:
        case 0x0037:
            info.type = MifarePlus;
            info.plusLevel1 = true;
            info.memSize = info.cardName == 0x0036 ? 2048 : 4096;
            info.subType = int(info.memSize / 1024);
            info.name = QStringLiteral("Mifare Plus %1K SL1").arg(info.subType);
            break;
        case 0x0038:
        case 0x0039:
            // Level 2 wants AES authentication before Crypto1: not a
            // Classic path, so its operations are not supported.
            info.type = MifarePlus;
            info.memSize = info.cardName == 0x0038 ? 2048 : 4096;
            info.subType = int(info.memSize / 1024);
            info.name = QStringLiteral("Mifare Plus %1K SL2").arg(info.subType);
            break;
        default:
            break;
        }
        if (info.isBlockCard() || info.type == MifarePlus)
            info.userMemSize = blockCardUserMemory(info.memSize);
        return info;
    }
    // 3B 8n 80 01 + ATS historical bytes: the reader found an ISO 14443-4 card.
    // A cut-off ATR is no card at all.
    if (atr.size() == 5 + (uchar(atr[1]) & 0x0F) && uchar(atr[0]) == 0x3B && (uchar(atr[1]) & 0xF0) == 0x80
        && uchar(atr[2]) == 0x80 && uchar(atr[3]) == 0x01) {
        info.iso14443_4 = true;
        info.name = QStringLiteral("ISO 14443-4");
    }
    return info;
}

} // namespace nvsmartcard
