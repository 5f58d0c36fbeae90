#include "workerschedulemodel.h"

#include <datanames.h>
#include <localstorage.h>
#include <nvglobals.h>
#include <scheduledata.h>

#include <QColor>
#include <QDebug>
#include <QFont>
#include <QLocale>

#include <algorithm>

using nivaro::_WORKER_ABSENCE_REASON_RECORD;
using nivaro::_WORKER_SCHEDULE_HISTORY_RECORD_V2;

namespace {

constexpr int DayColumns = 42; // six whole weeks
constexpr int YearCells = 5;
const QString YearPrefix = QStringLiteral("year");
const QString MonthPrefix = QStringLiteral("month");

// Julian day of a date; an invalid date gives the lowest number, so it
// compares below every valid date exactly as QDate's operators do.
qint64 dayNumber(const QDateTime &dateTime)
{
    return dateTime.date().toJulianDay();
}

// A day cell. A calendar holds tens of thousands of them, and a plain
// item keeps its roles in a vector of its own: this one keeps the two
// roles every cell has beside it, a third less memory and allocations.
// It answers data() and setData() as a plain item does (itemData() of
// the model, which reads the vector directly, does not list them).
class CalendarCell final : public QStandardItem
{
public:
    explicit CalendarCell(const QDate &date)
        : m_date(date)
        , m_mark(0)
    {
    }

    QVariant data(int role) const override
    {
        if (role == Qt::UserRole)
            return m_date;
        if (role == Qt::UserRole + 1)
            return m_mark;
        return QStandardItem::data(role);
    }

    void setData(const QVariant &value, int role) override
    {
        QVariant *own = role == Qt::UserRole ? &m_date : role == Qt::UserRole + 1 ? &m_mark : nullptr;
        if (!own) {
            QStandardItem::setData(value, role);
            return;
        }
        if (*own == value && own->userType() == value.userType())
            return;
        *own = value;
        emitDataChanged();
    }

    QStandardItem *clone() const override { return new CalendarCell(*this); }

private:
    CalendarCell(const CalendarCell &other) = default;

    QVariant m_date;
    QVariant m_mark;
};

// The month a row's column-0 text names ("month3" -> 3), or 0.
int monthOfRowText(const QString &text)
{
    return text.startsWith(MonthPrefix) ? text.midRef(MonthPrefix.size()).toInt() : 0;
}

} // namespace

bool isLine(const _WORKER_SCHEDULE_HISTORY_RECORD_V2 &record)
{
    return !record.startDate.isValid() && !record.endDate.isValid();
}

bool isOpenLeft(const _WORKER_SCHEDULE_HISTORY_RECORD_V2 &record)
{
    return !record.startDate.isValid() && record.endDate.isValid();
}

bool isOpenRight(const _WORKER_SCHEDULE_HISTORY_RECORD_V2 &record)
{
    return record.startDate.isValid() && !record.endDate.isValid();
}

bool isSegment(const _WORKER_SCHEDULE_HISTORY_RECORD_V2 &record)
{
    return record.startDate.isValid() && record.endDate.isValid();
}

bool isRayRight(const _WORKER_SCHEDULE_HISTORY_RECORD_V2 &record)
{
    return isOpenLeft(record) || isOpenRight(record);
}

WorkerScheduleModel::WorkerScheduleModel(QObject *parent)
    : QStandardItemModel(0, 1 + DayColumns, parent)
{
    // Rows or column-0 dates changed by anyone: find the month rows anew.
    connect(this, &QAbstractItemModel::rowsInserted, this, &WorkerScheduleModel::forgetLayout);
    connect(this, &QAbstractItemModel::rowsRemoved, this, &WorkerScheduleModel::forgetLayout);
    connect(this, &QAbstractItemModel::rowsMoved, this, &WorkerScheduleModel::forgetLayout);
    connect(this, &QAbstractItemModel::modelReset, this, &WorkerScheduleModel::forgetLayout);
    connect(this, &QAbstractItemModel::layoutChanged, this, &WorkerScheduleModel::forgetLayout);
    connect(this, &QAbstractItemModel::dataChanged, this, [this](const QModelIndex &topLeft) {
        if (!m_emitting && topLeft.column() == 0)
            forgetLayout();
    });
}

WorkerScheduleModel::~WorkerScheduleModel() = default;

