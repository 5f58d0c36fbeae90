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

// The storage cards PC/SC names by a card name code. Plus in level 2 wants
// AES authentication before Crypto1: not a Classic path, so its operations
// are not supported.
struct StorageCard
{
    quint16 cardName;
    CardType type;
    int subType;
    quint32 memSize;
    bool plusLevel1;
    const char *name;
};
constexpr StorageCard StorageCards[] = {
    {0x0001, MifareClassic, 1, 1024, false, "Mifare Classic 1K"},
    {0x0002, MifareClassic, 4, 4096, false, "Mifare Classic 4K"},
    {0x0026, MifareClassic, 0, 320, false, "Mifare Mini"},
    {0x0036, MifarePlus, 2, 2048, true, "Mifare Plus 2K SL1"},
    {0x0037, MifarePlus, 4, 4096, true, "Mifare Plus 4K SL1"},
    {0x0038, MifarePlus, 2, 2048, false, "Mifare Plus 2K SL2"},
    {0x0039, MifarePlus, 4, 4096, false, "Mifare Plus 4K SL2"},
};

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
        for (const StorageCard &card : StorageCards) {
            if (card.cardName != info.cardName)
                continue;
            info.type = card.type;
            info.subType = card.subType;
            info.memSize = card.memSize;
            info.plusLevel1 = card.plusLevel1;
            info.name = QString::fromLatin1(card.name);
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
