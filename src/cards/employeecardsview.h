#ifndef EMPLOYEECARDSVIEW_H
#define EMPLOYEECARDSVIEW_H

#include "nvdialogs_export.h"

#include <nvtypes.h>
#include <objectinfo.h>

#include <QImage>
#include <QWidget>

class EmployeeCardsModel;
class QLabel;
class QTableView;

/**
 * An employee's cards in a table, and the QR code of the selected card's
 * data beside it, for printing on a pass or checking with a phone. Follows
 * the store: a card issued elsewhere appears at once.
 */
class NVDIALOGS_EXPORT EmployeeCardsView : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(EmployeeCardsView)
public:
    explicit EmployeeCardsView(QWidget *parent = nullptr);

    void setWorker(nivaro::TYPE_ID uid);
    nivaro::TYPE_ID worker() const;
    // Selects the card's row, if the employee holds it.
    void selectCard(nivaro::TYPE_ID card);
    nivaro::TYPE_ID selectedCard() const;

    EmployeeCardsModel *model() const { return m_model; }
    QTableView *table() const { return m_table; }
    // What the QR code of the selected card holds; empty with none selected.
    QString qrText() const { return m_qrText; }

    // The text a card's QR code holds: its number (decimal), UID and
    // validity, "key:value" parts joined by ";" ("CARD:77705923;UID:04A1B2C3").
    static QString qrText(const nivaro::ObjectInfo &card);
    // The QR code of `text` (error correction level M), `scale` pixels per
    // module with the standard four-module quiet zone; a null image for a
    // text too long for any QR code.
    static QImage qrImage(const QString &text, int scale);

private:
    void showSelected();

    EmployeeCardsModel *m_model;
    QTableView *m_table;
    QLabel *m_qr;
    QLabel *m_qrCaption;
    QString m_qrText;
    nivaro::TYPE_ID m_selected = 0;
};

#endif