void WorkerScheduleModel::setInterval(const QDate &from, const QDate &to)
{
    m_from = from;
    m_to = to;
    if (!from.isValid() || !to.isValid()) {
        qDebug() << "schedule model: no calendar for the interval" << from << to;
        return;
    }
    for (int year = from.year(); year <= to.year(); ++year) {
        if (year == 0)
            continue; // there is no year 0 between 1 BC and 1 AD
        QList<QStandardItem *> yearRow;
        yearRow.reserve(1 + YearCells);
        auto *head = new QStandardItem(YearPrefix + QString::number(year));
        head->setData(QDate(year, 1, 1), Qt::UserRole);
        yearRow.append(head);
        for (int i = 0; i < YearCells; ++i)
            yearRow.append(new CalendarCell(QDate()));
        appendRow(yearRow);

        for (int month = 1; month <= 12; ++month) {
            const QDate first(year, month, 1);
            const QDate monday = first.addDays(-first.dayOfWeek());
            QList<QStandardItem *> monthRow;
            monthRow.reserve(1 + DayColumns);
            auto *monthHead = new QStandardItem(MonthPrefix + QString::number(month));
            monthHead->setData(first, Qt::UserRole);
            monthRow.append(monthHead);
            for (int k = 1; k <= DayColumns; ++k)
                monthRow.append(new CalendarCell(monday.addDays(k)));
            appendRow(monthRow);
        }
    }
}

void WorkerScheduleModel::addSchedule(const _WORKER_SCHEDULE_HISTORY_RECORD_V2 &record)
{
    m_schedules.append(record);
    emitWholeTableChanged();
}

void WorkerScheduleModel::clearSchedules()
{
    m_schedules.clear();
    emitWholeTableChanged();
}

void WorkerScheduleModel::setPersonalSchedules(const QSet<int> &ids)
{
    m_personal = ids;
    emitWholeTableChanged();
}

void WorkerScheduleModel::clearPersonalSchedules()
{
    m_personal.clear();
    emitWholeTableChanged();
}

void WorkerScheduleModel::clearReasons()
{
    m_reasons.clear();
    m_spansStale = true;
    emitWholeTableChanged();
}

void WorkerScheduleModel::addReason(const _WORKER_ABSENCE_REASON_RECORD &record)
{
    const qint64 first = dayNumber(record.start);
    const qint64 last = dayNumber(record.end);
    // Only the records that were there before: a piece split off below is
    // not looked at again.
    for (int i = 0; i < m_reasons.size();) {
        _WORKER_ABSENCE_REASON_RECORD &r = m_reasons[i];
        const qint64 rFirst = dayNumber(r.start);
        const qint64 rLast = dayNumber(r.end);
        if (rFirst >= first && rLast <= last) {
            m_reasons.removeAt(i);
            continue;
        }
        if (rFirst < first && last < rLast) {
            _WORKER_ABSENCE_REASON_RECORD after = r;
            r.end.setDate(record.start.date().addDays(-1));
            after.start.setDate(record.end.date().addDays(1));
            m_reasons.insert(i + 1, after);
            i += 2;
            continue;
        }
        if (rFirst < first && first <= rLast)
            r.end.setDate(record.start.date().addDays(-1));
        else if (rFirst <= last && last < rLast)
            r.start.setDate(record.end.date().addDays(1));
        ++i;
    }
    if (record.reason != 0)
        m_reasons.append(record);
    m_spansStale = true;

    // The bounding rectangle of the days' cells. A day outside the calendar
    // has no cell, and its row and column of -1 become the minimum: the
    // signal then starts at an invalid index, which views take as "repaint".
    int r0 = rowCount();
    int c0 = columnCount();
    int r1 = 0;
    int c1 = 0;
    const QDate from = record.start.date();
    const QDate to = record.end.date();
    if (from.isValid() && to.isValid()) {
        // A month's days sit side by side in its row, so its first and last
        // day bound all of them.
        for (QDate month(from.year(), from.month(), 1); month <= to; month = month.addMonths(1)) {
            const QModelIndex a = indexByDate(std::max(from, month));
            const QModelIndex b = indexByDate(std::min(to, month.addMonths(1).addDays(-1)));
            r0 = std::min({r0, a.row(), b.row()});
            c0 = std::min({c0, a.column(), b.column()});
            r1 = std::max({r1, a.row(), b.row()});
            c1 = std::max({c1, a.column(), b.column()});
        }
    } else {
        qDebug() << "schedule model: absence without whole dates" << record.start << record.end;
    }
    m_emitting = true;
    emit dataChanged(index(r0, c0), index(r1, c1));
    m_emitting = false;
}

