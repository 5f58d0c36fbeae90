#include "taskinfo.h"

#include <QCoreApplication>
#include <QDebug>

namespace nivaro {

QAtomicInteger<qint64> TaskInfo::_nextid(0);

bool TaskInfo::operator==(const TaskInfo &other) const
{
    return id == other.id && uids == other.uids && uid == other.uid && command == other.command
        && params == other.params && startMessage == other.startMessage
        && errorMessage == other.errorMessage && data == other.data
        && widget == other.widget && slot == other.slot;
}

QDebug operator<<(QDebug debug, const TaskInfo &task)
{
    QDebugStateSaver saver(debug);
    debug.nospace() << "TaskInfo(" << task.id << ", " << task.command << ", uid " << task.uid
                    << ", slot " << task.slot << ')';
    return debug;
}

namespace {
// Tasks cross queued connections between pages, wizards and the executor.
void registerTaskInfo()
{
    qRegisterMetaType<nivaro::TaskInfo>("nivaro::TaskInfo");
    qRegisterMetaType<nivaro::TaskInfo>("TaskInfo");
    qRegisterMetaType<nivaro::TYPE_ID>("nivaro::TYPE_ID");
}
} // namespace
Q_COREAPP_STARTUP_FUNCTION(registerTaskInfo)

} // namespace nivaro
