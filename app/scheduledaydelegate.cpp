#include "scheduledaydelegate.h"

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <scheduledata.h>
#include <workerschedulemodel.h>

#include <QPainter>

namespace {

// Calm colours that keep black day numbers readable.
const QRgb Palette[] = {0xa8d5a2, 0x9ec5e8, 0xf3c98b, 0xd3b5e5, 0xf2a7a7, 0xa6dcd5, 0xe6dc8c, 0xc9c9c9};
// Weekly patterns count from a Monday.
const QDate WeekAnchor(2024, 1, 1);

} // namespace

ScheduleDayDelegate::ScheduleDayDelegate(nivaro::LocalStorage *storage, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_storage(storage)
{
}

QColor ScheduleDayDelegate::scheduleColor(int scheduleId)
{
    const int count = int(sizeof(Palette) / sizeof(Palette[0]));
    return QColor(Palette[((scheduleId % count) + count) % count]);
}

bool ScheduleDayDelegate::isWorkingDay(int scheduleId, const QDate &loopStart, const QDate &date) const
{
    const nivaro::SCHEDULE_DATA schedule = m_storage->schedules().value(scheduleId);
    const int length = schedule.pattern.size();
    if (length == 0)
        return true;
    QDate anchor = loopStart;
    if (schedule.type == nivaro::SCHEDULE_DATA::Weekly || !anchor.isValid())
        anchor = WeekAnchor;
    const qint64 position = ((anchor.daysTo(date) % length) + length) % length;
    return schedule.pattern.at(int(position)) == QLatin1Char('1');
}

void ScheduleDayDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const QDate date = index.data(WorkerScheduleModel::DateRole).toDate();
    const QRect r = option.rect.adjusted(1, 1, -1, -1);
    painter->save();
    if (!date.isValid()) { // the cells of a year row
        painter->fillRect(option.rect, option.palette.alternateBase());
        painter->restore();
        return;
    }
    const bool ownMonth = index.flags() & Qt::ItemIsEnabled;
    if (ownMonth) {
        const QVariant schedule = index.data(WorkerScheduleModel::ScheduleRole);
        if (schedule.isValid()) {
            QColor fill = scheduleColor(schedule.toInt());
            const QDate loopStart = index.data(WorkerScheduleModel::LoopStartRole).toDate();
            if (!isWorkingDay(schedule.toInt(), loopStart, date))
                fill = fill.lighter(125);
            painter->fillRect(r, fill);
        }
        const QVariant reason = index.data(WorkerScheduleModel::ReasonRole);
        if (reason.isValid()) {
            const nivaro::ObjectInfo *object = m_storage->constObject(reason.toUInt(), nivaro::REASON_DATANAME);
            const QRect band(r.left(), r.bottom() - r.height() / 3, r.width(), r.height() / 3 + 1);
            painter->fillRect(band, QColor(0xc0392b));
            QFont small = option.font;
            small.setPixelSize(qMax(7, band.height() - 1));
            painter->setFont(small);
            painter->setPen(Qt::white);
            painter->drawText(band, Qt::AlignCenter, object ? object->parameter(db::reason::MARK) : QStringLiteral("?"));
        }
        if (option.state & QStyle::State_Selected) {
            painter->setPen(QPen(option.palette.highlight(), 2));
            painter->drawRect(r.adjusted(1, 1, -1, -1));
        } else if (date == QDate::currentDate()) {
            painter->setPen(QPen(Qt::black, 1));
            painter->drawRect(r);
        }
    }
    painter->setFont(option.font);
    painter->setPen(ownMonth ? option.palette.color(QPalette::Text) : option.palette.color(QPalette::Disabled, QPalette::Text));
    QRect numberArea = r;
    numberArea.setBottom(r.bottom() - r.height() / 3);
    painter->drawText(numberArea, Qt::AlignCenter, QString::number(date.day()));
    painter->restore();
}

QSize ScheduleDayDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const
{
    const int height = option.fontMetrics.height();
    return QSize(height * 2, height * 2);
}
