#ifndef NVCUSTOMPARAMS_H
#define NVCUSTOMPARAMS_H

#include "nvglobals_export.h"

#include <QString>

namespace nivaro {
class TypeInfo;
}

/**
 * The display names of custom parameters, process-wide: the client
 * registers the type descriptions it received, views ask for names by key.
 * GUI thread only.
 */
class NVGLOBALS_EXPORT NVCustomParams
{
public:
    // Takes in the names of every custom parameter of the type.
    static void registerType(const nivaro::TypeInfo &type);
    static void setParamName(const QString &key, const QString &name);
    // The registered name; the key itself for a parameter nobody named, so
    // that a list of parameters never shows an empty line.
    static QString paramName(const QString &key);
    static void clear();
};

#endif
