#include "mainwindow.h"
#include "studiostartup.h"

#include <localstorage.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QDebug>
#include <QFileInfo>
#include <QMessageBox>
#include <QTimer>

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

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("nvstudio"));
    QApplication::setOrganizationName(QStringLiteral("Nivaro"));
    QApplication::setApplicationVersion(QStringLiteral("6.0"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Nivaro-Studio administration client"));
    parser.addHelpOption();
    parser.addVersionOption();
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
                                        QStringLiteral("Page of the employee the screenshot shows: properties, schedule or absences."),
                                        QStringLiteral("page"), QStringLiteral("properties"));
    parser.addOptions({storeOption, generateOption, screenshotOption, pageOption});
    parser.process(app);

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

    const QStringList pages{QStringLiteral("properties"), QStringLiteral("schedule"), QStringLiteral("absences")};
    const int page = pages.indexOf(parser.value(pageOption));
    if (page < 0)
        return fail(QApplication::translate("main", "--page ждет одно из: %1").arg(pages.join(QStringLiteral(", "))));

    nivaro::LocalStorage *storage = nivaro::LocalStorage::instance();
    QString error;
    if (!StudioStartup::openStore(storage, path, employees, &error))
        return fail(QApplication::translate("main", "Не удалось открыть хранилище %1: %2").arg(path, error));

    MainWindow window(storage);
    window.show();

    if (parser.isSet(screenshotOption)) {
        const QString file = parser.value(screenshotOption);
        int result = 0;
        QTimer::singleShot(0, &window, [&] {
            if (!StudioStartup::saveScreenshot(&window, file, &error, page))
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
    storage->close();
    return result;
}
