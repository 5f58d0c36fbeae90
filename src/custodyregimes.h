#ifndef CUSTODYREGIMES_H
#define CUSTODYREGIMES_H

#include "nvdialogs_export.h"

#include <QHash>
#include <QString>

/** Names of the custody regimes of the special-contingent view. */
class NVDIALOGS_EXPORT NVSpec
{
public:
    // Built once on first use and kept for the life of the process.
    static QHash<int, QString> regimeNames();
};

#endif
