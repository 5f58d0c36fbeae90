#include "newworkercardpage.h"

#include "cardwidget.h"
#include "usbcardreadermanager.h"

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <nvglobals.h>
#include <nvsmartcardtypes.h>

#include <QComboBox>
#include <QDate>
#include <QDebug>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using nivaro::LocalStorage;
using nivaro::ObjectInfo;
using nivaro::TYPE_ID;

namespace {

int cardViewFormat()
{
    return LocalStorage::instance()->dbSettings().parameter(db::database::CARD_VIEW_FORMAT).toInt();
}

} // namespace

NewWorkerCardPage::NewWorkerCardPage(QWidget *parent)
    : ValidatedWizardPage(parent)
    , m_manager(new USBCardReaderManager(this))
    , m_readers(new QComboBox(this))
    , m_read(new QPushButton(tr("Считать карту"), this))
    , m_number(new QLineEdit(this))
    , m_status(new QLabel(this))
{
    setObjectName(QStringLiteral("NewWorkerCardPage"));
    setTitle(tr("Карта"));
    setSubTitle(tr("Необязательно: приложите карту к считывателю или введите ее номер."));
    m_readers->setObjectName(QStringLiteral("cbReader"));
    m_read->setObjectName(QStringLiteral("pbRead"));
    m_number->setObjectName(QStringLiteral("leCardNumber"));
    m_number->setMaxLength(30);
    m_status->setObjectName(QStringLiteral("lbStatus"));
    m_status->setWordWrap(true);

    auto *readerRow = new QHBoxLayout;
    readerRow->addWidget(m_readers, 1);
    readerRow->addWidget(m_read);
    auto *form = new QFormLayout;
    form->addRow(tr("Считыватель"), readerRow);
    form->addRow(tr("Номер карты"), m_number);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(m_status);
    layout->addWidget(reasonLabel());
    layout->addStretch();

    connect(m_read, &QPushButton::clicked, this, &NewWorkerCardPage::readCard);
    connect(m_number, &QLineEdit::textChanged, this, &ValidatedWizardPage::revalidate);
    connect(m_manager, &USBCardReaderManager::cardReadDelay, this, &NewWorkerCardPage::cardArrived);
    connect(m_manager, &USBCardReaderManager::tickMessage, this, [this](const QString &text) { showStatus(text, false); });
    connect(m_manager, &USBCardReaderManager::error, this, [this](const QString &text) {
        m_readFailed = true;
        showStatus(text, true);
    });
    connect(m_manager, &USBCardReaderManager::finished, this, &NewWorkerCardPage::readFinished);
    connect(m_manager, &USBCardReaderManager::readerAdded, this, &NewWorkerCardPage::refreshReaders);
    refreshReaders();
    revalidate();
}

NewWorkerCardPage::~NewWorkerCardPage() = default;

void NewWorkerCardPage::refreshReaders()
{
    const QVariant previous = m_readers->currentData();
    QList<ObjectInfo> readers = m_manager->readers();
    std::sort(readers.begin(), readers.end(), [](const ObjectInfo &a, const ObjectInfo &b) { return a.uid() < b.uid(); });
    m_readers->clear();
    for (const ObjectInfo &reader : qAsConst(readers)) {
        const QString name = reader.parameter(nvcm::NAME);
        m_readers->addItem(name.isEmpty() ? QString::number(reader.uid()) : name, reader.uid());
        if (previous.isValid() && previous.toUInt() == reader.uid())
            m_readers->setCurrentIndex(m_readers->count() - 1);
    }
    if (readers.isEmpty())
        m_readers->addItem(tr("Нет подключенных считывателей"));
    m_readers->setEnabled(!readers.isEmpty() && !m_reading);
    m_read->setEnabled(!readers.isEmpty() && !m_reading);
}

void NewWorkerCardPage::readCard()
{
    const QVariant reader = m_readers->currentData();
    if (m_reading || !reader.isValid())
        return;
    m_readFailed = false;
    if (m_manager->getCard(reader.toUInt()) <= 0) {
        qDebug() << "new worker card: read not started on reader" << reader.toUInt();
        showStatus(tr("Считыватель не может прочитать карту"), true);
        return;
    }
    m_reading = true;
    showStatus(tr("Приложите карту к считывателю"), false);
    refreshReaders();
    revalidate();
}

void NewWorkerCardPage::cardArrived(const ObjectInfo &card)
{
    const QString uid = card.parameter(nvcm::UID);
    const quint64 number = CardWidget::cardNumberFromUid(uid);
    if (!number) {
        qDebug() << "new worker card: no number in card uid" << uid;
        m_readFailed = true;
        showStatus(tr("Не удалось определить номер карты по ее идентификатору"), true);
        return;
    }
    m_readCard = card;
    m_readText = CardWidget::cardNumberText(number);
    m_number->setText(m_readText);
    showStatus(tr("Прочитана карта %1").arg(m_readText), false);
}

void NewWorkerCardPage::readFinished()
{
    m_reading = false;
    refreshReaders();
    revalidate();
}

void NewWorkerCardPage::showStatus(const QString &text, bool isError)
{
    m_status->setStyleSheet(isError ? QStringLiteral("color: #c00000;") : QString());
    m_status->setText(text);
}

quint64 NewWorkerCardPage::cardNumber() const
{
    const QString text = m_number->text().trimmed();
    if (text.isEmpty())
        return 0;
    if (m_readCard.isValid() && text == m_readText)
        return CardWidget::cardNumberFromUid(m_readCard.parameter(nvcm::UID));
    return NVGlobals::cardId(text, cardViewFormat());
}

QString NewWorkerCardPage::refusal() const
{
    if (m_reading)
        return tr("Идет чтение карты");
    const QString text = m_number->text().trimmed();
    if (text.isEmpty())
        return QString();
    const quint64 number = cardNumber();
    if (!number)
        return tr("Номер карты \"%1\" не распознан").arg(text);
    // The server refuses a number twice, but only after the employee has
    // been created: better to say so while the operator can still change it.
    const nivaro::NVHash<TYPE_ID, ObjectInfo> &cards = *LocalStorage::instance()->constObjects(nivaro::CARD_DATANAME);
    for (const ObjectInfo &card : cards) {
        if (card.parameter(db::card::NUMBER).trimmed().toULongLong() != number)
            continue;
        const TYPE_ID owner = card.parameter(db::card::OWNER).toUInt() ? card.parameter(db::card::OWNER).toUInt() : card.parent();
        const ObjectInfo *holder = LocalStorage::instance()->constObject(owner);
        return tr("Карта %1 уже выдана: %2")
            .arg(CardWidget::cardNumberText(number), holder ? NVGlobals::objectName(*holder) : QString::number(owner));
    }
    return QString();
}

QList<ValidatedWizardPage::Field> NewWorkerCardPage::fields() const
{
    QList<Field> list;
    const quint64 number = cardNumber();
    if (!number)
        return list;
    addField(list, db::card::NUMBER, tr("Номер карты"), QString::number(number), CardWidget::cardNumberText(number));
    addField(list, db::card::DATE_BEGIN, QString(), QDate::currentDate().toString(Qt::ISODate));
    if (m_readCard.isValid() && m_number->text().trimmed() == m_readText) {
        addField(list, db::card::UID, QString(), m_readCard.parameter(nvcm::UID).toUpper());
        addField(list, db::card::TYPE, QString(), m_readCard.parameter(nvcm::TYPE));
        addField(list, db::card::CARD_NAME, tr("Тип карты"), m_readCard.parameter(nvcm::CARD_NAME));
    }
    return list;
}
