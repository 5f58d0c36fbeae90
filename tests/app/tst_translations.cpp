#include <studiostartup.h>

#include <nvdialogsutils.h>
#include <taskexecutor.h>
#include <QFile>
#include <localstorage.h>
#include <workerpropertyview.h>

#include <QApplication>
#include <QComboBox>
#include <QDate>
#include <QLocale>
#include <QProcess>
#include <QTemporaryDir>
#include <QTranslator>
#include <QXmlStreamReader>
#include <QtTest>

namespace {

// A catalogue in which every country is called by its name read backwards:
// the order changes throughout, so a list still in source order shows.
class MirrorTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *source, const char *, int) const override
    {
        if (qstrcmp(context, "NVDialogsUtils") != 0)
            return QString();
        QString name = QString::fromUtf8(source);
        std::reverse(name.begin(), name.end());
        return name;
    }
};

struct Message
{
    QString context;
    QString source;
    QStringList translations; // one per plural form
    bool finished = true;
};

QVector<Message> readTs(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QVector<Message> messages;
    QString context;
    QXmlStreamReader xml(&file);
    while (xml.readNextStartElement() || !xml.atEnd()) {
        if (!xml.isStartElement())
            continue;
        if (xml.name() == QLatin1String("name")) {
            context = xml.readElementText();
        } else if (xml.name() == QLatin1String("message")) {
            messages.append({context, {}, {}, true});
        } else if (xml.name() == QLatin1String("source") && !messages.isEmpty()) {
            messages.last().source = xml.readElementText();
        } else if (xml.name() == QLatin1String("translation") && !messages.isEmpty()) {
            const QStringRef type = xml.attributes().value(QLatin1String("type"));
            messages.last().finished = type.isEmpty();
            if (xml.attributes().value(QLatin1String("type")).isEmpty() && messages.last().translations.isEmpty()) {
                // Plain text, or numerus forms read as child elements below.
                const QString text = xml.readElementText(QXmlStreamReader::IncludeChildElements);
                messages.last().translations << text.trimmed();
            }
        }
    }
    return messages;
}

QSet<QString> keys(const QVector<Message> &messages)
{
    QSet<QString> result;
    for (const Message &m : messages)
        result.insert(m.context + QLatin1String(" | ") + m.source);
    return result;
}

QStringList countryTexts(const QComboBox *combo)
{
    QStringList names;
    // Rows 0 and 1 are "(mixed)" and "not set"; the near abroad comes next.
    for (int row = 2; row < combo->count(); ++row)
        names << combo->itemText(row);
    return names;
}

QString citizenshipOf(const QComboBox *combo, const QString &code)
{
    return combo->itemText(combo->findData(code));
}

void removeTranslators()
{
    qDeleteAll(qApp->findChildren<QTranslator *>());
    QLocale::setDefault(QLocale::c());
}

} // namespace

