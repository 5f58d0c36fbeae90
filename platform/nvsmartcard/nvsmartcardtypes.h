#ifndef NVSMARTCARDTYPES_H
#define NVSMARTCARDTYPES_H

#include "nvsmartcard_export.h"

#include <QByteArray>
#include <QMetaType>
#include <QString>

// The card, key and reader types of the reader library, and the parameter
// keys under which readers and cards are described in object records.

namespace nvsmartcard {

// The numbers are the ones stored in card records ("PT_TYPE"); keep them.
enum CardType : int {
    UnknownCard = 0,
    MifareClassic = 1,
    MifareDESFire = 2,
    MifareUltralight = 3,
    EmMarine = 4,
    MifarePlus = 5,
};

// Key kinds. Classic and Plus level 1 use 6-byte Crypto1 keys (CRYPTO1);
// DESFire ships with either a DES or an AES all-zero master key, which is
// why authorisation with factory defaults tries both.
enum KeyType : int {
    NoKey = 0,
    DesKey = 1,      // 8 bytes (single DES; 16 bytes 2K3DES)
    AesKey = 2,      // 16 bytes
    TripleDesKey = 3, // 24 bytes 3K3DES
    Crypto1KeyA = 5, // 6 bytes
    Crypto1KeyB = 6, // 6 bytes
};

struct NVSMARTCARD_EXPORT Key
{
    int type = NoKey;
    QByteArray data;

    Key() = default;
    Key(int keyType, const QByteArray &bytes) : type(keyType), data(bytes) {}

    bool isEmpty() const { return data.isEmpty(); }
    bool operator==(const Key &o) const { return type == o.type && data == o.data; }
    bool operator!=(const Key &o) const { return !(*this == o); }
};

// Name of a card type as shown to operators ("Mifare Classic 1K" and so on
// come from the reader; this is the fallback when no card is known).
NVSMARTCARD_EXPORT QString cardTypeName(CardType type);

} // namespace nvsmartcard

namespace nvcm {

// Result codes of NVCardManager. Only these three have a meaning the
// dialogs act on; any other code is shown to the operator as a number.
enum Result : int {
    OK = 0,
    NoCard = 1,             // nothing on the reader (yet)
    NoReader = 2,           // reader unplugged or unknown
    AuthError = 3,          // a key was refused
    NotSupported = 4,       // the card or reader cannot do this
    CommunicationError = 5,
    NoSettings = 6,         // authorize() before setSmartCardSettings()
    DeviceNotOpened = 7,
    TooMuchData = 8,
    RemoveCard = 14,        // the card must be taken off the reader
};

inline const QString UID = QStringLiteral("PT_UID");
inline const QString TYPE = QStringLiteral("PT_TYPE");
inline const QString SUBTYPE = QStringLiteral("PT_SUBTYPE");
inline const QString CARD_NAME = QStringLiteral("PT_CARD_NAME");
inline const QString NAME = QStringLiteral("PT_NAME");
inline const QString READERS = QStringLiteral("PT_READERS");
inline const QString KEY = QStringLiteral("PT_KEY");
inline const QString KEY_TYPE = QStringLiteral("PT_KEY_TYPE");
inline const QString MEM_SIZE = QStringLiteral("PT_MEM_SIZE");
inline const QString USER_MEM_SIZE = QStringLiteral("PT_USER_MEM_SIZE");
inline const QString CAN_WRITE_DATA = QStringLiteral("PT_CAN_WRITE_DATA");

/** A reader as the library lists it. */
struct NVSMARTCARD_EXPORT ReaderInfo
{
    QString id;          // stable within the backend (e.g. the PC/SC reader name)
    QString name;        // shown to the operator
    // Device type, one of db::devices::cardreader (SMARTCARD or HID).
    QString deviceType;
    bool isValid() const { return !id.isEmpty(); }
};

/** What getCard() learns about the card on a reader. */
struct NVSMARTCARD_EXPORT SCardInfo
{
    QByteArray uid;                 // raw UID bytes as the card sends them
    nvsmartcard::CardType type = nvsmartcard::UnknownCard;
    int subType = 0;                // e.g. 1 for 1K, 4 for 4K, KB for DESFire
    QString name;                   // "Mifare Classic 1K", ...
    quint32 memSize = 0;            // whole card memory, bytes
    quint32 userMemSize = 0;        // room for user data, bytes
    QByteArray atr;

    // The UID as the store keeps card numbers: upper-case hex, no spaces.
    QString uidText() const { return QString::fromLatin1(uid.toHex().toUpper()); }
};

} // namespace nvcm

Q_DECLARE_METATYPE(nvsmartcard::CardType)

#endif
