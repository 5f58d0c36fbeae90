#include "mainwindow.h"
#include "searchpage.h"
#include "studiostartup.h"

#include <localstorage.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QDebug>
#include <QFileInfo>
#include <QMessageBox>
#include <QTimer>

#include <algorithm>
#include <cstdio>

namespace {

// Headless runs have nobody to click a message box away.
bool headless()
{
    return QGuiApplication::platformName() == QLatin1String("offscreen")
        || QGuiApplication::platformName() == QLatin1String("minimal");
}

int fail(const QString &message)
{
    std::fprintf(stderr, "nvstudio: %s\n", qUtf8Printable(message));
    if (!headless())
        QMessageBox::critical(nullptr, QStringLiteral("Nivaro-Studio"), message);
    return 1;
}

// Options QApplication takes for itself (-platform, -style, ...): unknown to
// our parser until QApplication has removed them from the arguments.
bool onlyQtOptionsUnknown(const QCommandLineParser &parser)
{
    static const QStringList qtOptions = {
        QStringLiteral("platform"), QStringLiteral("platformpluginpath"), QStringLiteral("platformtheme"),
        QStringLiteral("plugin"),   QStringLiteral("qwindowgeometry"),    QStringLiteral("qwindowicon"),
        QStringLiteral("qwindowtitle"), QStringLiteral("reverse"),        QStringLiteral("session"),
        QStringLiteral("style"),    QStringLiteral("stylesheet"),         QStringLiteral("widgetcount"),
        QStringLiteral("display"),  QStringLiteral("geometry"),           QStringLiteral("title"),
        QStringLiteral("name"),     QStringLiteral("visual"),             QStringLiteral("sync"),
        QStringLiteral("nograb"),   QStringLiteral("dograb"),
    };
    const QStringList unknown = parser.unknownOptionNames();
    return !unknown.isEmpty()
        && std::all_of(unknown.cbegin(), unknown.cend(), [](const QString &name) { return qtOptions.contains(name); });
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication::setApplicationName(QStringLiteral("nvstudio"));
    QCoreApplication::setOrganizationName(QStringLiteral("Nivaro"));
    QCoreApplication::setApplicationVersion(QStringLiteral("6.0"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Nivaro-Studio administration client"));
    // Qt's own options come with one dash (-platform, -style).
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    const QCommandLineOption helpOption = parser.addHelpOption();
    const QCommandLineOption versionOption = parser.addVersionOption();
    const QCommandLineOption storeOption(QStringLiteral("store"),
                                         QStringLiteral("Store file to open (created with a sample organisation when missing)."),
                                         QStringLiteral("file"), StudioStartup::defaultStorePath());
    const QCommandLineOption generateOption(QStringLiteral("generate"),
                                            QStringLiteral("Create the store anew with N generated employees (the file must not exist)."),
                                            QStringLiteral("N"));
    const QCommandLineOption screenshotOption(QStringLiteral("screenshot"),
                                              QStringLiteral("Render the window once loaded into a PNG file and exit."),
                                              QStringLiteral("file"));
    const QCommandLineOption pageOption(QStringLiteral("page"),
                                        QStringLiteral("Page the screenshot shows: the employee's properties, schedule, absences or cards, or the search dialog."),
                                        QStringLiteral("page"), QStringLiteral("properties"));
    const QCommandLineOption langOption(QStringLiteral("lang"),
                                        QStringLiteral("Language of the window: ru or en (from the system locale when not given)."),
                                        QStringLiteral("lang"));
    const QCommandLineOption searchOption(QStringLiteral("search"),
                                          QStringLiteral("Text the search dialog looks for by name (with --page search)."),
                                          QStringLiteral("text"));
    parser.addOptions({storeOption, generateOption, screenshotOption, pageOption, langOption, searchOption});

    // The options are read before a GUI exists, so that --help, --version
    // and a mistyped option answer on a machine without a display.
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    if (!parser.parse(arguments) && !onlyQtOptionsUnknown(parser)) {
        std::fprintf(stderr, "nvstudio: %s\n", qUtf8Printable(parser.errorText()));
        return 2;
    }
    if (parser.isSet(helpOption)) {
        // The help names the program from the application's arguments; a
        // core application needs no display.
        const QCoreApplication core(argc, argv);
        std::fputs(qUtf8Printable(parser.helpText()), stdout);
        return 0;
    }
    if (parser.isSet(versionOption)) {
        std::printf("nvstudio %s\n", qUtf8Printable(QCoreApplication::applicationVersion()));
        return 0;
    }

    const QString lang = parser.isSet(langOption) ? parser.value(langOption) : StudioStartup::defaultLanguage();
    if (!StudioStartup::knownLanguage(lang)) {
        std::fprintf(stderr, "nvstudio: --lang takes ru or en, not %s\n", qUtf8Printable(lang));
        return 2;
    }

    QApplication app(argc, argv);
    // Now without Qt's own options, which QApplication took out.
    if (!parser.parse(QCoreApplication::arguments())) {
        std::fprintf(stderr, "nvstudio: %s\n", qUtf8Printable(parser.errorText()));
        return 2;
    }
    StudioStartup::installTranslations(&app, lang);

    const QString path = parser.value(storeOption);
    int employees = 0;
    if (parser.isSet(generateOption)) {
        bool ok = false;
        employees = parser.value(generateOption).toInt(&ok);
        if (!ok || employees < 1 || employees > 5000000)
            return fail(QApplication::translate("main", "--generate ждет число сотрудников от 1 до 5000000"));
        if (QFileInfo::exists(path))
            return fail(QApplication::translate("main", "Файл %1 уже существует: для нового хранилища укажите другой --store").arg(path));
    }

    const QStringList pages{QStringLiteral("properties"), QStringLiteral("schedule"), QStringLiteral("absences"),
                            QStringLiteral("cards"), QStringLiteral("search")};
    const int searchPage = pages.indexOf(QStringLiteral("search"));
    const int page = pages.indexOf(parser.value(pageOption));
    if (page < 0)
        return fail(QApplication::translate("main", "--page ждет одно из: %1").arg(pages.join(QStringLiteral(", "))));

    nivaro::LocalStorage *storage = nivaro::LocalStorage::instance();
    QString error;
    if (!StudioStartup::openStore(storage, path, employees, &error))
        return fail(QApplication::translate("main", "Не удалось открыть хранилище %1: %2").arg(path, error));

    // Before the window: its card widget lists the readers once, when made.
    StudioStartup::setUpCardReaders(path);
    MainWindow window(storage);
    SearchPage::install(&window);
    window.show();

    if (parser.isSet(screenshotOption)) {
        const QString file = parser.value(screenshotOption);
        int result = 0;
        QTimer::singleShot(0, &window, [&] {
            const bool saved = page == searchPage
                                   ? SearchPage::saveScreenshot(&window, parser.value(searchOption), file, &error)
                                   : StudioStartup::saveScreenshot(&window, file, &error, page);
            if (!saved)
                result = fail(error);
            app.quit();
        });
        app.exec();
        storage->close();
        return result;
    }
    // Once the window is up, so that the question has something behind it.
    QTimer::singleShot(0, &window, &MainWindow::offerInterruptedRuns);
    const int result = app.exec();
    StudioStartup::saveCardReaders(path);
    storage->close();
    return result;
}
