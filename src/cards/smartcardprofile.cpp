#include "smartcardprofile.h"

#include "cardblocks_p.h"

#include <dbparams.h>

#include <nvscsettings.h>

using namespace db::scardprofile;
using nvsmartcard::Key;

namespace {

constexpr int Crypto1KeyLength = 6;
constexpr int AesKeyLength = 16;
// Profiles and the terminals know one Crypto1 key type for A and B alike.
constexpr int Crypto1KeyType = nvsmartcard::Crypto1KeyA;

QByteArray hexParameter(const nivaro::ObjectInfo &profile, const QString &key)
{
    return cardblocks::fromHexLenient(profile.parameter(key).toLatin1());
}

// An empty text leaves the factory key in place: a profile that names only
// some keys must not wipe the others.
void readKey(const nivaro::ObjectInfo &profile, const QString &param, int keyType, Key &key)
{
    const QByteArray bytes = hexParameter(profile, param);
    if (!bytes.isEmpty())
        key = Key(keyType, bytes);
}

// DESFire keys carry no type in the profile; the length tells. Sixteen
// bytes are taken as AES, which is what the profile editor creates (a
// two-key 3DES key of the same length would need a type of its own).
int desfireKeyType(const QByteArray &bytes)
{
    if (bytes.size() == 8)
        return nvsmartcard::DesKey;
    if (bytes.size() == 24)
        return nvsmartcard::TripleDesKey;
    return nvsmartcard::AesKey;
}

void readDesfireKey(const nivaro::ObjectInfo &profile, const QString &param, Key &key)
{
    const QByteArray bytes = hexParameter(profile, param);
    if (!bytes.isEmpty())
        key = Key(desfireKeyType(bytes), bytes);
}

template<typename T>
void readInt(const nivaro::ObjectInfo &profile, const QString &param, T &value)
{
    bool ok = false;
    const int parsed = profile.parameter(param).toInt(&ok, 10);
    if (ok)
        value = parsed;
}

void readUInt(const nivaro::ObjectInfo &profile, const QString &param, quint32 &value)
{
    bool ok = false;
    const uint parsed = profile.parameter(param).toUInt(&ok, 10);
    if (ok)
        value = parsed;
}

// One access value per character. A character that is no digit is left
// out rather than read as 0, which would open a block group to everyone.
void readBlockAccess(const nivaro::ObjectInfo &profile, const QString &param, QVector<quint8> &access)
{
    const QString text = profile.parameter(param);
    if (text.isEmpty())
        return;
    access.clear();
    for (const QChar c : text) {
        const int digit = c.digitValue();
        if (digit >= 0 && digit <= 9)
            access.append(quint8(digit));
    }
}

bool legacyMode(const nivaro::ObjectInfo &profile)
{
    return profile.parameter(legacy::USE_LEGACY_MODE).toInt() != 0;
}

// A site's legacy key is a single key: the Crypto1 families use its first
// six bytes, the AES families its first sixteen. A shorter key gives only
// the bytes that exist; the library then refuses it on the card.
QByteArray legacyKey(const nivaro::ObjectInfo &profile, int length)
{
    return hexParameter(profile, legacy::KEY).left(length);
}

} // namespace

SmartCardProfile::SmartCardProfile(const nivaro::ObjectInfo &profile)
    : m_profile(profile)
{
}

bool SmartCardProfile::writeMode() const
{
    return m_profile.parameter(common::DATA_FORMAT) == QLatin1String("v2");
}

nvsc::MifareClassicSettings *SmartCardProfile::mfClassicSettings() const
{
    auto *settings = new nvsc::MifareClassicSettings;
    readKey(m_profile, mfclassic::KEY_A, Crypto1KeyType, settings->keyA);
    readKey(m_profile, mfclassic::KEY_B, Crypto1KeyType, settings->keyB);
    readBlockAccess(m_profile, mfclassic::BLOCK_ACCESS, settings->blockAccess);
    readInt(m_profile, mfclassic::FIRST_BLOCK, settings->firstBlock);
    readInt(m_profile, mfclassic::LAST_BLOCK, settings->lastBlock);
    const QByteArray legacy = legacyKey(m_profile, Crypto1KeyLength);
    if (!legacy.isEmpty()) {
        settings->legacyKeyA = Key(Crypto1KeyType, legacy);
        settings->legacyKeyB = Key(Crypto1KeyType, legacy);
    }
    settings->useLegacyMode = legacyMode(m_profile);
    return settings;
}