int WorkerScheduleModel::scheduleForDate(const QDate &date) const
{
    const nivaro::NVHash<int, nivaro::SCHEDULE_DATA> all = nivaro::LocalStorage::instance()->schedules();
    for (int id : m_personal) {
        const auto it = all.constFind(id);
        if (it != all.cend() && it->type == nivaro::SCHEDULE_DATA::Monthly && it->startDate.month() == date.month()
            && it->startDate.year() == date.year())
            return id;
    }
    for (const _WORKER_SCHEDULE_HISTORY_RECORD_V2 &r : m_schedules) {
        if ((!r.startDate.isValid() || r.startDate <= date) && (!r.endDate.isValid() || r.endDate >= date))
            return r.scheduleId;
    }
    return -1;
}

QDate WorkerScheduleModel::loopStartForDate(const QDate &date) const
{
    for (const _WORKER_SCHEDULE_HISTORY_RECORD_V2 &r : m_schedules) {
        if ((r.startDate.isValid() && r.startDate > date) || (r.endDate.isValid() && r.endDate < date))
            continue;
        const nivaro::SCHEDULE_DATA schedule = nivaro::LocalStorage::instance()->schedules().value(r.scheduleId);
        return schedule.startDate.isValid() ? schedule.startDate : r.loopStartDate;
    }
    return QDate();
}

QModelIndex WorkerScheduleModel::indexByDate(const QDate &date)
{
    if (!date.isValid())
        return scanRows(date);
    const QDate first(date.year(), date.month(), 1);
    // The cell where the layout puts the day, checked against what it holds.
    const int column = first.dayOfWeek() + date.day() - 1;
    for (int row : monthRows(first)) {
        if (column < columnCount() && QStandardItemModel::data(index(row, column), Qt::UserRole).toDate() == date)
            return index(row, column);
        for (int c = 1; c < columnCount(); ++c) {
            if (QStandardItemModel::data(index(row, c), Qt::UserRole).toDate() == date)
                return index(row, c);
        }
    }
    return QModelIndex();
}

QModelIndex WorkerScheduleModel::scanRows(const QDate &date) const
{
    for (int row = 0; row < rowCount(); ++row) {
        for (int c = 1; c < columnCount(); ++c) {
            if (QStandardItemModel::data(index(row, c), Qt::UserRole).toDate() == date)
                return index(row, c);
        }
    }
    return QModelIndex();
}

const QVector<int> &WorkerScheduleModel::monthRows(const QDate &firstOfMonth)
{
    if (m_layoutStale) {
        m_rowsByMonth.clear();
        for (int row = 0; row < rowCount(); ++row) {
            const QStandardItem *head = item(row, 0);
            // A year row shares its date with January but holds no days.
            if (!head || head->text().startsWith(YearPrefix))
                continue;
            const QDate date = head->data(Qt::UserRole).toDate();
            if (date.isValid() && date.day() == 1)
                m_rowsByMonth[date.toJulianDay()].append(row);
        }
        m_layoutStale = false;
    }
    static const QVector<int> none;
    const auto it = m_rowsByMonth.constFind(firstOfMonth.toJulianDay());
    return it == m_rowsByMonth.cend() ? none : *it;
}

void WorkerScheduleModel::forgetLayout()
{
    m_layoutStale = true;
}

QVariant WorkerScheduleModel::data(const QModelIndex &index, int role) const
{
    switch (role) {
    case Qt::ToolTipRole:
        if (!(flags(index) & Qt::ItemIsSelectable))
            return QVariant();
        return tooltip(cellDate(index));
    case ScheduleRole: {
        const int id = scheduleForDate(cellDate(index));
        return id == -1 ? QVariant() : QVariant(id);
    }
    case ReasonRole: {
        const quint32 reason = reasonForDate(cellDate(index));
        return reason == 0 ? QVariant() : QVariant(reason);
    }
    case LoopStartRole: {
        const QDate start = loopStartForDate(cellDate(index));
        return start.isValid() ? QVariant(start) : QVariant();
    }
    default:
        return QStandardItemModel::data(index, role);
    }
}

QDate WorkerScheduleModel::cellDate(const QModelIndex &index) const
{
    const QVariant value = QStandardItemModel::data(index, Qt::UserRole);
    if (value.userType() != QMetaType::QDate)
        return QDate::fromString(value.toString(), Qt::ISODate);
    // The same as the round trip through ISO text, which has no years
    // outside 1..9999.
    const QDate date = value.toDate();
    return date.isValid() && date.year() >= 1 && date.year() <= 9999 ? date : QDate();
}

