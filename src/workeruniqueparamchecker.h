#ifndef WORKERUNIQUEPARAMCHECKER_H
#define WORKERUNIQUEPARAMCHECKER_H

#include "nvdialogs_export.h"

#include <QString>

/** Finds who already holds a value that must be unique among employees. */
class NVDIALOGS_EXPORT WorkerUniqueParamChecker
{
public:
    /**
     * The display names, sorted, of the employees in service (not
     * dismissed) whose parameter `key` equals `value`, joined by ", ".
     * limit -1 lists all, below 1 none, otherwise the first `limit`; when
     * some are left out " и еще сотрудников: N" follows.
     */
    static QString employeesNameByParameters(const QString &key, const QString &value, int limit);
};

#endif
