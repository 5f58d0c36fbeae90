#ifndef SMARTCARDPROFILE_H
#define SMARTCARDPROFILE_H

#include "nvdialogs_export.h"

#include <objectinfo.h>

#include <nvsmartcardtypes.h>

#include <QList>

namespace nvsc {
class SmartCardSettings;
class MifareClassicSettings;
class MifareDESFireSettings;
class MifarePlusSettings;
} // namespace nvsc

/**
 * A smart-card profile record (OT_SMARTCARD_PROFILE) read as the reader
 * library's settings. Every settings object returned is new and belongs to
 * the caller. An invalid record stands for "no profile": the library's
 * factory defaults.
 */
class NVDIALOGS_EXPORT SmartCardProfile
{
public:
    explicit SmartCardProfile(const nivaro::ObjectInfo &profile);

    const nivaro::ObjectInfo &profile() const { return m_profile; }

    // True when the profile asks for the second card data format ("v2").
    bool writeMode() const;

    nvsc::MifareClassicSettings *mfClassicSettings() const;
    nvsc::MifareDESFireSettings *mfDESFireSettings() const;
    nvsc::MifarePlusSettings *mfPlusSettings() const;

    // The settings to try on a card of this type, in the order in which
    // authorisation must try them; empty for a type no profile covers.
    QList<nvsc::SmartCardSettings *> smartCardSettings(nvsmartcard::CardType type) const;

private:
    nivaro::ObjectInfo m_profile;
};

#endif
