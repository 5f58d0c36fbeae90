#ifndef CARDATR_H
#define CARDATR_H

#include "nvsmartcardtypes.h"

namespace nvsmartcard {

/**
 * What a contactless reader's ATR tells about the card. PC/SC readers
 * describe storage cards (Classic, Mini, Plus in levels 1 and 2) by a card
 * name code in the historical bytes; a card that speaks ISO 14443-4
 * (DESFire, Plus in level 3) shows only the generic form, and which of
 * them it is must be asked of the card itself.
 */
struct NVSMARTCARD_EXPORT AtrInfo
{
    CardType type = UnknownCard;
    int subType = 0;
    bool plusLevel1 = false;   // Plus in level 1: Classic commands work
    bool iso14443_4 = false;   // DESFire or Plus SL3, not told apart yet
    quint16 cardName = 0;      // PC/SC card name code, 0 when none
    quint32 memSize = 0;
    quint32 userMemSize = 0;
    QString name;

    // Classic commands (load key, authenticate, read/update binary) apply.
    bool isBlockCard() const { return type == MifareClassic || (type == MifarePlus && plusLevel1); }
};

NVSMARTCARD_EXPORT AtrInfo classifyAtr(const QByteArray &atr);

} // namespace nvsmartcard

#endif
