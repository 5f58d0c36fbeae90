#include "nvscsettings.h"

namespace nvsc {

SmartCardSettings::~SmartCardSettings() = default;

QByteArray MifareBaseSettings::transportKey()
{
    return QByteArray(6, '\xFF');
}

QVector<MifareBaseSettings::KeyCandidate> MifareBaseSettings::authorisationKeys() const
{
    QVector<KeyCandidate> list;
    auto add = [&list](bool isKeyB, const nvsmartcard::Key &key) {
        if (!key.isEmpty())
            list.append({isKeyB, key});
    };
    if (useLegacyMode) {
        add(false, legacyKeyA);
        add(true, legacyKeyB);
    }
    add(false, keyA);
    add(true, keyB);
    add(false, nvsmartcard::Key(nvsmartcard::Crypto1KeyA, transportKey()));
    add(true, nvsmartcard::Key(nvsmartcard::Crypto1KeyB, transportKey()));
    return list;
}

std::unique_ptr<SmartCardSettings> MifareClassicSettings::clone() const
{
    return std::make_unique<MifareClassicSettings>(*this);
}

MifareDESFireSettings::MifareDESFireSettings(int keyType)
    : masterKey(keyType, defaultKey(keyType))
    , appKey(keyType, defaultKey(keyType))
{
}

std::unique_ptr<SmartCardSettings> MifareDESFireSettings::clone() const
{
    return std::make_unique<MifareDESFireSettings>(*this);
}

QByteArray MifareDESFireSettings::defaultKey(int keyType)
{
    // DESFire cards leave the factory with an all-zero PICC master key;
    // only its length depends on the cipher the card was personalised for.
    switch (keyType) {
    case nvsmartcard::AesKey:
        return QByteArray(16, '\0');
    case nvsmartcard::TripleDesKey:
        return QByteArray(24, '\0');
    default:
        return QByteArray(8, '\0');
    }
}

MifarePlusSL3Settings::MifarePlusSL3Settings()
    : masterKey(nvsmartcard::AesKey, defaultKey())
    , configKey(nvsmartcard::AesKey, defaultKey())
    , l3SwitchKey(nvsmartcard::AesKey, defaultKey())
    , l1AuthKey(nvsmartcard::AesKey, defaultKey())
    , l3SectorSwitchKey(nvsmartcard::AesKey, defaultKey())
    , keyA(nvsmartcard::AesKey, defaultKey())
    , keyB(nvsmartcard::AesKey, defaultKey())
{
}

QByteArray MifarePlusSL3Settings::defaultKey()
{
    return QByteArray(16, '\xFF');
}

std::unique_ptr<SmartCardSettings> MifarePlusSettings::clone() const
{
    return std::make_unique<MifarePlusSettings>(*this);
}

} // namespace nvsc
