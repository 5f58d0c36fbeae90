#include "schedulepage.h"

#include "scheduledaydelegate.h"

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <workerschedulemodel.h>
#include <workerscheduleproxymodel.h>

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QSpinBox>
#include <QStyle>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

namespace {

// The calendar is built once for these years around today; the spin boxes
// choose what is shown of it.
constexpr int YearsBack = 15;
constexpr int YearsAhead = 5;
// A legend line longer than this no longer helps to tell colours apart.
constexpr int MaxLegendSchedules = 8;
// Wide enough for a day's number and its marks.
constexpr int MinimumDayWidth = 26;

// The columns carry the short weekday names of the locale in force; a width
// made for "Пн" cuts the English "Wed" down to "We".
int dayColumnWidth(const QHeaderView *header)
{
    const QLocale locale;
    const QFontMetrics metrics(header->font());
    int widest = 0;
    for (int day = Qt::Monday; day <= Qt::Sunday; ++day)
        widest = std::max(widest, metrics.horizontalAdvance(locale.dayName(day, QLocale::ShortFormat)));
    const int margins = 2 * header->style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, header);
    return std::max(MinimumDayWidth, widest + margins + 2);
}

} // namespace

SchedulePage::SchedulePage(nivaro::LocalStorage *storage, QWidget *parent)
    : QWidget(parent)
    , m_storage(storage)
    , m_model(new WorkerScheduleModel(this))
    , m_proxy(new WorkerScheduleProxyModel(this))
    , m_fromYear(new QSpinBox)
    , m_toYear(new QSpinBox)
    , m_table(new QTableView)
    , m_legend(new QLabel)
{
    setObjectName(QStringLiteral("schedulePage"));
    const int thisYear = QDate::currentDate().year();
    m_model->setInterval(QDate(thisYear - YearsBack, 1, 1), QDate(thisYear + YearsAhead, 12, 31));
    m_proxy->setSourceModel(m_model);

    for (QSpinBox *box : {m_fromYear, m_toYear}) {
        box->setRange(thisYear - YearsBack, thisYear + YearsAhead);
        box->setValue(thisYear);
        connect(box, qOverload<int>(&QSpinBox::valueChanged), this, &SchedulePage::yearsChanged);
    }
    m_fromYear->setObjectName(QStringLiteral("fromYear"));
    m_toYear->setObjectName(QStringLiteral("toYear"));

    m_table->setObjectName(QStringLiteral("scheduleTable"));
    m_table->setModel(m_proxy);
    m_table->setItemDelegate(new ScheduleDayDelegate(storage, m_table));
    m_table->setColumnHidden(0, true); // the row's name is in the vertical header
    m_table->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setShowGrid(false);
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_table->horizontalHeader()->setDefaultSectionSize(dayColumnWidth(m_table->horizontalHeader()));
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_table->verticalHeader()->setDefaultSectionSize(MinimumDayWidth);

    m_legend->setObjectName(QStringLiteral("scheduleLegend"));
    m_legend->setWordWrap(true);
    m_legend->setTextFormat(Qt::RichText);

    auto *years = new QHBoxLayout;
    years->addWidget(new QLabel(tr("Годы с")));
    years->addWidget(m_fromYear);
    years->addWidget(new QLabel(tr("по")));
    years->addWidget(m_toYear);
    years->addStretch(1);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(years);
    layout->addWidget(m_table, 1);
    layout->addWidget(m_legend);
    yearsChanged();
}

void SchedulePage::setWorker(nivaro::TYPE_ID uid)
{
    m_worker = uid;
    reload();
}

void SchedulePage::reload()
{
    m_model->clearSchedules();
    m_model->clearPersonalSchedules();
    m_model->clearReasons();
    if (m_worker != 0) {
        for (const auto &record : m_storage->scheduleHistory(m_worker))
            m_model->addSchedule(record);
        const auto personal = m_storage->personalSchedules(m_worker);
        m_model->setPersonalSchedules(QSet<int>(personal.keyBegin(), personal.keyEnd()));
        for (const auto &record : m_storage->absenceReasons(m_worker).records)
            m_model->addReason(record);
    }
    updateLegend();
}

void SchedulePage::setYears(int from, int to)
{
    m_fromYear->setValue(from);
    m_toYear->setValue(to);
}

void SchedulePage::yearsChanged()
{
    // Whichever box moved, the other follows so the range is never empty.
    if (sender() == m_fromYear && m_toYear->value() < m_fromYear->value())
        m_toYear->setValue(m_fromYear->value());
    else if (m_fromYear->value() > m_toYear->value())
        m_fromYear->setValue(m_toYear->value());
    m_proxy->setMinimumYear(m_fromYear->value());
    m_proxy->setMaximumYear(m_toYear->value());
}

void SchedulePage::updateLegend()
{
    const auto schedules = m_storage->schedules();
    QList<int> shown; // in the order the calendar applies them, each once
    for (const auto &record : m_model->schedules()) {
        if (!shown.contains(record.scheduleId))
            shown.append(record.scheduleId);
    }
    for (int id : m_model->personalSchedules()) {
        if (!shown.contains(id))
            shown.append(id);
    }
    QStringList parts;
    for (int id : shown.mid(0, MaxLegendSchedules))
        parts.append(QStringLiteral("<span style=\"background:%1\">&nbsp;&nbsp;&nbsp;&nbsp;</span>&nbsp;%2")
                         .arg(ScheduleDayDelegate::scheduleColor(id).name(), schedules.value(id).name.toHtmlEscaped()));
    QSet<quint32> reasons;
    for (const auto &record : m_model->reasons())
        reasons.insert(record.reason);
    QStringList marks;
    for (quint32 uid : qAsConst(reasons)) {
        const nivaro::ObjectInfo *reason = m_storage->constObject(uid, nivaro::REASON_DATANAME);
        if (reason)
            marks.append(QStringLiteral("<b>%1</b>&nbsp;%2").arg(reason->parameter(db::reason::MARK).toHtmlEscaped(),
                                                                   reason->parameter(db::reason::NAME).toHtmlEscaped()));
    }
    marks.sort();
    if (parts.isEmpty())
        parts.append(tr("График работ не назначен"));
    m_legend->setText(parts.join(QStringLiteral("&nbsp;&nbsp; ")) + QStringLiteral("<br>") + marks.join(QStringLiteral("&nbsp;&nbsp; ")));
}
