#ifndef NIVARO_SCHEDULEDATA_H
#define NIVARO_SCHEDULEDATA_H

#include "nvglobals_export.h"

#include <QDataStream>
#include <QDate>
#include <QMetaType>
#include <QString>

namespace nivaro {

/** A work schedule as the store keeps it (LocalStorage::schedules()). */
struct NVGLOBALS_EXPORT SCHEDULE_DATA
{
    enum Type {
        Weekly = 0,   // the same days every week
        Shift = 1,    // shifts in a repeating cycle
        Cyclic = 2,   // a cycle of work and rest days
        Free = 3,     // no fixed days, only a norm of hours
        Monthly = 4,  // bound to one month: startDate names the month and year
    };

    int id = -1;
    QString name;
    int type = Weekly;
    // For a Monthly schedule the month it applies to; for any schedule,
    // when valid, the day from which its cycle is counted.
    QDate startDate;
    // One character per day of the cycle: '1' a working day, '0' a day off.
    QString pattern;
    QString description;

    bool isValid() const { return id >= 0; }
    bool operator==(const SCHEDULE_DATA &other) const;
    bool operator!=(const SCHEDULE_DATA &other) const { return !(*this == other); }
};

NVGLOBALS_EXPORT QDataStream &operator<<(QDataStream &out, const SCHEDULE_DATA &schedule);
NVGLOBALS_EXPORT QDataStream &operator>>(QDataStream &in, SCHEDULE_DATA &schedule);

} // namespace nivaro

Q_DECLARE_METATYPE(nivaro::SCHEDULE_DATA)

#endif
