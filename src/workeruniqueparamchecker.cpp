#include "workeruniqueparamchecker.h"

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <nvglobals.h>

#include <QCoreApplication>

#include <algorithm>

QString WorkerUniqueParamChecker::employeesNameByParameters(const QString &key, const QString &value, int limit)
{
    nivaro::LocalStorage *storage = nivaro::LocalStorage::instance();
    const nivaro::NVHash<unsigned int, nivaro::ObjectInfo> *workers = storage->constObjects(nivaro::SUBJECT_DATANAME);

    QList<QPair<QString, unsigned int>> holders;
    for (auto it = workers->cbegin(); it != workers->cend(); ++it) {
        const nivaro::ObjectInfo &worker = it.value();
        if (worker.parameter(db::common::OBJECTSTATE) == db::common::STATE_FIRED)
            continue;
        if (worker.parameter(key) != value)
            continue;
        const nivaro::ObjectInfo *stored = storage->constObject(it.key(), nivaro::SUBJECT_DATANAME);
        holders.append({NVGlobals::objectName(stored ? *stored : nivaro::ObjectInfo()), it.key()});
    }
    if (holders.isEmpty())
        return QString();
    std::sort(holders.begin(), holders.end());

    const int listed = limit == -1 ? holders.size() : qBound(0, limit, holders.size());
    QStringList names;
    for (int i = 0; i < listed; ++i)
        names.append(holders.at(i).first);
    QString text = names.join(QStringLiteral(", "));
    if (listed < holders.size())
        text += QCoreApplication::translate("WorkerUniqueParamChecker", " и еще сотрудников: %1").arg(holders.size() - listed);
    return text;
}
