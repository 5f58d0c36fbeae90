#include "cardspage.h"

#include <cardwidget.h>
#include <employeecardsview.h>

#include <QGroupBox>
#include <QVBoxLayout>

CardsPage::CardsPage(QWidget *parent)
    : QWidget(parent)
    , m_cards(new EmployeeCardsView)
    , m_widget(new CardWidget)
{
    setObjectName(QStringLiteral("cardsPage"));
    auto *issue = new QGroupBox(tr("Считыватель"));
    auto *issueLayout = new QVBoxLayout(issue);
    issueLayout->addWidget(m_widget);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_cards, 1);
    layout->addWidget(issue);
    // A card just issued is the one the operator wants to see.
    connect(m_widget, &CardWidget::cardSaved, m_cards, &EmployeeCardsView::selectCard);
}

void CardsPage::setWorker(nivaro::TYPE_ID uid)
{
    m_cards->setWorker(uid);
    m_widget->setWorker(uid);
}
