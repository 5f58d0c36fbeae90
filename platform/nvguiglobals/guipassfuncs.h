#ifndef GUIPASSFUNCS_H
#define GUIPASSFUNCS_H

#include "nvguiglobals_export.h"

#include <QMap>
#include <QString>

class NVGUIGLOBALS_EXPORT GUIPassFuncs
{
public:
    /**
     * For every personal-data item name (db::database::json), true when
     * the signed-in operator may not see or edit it. Group restrictions are
     * spread over their items, so callers look up items only. An
     * administrator has no restrictions.
     */
    static QMap<QString, bool> getPersonalDataRestrictions();
};

#endif
