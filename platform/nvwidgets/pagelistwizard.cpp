#include "pagelistwizard.h"

#include <QListWidget>

PageListWizard::PageListWizard(QWidget *parent)
    : QWizard(parent)
    , m_pageList(new QListWidget)
{
    m_pageList->setObjectName(QStringLiteral("pageList"));
    m_pageList->setSelectionMode(QAbstractItemView::NoSelection);
    m_pageList->setFocusPolicy(Qt::NoFocus);
    m_pageList->setFixedWidth(180);
    setSideWidget(m_pageList);
    connect(this, &QWizard::currentIdChanged, this, &PageListWizard::refreshPageList);
    connect(this, &QWizard::pageAdded, this, &PageListWizard::refreshPageList);
    connect(this, &QWizard::pageRemoved, this, &PageListWizard::refreshPageList);
}

// QWizard adopts the side widget only when it first lays itself out: a
// wizard that was never shown still owns a parentless list.
PageListWizard::~PageListWizard()
{
    if (!m_pageList->parentWidget())
        delete m_pageList;
}

void PageListWizard::setPageListVisible(bool visible)
{
    m_pageListVisible = visible;
    m_pageList->setVisible(visible);
}

bool PageListWizard::isPageListVisible() const
{
    return m_pageListVisible;
}

QStringList PageListWizard::pageTitles() const
{
    QStringList titles;
    for (int id : pageIds())
        titles << page(id)->title();
    return titles;
}

void PageListWizard::refreshPageList()
{
    m_pageList->clear();
    for (int id : pageIds()) {
        auto *item = new QListWidgetItem(page(id)->title(), m_pageList);
        if (id == currentId()) {
            QFont bold = item->font();
            bold.setBold(true);
            item->setFont(bold);
        }
    }
}
