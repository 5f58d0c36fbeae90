#include "nvsmartcardtypes.h"

namespace nvsmartcard {

QString cardTypeName(CardType type)
{
    // Product names: operators know the cards by them, so they are not
    // translated. An unknown card has no name rather than a made-up one.
    switch (type) {
    case MifareClassic:
        return QStringLiteral("Mifare Classic");
    case MifareDESFire:
        return QStringLiteral("Mifare DESFire");
    case MifareUltralight:
        return QStringLiteral("Mifare Ultralight");
    case EmMarine:
        return QStringLiteral("EM-Marine");
    case MifarePlus:
        return QStringLiteral("Mifare Plus");
    case UnknownCard:
        break;
    }
    return QString();
}

} // namespace nvsmartcard
