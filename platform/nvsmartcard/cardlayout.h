#ifndef CARDLAYOUT_H
#define CARDLAYOUT_H

#include "nvscsettings.h"

#include <utility>

namespace nvsmartcard {

// Classic and Plus blocks are 16 bytes; 4-block sectors for the first
// 2 KB, then (4 KB cards) 16-block sectors, the last block of each being
// its trailer.
constexpr int CardBlockSize = 16;
NVSMARTCARD_EXPORT bool isSectorTrailer(int block);
// User data blocks (not block 0, not trailers) before `block`.
NVSMARTCARD_EXPORT int dataBlocksBefore(int block);
// Bytes of user data a Classic or Plus card of this size holds.
NVSMARTCARD_EXPORT quint32 blockCardUserMemory(quint32 memSize);
// Bytes of user data a DESFire card of this size holds: it allocates in
// 32-byte blocks, and the site's application, its key set and the file
// header take three of them.
NVSMARTCARD_EXPORT quint32 desfireUserMemory(quint32 memSize);

/**
 * Where the settings put user data on a card: the byte offset into the
 * card's user memory and the length. Block cards keep it in the blocks
 * firstBlock..lastBlock less block 0 and the trailers, DESFire in the
 * window fileOffset/fileSize of the data file. Every backend and every
 * caller that sizes data for a card goes by this one rule.
 */
NVSMARTCARD_EXPORT std::pair<int, int> userDataRange(CardType type, bool plusLevel1, quint32 memSize,
                                                     quint32 userMemSize, const nvsc::SmartCardSettings &settings);

} // namespace nvsmartcard

#endif
