#include "dismissalwizard.h"

#include "changesummarywizardpage.h"
#include "deletelistwizardpage.h"
#include "dismissalparameterswizardpage.h"
#include "dismissprogresswizardpage.h"

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <nvglobals.h>
#include <objecttypes.h>

#include <QDebug>
#include <QSet>

using nivaro::TYPE_ID;

namespace {
QString shownDate(const QString &iso)
{
    const QDate date = QDate::fromString(iso, Qt::ISODate);
    return date.isValid() ? date.toString(QStringLiteral("dd.MM.yyyy")) : iso;
}
} // namespace

DismissalWizard::DismissalWizard(QWidget *parent)
    : PageListWizard(parent)
    , m_listPage(new DeleteListWizardPage)
    , m_parametersPage(new DismissalParametersWizardPage)
    , m_summaryPage(new ChangeSummaryWizardPage)
    , m_progressPage(new DismissProgressWizardPage)
{
    setObjectName(QStringLiteral("DismissalWizard"));
    setWindowTitle(tr("Мастер увольнения"));
    setPageListVisible(false);
    setAttribute(Qt::WA_DeleteOnClose);
    setPage(ListPage, m_listPage);
    setPage(ParametersPage, m_parametersPage);
    setPage(SummaryPage, m_summaryPage);
    setPage(ProgressPage, m_progressPage);
    m_progressPage->setFinalPage(true);
    m_summaryPage->setCommitPage(true);
    setButtonText(QWizard::CommitButton, tr("Выполнить"));
    connect(m_progressPage, &DismissProgressWizardPage::appendTask, this, &DismissalWizard::appendTask);
    setUids({});
}

DismissalWizard::~DismissalWizard() = default;

void DismissalWizard::setUids(const QList<TYPE_ID> &uids)
{
    const nivaro::LocalStorage *storage = nivaro::LocalStorage::instance();
    const QStringList employees{nivaro::SUBJECT_DATANAME, nivaro::SUBJECT_FIRED_DATANAME};
    m_uids.clear();
    QSet<TYPE_ID> seen;
    QStringList refused;
    for (TYPE_ID uid : uids) {
        if (seen.contains(uid))
            continue;
        seen.insert(uid);
        const nivaro::ObjectInfo *object = storage->constObject(uid, employees);
        if (!object) {
            const nivaro::ObjectInfo *other = storage->constObject(uid);
            if (other)
                refused.append(tr("%1: не сотрудник").arg(NVGlobals::objectName(*other)));
            else
                qDebug() << "dismissal wizard: object" << uid << "is not in the store; left out";
            continue;
        }
        const bool fired = storage->constObject(uid, nivaro::SUBJECT_FIRED_DATANAME)
                           || object->parameter(db::common::OBJECTSTATE).compare(db::common::STATE_FIRED, Qt::CaseInsensitive) == 0;
        if (fired) {
            refused.append(tr("%1: уже уволен").arg(NVGlobals::objectName(*object)));
            continue;
        }
        m_uids.append(uid);
    }
    m_refusal.clear();
    if (!refused.isEmpty())
        m_refusal = tr("Не будут уволены:") + QLatin1Char('\n') + refused.join(QLatin1Char('\n'));
    if (m_uids.isEmpty())
        m_refusal = (m_refusal.isEmpty() ? QString() : m_refusal + QLatin1Char('\n')) + tr("Нет сотрудников для увольнения");
    m_listPage->setUids(m_uids);
    m_listPage->setNotice(m_refusal);
    m_listPage->setComplete(!m_uids.isEmpty());
    m_progressPage->setUids(m_uids);
}

void DismissalWizard::setDismissDate(const QDate &date)
{
    m_parametersPage->setDate(date);
}

QDate DismissalWizard::dismissDate() const
{
    return m_parametersPage->date();
}

void DismissalWizard::setReason(const QString &reason)
{
    m_parametersPage->setReason(reason);
}

QString DismissalWizard::reason() const
{
    return m_parametersPage->reason();
}

void DismissalWizard::initializePage(int id)
{
    if (id == SummaryPage) {
        const nivaro::LocalStorage *storage = nivaro::LocalStorage::instance();
        const QDate date = m_parametersPage->date();
        const QString reason = m_parametersPage->reason();
        QList<ChangeSummaryWizardPage::Change> changes;
        changes.reserve(m_uids.size());
        for (TYPE_ID uid : qAsConst(m_uids)) {
            const nivaro::ObjectInfo object = storage->object(uid, nivaro::SUBJECT_DATANAME);
            ChangeSummaryWizardPage::Change change;
            change.uid = uid;
            change.object = NVGlobals::objectName(object);
            change.action = tr("Увольнение");
            change.fields = {{tr("Состояние"), tr("Работает"), tr("Уволен")},
                             {tr("Дата увольнения"), shownDate(object.parameter(db::worker::DISMISS_DATE)),
                              date.toString(QStringLiteral("dd.MM.yyyy"))},
                             {tr("Причина увольнения"), object.parameter(db::worker::DISMISS_REASON), reason}};
            changes.append(change);
        }
        m_summaryPage->setChanges(changes);
        m_progressPage->setDismissal(date, reason);
    } else if (id == ProgressPage) {
        m_listPage->detachFromStore();
    }
    PageListWizard::initializePage(id);
}
