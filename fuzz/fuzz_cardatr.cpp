// Feeds arbitrary bytes to the ATR classifier that decides which commands a
// real reader's card gets. Whatever the bytes, a card it names must have a
// name and room for data within its memory, and only a storage card's ATR
// may carry a card name code.
#include <cardatr.h>

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray atr = QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size));
    const nvsmartcard::AtrInfo info = nvsmartcard::classifyAtr(atr);
    if (info.userMemSize > info.memSize)
        abort();
    if (info.type != nvsmartcard::UnknownCard && (info.name.isEmpty() || info.memSize == 0))
        abort();
    if (info.iso14443_4 && (info.type != nvsmartcard::UnknownCard || info.cardName != 0))
        abort();
    if (info.isBlockCard() && info.userMemSize == 0)
        abort();
    // Deterministic: the same bytes always name the same card.
    const nvsmartcard::AtrInfo again = nvsmartcard::classifyAtr(QByteArray(atr));
    if (again.type != info.type || again.cardName != info.cardName || again.memSize != info.memSize)
        abort();
    return 0;
}
