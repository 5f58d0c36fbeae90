#include "absencepage.h"

#include <datanames.h>
#include <localstorage.h>
#include <workerabsencereasonmodel.h>
#include <workerabsencereasonproxy.h>

#include <QCheckBox>
#include <QDateEdit>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QTableView>
#include <QVBoxLayout>

AbsencePage::AbsencePage(nivaro::LocalStorage *storage, QWidget *parent)
    : QWidget(parent)
    , m_storage(storage)
    , m_model(new WorkerAbsenceReasonModel(this))
    , m_proxy(new WorkerAbsenceReasonProxy(this))
    , m_useWindow(new QCheckBox(tr("Только за период с")))
    , m_from(new QDateEdit)
    , m_to(new QDateEdit)
    , m_table(new QTableView)
{
    setObjectName(QStringLiteral("absencePage"));
    m_proxy->setSourceModel(m_model);

    // The filter reads an unset end as "before everything", which hides
    // all periods: the page therefore sets both ends or neither.
    const QDate today = QDate::currentDate();
    m_useWindow->setObjectName(QStringLiteral("useWindow"));
    m_useWindow->setChecked(true);
    m_from->setObjectName(QStringLiteral("fromDate"));
    m_to->setObjectName(QStringLiteral("toDate"));
    for (QDateEdit *edit : {m_from, m_to}) {
        edit->setCalendarPopup(true);
        edit->setDisplayFormat(QStringLiteral("dd.MM.yyyy"));
        connect(edit, &QDateEdit::dateChanged, this, &AbsencePage::windowChanged);
    }
    m_from->setDate(QDate(today.year(), 1, 1));
    m_to->setDate(QDate(today.year(), 12, 31));
    connect(m_useWindow, &QCheckBox::toggled, this, &AbsencePage::windowChanged);

    m_table->setObjectName(QStringLiteral("absenceTable"));
    m_table->setModel(m_proxy);
    m_table->setSortingEnabled(true);
    m_table->sortByColumn(WorkerAbsenceReasonModel::StartColumn, Qt::AscendingOrder);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->verticalHeader()->hide();
    m_table->horizontalHeader()->setStretchLastSection(true);

    auto *window = new QHBoxLayout;
    window->addWidget(m_useWindow);
    window->addWidget(m_from);
    window->addWidget(new QLabel(tr("по")));
    window->addWidget(m_to);
    window->addStretch(1);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(window);
    layout->addWidget(m_table, 1);
    windowChanged();
}

void AbsencePage::setWorker(nivaro::TYPE_ID uid)
{
    m_worker = uid;
    reload();
}

void AbsencePage::reload()
{
    m_model->setAbsenceReasons(*m_storage->constObjects(nivaro::REASON_DATANAME));
    m_model->setWorkerReasons(m_worker == 0 ? nivaro::_WORKER_ABSENCE_REASON() : m_storage->absenceReasons(m_worker));
    m_table->resizeColumnsToContents();
}

void AbsencePage::setWindow(const QDate &from, const QDate &to)
{
    const bool use = from.isValid() && to.isValid();
    if (use) {
        m_from->setDate(from);
        m_to->setDate(to);
    }
    m_useWindow->setChecked(use);
}

void AbsencePage::windowChanged()
{
    m_from->setEnabled(m_useWindow->isChecked());
    m_to->setEnabled(m_useWindow->isChecked());
    if (m_useWindow->isChecked())
        m_proxy->setDateRange(m_from->date(), m_to->date());
    else
        m_proxy->setDateRange(QDate(), QDate());
}
