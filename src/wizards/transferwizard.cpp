#include "transferwizard.h"

#include "changesummarywizardpage.h"
#include "deletelistwizardpage.h"
#include "transferprogresswizardpages.h"
#include "transfertargetwizardpage.h"

#include <localstorage.h>
#include <nvglobals.h>
#include <objecttypes.h>

#include <QDebug>
#include <QSet>

using nivaro::TYPE_ID;

TransferWizard::TransferWizard(QWidget *parent)
    : PageListWizard(parent)
    , m_listPage(new DeleteListWizardPage)
    , m_targetPage(new TransferTargetWizardPage)
    , m_summaryPage(new ChangeSummaryWizardPage)
{
    setObjectName(QStringLiteral("TransferWizard"));
    setWindowTitle(tr("Мастер перевода"));
    setPageListVisible(false);
    setAttribute(Qt::WA_DeleteOnClose);
    setPage(ListPage, m_listPage);
    setPage(TargetPage, m_targetPage);
    setPage(SummaryPage, m_summaryPage);
    // Going back from the run would start it again: the summary is the
    // last point of return.
    m_summaryPage->setCommitPage(true);
    setButtonText(QWizard::CommitButton, tr("Выполнить"));
    setProgressPage(false);
    setUids({});
}

TransferWizard::~TransferWizard() = default;

void TransferWizard::setProgressPage(bool departments)
{
    if (m_progressPage && (qobject_cast<TransferDepartmentWizardProgressPage *>(m_progressPage) != nullptr) == departments)
        return;
    if (m_progressPage) {
        removePage(ProgressPage);
        delete m_progressPage;
    }
    if (departments)
        m_progressPage = new TransferDepartmentWizardProgressPage;
    else
        m_progressPage = new TransferWorkerWizardProgressPage;
    m_progressPage->setFinalPage(true);
    setPage(ProgressPage, m_progressPage);
    connect(m_progressPage, &TransferProgressWizardPage::executeTask, this, &TransferWizard::appendTask);
}

void TransferWizard::setUids(const QList<TYPE_ID> &uids)
{
    const nivaro::LocalStorage *storage = nivaro::LocalStorage::instance();
    m_uids.clear();
    QSet<TYPE_ID> seen;
    QStringList refused;
    int workers = 0;
    int departments = 0;
    for (TYPE_ID uid : uids) {
        if (seen.contains(uid))
            continue;
        seen.insert(uid);
        const nivaro::ObjectInfo *object = storage->constObject(uid);
        if (!object) {
            qDebug() << "transfer wizard: object" << uid << "is not in the store; left out";
            continue;
        }
        if (object->typeName() == nivaro::OT_WORKER) {
            ++workers;
        } else if (object->typeName() == nivaro::OT_DEPARTMENT) {
            ++departments;
        } else {
            refused.append(tr("%1 нельзя перевести: переводятся только сотрудники и подразделения")
                               .arg(NVGlobals::objectName(*object)));
            continue;
        }
        m_uids.append(uid);
    }
    m_refusal.clear();
    if (!refused.isEmpty())
        m_refusal = refused.join(QLatin1Char('\n'));
    else if (workers && departments)
        m_refusal = tr("Выбраны и сотрудники, и подразделения: переведите их по отдельности");
    else if (m_uids.isEmpty())
        m_refusal = tr("Не выбраны объекты для перевода");
    m_departments = departments > 0 && workers == 0;
    setProgressPage(m_departments);
    m_listPage->setUids(m_uids);
    m_listPage->setNotice(m_refusal);
    m_listPage->setComplete(m_refusal.isEmpty());
    m_targetPage->setMoved(m_uids, m_departments);
}

void TransferWizard::setTarget(TYPE_ID target)
{
    m_targetPage->setTarget(target);
}

TYPE_ID TransferWizard::target() const
{
    return m_targetPage->target();
}

QString TransferWizard::targetRefusal() const
{
    return m_targetPage->refusal();
}

void TransferWizard::initializePage(int id)
{
    if (id == SummaryPage) {
        // Only what really moves: an object already in the target would
        // be a task that changes nothing.
        nivaro::LocalStorage *storage = nivaro::LocalStorage::instance();
        const TYPE_ID target = m_targetPage->target();
        const QString targetName = NVGlobals::objectName(storage->object(target));
        QList<ChangeSummaryWizardPage::Change> changes;
        QList<TYPE_ID> moved;
        changes.reserve(m_uids.size());
        for (TYPE_ID uid : qAsConst(m_uids)) {
            const nivaro::ObjectInfo *object = storage->constObject(uid);
            if (!object || object->parent() == target)
                continue;
            const nivaro::ObjectInfo *parent = storage->constObject(object->parent());
            ChangeSummaryWizardPage::Change change;
            change.uid = uid;
            change.object = NVGlobals::objectName(*object);
            change.action = tr("Перевод");
            change.fields.append({tr("Подразделение"), parent ? NVGlobals::objectName(*parent) : QString(), targetName});
            changes.append(change);
            moved.append(uid);
        }
        m_summaryPage->setChanges(changes);
        m_progressPage->setTransfer(moved, target);
    } else if (id == ProgressPage) {
        m_listPage->detachFromStore();
    }
    PageListWizard::initializePage(id);
}
