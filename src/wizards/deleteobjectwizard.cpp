#include "deleteobjectwizard.h"

#include "changesummarywizardpage.h"
#include "deletelistwizardpage.h"
#include "deleteprogresswizardpage.h"

#include <datanames.h>
#include <localstorage.h>
#include <nvglobals.h>
#include <objecttreemodel.h>
#include <objecttypes.h>

#include <QDebug>
#include <QSet>

#include <algorithm>

using nivaro::TYPE_ID;

DeleteObjectWizard::DeleteObjectWizard(QWidget *parent)
    : PageListWizard(parent)
    , m_listPage(new DeleteListWizardPage)
    , m_summaryPage(new ChangeSummaryWizardPage)
    , m_progressPage(new DeleteProgressWizardPage)
{
    setObjectName(QStringLiteral("DeleteObjectWizard"));
    setWindowTitle(tr("Мастер удаления"));
    setPageListVisible(false);
    setAttribute(Qt::WA_DeleteOnClose);
    setPage(ListPage, m_listPage);
    setPage(SummaryPage, m_summaryPage);
    setPage(ProgressPage, m_progressPage);
    m_progressPage->setFinalPage(true);
    m_summaryPage->setCommitPage(true);
    setButtonText(QWizard::CommitButton, tr("Выполнить"));
    connect(m_progressPage, &DeleteProgressWizardPage::appendTask, this, &DeleteObjectWizard::appendTask);
    setUids({});
}

DeleteObjectWizard::~DeleteObjectWizard() = default;

void DeleteObjectWizard::setUids(const QList<TYPE_ID> &uids)
{
    nivaro::LocalStorage *storage = nivaro::LocalStorage::instance();
    nivaro::ObjectTreeModel *tree = storage->model(nivaro::ORGSTRUCTURE_DATANAME);
    QStringList refused;
    QList<const nivaro::ObjectInfo *> chosen;
    QSet<TYPE_ID> seen;
    for (TYPE_ID uid : uids) {
        if (seen.contains(uid))
            continue;
        seen.insert(uid);
        const nivaro::ObjectInfo *object = storage->constObject(uid);
        if (!object) {
            qDebug() << "delete wizard: object" << uid << "is not in the store; left out";
            continue;
        }
        const QString type = object->typeName();
        if (type != nivaro::OT_WORKER && type != nivaro::OT_DEPARTMENT && type != nivaro::OT_FIRM) {
            refused.append(tr("%1: этот мастер удаляет только сотрудников, подразделения и организации")
                               .arg(NVGlobals::objectName(*object)));
            continue;
        }
        chosen.append(object);
    }
    // Deepest first, so that whether a department's members all go is
    // known before the department itself is looked at; one left out then
    // keeps its own parent too.
    QHash<TYPE_ID, int> depth;
    for (const nivaro::ObjectInfo *object : qAsConst(chosen))
        depth.insert(object->uid(), tree ? tree->parentKeys(object->uid()).size() : 0);
    std::stable_sort(chosen.begin(), chosen.end(), [&depth](const nivaro::ObjectInfo *a, const nivaro::ObjectInfo *b) {
        return depth.value(a->uid()) > depth.value(b->uid());
    });
    QSet<TYPE_ID> going;
    QList<TYPE_ID> kept;
    for (const nivaro::ObjectInfo *object : qAsConst(chosen)) {
        const QModelIndex node = tree ? tree->indexOf(object->uid()) : QModelIndex();
        bool empty = true;
        for (int row = 0; node.isValid() && row < tree->rowCount(node) && empty; ++row)
            empty = going.contains(tree->uid(tree->index(row, 0, node)));
        if (!empty) {
            // Under the heading that says they stay, so no word has to agree
            // with the object's gender.
            refused.append(tr("«%1»: внутри остаются сотрудники или подразделения, не выбранные для удаления")
                               .arg(NVGlobals::objectName(*object)));
            continue;
        }
        going.insert(object->uid());
        kept.append(object->uid());
    }
    m_refusal.clear();
    if (!refused.isEmpty())
        m_refusal = tr("Не будут удалены:") + QLatin1Char('\n') + refused.join(QLatin1Char('\n'));
    if (kept.isEmpty())
        m_refusal = (m_refusal.isEmpty() ? QString() : m_refusal + QLatin1Char('\n')) + tr("Нечего удалять");
    m_listPage->setUids(kept);
    m_listPage->setNotice(m_refusal);
    m_listPage->setComplete(!kept.isEmpty());
    m_progressPage->setUids(kept);
}

QList<TYPE_ID> DeleteObjectWizard::uids() const
{
    return m_progressPage->uids();
}

void DeleteObjectWizard::initializePage(int id)
{
    if (id == SummaryPage) {
        nivaro::LocalStorage *storage = nivaro::LocalStorage::instance();
        QList<ChangeSummaryWizardPage::Change> changes;
        const QList<TYPE_ID> going = uids();
        changes.reserve(going.size());
        for (TYPE_ID uid : going) {
            const nivaro::ObjectInfo object = storage->object(uid);
            const nivaro::ObjectInfo *parent = storage->constObject(object.parent());
            ChangeSummaryWizardPage::Change change;
            change.uid = uid;
            change.object = NVGlobals::objectName(object);
            change.action = tr("Удаление");
            // Which of two namesakes goes is told by where it sits.
            change.fields.append({tr("Подразделение"), parent ? NVGlobals::objectName(*parent) : QString(), QString()});
            changes.append(change);
        }
        m_summaryPage->setChanges(changes);
    } else if (id == ProgressPage) {
        m_listPage->detachFromStore();
    }
    PageListWizard::initializePage(id);
}
