#ifndef NIVARO_TASKINFO_H
#define NIVARO_TASKINFO_H

#include "nvglobals_export.h"
#include "nvtypes.h"

#include <QAtomicInteger>
#include <QList>
#include <QMetaType>
#include <QMultiMap>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QVariant>

class QDebug;

namespace nivaro {

/**
 * One unit of work for the server. Views and wizard pages fill it; the
 * executor runs it and answers by calling the slot named in `slot` on
 * `widget` with the uid of the object concerned (0 on failure).
 * The fields keep the server's order.
 */
struct NVGLOBALS_EXPORT TaskInfo
{
    qint64 id = 0;                        // unique within the process, see newId()
    QList<TYPE_ID> uids;                  // further objects the executor may touch
    TYPE_ID uid = 0;                      // the object; 0 while it does not exist yet
    QString command;                      // e.g. "save_object"
    QMultiMap<QString, QVariant> params;  // the command's arguments
    QString startMessage;                 // logged when the task starts
    QString errorMessage;                 // logged when the task fails
    QVariantList data;                    // further payload for the executor
    QPointer<QObject> widget;             // receiver of the reply; null once destroyed
    QString slot;                         // reply slot on widget, e.g. "saved"

    // The process-wide task counter; incremented before each use.
    static QAtomicInteger<qint64> _nextid;
    static qint64 newId() { return ++_nextid; }

    bool operator==(const TaskInfo &other) const;
    bool operator!=(const TaskInfo &other) const { return !(*this == other); }
};

NVGLOBALS_EXPORT QDebug operator<<(QDebug debug, const TaskInfo &task);

} // namespace nivaro

Q_DECLARE_METATYPE(nivaro::TaskInfo)

#endif
