#include "updateobjectwizard.h"

#include "deletelistwizardpage.h"

UpdateProgressWizardPage::UpdateProgressWizardPage(QWidget *parent)
    : ObjectsProgressWizardPage(parent)
{
    setTitle(tr("Обновление объектов"));
}

void UpdateProgressWizardPage::addUpdateParameter(const QString &name, const QVariant &value)
{
    m_parameters.insert(name, value);
}

nivaro::TaskInfo UpdateProgressWizardPage::makeTask(const nivaro::ObjectInfo &object) const
{
    nivaro::TaskInfo task;
    task.command = QStringLiteral("save_object");
    task.params.insert(QStringLiteral("object_type"), object.typeName());
    for (auto it = m_parameters.cbegin(); it != m_parameters.cend(); ++it)
        task.params.insert(QLatin1String("property-") + it.key(), it.value());
    task.slot = QStringLiteral("updated");
    return task;
}

QString UpdateProgressWizardPage::startText(const QString &name) const
{
    return tr("Обработка %1").arg(name);
}

QString UpdateProgressWizardPage::doneText(const QString &name) const
{
    return tr("%1 обработан").arg(name);
}

QString UpdateProgressWizardPage::errorText(const QString &name) const
{
    return tr("Ошибка обработки %1").arg(name);
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
