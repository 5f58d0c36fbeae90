#include "cardlayout.h"

#include <algorithm>

namespace nvsmartcard {

bool isSectorTrailer(int block)
{
    return block < 128 ? block % 4 == 3 : (block - 128) % 16 == 15;
}

int dataBlocksBefore(int block)
{
    int n = 0;
    for (int b = 1; b < block; ++b)
        n += isSectorTrailer(b) ? 0 : 1;
    return n;
}

quint32 blockCardUserMemory(quint32 memSize)
{
    return quint32(dataBlocksBefore(int(memSize / CardBlockSize))) * CardBlockSize;
}

quint32 desfireUserMemory(quint32 memSize)
{
    constexpr quint32 Overhead = 3 * 32;
    return memSize > Overhead ? memSize - Overhead : 0;
}

std::pair<int, int> userDataRange(CardType type, bool plusLevel1, quint32 memSize, quint32 userMemSize,
                                  const nvsc::SmartCardSettings &settings)
{
    const int size = int(userMemSize);
    if (type == MifareDESFire) {
        const auto *s = dynamic_cast<const nvsc::MifareDESFireSettings *>(&settings);
        if (!s)
            return {0, size};
        const int offset = int(std::min<quint32>(s->fileOffset, quint32(size)));
        const int length = s->fileSize == 0 ? size - offset : int(std::min<quint32>(s->fileSize, quint32(size - offset)));
        return {offset, length};
    }
    if (type != MifareClassic && type != MifarePlus)
        return {0, size};
    int first = 1;
    int last = -1;
    if (type == MifarePlus && !plusLevel1) {
        const auto *s = dynamic_cast<const nvsc::MifarePlusSettings *>(&settings);
        if (s) {
            first = s->sl3.firstBlock;
            last = s->sl3.lastBlock;
        }
    } else if (const auto *s = dynamic_cast<const nvsc::MifareBaseSettings *>(&settings)) {
        first = s->firstBlock;
        last = s->lastBlock;
    }
    const int blocks = int(memSize / CardBlockSize);
    if (blocks < 2)
        return {0, 0};
    first = std::clamp(first, 1, blocks);
    last = last < 0 ? blocks - 1 : std::min(last, blocks - 1);
    const int begin = std::min(dataBlocksBefore(first) * CardBlockSize, size);
    const int end = std::min(dataBlocksBefore(last + 1) * CardBlockSize, size);
    return {begin, std::max(0, end - begin)};
}

} // namespace nvsmartcard
