#include "updateobjectwizard.h"

#include "deletelistwizardpage.h"

UpdateProgressWizardPage::UpdateProgressWizardPage(QWidget *parent)
    : ObjectsProgressWizardPage({QStringLiteral("save_object"), QStringLiteral("updated"), tr("Обработка %1"),
                                 tr("%1 обработан"), tr("Ошибка обработки %1")},
                                parent)
{
    setTitle(tr("Обновление объектов"));
}

void UpdateProgressWizardPage::addUpdateParameter(const QString &name, const QVariant &value)
{
    setTaskParameter(QLatin1String("property-") + name, value);
}

UpdateObjectWizard::UpdateObjectWizard(QWidget *parent)
    : PageListWizard(parent)
    , m_listPage(new DeleteListWizardPage)
    , m_progressPage(new UpdateProgressWizardPage)
{
    setObjectName(QStringLiteral("UpdateObjectWizard"));
    setWindowTitle(tr("Мастер обновления объектов"));
    setPageListVisible(false);
    setAttribute(Qt::WA_DeleteOnClose);
    setPage(0, m_listPage);
    setPage(1, m_progressPage);
    m_progressPage->setFinalPage(true);
    // No way back from the run, neither while it runs nor after: going back
    // and forth starts the progress page again, which would send the objects
    // still out a second time, or after a failure report a run of nothing
    // as a success. The log of the one run is what the operator keeps.
    m_listPage->setCommitPage(true);
    setButtonText(QWizard::CommitButton, tr("Выполнить"));
    connect(m_progressPage, &UpdateProgressWizardPage::appendTask, this, &UpdateObjectWizard::appendTask);
}

void UpdateObjectWizard::setUids(const QList<unsigned int> &uids)
{
    m_listPage->setUids(uids);
    m_progressPage->setUids(uids);
}

void UpdateObjectWizard::addUpdateParameter(const QString &name, const QVariant &value)
{
    m_progressPage->addUpdateParameter(name, value);
}

QAbstractItemModel *UpdateObjectWizard::model() const
{
    return m_listPage->model();
}

nivaro::ObjectTreeProxy *UpdateObjectWizard::proxy() const
{
    return m_listPage->proxy();
}

void UpdateObjectWizard::setItemDelegate(StyledItemDelegate *delegate, QAbstractItemView *view)
{
    m_listPage->setItemDelegate(delegate, view);
}

void UpdateObjectWizard::setChanges(const QList<ChangeSummaryWizardPage::Change> &changes)
{
    if (!m_summaryPage) {
        m_summaryPage = new ChangeSummaryWizardPage;
        setPage(SummaryPage, m_summaryPage);
        // The summary is now the last look before the run.
        m_listPage->setCommitPage(false);
        m_summaryPage->setCommitPage(true);
    }
    m_summaryPage->setChanges(changes);
}

int UpdateObjectWizard::nextId() const
{
    if (!m_summaryPage)
        return PageListWizard::nextId();
    switch (currentId()) {
    case 0:
        return SummaryPage;
    case SummaryPage:
        return 1;
    default:
        return -1;
    }
}
