#include "newdepartmentwizard.h"

#include "newdepartmentparameterspage.h"
#include "newprogresswizardpages.h"

#include <objecttypes.h>

NewDepartmentWizard::NewDepartmentWizard(QWidget *parent)
    : NewObjectWizard(parent)
    , m_parameters(new NewDepartmentParametersPage)
    // The firm's progress page runs one creating task and hands on its uid:
    // all a department needs.
    , m_progress(new NewFirmProgressWizardPage)
{
    setObjectName(QStringLiteral("NewDepartmentWizard"));
    setWindowTitle(tr("Мастер создания подразделения"));
    setAttribute(Qt::WA_DeleteOnClose);
    setPageListVisible(false);
    m_progress->setTitle(tr("Сохранение"));
    setPage(ParametersPageId, m_parameters);
    addRunPages(new ChangeSummaryWizardPage, m_progress);
}

void NewDepartmentWizard::setParentDepartment(nivaro::TYPE_ID uid)
{
    m_parameters->setParentDepartment(placeOf(uid));
}

QList<nivaro::TaskInfo> NewDepartmentWizard::tasks() const
{
    const QString name = m_parameters->departmentName();
    nivaro::TaskInfo task = saveTask(nivaro::OT_DEPARTMENT, m_parameters->fields(), QStringLiteral("save"),
                                     tr("Создание подразделения %1").arg(name),
                                     tr("Ошибка создания подразделения %1").arg(name));
    task.params.insert(QStringLiteral("parent"), QString::number(m_parameters->parentDepartment()));
    return {task};
}

QList<ChangeSummaryWizardPage::Change> NewDepartmentWizard::changes() const
{
    ChangeSummaryWizardPage::Change change;
    change.object = m_parameters->departmentName();
    change.action = tr("Создание");
    change.fields = summaryFields(m_parameters->fields());
    return {change};
}
