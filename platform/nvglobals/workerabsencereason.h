#ifndef NIVARO_WORKERABSENCEREASON_H
#define NIVARO_WORKERABSENCEREASON_H

#include "nvglobals_export.h"
#include "nvtypes.h"

#include <QDataStream>
#include <QDateTime>
#include <QList>
#include <QMetaType>
#include <QString>

namespace nivaro {

/**
 * One absence period of an employee: the reason object (data name
 * "reason") and the span it covers. A default record is the invalid one
 * (id with all bits set) that look-ups out of range give.
 */
struct NVGLOBALS_EXPORT _WORKER_ABSENCE_REASON_RECORD
{
    static constexpr quint32 InvalidId = 0xFFFFFFFFu;

    quint32 id = InvalidId;
    TYPE_ID reason = 0;
    QDateTime start;
    QDateTime end;
    bool withTime = false;   // false: whole days, only the dates count
    QString comment;
    QDateTime created;

    bool isValid() const { return id != InvalidId; }
    bool operator==(const _WORKER_ABSENCE_REASON_RECORD &other) const;
    bool operator!=(const _WORKER_ABSENCE_REASON_RECORD &other) const { return !(*this == other); }
};

/** All absence periods of one employee. */
struct NVGLOBALS_EXPORT _WORKER_ABSENCE_REASON
{
    TYPE_ID worker = 0;
    QList<_WORKER_ABSENCE_REASON_RECORD> records;

    bool operator==(const _WORKER_ABSENCE_REASON &other) const;
    bool operator!=(const _WORKER_ABSENCE_REASON &other) const { return !(*this == other); }
};

NVGLOBALS_EXPORT QDataStream &operator<<(QDataStream &out, const _WORKER_ABSENCE_REASON_RECORD &record);
NVGLOBALS_EXPORT QDataStream &operator>>(QDataStream &in, _WORKER_ABSENCE_REASON_RECORD &record);
NVGLOBALS_EXPORT QDataStream &operator<<(QDataStream &out, const _WORKER_ABSENCE_REASON &reasons);
NVGLOBALS_EXPORT QDataStream &operator>>(QDataStream &in, _WORKER_ABSENCE_REASON &reasons);

} // namespace nivaro

Q_DECLARE_METATYPE(nivaro::_WORKER_ABSENCE_REASON_RECORD)
Q_DECLARE_METATYPE(nivaro::_WORKER_ABSENCE_REASON)

#endif
