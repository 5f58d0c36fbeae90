#include "newobjectwizard.h"

#include "baseprogresswizardpage.h"

#include <datanames.h>
#include <localstorage.h>

NewObjectWizard::NewObjectWizard(QWidget *parent)
    : PageListWizard(parent)
{
    setButtonText(QWizard::CommitButton, tr("Создать"));
}

void NewObjectWizard::addRunPages(ChangeSummaryWizardPage *summary, BaseProgressWizardPage *progress)
{
    m_summary = summary;
    m_progress = progress;
    const QList<int> ids = pageIds();
    const int next = ids.isEmpty() ? 0 : ids.constLast() + 1;
    setPage(next, summary);
    setPage(next + 1, progress);
    summary->setCommitPage(true);
    progress->setFinalPage(true);
    connect(progress, &BaseProgressWizardPage::executeTask, this, &NewObjectWizard::appendTask);
    connect(progress, &BaseProgressWizardPage::tasksFinished, this, [this] {
        const nivaro::TYPE_ID uid = createdUid();
        if (uid && !m_announced) {
            m_announced = true;
            emit objectCreated(uid);
        }
    });
}

nivaro::TYPE_ID NewObjectWizard::createdUid() const
{
    return property("uid").toUInt();
}

nivaro::TYPE_ID NewObjectWizard::placeOf(nivaro::TYPE_ID selected)
{
    const nivaro::ObjectInfo *employee = nivaro::LocalStorage::instance()->constObject(selected, nivaro::SUBJECT_DATANAME);
    return employee ? employee->parent() : selected;
}

void NewObjectWizard::taskFinished(const nivaro::TaskInfo &task, bool ok, const QString &error)
{
    if (!ok && m_progress && task.widget == m_progress)
        m_progress->appendMessage(error);
}

bool NewObjectWizard::mayRun()
{
    const QList<int> ids = pageIds();
    for (int id : ids) {
        auto *validated = qobject_cast<ValidatedWizardPage *>(page(id));
        if (validated && !validated->refusal().isEmpty()) {
            validated->revalidate();
            return false;
        }
    }
    return true;
}

void NewObjectWizard::initializePage(int id)
{
    QWizardPage *current = page(id);
    if (current && current == m_summary) {
        m_summary->setChanges(changes());
    } else if (current && current == m_progress && m_progress->queuedTaskCount() == 0) {
        if (mayRun()) {
            const QList<nivaro::TaskInfo> queue = tasks();
            for (const nivaro::TaskInfo &task : queue)
                m_progress->addTask(task);
        } else {
            // Nothing queued must not read as "all done".
            m_progress->setFinishMessage(tr("Операция отменена"));
        }
    }
    PageListWizard::initializePage(id);
}

nivaro::TaskInfo NewObjectWizard::saveTask(const QString &objectType, const QList<ValidatedWizardPage::Field> &fields,
                                           const QString &replySlot, const QString &startMessage,
                                           const QString &errorMessage)
{
    nivaro::TaskInfo task;
    task.id = nivaro::TaskInfo::newId();
    task.uid = 0;
    task.command = QStringLiteral("save_object");
    task.params.insert(QStringLiteral("object_type"), objectType);
    for (const ValidatedWizardPage::Field &field : fields) {
        if (!field.key.isEmpty())
            task.params.insert(QLatin1String("property-") + field.key, field.value);
    }
    task.slot = replySlot;
    task.startMessage = startMessage;
    task.errorMessage = errorMessage;
    return task;
}

QList<ChangeSummaryWizardPage::Field> NewObjectWizard::summaryFields(const QList<ValidatedWizardPage::Field> &fields)
{
    QList<ChangeSummaryWizardPage::Field> list;
    for (const ValidatedWizardPage::Field &field : fields) {
        if (!field.caption.isEmpty())
            list.append({field.caption, QString(), field.shown});
    }
    return list;
}
