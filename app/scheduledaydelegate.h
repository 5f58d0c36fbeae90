#ifndef SCHEDULEDAYDELEGATE_H
#define SCHEDULEDAYDELEGATE_H

#include <QStyledItemDelegate>

namespace nivaro {
class LocalStorage;
}

/**
 * Paints a day of the schedule calendar: the day number on the colour of
 * its schedule, days off of the schedule's cycle lighter, an absence as a
 * band with the reason's mark, today framed. Days of the neighbouring
 * months are shown faintly, for orientation only.
 */
class ScheduleDayDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    explicit ScheduleDayDelegate(nivaro::LocalStorage *storage, QObject *parent = nullptr);

    // The colour a schedule is shown in, the same in the legend.
    static QColor scheduleColor(int scheduleId);
    // Whether date is a working day of the schedule whose cycle counts
    // from loopStart; true when the schedule has no day pattern.
    bool isWorkingDay(int scheduleId, const QDate &loopStart, const QDate &date) const;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    nivaro::LocalStorage *m_storage;
};

#endif
