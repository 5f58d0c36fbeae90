#ifndef NEWWORKERCARDPAGE_H
#define NEWWORKERCARDPAGE_H

#include "validatedwizardpage.h"

#include <objectinfo.h>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class USBCardReaderManager;

/**
 * The new employee's card, which may be left out: read on a reader (the
 * card's UID gives the number, as everywhere cards are read) or its number
 * typed as the site shows card numbers. A number another card already
 * carries is refused here, naming its holder, before anything is sent.
 */
class NVDIALOGS_EXPORT NewWorkerCardPage : public ValidatedWizardPage
{
    Q_OBJECT
public:
    explicit NewWorkerCardPage(QWidget *parent = nullptr);
    ~NewWorkerCardPage() override;

    USBCardReaderManager *manager() const { return m_manager; }
    // The card number the page will issue; 0 for none.
    quint64 cardNumber() const;
    bool isReading() const { return m_reading; }

    QString refusal() const override;
    // The card's parameters (number, start date and, of a card read on a
    // reader, its UID and type).
    QList<Field> fields() const override;

public Q_SLOTS:
    void refreshReaders();
    // Starts reading a card on the chosen reader.
    void readCard();

private:
    void cardArrived(const nivaro::ObjectInfo &card);
    void readFinished();
    void showStatus(const QString &text, bool isError);

    USBCardReaderManager *m_manager;
    QComboBox *m_readers;
    QPushButton *m_read;
    QLineEdit *m_number;
    QLabel *m_status;
    bool m_reading = false;
    bool m_readFailed = false;
    // The card last read and the number text shown for it: typing another
    // number forgets the card.
    nivaro::ObjectInfo m_readCard;
    QString m_readText;
};

#endif
