#include "cardreadersmenu.h"

#include <cardwidget.h>
#include <simulatedbackend.h>

#include <QDebug>
#include <QRandomGenerator>

using nvsmartcard::VirtualCard;

CardReadersMenu::CardReadersMenu(std::shared_ptr<nvsmartcard::SimulatedBackend> backend, const QString &statePath,
                                 QWidget *parent)
    : QMenu(tr("&Считыватели"), parent)
    , m_backend(std::move(backend))
    , m_statePath(statePath)
{
    setObjectName(QStringLiteral("cardReadersMenu"));
    // What lies on each reader changes under the menu: build it when opened.
    connect(this, &QMenu::aboutToShow, this, &CardReadersMenu::rebuild);
    rebuild();
}

QStringList CardReadersMenu::cardKinds()
{
    return {tr("Mifare Classic 1K"), tr("Mifare Classic 4K"), tr("Mifare DESFire 2 КБ"), tr("Mifare DESFire 4 КБ"),
            tr("Mifare DESFire 8 КБ"), tr("Mifare Plus SL1"), tr("Mifare Plus SL3")};
}

VirtualCard CardReadersMenu::makeCard(int kind)
{
    // Classic cards have 4-byte UIDs, the newer families 7-byte ones with
    // the NXP maker byte first.
    auto uid = [](int size) {
        QByteArray bytes(size, '\0');
        for (char &b : bytes)
            b = char(QRandomGenerator::global()->bounded(256));
        if (size == 7)
            bytes[0] = '\x04';
        else if (bytes.at(0) == '\0')
            bytes[0] = '\x01'; // never a number 0: that is "no card"
        return bytes;
    };
    switch (kind) {
    case 0:
        return VirtualCard::classic1K(uid(4));
    case 1:
        return VirtualCard::classic4K(uid(4));
    case 2:
        return VirtualCard::desfire(uid(7), 2);
    case 3:
        return VirtualCard::desfire(uid(7), 4);
    case 4:
        return VirtualCard::desfire(uid(7), 8);
    case 5:
        return VirtualCard::plusLevel1Card(uid(7));
    default:
        return VirtualCard::plusLevel3Card(uid(7));
    }
}

void CardReadersMenu::putCard(int reader, int kind)
{
    const VirtualCard card = makeCard(kind);
    m_backend->takeCard(reader);
    m_backend->putCard(reader, card);
    emit status(tr("На считыватель положена карта %1, номер %2")
                    .arg(cardKinds().value(kind))
                    .arg(CardWidget::cardNumberText(CardWidget::cardNumberFromUid(QString::fromLatin1(card.uid.toHex())))));
    saveState();
}

void CardReadersMenu::takeCard(int reader)
{
    if (m_backend->takeCard(reader))
        emit status(tr("Карта убрана со считывателя"));
    saveState();
}

void CardReadersMenu::saveState()
{
    if (!m_statePath.isEmpty() && !m_backend->saveState(m_statePath))
        qDebug() << "readers menu: card state not saved" << m_statePath << m_backend->errorString();
}

void CardReadersMenu::rebuild()
{
    clear();
    const QList<nvcm::ReaderInfo> readers = m_backend->listReaders();
    if (readers.isEmpty()) {
        addAction(tr("Нет подключенных считывателей"))->setEnabled(false);
        return;
    }
    for (int i = 0; i < readers.size(); ++i) {
        const std::optional<VirtualCard> card = m_backend->cardOn(i);
        const QString title = card ? tr("%1: %2").arg(readers.at(i).name, card->name)
                                   : tr("%1: нет карты").arg(readers.at(i).name);
        QMenu *sub = addMenu(title);
        QMenu *put = sub->addMenu(tr("Положить карту"));
        const QStringList kinds = cardKinds();
        for (int kind = 0; kind < kinds.size(); ++kind)
            put->addAction(kinds.at(kind), this, [this, i, kind] { putCard(i, kind); });
        QAction *take = sub->addAction(tr("Убрать карту"), this, [this, i] { takeCard(i); });
        take->setEnabled(card.has_value());
    }
}