nvsc::MifareDESFireSettings *SmartCardProfile::mfDESFireSettings() const
{
    auto *settings = new nvsc::MifareDESFireSettings;
    readDesfireKey(m_profile, mfdesfire::KEY_MASTER, settings->masterKey);
    readDesfireKey(m_profile, mfdesfire::KEY_APP, settings->appKey);
    readUInt(m_profile, mfdesfire::KEY_APP_NR, settings->appKeyNr);
    readUInt(m_profile, mfdesfire::APP_ID, settings->appId);
    readUInt(m_profile, mfdesfire::FILE_ID, settings->fileId);
    readUInt(m_profile, mfdesfire::FILE_SIZE, settings->fileSize);
    readUInt(m_profile, mfdesfire::FILE_OFFSET, settings->fileOffset);
    const QByteArray legacy = legacyKey(m_profile, AesKeyLength);
    if (!legacy.isEmpty())
        settings->legacyKey = Key(nvsmartcard::AesKey, legacy);
    settings->useLegacyMode = legacyMode(m_profile);
    return settings;
}

nvsc::MifarePlusSettings *SmartCardProfile::mfPlusSettings() const
{
    auto *settings = new nvsc::MifarePlusSettings;
    settings->useLegacyMode = legacyMode(m_profile);
    if (m_profile.parameter(common::MIFARE_PLUS_MODE) == QLatin1String("sl1")) {
        settings->securityLevel1 = true;
        readKey(m_profile, mfplussl1::KEY_A, Crypto1KeyType, settings->keyA);
        readKey(m_profile, mfplussl1::KEY_B, Crypto1KeyType, settings->keyB);
        readBlockAccess(m_profile, mfplussl1::BLOCK_ACCESS, settings->blockAccess);
        readInt(m_profile, mfplussl1::FIRST_BLOCK, settings->firstBlock);
        readInt(m_profile, mfplussl1::LAST_BLOCK, settings->lastBlock);
    }
    nvsc::MifarePlusSL3Settings &sl3 = settings->sl3;
    readKey(m_profile, mfplussl3::KEY_MASTER, nvsmartcard::AesKey, sl3.masterKey);
    readKey(m_profile, mfplussl3::KEY_CONF, nvsmartcard::AesKey, sl3.configKey);
    readKey(m_profile, mfplussl3::KEY_L3SWITCH, nvsmartcard::AesKey, sl3.l3SwitchKey);
    readKey(m_profile, mfplussl3::KEY_L1AUTH, nvsmartcard::AesKey, sl3.l1AuthKey);
    readKey(m_profile, mfplussl3::KEY_L3SECTOR_SWITCH, nvsmartcard::AesKey, sl3.l3SectorSwitchKey);
    readKey(m_profile, mfplussl3::KEY_A, nvsmartcard::AesKey, sl3.keyA);
    readKey(m_profile, mfplussl3::KEY_B, nvsmartcard::AesKey, sl3.keyB);
    readBlockAccess(m_profile, mfplussl3::BLOCK_ACCESS, sl3.blockAccess);
    readInt(m_profile, mfplussl3::FIRST_BLOCK, sl3.firstBlock);
    readInt(m_profile, mfplussl3::LAST_BLOCK, sl3.lastBlock);

    const QByteArray legacy6 = legacyKey(m_profile, Crypto1KeyLength);
    if (!legacy6.isEmpty()) {
        settings->legacyKeyA = Key(Crypto1KeyType, legacy6);
        settings->legacyKeyB = Key(Crypto1KeyType, legacy6);
    }
    const QByteArray legacy16 = legacyKey(m_profile, AesKeyLength);
    if (!legacy16.isEmpty())
        sl3.legacyKey = Key(nvsmartcard::AesKey, legacy16);
    return settings;
}

QList<nvsc::SmartCardSettings *> SmartCardProfile::smartCardSettings(nvsmartcard::CardType type) const
{
    QList<nvsc::SmartCardSettings *> list;
    if (m_profile.isValid()) {
        switch (type) {
        case nvsmartcard::MifareClassic:
            list.append(mfClassicSettings());
            break;
        case nvsmartcard::MifareDESFire:
            list.append(mfDESFireSettings());
            break;
        case nvsmartcard::MifarePlus:
            list.append(mfPlusSettings());
            break;
        default:
            break;
        }
        return list;
    }
    // Without a profile a card can only be fresh from the factory. DESFire
    // cards ship with either an AES or a DES master key, and nothing on the
    // card says which, so both are tried, AES first.
    switch (type) {
    case nvsmartcard::MifareClassic:
        list.append(new nvsc::MifareClassicSettings);
        break;
    case nvsmartcard::MifareDESFire:
        list.append(new nvsc::MifareDESFireSettings(nvsmartcard::AesKey));
        list.append(new nvsc::MifareDESFireSettings(nvsmartcard::DesKey));
        break;
    case nvsmartcard::MifarePlus:
        list.append(new nvsc::MifarePlusSettings);
        break;
    default:
        break;
    }
    return list;
}