class TestTranslations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { removeTranslators(); }

    void everyTextIsTranslated()
    {
        const QVector<Message> messages = readTs(QStringLiteral(NVD_TS_FILE));
        // Some 440 texts when this was written, 253 of them countries.
        QVERIFY2(messages.size() > 400, qPrintable(QString::number(messages.size())));
        for (const Message &m : messages) {
            const QString where = m.context + QLatin1String(": ") + m.source;
            QVERIFY2(m.finished, qPrintable(where));
            QVERIFY2(!m.translations.isEmpty() && !m.translations.first().isEmpty(), qPrintable(where));
        }
    }

    void translationSourceIsUpToDate()
    {
        if (QStringLiteral(NVD_LUPDATE).isEmpty())
            QSKIP("lupdate is not installed");
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QString fresh = dir.filePath(QStringLiteral("fresh.ts"));
        QProcess lupdate;
        lupdate.setWorkingDirectory(QStringLiteral(NVD_SOURCE_DIR));
        lupdate.start(QStringLiteral(NVD_LUPDATE),
                      {QStringLiteral("-silent"), QStringLiteral("-recursive"), QStringLiteral("src"),
                       QStringLiteral("platform"), QStringLiteral("app"), QStringLiteral("-ts"), fresh});
        QVERIFY(lupdate.waitForFinished(120000));
        QCOMPARE(lupdate.exitCode(), 0);
        const QSet<QString> inCode = keys(readTs(fresh));
        const QSet<QString> inTs = keys(readTs(QStringLiteral(NVD_TS_FILE)));
        QVERIFY(!inCode.isEmpty());
        // A new text must be translated, and a text gone from the code must
        // not linger: run the lupdate target and translate.
        QCOMPARE(QSet<QString>(inCode).subtract(inTs), QSet<QString>());
        QCOMPARE(QSet<QString>(inTs).subtract(inCode), QSet<QString>());
    }

    void languageSetsTextsAndLocale_data()
    {
        QTest::addColumn<QString>("lang");
        QTest::addColumn<QString>("country");
        QTest::addColumn<QString>("month");
        QTest::addColumn<QString>("qtButton");
        QTest::addColumn<QString>("refusal");
        QTest::addColumn<QString>("storeRefusal");
        QTest::newRow("en") << "en" << "Afghanistan" << "March" << "&Yes" << "Parent object %1 not found"
                            << "This is not a Nivaro-Studio store file";
        QTest::newRow("ru") << "ru" << "АФГАНИСТАН" << "март" << "&Да" << "Родительский объект %1 не найден"
                            << "Это не файл хранилища Nivaro-Studio";
    }

    void languageSetsTextsAndLocale()
    {
        QFETCH(QString, lang);
        QFETCH(QString, country);
        QFETCH(QString, month);
        QFETCH(QString, qtButton);
        QFETCH(QString, refusal);
        QFETCH(QString, storeRefusal);
        QVERIFY(StudioStartup::installTranslations(qApp, lang));
        QCOMPARE(NVDialogsUtils::translateState(QStringLiteral("АФГАНИСТАН")), country);
        QCOMPARE(QLocale().standaloneMonthName(3), month);
        QCOMPARE(QCoreApplication::translate("QPlatformTheme", "&Yes"), qtButton);
        // The executor's reasons reach the operator in the same language.
        QCOMPARE(nivaro::TaskExecutor::tr("Родительский объект %1 не найден"), refusal);
        // So do the store's, when it refuses a file.
        QTemporaryDir dir;
        const QString foreign = dir.filePath(QStringLiteral("notes.txt"));
        QFile file(foreign);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(QByteArray(4096, 'x')) == 4096);
        file.close();
        nivaro::LocalStorage store;
        QString error;
        QVERIFY(!store.open(foreign, &error));
        QCOMPARE(error, storeRefusal);
    }

    void unknownLanguageIsRefused()
    {
        QVERIFY(!StudioStartup::installTranslations(qApp, QStringLiteral("de")));
        QVERIFY(qApp->findChildren<QTranslator *>().isEmpty());
    }

    void viewBuiltLaterShowsTranslatedOrder()
    {
        const QStringList source = countryTexts(WorkerPropertyView().findChild<QComboBox *>(QStringLiteral("cbCitizenship")));

        auto *mirror = new MirrorTranslator;
        mirror->setParent(qApp);
        QCoreApplication::installTranslator(mirror);
        WorkerPropertyView mirroredView;
        auto *combo = mirroredView.findChild<QComboBox *>(QStringLiteral("cbCitizenship"));
        QCOMPARE(citizenshipOf(combo, QStringLiteral("004")), QStringLiteral("НАТСИНАГФА"));
        const QStringList mirrored = countryTexts(combo);
        QCOMPARE(mirrored.size(), source.size());
        QVERIFY(mirrored != source);

        removeTranslators();
        QCOMPARE(countryTexts(WorkerPropertyView().findChild<QComboBox *>(QStringLiteral("cbCitizenship"))), source);
    }

    void languageChangeResortsKeepingSelection()
    {
        WorkerPropertyView view;
        auto *combo = view.findChild<QComboBox *>(QStringLiteral("cbCitizenship"));
        combo->setCurrentIndex(combo->findData(QStringLiteral("250")));
        const QStringList source = countryTexts(combo);

        auto *mirror = new MirrorTranslator;
        mirror->setParent(qApp);
        QCoreApplication::installTranslator(mirror);
        // Widgets hear of the new translator through posted events.
        QCoreApplication::processEvents();
        QCOMPARE(combo->currentData().toString(), QStringLiteral("250"));
        QCOMPARE(combo->currentText(), QStringLiteral("ЯИЦНАРФ"));
        const QStringList expected = countryTexts(combo);
        QVERIFY(expected != source);

        // The same order a view built under the translator has.
        WorkerPropertyView fresh;
        QCOMPARE(countryTexts(fresh.findChild<QComboBox *>(QStringLiteral("cbCitizenship"))), expected);
    }
};

QTEST_MAIN(TestTranslations)
#include "tst_translations.moc"
