#include "newworkerjobpage.h"

#include "departmentselectiondialog.h"
#include "workeruniqueparamchecker.h"

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <nvcombobox.h>
#include <nvdateedit.h>
#include <nvglobals.h>
#include <objecttypes.h>

#include <QDate>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

using nivaro::LocalStorage;
using nivaro::ObjectInfo;
using nivaro::TYPE_ID;

namespace {

const QString DateFormat = QStringLiteral("dd.MM.yyyy");

bool canHoldEmployees(const ObjectInfo *object)
{
    return object && (object->typeName() == nivaro::OT_FIRM || object->typeName() == nivaro::OT_DEPARTMENT);
}

} // namespace

NewWorkerJobPage::NewWorkerJobPage(QWidget *parent)
    : ValidatedWizardPage(parent)
    , m_chooseDepartment(new QPushButton(tr("Выбрать..."), this))
    , m_departmentName(new QLabel(this))
    , m_job(new NVComboBox(this))
    , m_workerNumber(new QLineEdit(this))
    , m_schedule(new NVComboBox(this))
    , m_dateBegin(new NVDateEdit(this))
    , m_dateEnd(new NVDateEdit(this))
{
    setObjectName(QStringLiteral("NewWorkerJobPage"));
    setTitle(tr("Место работы"));
    setSubTitle(tr("Подразделение обязательно, табельный номер не должен повторяться."));
    chooseDepartment = [](QWidget *owner, TYPE_ID current) {
        return DepartmentSelectionDialog::getDepartment(owner, tr("Выбор подразделения"), current);
    };
    m_chooseDepartment->setObjectName(QStringLiteral("pbDepartment"));
    m_departmentName->setObjectName(QStringLiteral("lbDepartment"));
    m_job->setObjectName(QStringLiteral("cbJob"));
    m_workerNumber->setObjectName(QStringLiteral("leWorkerNumber"));
    m_workerNumber->setMaxLength(50);
    m_schedule->setObjectName(QStringLiteral("cbSchedule"));
    for (NVDateEdit *edit : {m_dateBegin, m_dateEnd}) {
        edit->setDisplayFormat(DateFormat);
        edit->setAllowedRange(QDate(2000, 1, 1), QDate(2099, 12, 31));
    }
    m_dateBegin->setObjectName(QStringLiteral("deDateBegin"));
    m_dateEnd->setObjectName(QStringLiteral("deDateEnd"));
    m_dateBegin->setDate(QDate::currentDate());
    fillJobs();
    fillSchedules();

    auto *departmentRow = new QHBoxLayout;
    departmentRow->addWidget(m_departmentName, 1);
    departmentRow->addWidget(m_chooseDepartment);
    auto *form = new QFormLayout;
    form->addRow(tr("Подразделение"), departmentRow);
    form->addRow(tr("Должность"), m_job);
    form->addRow(tr("Табельный номер"), m_workerNumber);
    form->addRow(tr("График работы"), m_schedule);
    form->addRow(tr("Действует с"), m_dateBegin);
    form->addRow(tr("Действует по"), m_dateEnd);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(reasonLabel());
    layout->addStretch();

    connect(m_chooseDepartment, &QPushButton::clicked, this, [this] {
        const TYPE_ID chosen = chooseDepartment ? chooseDepartment(this, m_department) : 0;
        if (chosen)
            setDepartment(chosen);
    });
    connect(m_workerNumber, &QLineEdit::textChanged, this, &ValidatedWizardPage::revalidate);
    connect(m_dateBegin, &QDateEdit::dateChanged, this, &ValidatedWizardPage::revalidate);
    connect(m_dateEnd, &QDateEdit::dateChanged, this, &ValidatedWizardPage::revalidate);
    setDepartment(0);
}