quint32 WorkerScheduleModel::reasonForDate(const QDate &date) const
{
    if (m_spansStale)
        rebuildReasonSpans();
    const qint64 day = date.toJulianDay();
    if (m_spansDisjoint) {
        // At most one span holds the day: the last one starting by then.
        auto it = std::upper_bound(m_spans.cbegin(), m_spans.cend(), day,
                                   [](qint64 d, const Span &s) { return d < s.first; });
        if (it == m_spans.cbegin() || (it - 1)->last < day)
            return 0;
        return m_reasons.at((it - 1)->position).reason;
    }
    int position = -1;
    for (const Span &s : qAsConst(m_spans)) {
        if (s.first <= day && day <= s.last && (position < 0 || s.position < position))
            position = s.position;
    }
    return position < 0 ? 0 : m_reasons.at(position).reason;
}

void WorkerScheduleModel::rebuildReasonSpans() const
{
    m_spans.clear();
    m_spans.reserve(m_reasons.size());
    for (int i = 0; i < m_reasons.size(); ++i) {
        const Span s{dayNumber(m_reasons.at(i).start), dayNumber(m_reasons.at(i).end), i};
        if (s.first <= s.last) // a reversed period covers no day
            m_spans.append(s);
    }
    std::sort(m_spans.begin(), m_spans.end(), [](const Span &a, const Span &b) {
        return a.first < b.first || (a.first == b.first && a.position < b.position);
    });
    // Merging keeps the list free of overlaps, unless a reversed period was
    // merged in; then the list order decides, as it always does.
    m_spansDisjoint = true;
    for (int i = 1; i < m_spans.size() && m_spansDisjoint; ++i)
        m_spansDisjoint = m_spans.at(i).first > m_spans.at(i - 1).last;
    m_spansStale = false;
}

QString WorkerScheduleModel::tooltip(const QDate &date) const
{
    const int id = scheduleForDate(date);
    const QString name = id == -1 ? tr("Не назначен") : nivaro::LocalStorage::instance()->schedules().value(id).name;
    QString text = tr("График работ: %1").arg(name);
    const quint32 reason = reasonForDate(date);
    if (reason != 0) {
        const nivaro::ObjectInfo *object = nivaro::LocalStorage::instance()->constObject(reason, nivaro::REASON_DATANAME);
        text += QLatin1String("\r\n")
                + tr("Причина отсутствия: %1").arg(NVGlobals::objectName(object ? *object : nivaro::ObjectInfo()));
    }
    return text;
}

Qt::ItemFlags WorkerScheduleModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    if (index.column() == 0)
        return Qt::ItemIsEnabled;
    const QStandardItem *head = item(index.row(), 0);
    const int month = head ? monthOfRowText(head->text()) : 0;
    if (month != 0 && month == cellDate(index).month())
        return Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    return Qt::NoItemFlags;
}

QVariant WorkerScheduleModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    const QLocale locale;
    if (orientation == Qt::Horizontal) {
        if (role == Qt::DisplayRole)
            return section == 0 ? QString() : locale.dayName((section - 1) % 7 + 1, QLocale::ShortFormat);
        if (role == Qt::ForegroundRole && section >= 1 && (section - 1) % 7 >= 5)
            return QColor(Qt::red);
        return QVariant();
    }
    const QStandardItem *head = section >= 0 && section < rowCount() ? item(section, 0) : nullptr;
    if (!head)
        return QVariant();
    const QString text = head->text();
    const bool yearRow = text.startsWith(YearPrefix);
    switch (role) {
    case Qt::DisplayRole: {
        if (yearRow)
            return QString(text).remove(YearPrefix);
        const int month = monthOfRowText(text);
        if (!text.startsWith(MonthPrefix))
            return text;
        int year = QDate::currentDate().year();
        for (int c = 1; c < columnCount(); ++c) {
            const QDate date = cellDate(index(section, c));
            if (date.month() == month) {
                year = date.year();
                break;
            }
        }
        return QStringLiteral("%1 %2").arg(locale.standaloneMonthName(month, QLocale::ShortFormat)).arg(year);
    }
    case Qt::FontRole:
        if (yearRow) {
            QFont font;
            font.setWeight(QFont::Bold);
            return font;
        }
        return QVariant();
    case Qt::TextAlignmentRole:
        return yearRow ? QVariant(int(Qt::AlignHCenter | Qt::AlignVCenter)) : QVariant();
    default:
        return QVariant();
    }
}

void WorkerScheduleModel::emitWholeTableChanged()
{
    // An empty calendar has nothing to repaint, and no index to name.
    if (rowCount() == 0)
        return;
    m_emitting = true;
    emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
    m_emitting = false;
}
