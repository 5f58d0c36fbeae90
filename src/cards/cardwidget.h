#ifndef CARDWIDGET_H
#define CARDWIDGET_H

#include "nvdialogs_export.h"

#include <nvtypes.h>
#include <objectinfo.h>
#include <taskinfo.h>

#include <QWidget>

#include <functional>

class CardTemplatesWidget;
class QDialog;
class QTimer;
class USBCardReaderManager;
namespace Ui {
class CardWidget;
}

/**
 * Issues smart cards to one employee: reads a card on a USB reader,
 * formats it with a smart-card profile's keys, writes the employee's
 * identifier or biometric templates to it. Owns the one card reader
 * manager it drives; only one operation runs at a time, and every control
 * stays disabled until the manager reports the operation finished.
 *
 * A card read or written is handed to the server as the employee's card
 * ("save_object" of OT_CARD through appendTask; uid 0 for a card the
 * employee does not hold yet), so it is kept like any other object.
 */
class NVDIALOGS_EXPORT CardWidget : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(CardWidget)
public:
    explicit CardWidget(QWidget *parent = nullptr);
    ~CardWidget() override;

    // The employee whose cards are issued; 0 for none (cards are then only
    // read, never saved).
    void setWorker(nivaro::TYPE_ID uid);
    nivaro::TYPE_ID worker() const { return m_worker; }

    USBCardReaderManager *manager() const { return m_manager; }
    bool isBusy() const { return m_busy; }
    // The last result line and whether it reports an error.
    QString resultText() const;
    bool resultIsError() const { return m_resultIsError; }

    /**
     * The card number (db::card::NUMBER, decimal text) of a card UID as
     * the reader reads it (nvcm::UID: hex text, first byte first). The
     * UID bytes in the order the card sends them are one big-endian
     * number, so a 4-byte UID "04A1B2C3" is card 77705923 and the
     * site's hexadecimal card view shows the UID itself. Of a UID longer
     * than 8 bytes the last 8 count. Text that is no hex, or all zeros,
     * gives 0: no number. Everything that reads cards (this widget, the
     * search) uses this one rule so a card is found by what was issued.
     */
    static quint64 cardNumberFromUid(const QString &uidHex);
    // A card number as this site shows and types them (the database
    // settings' card view format), so that a message names the card as
    // the card lists do.
    static QString cardNumberText(quint64 number);
    // Template bytes that fit on the card with this profile, block and
    // record headers taken off.
    static int templatesRoom(const nivaro::ObjectInfo &card, const nivaro::ObjectInfo &profile, int templateCount);

    // How the templates chooser is shown: true to write what it chose.
    // A modal dialog by default; tests replace it.
    std::function<bool(QDialog *dialog, CardTemplatesWidget *chooser)> execTemplatesDialog;

public Q_SLOTS:
    // Lists the readers and smart-card profiles again.
    void refreshReaders();
    void refreshProfiles();
    // Reply slot of the card save task; 0 means the server refused.
    void saved(unsigned int uid);
    // A result line for the operator (the host relays server refusals here).
    void showResult(const QString &text, bool isError);

Q_SIGNALS:
    void appendTask(const nivaro::TaskInfo &task);
    // The card record is in the store under this uid.
    void cardSaved(nivaro::TYPE_ID uid);

private:
    enum class Step { None, Read, ReadForTemplates, Format, WriteUid, WriteTemplates };

    void start(Step step);
    void startTemplatesWrite(const nivaro::ObjectInfo &card);
    void began(int ticks, Step step);
    void setBusy(bool busy);
    void updateActions();
    void storeChanged(const QString &dataname, const QList<unsigned int> &uids);
    void cardArrived(const nivaro::ObjectInfo &card);
    void operationFinished();
    void saveCard(const nivaro::ObjectInfo &card);
    quint32 currentReader(bool *ok) const;
    bool readerForOperation(quint32 *reader);
    nivaro::ObjectInfo currentProfile() const;

    Ui::CardWidget *ui;
    USBCardReaderManager *m_manager;
    QTimer *m_countdown;
    int m_secondsLeft = 0;
    nivaro::TYPE_ID m_worker = 0;
    // The employee an operation was started for: the operator may select
    // someone else while the card is being written, and the card must
    // still go to the one it was written for.
    nivaro::TYPE_ID m_opWorker = 0;
    Step m_step = Step::None;         // the operation under way
    Step m_finishedStep = Step::None; // the one that finished last
    bool m_continueTemplates = false; // a read that opens the templates chooser
    bool m_busy = false;
    bool m_resultIsError = false;
    bool m_failed = false; // the running operation reported an error
    nivaro::ObjectInfo m_lastCard;
    QList<nivaro::TaskInfo> m_outstanding; // card saves not yet answered
};

#endif
