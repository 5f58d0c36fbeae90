#ifndef WORKERSCHEDULEMODEL_H
#define WORKERSCHEDULEMODEL_H

#include "nvdialogs_export.h"

#include <workerabsencereason.h>
#include <workerschedulehistoryrecord.h>

#include <QDate>
#include <QHash>
#include <QList>
#include <QSet>
#include <QStandardItemModel>
#include <QVector>

// Which ends of an assignment are set (a valid date).
NVDIALOGS_EXPORT bool isLine(const nivaro::_WORKER_SCHEDULE_HISTORY_RECORD_V2 &record);
NVDIALOGS_EXPORT bool isOpenLeft(const nivaro::_WORKER_SCHEDULE_HISTORY_RECORD_V2 &record);
NVDIALOGS_EXPORT bool isOpenRight(const nivaro::_WORKER_SCHEDULE_HISTORY_RECORD_V2 &record);
NVDIALOGS_EXPORT bool isSegment(const nivaro::_WORKER_SCHEDULE_HISTORY_RECORD_V2 &record);
// Exactly one end set, whichever it is: callers use it for "a ray", and
// the schedule views depend on it accepting the left one too.
NVDIALOGS_EXPORT bool isRayRight(const nivaro::_WORKER_SCHEDULE_HISTORY_RECORD_V2 &record);

/**
 * An employee's schedule calendar: a row per year followed by a row per
 * month, each month row six whole weeks of day cells from the Monday of
 * the week of the 1st (column 1 is always a Monday). Every cell keeps its
 * date under Qt::UserRole; the schedule, the absence reason and the cycle
 * start of a day are worked out when asked (Qt::UserRole + 1, + 2, + 3),
 * from the assignments, personal schedules and absences handed over.
 *
 * Only the days of a row's own month are enabled and selectable.
 */
class NVDIALOGS_EXPORT WorkerScheduleModel : public QStandardItemModel
{
    Q_OBJECT
public:
    enum Roles {
        DateRole = Qt::UserRole,
        ScheduleRole = Qt::UserRole + 1,
        ReasonRole = Qt::UserRole + 2,
        LoopStartRole = Qt::UserRole + 3,
    };

    explicit WorkerScheduleModel(QObject *parent = nullptr);
    ~WorkerScheduleModel() override;

    // Appends the years from.year() to to.year(); rows already there stay.
    void setInterval(const QDate &from, const QDate &to);
    QDate intervalStart() const { return m_from; }
    QDate intervalEnd() const { return m_to; }

    void addSchedule(const nivaro::_WORKER_SCHEDULE_HISTORY_RECORD_V2 &record);
    void clearSchedules();
    void setPersonalSchedules(const QSet<int> &ids);
    void clearPersonalSchedules();
    // The newest reason wins on its days; reason 0 clears them.
    void addReason(const nivaro::_WORKER_ABSENCE_REASON_RECORD &record);
    void clearReasons();

    QList<nivaro::_WORKER_SCHEDULE_HISTORY_RECORD_V2> schedules() const { return m_schedules; }
    QList<nivaro::_WORKER_ABSENCE_REASON_RECORD> reasons() const { return m_reasons; }
    QSet<int> personalSchedules() const { return m_personal; }

    // The schedule that applies on date, or -1.
    int scheduleForDate(const QDate &date) const;
    // The day the applying assignment's cycle counts from; invalid if none.
    QDate loopStartForDate(const QDate &date) const;
    // The cell of date in its own month's row; invalid outside the calendar.
    QModelIndex indexByDate(const QDate &date);

    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    struct Span
    {
        qint64 first; // Julian days; an invalid date is below every valid one
        qint64 last;
        int position; // in m_reasons
    };

    void emitWholeTableChanged();
    QDate cellDate(const QModelIndex &index) const;
    quint32 reasonForDate(const QDate &date) const;
    QString tooltip(const QDate &date) const;
    void rebuildReasonSpans() const;
    const QVector<int> &monthRows(const QDate &firstOfMonth);
    QModelIndex scanRows(const QDate &date) const;
    void forgetLayout();

    QList<nivaro::_WORKER_SCHEDULE_HISTORY_RECORD_V2> m_schedules;
    QList<nivaro::_WORKER_ABSENCE_REASON_RECORD> m_reasons;
    QSet<int> m_personal;
    QDate m_from;
    QDate m_to;

    // Look-up aids, rebuilt when stale. Reasons: spans sorted by first day;
    // when none overlap, a day has at most one reason and a binary search
    // finds it, otherwise the list is walked as it stands.
    mutable QVector<Span> m_spans;
    mutable bool m_spansStale = true;
    mutable bool m_spansDisjoint = true;
    // Rows whose column 0 holds the 1st of a month, lowest first.
    QHash<qint64, QVector<int>> m_rowsByMonth;
    bool m_layoutStale = true;
    bool m_emitting = false;
};

#endif
