#include "bulkupdateruns.h"

#include "bulkupdatedialog.h"

#include <localstorage.h>
#include <nvglobals.h>
#include <taskexecutor.h>
#include <updateobjectwizard.h>

#include <QDebug>


namespace {
const QString UpdateKind = QStringLiteral("update");
const QString KeyParameter = QStringLiteral("key");
const QString ValueParameter = QStringLiteral("value");
} // namespace

BulkUpdateRuns::BulkUpdateRuns(nivaro::TaskExecutor *executor, QObject *parent)
    : QObject(parent)
    , m_executor(executor)
{
    connect(executor, &nivaro::TaskExecutor::taskFinished, this, &BulkUpdateRuns::taskFinished);
}

bool BulkUpdateRuns::open(const QString &storeFile, QString *error)
{
    return m_journal.open(storeFile, error);
}

void BulkUpdateRuns::close()
{
    m_journal.close();
}

void BulkUpdateRuns::track(UpdateObjectWizard *wizard, const QString &key, const QVariant &value)
{
    ObjectsProgressWizardPage *page = wizard->progressPage();
    const QVariantMap parameters{{KeyParameter, key}, {ValueParameter, value}};
    wizard->setChanges(changes(page->uids(), key, value));
    // The run begins with its first task: a wizard closed on its list page
    // sent nothing and was no run.
    connect(wizard, &UpdateObjectWizard::appendTask, this, [this, page, parameters](const nivaro::TaskInfo &task) {
        auto open = m_openRuns.constFind(page);
        if (open == m_openRuns.cend())
            open = m_openRuns.insert(page, beginRun(page, parameters));
        m_sent.insert(task.id, {open.value(), page});
        m_executor->execute(task);
    });
    connect(page, &QObject::destroyed, this, [this, page] { m_openRuns.remove(page); });
}

QList<ChangeSummaryWizardPage::Change> BulkUpdateRuns::changes(const QList<nivaro::TYPE_ID> &uids, const QString &key,
                                                              const QVariant &value)
{
    const nivaro::LocalStorage *storage = nivaro::LocalStorage::instance();
    const QString name = BulkUpdateDialog::parameterName(key);
    const QString newValue = BulkUpdateDialog::shownValue(storage, key, value.toString());
    QList<ChangeSummaryWizardPage::Change> changes;
    changes.reserve(uids.size());
    for (nivaro::TYPE_ID uid : uids) {
        const nivaro::ObjectInfo *object = storage->constObject(uid);
        if (!object)
            continue;
        ChangeSummaryWizardPage::Change change;
        change.uid = uid;
        change.object = NVGlobals::objectName(*object);
        change.action = tr("Изменение");
        change.fields.append({name, BulkUpdateDialog::shownValue(storage, key, object->parameter(key)), newValue});
        changes.append(change);
    }
    return changes;
}

qint64 BulkUpdateRuns::beginRun(ObjectsProgressWizardPage *page, const QVariantMap &parameters)
{
    if (!m_journal.isOpen())
        return 0;
    QString error;
    const qint64 run = m_journal.beginRun(UpdateKind, parameters, page->uids(), &error);
    if (run == 0)
        page->appendMessage(error); // the run goes on; the operator knows it is not kept
    return run;
}

void BulkUpdateRuns::taskFinished(const nivaro::TaskInfo &task, bool ok, const QString &error)
{
    const auto it = m_sent.find(task.id);
    if (it == m_sent.end())
        return; // not a bulk task
    const Sent sent = it.value();
    m_sent.erase(it);
    if (ok && sent.run != 0)
        m_journal.markDone(sent.run, task.uid);
    if (!sent.page)
        return; // closed mid-run: the run stays open, cut short
    if (!ok)
        sent.page->appendMessage(error);
    if (sent.page->objectCount() == 0) {
        if (sent.run != 0)
            m_journal.endRun(sent.run);
        m_openRuns.remove(sent.page);
    }
}

QList<nivaro::RunJournal::Run> BulkUpdateRuns::interruptedRuns()
{
    QList<nivaro::RunJournal::Run> runs = m_journal.interruptedRuns(UpdateKind);
    for (auto it = runs.begin(); it != runs.end();) {
        if (!key(*it).isEmpty()) {
            ++it;
            continue;
        }
        // Nothing to repeat without the parameter; it stays for a look.
        qDebug() << "bulk runs: run without a parameter" << it->id;
        it = runs.erase(it);
    }
    return runs;
}

void BulkUpdateRuns::endRun(qint64 run)
{
    m_journal.endRun(run);
}

QString BulkUpdateRuns::key(const nivaro::RunJournal::Run &run)
{
    return run.parameters.value(KeyParameter).toString();
}

QVariant BulkUpdateRuns::value(const nivaro::RunJournal::Run &run)
{
    return run.parameters.value(ValueParameter);
}
