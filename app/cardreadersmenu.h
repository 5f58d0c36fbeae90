#ifndef CARDREADERSMENU_H
#define CARDREADERSMENU_H

#include <QMenu>

#include <memory>

namespace nvsmartcard {
class SimulatedBackend;
struct VirtualCard;
}

/**
 * The "Считыватели" menu of the simulated readers: puts a virtual card of
 * a chosen kind on a reader and takes it off again, as a person would at a
 * real reader. The cards are kept in a file beside the store, so a card
 * written today still carries its keys and data tomorrow.
 */
class CardReadersMenu : public QMenu
{
    Q_OBJECT
    Q_DISABLE_COPY(CardReadersMenu)
public:
    CardReadersMenu(std::shared_ptr<nvsmartcard::SimulatedBackend> backend, const QString &statePath,
                    QWidget *parent = nullptr);

    // The kinds of virtual card offered, by their menu text.
    static QStringList cardKinds();
    // A new card of kind `kind` (an index into cardKinds()) with a random UID.
    static nvsmartcard::VirtualCard makeCard(int kind);

    void putCard(int reader, int kind);
    void takeCard(int reader);
    // Keeps the virtual cards as they are now (keys and data) in the
    // state file, as a real card keeps what was written to it.
    void saveState();

Q_SIGNALS:
    void status(const QString &text);

private:
    void rebuild();

    std::shared_ptr<nvsmartcard::SimulatedBackend> m_backend;
    QString m_statePath;
};

#endif
