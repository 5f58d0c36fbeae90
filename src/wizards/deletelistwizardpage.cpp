#include "deletelistwizardpage.h"

#include <datanames.h>
#include <localstorage.h>
#include <objecttreemodel.h>
#include <objecttreeproxy.h>
#include <styleditemdelegate.h>

#include <QHeaderView>
#include <QLabel>
#include <QTreeView>
#include <QVBoxLayout>

DeleteListWizardPage::DeleteListWizardPage(QWidget *parent)
    : NVWizardPage(parent)
    , m_view(new QTreeView(this))
    , m_notice(new QLabel(this))
    , m_proxy(new nivaro::ObjectTreeProxy(this))
{
    setTitle(tr("Список объектов"));
    setSubTitle(tr("Объекты, с которыми будет работать мастер."));
    m_proxy->setSourceModel(nivaro::LocalStorage::instance()->model(nivaro::ORGSTRUCTURE_DATANAME));
    m_proxy->setFilterUids({});
    m_view->setObjectName(QStringLiteral("objectList"));
    m_view->setModel(m_proxy);
    m_view->header()->hide();
    m_view->setSelectionMode(QAbstractItemView::NoSelection);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_view);
    m_notice->setObjectName(QStringLiteral("lbNotice"));
    m_notice->setWordWrap(true);
    m_notice->setTextFormat(Qt::PlainText);
    m_notice->hide();
    layout->addWidget(m_notice);
}

void DeleteListWizardPage::detachFromStore()
{
    m_view->setModel(nullptr);
    m_proxy->setSourceModel(nullptr);
}

void DeleteListWizardPage::setNotice(const QString &text)
{
    m_notice->setText(text);
    m_notice->setVisible(!text.isEmpty());
}

QString DeleteListWizardPage::notice() const
{
    return m_notice->text();
}

void DeleteListWizardPage::setUids(const QList<unsigned int> &uids)
{
    m_proxy->setFilterUids(QSet<nivaro::TYPE_ID>(uids.cbegin(), uids.cend()));
    m_view->expandAll();
}

QAbstractItemModel *DeleteListWizardPage::model() const
{
    return m_proxy->sourceModel();
}

nivaro::ObjectTreeProxy *DeleteListWizardPage::proxy() const
{
    return m_proxy;
}

void DeleteListWizardPage::setItemDelegate(StyledItemDelegate *delegate, QAbstractItemView *view)
{
    (view ? view : m_view)->setItemDelegate(delegate);
}
