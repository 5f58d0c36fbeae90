#include "newfirmwizard.h"

#include "newfirmparameterspage.h"
#include "newprogresswizardpages.h"

#include <objecttypes.h>

NewFirmWizard::NewFirmWizard(QWidget *parent)
    : NewObjectWizard(parent)
    , m_parameters(new NewFirmParametersPage)
    , m_progress(new NewFirmProgressWizardPage)
{
    setObjectName(QStringLiteral("NewFirmWizard"));
    setWindowTitle(tr("Мастер создания организации"));
    setAttribute(Qt::WA_DeleteOnClose);
    setPageListVisible(false);
    m_progress->setTitle(tr("Сохранение"));
    setPage(ParametersPageId, m_parameters);
    addRunPages(new ChangeSummaryWizardPage, m_progress);
}

QList<nivaro::TaskInfo> NewFirmWizard::tasks() const
{
    const QString name = m_parameters->firmName();
    nivaro::TaskInfo task = saveTask(nivaro::OT_FIRM, m_parameters->fields(), QStringLiteral("save"),
                                     tr("Создание организации %1").arg(name),
                                     tr("Ошибка создания организации %1").arg(name));
    // Firms live directly under the organisation's root.
    task.params.insert(QStringLiteral("parent"), QString::number(nivaro::SUBJECT_ROOT_UID));
    return {task};
}

QList<ChangeSummaryWizardPage::Change> NewFirmWizard::changes() const
{
    ChangeSummaryWizardPage::Change change;
    change.object = m_parameters->firmName();
    change.action = tr("Создание");
    change.fields = summaryFields(m_parameters->fields());
    return {change};
}
