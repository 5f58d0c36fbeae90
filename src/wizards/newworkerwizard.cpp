#include "newworkerwizard.h"

#include "newprogresswizardpages.h"
#include "newworkercardpage.h"
#include "newworkerjobpage.h"
#include "newworkerphotopage.h"
#include "newworkerwizardparameterspage.h"

#include <dbparams.h>
#include <objecttypes.h>

NewWorkerWizard::NewWorkerWizard(QWidget *parent)
    : NewObjectWizard(parent)
    , m_parameters(new NewWorkerWizardParametersPage)
    , m_job(new NewWorkerJobPage)
    , m_photo(new NewWorkerPhotoPage)
    , m_card(new NewWorkerCardPage)
    , m_progress(new NewWorkerProgressWizardPage)
{
    setObjectName(QStringLiteral("NewWorkerWizard"));
    setWindowTitle(tr("Мастер создания сотрудника"));
    setAttribute(Qt::WA_DeleteOnClose);
    // The progress page asks page 0 whether the employee may be created.
    setPage(ParametersPageId, m_parameters);
    setPage(JobPageId, m_job);
    setPage(PhotoPageId, m_photo);
    setPage(CardPageId, m_card);
    addRunPages(new ChangeSummaryWizardPage, m_progress);
    Q_ASSERT(page(ProgressPageId) == m_progress);
}

void NewWorkerWizard::setDepartment(nivaro::TYPE_ID uid)
{
    m_job->setDepartment(placeOf(uid));
}

bool NewWorkerWizard::mayRun()
{
    return m_parameters->verifyCreateWorker();
}

QList<nivaro::TaskInfo> NewWorkerWizard::tasks() const
{
    const QString name = m_parameters->workerName();
    QList<nivaro::TaskInfo> queue;
    nivaro::TaskInfo create = saveTask(nivaro::OT_WORKER, m_parameters->fields() + m_job->fields(),
                                       QStringLiteral("save"), tr("Создание сотрудника %1").arg(name),
                                       tr("Ошибка создания сотрудника %1").arg(name));
    create.params.insert(QStringLiteral("parent"), QString::number(m_job->department()));
    queue.append(create);

    // Both wait for the creating task, whose reply gives them the uid.
    const QList<ValidatedWizardPage::Field> card = m_card->fields();
    if (!card.isEmpty()) {
        const QString number = card.constFirst().shown;
        queue.append(saveTask(nivaro::OT_CARD, card, QStringLiteral("saveCards"),
                              tr("Сохранение карты %1 сотрудника %2").arg(number, name),
                              tr("Ошибка сохранения карты %1 сотрудника %2").arg(number, name)));
    }
    const QList<ValidatedWizardPage::Field> photo = m_photo->fields();
    if (!photo.isEmpty())
        queue.append(saveTask(nivaro::OT_WORKER, photo, QStringLiteral("saveParameters"),
                              tr("Сохранение фотографии сотрудника %1").arg(name),
                              tr("Ошибка сохранения фотографии сотрудника %1").arg(name)));
    return queue;
}

QList<ChangeSummaryWizardPage::Change> NewWorkerWizard::changes() const
{
    ChangeSummaryWizardPage::Change change;
    change.object = m_parameters->workerName();
    change.action = tr("Создание");
    change.fields = summaryFields(m_parameters->fields() + m_job->fields() + m_photo->fields() + m_card->fields());
    return {change};
}
