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

// QWizard adopts its side widget only when it first lays itself out, so a
// wizard dropped before it was ever shown (a selection it refused, say)
// still leaves the list without a parent.
PageListWizard::~PageListWizard()
{
    if (!m_pageList->parent())
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
