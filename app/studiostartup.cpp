#include "studiostartup.h"

#include "mainwindow.h"
#include "sampleorganisation.h"

#include <dbparams.h>
#include <localstorage.h>
#include <simulatedbackend.h>

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QLocale>
#include <QPixmap>
#include <QSaveFile>
#include <QStandardPaths>
#include <QTabWidget>
#include <QTranslator>

QString StudioStartup::defaultStorePath()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    return QDir(folder).filePath(QStringLiteral("nvstudio.store"));
}

bool StudioStartup::openStore(nivaro::LocalStorage *storage, const QString &path, int employees, QString *error)
{
    const QFileInfo info(path);
    const bool fresh = !info.exists();
    if (fresh && !QDir().mkpath(info.absolutePath())) {
        *error = QCoreApplication::translate("StudioStartup", "Не удалось создать папку %1")
                     .arg(QDir::toNativeSeparators(info.absolutePath()));
        return false;
    }
    QElapsedTimer timer;
    timer.start();
    if (!storage->open(path, error))
        return false;
    qDebug() << "store opened" << path << timer.elapsed() << "ms";
    if (!fresh)
        return true;

    SampleOrganisation::Options options;
    options.employees = employees > 0 ? employees : DefaultEmployees;
    if (!SampleOrganisation::generate(storage, options, error)) {
        // A half-written sample is worth nothing: start again next time.
        storage->close();
        QFile::remove(path);
        return false;
    }
    qDebug() << "sample organisation written" << timer.elapsed() << "ms";
    return true;
}

QString StudioStartup::cardStatePath(const QString &storePath)
{
    return storePath + QStringLiteral(".cards.json");
}

void StudioStartup::chooseCardBackend()
{
    if (nvsmartcard::backendForcedByEnvironment())
        return;
    if (auto pcsc = nvsmartcard::probePcscBackend()) {
        nvsmartcard::setDefaultBackend(pcsc);
        return;
    }
    nvsmartcard::setDefaultBackend(nvsmartcard::SimulatedBackend::shared());
}

void StudioStartup::setUpCardReaders(const QString &storePath)
{
    chooseCardBackend();
    auto simulated = std::dynamic_pointer_cast<nvsmartcard::SimulatedBackend>(nvsmartcard::defaultBackend());
    if (!simulated)
        return;
    const QString state = cardStatePath(storePath);
    if (QFileInfo::exists(state)) {
        if (simulated->loadState(state) && simulated->readerCount() > 0)
            return;
        qDebug() << "studio: card state not loaded, starting afresh" << state << simulated->errorString();
    }
    // The library's own readers have English names; the operator sees
    // them named in the client's language.
    for (int reader = 0; reader < simulated->readerCount(); ++reader) {
        const QString type = simulated->readerDeviceType(reader);
        if (type == db::devices::cardreader::SMARTCARD)
            simulated->setReaderName(reader, QCoreApplication::translate("StudioStartup", "Считыватель смарт-карт"));
        else if (type == db::devices::cardreader::HID)
            simulated->setReaderName(reader, QCoreApplication::translate("StudioStartup", "Считыватель HID"));
    }
    if (simulated->readerCount() > 0)
        return;
    simulated->addReader(QCoreApplication::translate("StudioStartup", "Считыватель смарт-карт"),
                         db::devices::cardreader::SMARTCARD);
    simulated->addReader(QCoreApplication::translate("StudioStartup", "Считыватель HID"), db::devices::cardreader::HID);
}

void StudioStartup::saveCardReaders(const QString &storePath)
{
    auto simulated = std::dynamic_pointer_cast<nvsmartcard::SimulatedBackend>(nvsmartcard::defaultBackend());
    if (simulated && !simulated->saveState(cardStatePath(storePath)))
        qDebug() << "studio: card state not saved" << simulated->errorString();
}

bool StudioStartup::saveScreenshot(MainWindow *window, const QString &fileName, QString *error, int page)
{
    if (const nivaro::TYPE_ID first = window->firstEmployee())
        window->selectUids({first});
    window->employeeTabs()->setCurrentIndex(page);
    QCoreApplication::processEvents();
    const QPixmap picture = window->grab();
    if (picture.isNull() || !picture.save(fileName)) {
        *error = QCoreApplication::translate("StudioStartup", "Не удалось сохранить снимок окна в %1")
                     .arg(QDir::toNativeSeparators(fileName));
        return false;
    }
    return true;
}

bool StudioStartup::writeText(const QString &fileName, const QString &text, QString *error)
{
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0 || !file.commit()) {
        qDebug() << "studio: cannot write" << fileName << file.errorString();
        if (error)
            *error = QObject::tr("Не удалось записать файл %1: %2").arg(fileName, file.errorString());
        return false;
    }
    return true;
}

QString StudioStartup::defaultLanguage()
{
    const QLocale::Language language = QLocale::system().language();
    return language == QLocale::C || language == QLocale::AnyLanguage || language == QLocale::Russian
               ? QStringLiteral("ru")
               : QStringLiteral("en");
}

bool StudioStartup::knownLanguage(const QString &lang)
{
    return lang == QLatin1String("ru") || lang == QLatin1String("en");
}

bool StudioStartup::installTranslations(QCoreApplication *app, const QString &lang)
{
    if (!knownLanguage(lang))
        return false;
    QLocale::setDefault(QLocale(lang));
    // Russian is the language the texts are written in: only the English run
    // needs our own translation.
    if (lang != QLatin1String("ru")) {
        Q_INIT_RESOURCE(nvstudio_core_translations);
        auto *own = new QTranslator(app);
        if (own->load(QStringLiteral(":/translations/libnvdialogs_") + lang))
            app->installTranslator(own);
        else
            qWarning() << "studio: no embedded translation for" << lang;
    }
    auto *qt = new QTranslator(app);
    const QString qtFolder = QLibraryInfo::location(QLibraryInfo::TranslationsPath);
    if (qt->load(QStringLiteral("qtbase_") + lang, qtFolder))
        app->installTranslator(qt);
    else
        qWarning() << "studio: no Qt translation for" << lang << "in" << qtFolder;
    return true;
}
