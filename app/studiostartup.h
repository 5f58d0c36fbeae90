#ifndef STUDIOSTARTUP_H
#define STUDIOSTARTUP_H

#include <QString>

class MainWindow;
class QCoreApplication;

namespace nivaro {
class LocalStorage;
}

/** What nvstudio does between its command line and its window. */
class StudioStartup
{
public:
    // The store a person gets without --store: one file in the user's data folder.
    static QString defaultStorePath();

    /**
     * Opens the store file. A file that does not exist yet is created and
     * filled with a sample organisation of `employees` employees (a few
     * hundred unless asked for more). Any refusal comes back as a message
     * for the user; the file is then left as it was.
     */
    static bool openStore(nivaro::LocalStorage *storage, const QString &path, int employees, QString *error);

    // Where the simulated readers' cards are kept for a store file.
    static QString cardStatePath(const QString &storePath);
    /**
     * The simulated readers as the last run left them (cards with their
     * keys and data), or on the first run one smart-card and one HID
     * reader. Does nothing when the readers are real ones.
     */
    static void setUpCardReaders(const QString &storePath);
    // Real readers when the PC/SC daemon has some, the simulated ones
    // otherwise; NV_CARD_BACKEND ("pcsc" or "simulated") decides instead
    // when it is set.
    static void chooseCardBackend();
    // Keeps what the session wrote to the virtual cards.
    static void saveCardReaders(const QString &storePath);

    // Shows the first employee on one of its pages (0 properties, 1 schedule,
    // 2 absences, 3 cards), lets the window settle and saves a picture of it.
    static bool saveScreenshot(MainWindow *window, const QString &fileName, QString *error, int page = 0);
    // Writes text as UTF-8, replacing the file only once all of it is written.
    static bool writeText(const QString &fileName, const QString &text, QString *error);

    // "ru" where the system speaks Russian or names no language (the C
    // locale), "en" where it speaks anything else.
    static QString defaultLanguage();
    static bool knownLanguage(const QString &lang);
    // Puts the client, Qt's own dialogs and buttons, and the default locale
    // (dates, month and weekday names) into one language, "ru" or "en".
    // Returns false when lang is neither; a missing Qt translation is only
    // reported, the client's own texts still change.
    static bool installTranslations(QCoreApplication *app, const QString &lang);

    static constexpr int DefaultEmployees = 300;
};

#endif
