#ifndef NIVARO_WORKERSCHEDULEHISTORYRECORD_H
#define NIVARO_WORKERSCHEDULEHISTORYRECORD_H

#include "nvglobals_export.h"
#include "nvtypes.h"

#include <QDataStream>
#include <QDate>
#include <QDateTime>
#include <QMetaType>

namespace nivaro {

/**
 * One assignment of a work schedule to an employee for a span of days.
 * An invalid start or end date leaves that side open.
 */
struct NVGLOBALS_EXPORT _WORKER_SCHEDULE_HISTORY_RECORD_V2
{
    quint32 id = 0;
    TYPE_ID worker = 0;
    int scheduleId = -1;       // key into LocalStorage::schedules()
    QDate startDate;           // first day; invalid: open towards the past
    QDate endDate;             // last day; invalid: open towards the future
    QDate loopStartDate;       // cycle start when the schedule has none of its own
    QDateTime created;

    bool operator==(const _WORKER_SCHEDULE_HISTORY_RECORD_V2 &other) const;
    bool operator!=(const _WORKER_SCHEDULE_HISTORY_RECORD_V2 &other) const { return !(*this == other); }
};

NVGLOBALS_EXPORT QDataStream &operator<<(QDataStream &out, const _WORKER_SCHEDULE_HISTORY_RECORD_V2 &record);
NVGLOBALS_EXPORT QDataStream &operator>>(QDataStream &in, _WORKER_SCHEDULE_HISTORY_RECORD_V2 &record);

} // namespace nivaro

Q_DECLARE_METATYPE(nivaro::_WORKER_SCHEDULE_HISTORY_RECORD_V2)

#endif
