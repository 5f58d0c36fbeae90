#ifndef NVSCSETTINGS_H
#define NVSCSETTINGS_H

#include "nvsmartcardtypes.h"

#include <QList>
#include <QVector>

#include <memory>

// Card security settings: which keys authorise on a card, which keys
// formatting installs, and where user data lives. A settings object
// starts with the card family's factory state, so a card fresh from the
// factory authorises with a default-constructed object.

namespace nvsc {

class NVSMARTCARD_EXPORT SmartCardSettings
{
public:
    virtual ~SmartCardSettings();
    virtual nvsmartcard::CardType cardType() const = 0;
    virtual std::unique_ptr<SmartCardSettings> clone() const = 0;

    // Use the legacy (older site) keys instead of the profile's own.
    bool useLegacyMode = false;

protected:
    SmartCardSettings() = default;
    SmartCardSettings(const SmartCardSettings &) = default;
    SmartCardSettings &operator=(const SmartCardSettings &) = default;
};

/** Sector-based cards: Mifare Classic and Mifare Plus in level 1. */
class NVSMARTCARD_EXPORT MifareBaseSettings : public SmartCardSettings
{
public:
    // Factory transport key FF FF FF FF FF FF for both A and B.
    static QByteArray transportKey();

    nvsmartcard::Key keyA{nvsmartcard::Crypto1KeyA, transportKey()};
    nvsmartcard::Key keyB{nvsmartcard::Crypto1KeyB, transportKey()};
    nvsmartcard::Key legacyKeyA;
    nvsmartcard::Key legacyKeyB;
    // Access condition bits C1..C3 per block group, one value per digit
    // of the profile's access string; empty keeps the factory conditions.
    QVector<quint8> blockAccess;
    int firstBlock = 1;   // block 0 is the manufacturer block
    int lastBlock = -1;   // -1: up to the card's last data block

    const nvsmartcard::Key &effectiveKeyA() const { return useLegacyMode && !legacyKeyA.isEmpty() ? legacyKeyA : keyA; }
    const nvsmartcard::Key &effectiveKeyB() const { return useLegacyMode && !legacyKeyB.isEmpty() ? legacyKeyB : keyB; }

    struct KeyCandidate
    {
        bool isKeyB;
        nvsmartcard::Key key;
    };
    // The keys authorisation tries on a sector, in order: the legacy keys
    // (in legacy mode), the settings' own, then the factory transport keys,
    // so that a new card can be formatted with any profile. Empty keys are
    // left out. Every backend tries them in this order.
    QVector<KeyCandidate> authorisationKeys() const;
};

class NVSMARTCARD_EXPORT MifareClassicSettings : public MifareBaseSettings
{
public:
    nvsmartcard::CardType cardType() const override { return nvsmartcard::MifareClassic; }
    std::unique_ptr<SmartCardSettings> clone() const override;
};

class NVSMARTCARD_EXPORT MifareDESFireSettings : public SmartCardSettings
{
public:
    // Factory PICC master key: 8 zero bytes (DES) or 16 zero bytes (AES).
    explicit MifareDESFireSettings(int keyType = nvsmartcard::DesKey);
    nvsmartcard::CardType cardType() const override { return nvsmartcard::MifareDESFire; }
    std::unique_ptr<SmartCardSettings> clone() const override;

    static QByteArray defaultKey(int keyType);

    nvsmartcard::Key masterKey;
    nvsmartcard::Key appKey;
    nvsmartcard::Key legacyKey;
    quint32 appKeyNr = 0;
    quint32 appId = 0x4E5601;   // "NV" application of the site
    quint32 fileId = 1;
    quint32 fileSize = 0;       // 0: all free memory
    quint32 fileOffset = 0;

    const nvsmartcard::Key &effectiveMasterKey() const { return useLegacyMode && !legacyKey.isEmpty() ? legacyKey : masterKey; }
    const nvsmartcard::Key &effectiveAppKey() const { return useLegacyMode && !legacyKey.isEmpty() ? legacyKey : appKey; }
};

/** Mifare Plus keys of security level 3 (AES, 16 bytes each). */
class NVSMARTCARD_EXPORT MifarePlusSL3Settings
{
public:
    MifarePlusSL3Settings();
    static QByteArray defaultKey(); // 16 x FF, as Plus cards ship

    nvsmartcard::Key masterKey;
    nvsmartcard::Key configKey;
    nvsmartcard::Key l3SwitchKey;
    nvsmartcard::Key l1AuthKey;
    nvsmartcard::Key l3SectorSwitchKey;
    nvsmartcard::Key keyA;
    nvsmartcard::Key keyB;
    nvsmartcard::Key legacyKey;
    QVector<quint8> blockAccess;
    int firstBlock = 1;
    int lastBlock = -1;

    const nvsmartcard::Key &effectiveKeyA(bool legacy) const { return legacy && !legacyKey.isEmpty() ? legacyKey : keyA; }
    const nvsmartcard::Key &effectiveKeyB(bool legacy) const { return legacy && !legacyKey.isEmpty() ? legacyKey : keyB; }
};

class NVSMARTCARD_EXPORT MifarePlusSettings : public MifareBaseSettings
{
public:
    nvsmartcard::CardType cardType() const override { return nvsmartcard::MifarePlus; }
    std::unique_ptr<SmartCardSettings> clone() const override;

    // Level 1 (Classic-compatible) uses the base class's keys and blocks.
    bool securityLevel1 = false;
    MifarePlusSL3Settings sl3;
};

} // namespace nvsc

#endif
