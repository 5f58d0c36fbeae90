#ifndef MANAGERRECORDER_H
#define MANAGERRECORDER_H

// What a card reader manager tells the dialogs, in the order the GUI
// thread gets it, for the manager's tests on any reader backend. Progress
// lines of the library's write callback are counted apart: how many it
// sends is the library's business.

#include <usbcardreadermanager.h>

#include <QObject>
#include <QStringList>

const QString RemoveCardText = QStringLiteral("Ошибка. Уберите карту со считывателя и повторите операцию.");
const QString ReadErrorText = QStringLiteral("Ошибка чтения идентификатора карты.");
const QString AuthFailedText = QStringLiteral("Авторизация на карте не удалась. Выберите другой профиль карты.");

class Recorder : public QObject
{
public:
    // Steps: also ticks and step lines, for tests that check the flow
    // step by step; without them only the outcome is kept.
    enum Detail { Outcome, Steps };

    explicit Recorder(USBCardReaderManager *m, Detail detail = Steps)
    {
        if (detail == Steps)
            connect(m, &USBCardReaderManager::tick, this, [this] { events << QStringLiteral("tick"); });
        connect(m, &USBCardReaderManager::tickMessage, this, [this, detail](const QString &text) {
            if (text.startsWith(QStringLiteral("Запись данных. ")) && text != QStringLiteral("Запись данных. Ожидайте..."))
                ++progressLines;
            else if (detail == Outcome)
                return;
            else if (text.startsWith(QStringLiteral("Форматирование карты. ")) && !text.endsWith(QStringLiteral("...")))
                ++progressLines;
            else
                events << QStringLiteral("step:") + text;
        });
        connect(m, &USBCardReaderManager::message, this, [this](const QString &t) { events << QStringLiteral("message:") + t; });
        connect(m, &USBCardReaderManager::error, this, [this](const QString &t) { events << QStringLiteral("error:") + t; });
        connect(m, &USBCardReaderManager::cardReadDelay, this, [this](const nivaro::ObjectInfo &card) {
            events << QStringLiteral("card");
            cards << card;
        });
        connect(m, &USBCardReaderManager::readerAdded, this, [this](const nivaro::ObjectInfo &r) { readers << r; });
        connect(m, &USBCardReaderManager::finished, this, [this] { events << QStringLiteral("finished"); });
    }
    int ticks() const { return events.count(QStringLiteral("tick")); }
    QStringList without(const QString &what) const
    {
        QStringList list = events;
        list.removeAll(what);
        return list;
    }

    QStringList events;
    QList<nivaro::ObjectInfo> cards;
    QList<nivaro::ObjectInfo> readers;
    int progressLines = 0;
};

#endif