void NewWorkerJobPage::fillJobs()
{
    QList<ObjectInfo> jobs;
    const nivaro::NVHash<TYPE_ID, ObjectInfo> &all = *LocalStorage::instance()->constObjects(nivaro::JOB_DATANAME);
    for (const ObjectInfo &job : all) {
        if (job.typeName() == nivaro::OT_JOB)
            jobs.append(job);
    }
    std::sort(jobs.begin(), jobs.end(), [](const ObjectInfo &a, const ObjectInfo &b) {
        return QString::localeAwareCompare(NVGlobals::objectName(a), NVGlobals::objectName(b)) < 0;
    });
    m_job->addItem(tr("Не задана"), 0u);
    for (const ObjectInfo &job : qAsConst(jobs))
        m_job->addItem(NVGlobals::objectName(job), job.uid());
}

void NewWorkerJobPage::fillSchedules()
{
    QList<nivaro::SCHEDULE_DATA> schedules;
    const nivaro::NVHash<int, nivaro::SCHEDULE_DATA> all = LocalStorage::instance()->schedules();
    for (const nivaro::SCHEDULE_DATA &schedule : all)
        schedules.append(schedule);
    std::sort(schedules.begin(), schedules.end(), [](const nivaro::SCHEDULE_DATA &a, const nivaro::SCHEDULE_DATA &b) {
        return QString::localeAwareCompare(a.name, b.name) < 0;
    });
    m_schedule->addItem(tr("Не задан"), -1);
    for (const nivaro::SCHEDULE_DATA &schedule : qAsConst(schedules))
        m_schedule->addItem(schedule.name, schedule.id);
}

void NewWorkerJobPage::setDepartment(TYPE_ID uid)
{
    const ObjectInfo *object = uid ? LocalStorage::instance()->constObject(uid, nivaro::ORGSTRUCTURE_DATANAME) : nullptr;
    // A host presets the selected tree row, which may be an employee or
    // the root: only a firm or a department is taken.
    m_department = canHoldEmployees(object) ? uid : 0;
    m_departmentName->setText(m_department ? NVGlobals::objectName(*object) : tr("(не выбрано)"));
    revalidate();
}

QString NewWorkerJobPage::refusal() const
{
    if (!canHoldEmployees(m_department ? LocalStorage::instance()->constObject(m_department, nivaro::ORGSTRUCTURE_DATANAME)
                                       : nullptr))
        return tr("Выберите подразделение или организацию сотрудника");
    const QString number = m_workerNumber->text().trimmed();
    if (!number.isEmpty()) {
        const QString holders = WorkerUniqueParamChecker::employeesNameByParameters(db::worker::WORKERNUM, number, 3);
        if (!holders.isEmpty())
            return tr("Табельный номер %1 уже есть у сотрудника: %2").arg(number, holders);
    }
    const QDate begin = m_dateBegin->dateOrNull();
    const QDate end = m_dateEnd->dateOrNull();
    if (begin.isValid() && end.isValid() && end < begin)
        return tr("Дата окончания (%1) раньше даты начала (%2)")
            .arg(end.toString(DateFormat), begin.toString(DateFormat));
    return QString();
}

QList<ValidatedWizardPage::Field> NewWorkerJobPage::fields() const
{
    QList<Field> list;
    if (m_department)
        addField(list, QString(), tr("Подразделение"), QString::number(m_department), m_departmentName->text());
    const TYPE_ID job = m_job->currentData().toUInt();
    if (job)
        addField(list, db::worker::JOBLINK, tr("Должность"), QString::number(job), m_job->currentText());
    addField(list, db::worker::WORKERNUM, tr("Табельный номер"), m_workerNumber->text().trimmed());
    const int schedule = m_schedule->currentData().toInt();
    if (schedule >= 0)
        addField(list, db::worker::SCHEDULE, tr("График работы"), QString::number(schedule), m_schedule->currentText());
    for (const auto &date : {std::make_pair(m_dateBegin, &db::worker::DATE_BEGIN), std::make_pair(m_dateEnd, &db::worker::DATE_END)}) {
        const QDate value = date.first->dateOrNull();
        if (value.isValid())
            addField(list, *date.second, date.first == m_dateBegin ? tr("Действует с") : tr("Действует по"),
                     value.toString(Qt::ISODate), value.toString(DateFormat));
    }
    return list;
}
