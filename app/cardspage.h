#ifndef CARDSPAGE_H
#define CARDSPAGE_H

#include <nvtypes.h>

#include <QWidget>

class CardWidget;
class EmployeeCardsView;

/** One employee's cards, and the reader to issue new ones with. */
class CardsPage : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(CardsPage)
public:
    explicit CardsPage(QWidget *parent = nullptr);

    void setWorker(nivaro::TYPE_ID uid);
    EmployeeCardsView *cardsView() const { return m_cards; }
    CardWidget *cardWidget() const { return m_widget; }

private:
    EmployeeCardsView *m_cards;
    CardWidget *m_widget;
};

#endif
