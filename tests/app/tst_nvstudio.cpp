#include "asnobody.h"
#include "mainwindow.h"
#include "absencepage.h"
#include "cardreadersmenu.h"
#include "cardspage.h"
#include "organisationactions.h"
#include "propertyframe.h"
#include "sampleorganisation.h"
#include "schedulepage.h"
#include "studiostartup.h"

#include <datanames.h>
#include <dbparams.h>
#include <innvalidator.h>
#include <snilsedit.h>
#include <localstorage.h>
#include <nvglobals.h>
#include <runjournal.h>
#include <objecttreemodel.h>
#include <objecttypes.h>
#include <taskexecutor.h>
#include <cardtemplateswidget.h>
#include <cardwidget.h>
#include <employeecardsmodel.h>
#include <employeecardsview.h>
#include <simulatedbackend.h>
#include <updateobjectwizard.h>
#include <dismissalwizard.h>
#include <workerabsencereasonmodel.h>
#include <workerabsencereasonproxy.h>
#include <workerschedulemodel.h>
#include <workerpropertyview.h>

#include <QAction>
#include <QWizard>
#include <QComboBox>
#include <QTableWidget>
#include <QLabel>
#include <QStatusBar>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QStackedWidget>
#include <QTreeView>
#include <QtTest>

using nivaro::LocalStorage;

class TestNvStudio : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void startsOnFreshSampleStore();
    void sampleNumbersPassTheirChecks();
    void editSurvivesRestart();
    void brokenStoreIsRefusedUntouched();
    void unsavedEditsAskBeforeSwitching_data();
    void unsavedEditsAskBeforeSwitching();
    void screenshotIsWritten();
    void selectionPicksViewAndActions_data();
    void selectionPicksViewAndActions();
    void createdDepartmentIsSelected();
    void dismissedEmployeeTurnsReadOnly();
    void firstRunReadersSpeakTheClientLanguage();
    void bulkUpdateWritesTheSelection();
    void failedBulkRunSaysWhy();
    void bulkRunBesideASaveKeepsTheFrameWaiting();
    void interruptedBulkRunIsOffered_data();
    void interruptedBulkRunIsOffered();
    void readOnlyStoreEditsNothing();
    void calendarPagesFollowOneEmployee();
    void cardWrittenSurvivesRestart();
    void commandLineWithoutDisplay_data();
    void commandLineWithoutDisplay();

private:
    QString storePath() const { return m_dir->filePath(QStringLiteral("test.store")); }
    QList<nivaro::TYPE_ID> twoEmployees() const;
    static void editSurname(MainWindow &window, const QString &text);

    QScopedPointer<QTemporaryDir> m_dir;
};

void TestNvStudio::init()
{
    m_dir.reset(new QTemporaryDir);
    QVERIFY(m_dir->isValid());
}

void TestNvStudio::cleanup()
{
    LocalStorage::instance()->close();
    QVERIFY(QApplication::topLevelWidgets().isEmpty() || std::none_of(
        QApplication::topLevelWidgets().cbegin(), QApplication::topLevelWidgets().cend(),
        [](QWidget *w) { return w->isVisible(); }));
}

QList<nivaro::TYPE_ID> TestNvStudio::twoEmployees() const
{
    QList<nivaro::TYPE_ID> uids = LocalStorage::instance()->constObjects(nivaro::SUBJECT_DATANAME)->uniqueKeys();
    std::sort(uids.begin(), uids.end());
    return uids.mid(0, 2);
}

void TestNvStudio::editSurname(MainWindow &window, const QString &text)
{
    auto *surname = window.workerView()->findChild<QLineEdit *>(QStringLiteral("leSurname"));
    QVERIFY(surname);
    // keyClicks types ASCII only; insert() is what typing does to the text.
    surname->selectAll();
    surname->insert(text);
}

void TestNvStudio::startsOnFreshSampleStore()
{
    QString error;
    QVERIFY2(StudioStartup::openStore(LocalStorage::instance(), storePath(), 60, &error), qPrintable(error));
    LocalStorage *store = LocalStorage::instance();
    QCOMPARE(store->constObjects(nivaro::SUBJECT_DATANAME)->size()
                 + store->constObjects(nivaro::SUBJECT_FIRED_DATANAME)->size(), 60);

    MainWindow window(store);
    window.show();
    const nivaro::TYPE_ID first = window.firstEmployee();
    QVERIFY(first != 0);
    window.selectUids({first});
    QCOMPARE(window.frame()->isVisible(), true);
    auto *surname = window.workerView()->findChild<QLineEdit *>(QStringLiteral("leSurname"));
    QCOMPARE(surname->text(), store->object(first).parameter(db::worker::LAST_NAME));
}

void TestNvStudio::sampleNumbersPassTheirChecks()
{
    // The sample's numbers must be ones the forms accept, or the operator's
    // first edit of a sample employee would be refused.
    QString error;
    QVERIFY2(StudioStartup::openStore(LocalStorage::instance(), storePath(), 60, &error), qPrintable(error));
    for (const QString &dataname : {nivaro::SUBJECT_DATANAME, nivaro::SUBJECT_FIRED_DATANAME}) {
        for (const nivaro::ObjectInfo &employee : *LocalStorage::instance()->constObjects(dataname)) {
            QVERIFY(SnilsEdit::isValidSnils(employee.parameter(db::worker::SNILS)));
            QVERIFY(INNValidator::isValidInn12(employee.parameter(db::orgstructure::common::INN)));
        }
    }
    for (const nivaro::ObjectInfo &unit : *LocalStorage::instance()->constObjects(nivaro::ORGSTRUCTURE_DATANAME)) {
        const QString inn = unit.parameter(db::orgstructure::common::INN);
        QVERIFY(inn.isEmpty() || INNValidator::isValidInn10(inn));
    }
}

void TestNvStudio::editSurvivesRestart()
{
    QString error;
    QVERIFY2(StudioStartup::openStore(LocalStorage::instance(), storePath(), 20, &error), qPrintable(error));
    const nivaro::TYPE_ID uid = twoEmployees().constFirst();
    {
        MainWindow window(LocalStorage::instance());
        window.show();
        window.selectUids({uid});
        editSurname(window, QStringLiteral("Перезапускова"));
        auto *save = window.frame()->findChild<QPushButton *>(QStringLiteral("saveButton"));
        QVERIFY(save->isEnabled());
        QTest::mouseClick(save, Qt::LeftButton);
        QTRY_COMPARE(window.frame()->pendingTasks(), 0);
        QCOMPARE(window.frame()->message(), QStringLiteral("Параметры сохранены"));
        QVERIFY(!window.frame()->isModified());
        // The title above the form names the employee as saved.
        auto *title = window.frame()->findChild<QLabel *>(QStringLiteral("frameTitle"));
        QCOMPARE(title->text(), NVGlobals::objectName(LocalStorage::instance()->object(uid)));
        QVERIFY(title->text().contains(QStringLiteral("Перезапускова")));
    }
    LocalStorage::instance()->close();

    QVERIFY2(StudioStartup::openStore(LocalStorage::instance(), storePath(), 20, &error), qPrintable(error));
    QCOMPARE(LocalStorage::instance()->object(uid).parameter(db::worker::LAST_NAME), QStringLiteral("Перезапускова"));
}

void TestNvStudio::brokenStoreIsRefusedUntouched()
{
    QFile file(storePath());
    QVERIFY(file.open(QIODevice::WriteOnly));
    const QByteArray garbage("this is not a store file at all\n");
    file.write(garbage);
    file.close();

    QString error;
    QVERIFY(!StudioStartup::openStore(LocalStorage::instance(), storePath(), 20, &error));
    QVERIFY(!error.isEmpty());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), garbage);
}

void TestNvStudio::unsavedEditsAskBeforeSwitching_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("choice");
    QTest::addColumn<bool>("switched");
    QTest::addColumn<QString>("storedSurname");
    const QString name = QStringLiteral("Сохраненова");
    QTest::newRow("keep editing") << name << int(MainWindow::KeepEditing) << false << QString();
    QTest::newRow("discard") << name << int(MainWindow::DiscardChanges) << true << QString();
    QTest::newRow("save") << name << int(MainWindow::SaveChanges) << true << name;
    // An empty surname cannot be saved: the edit stays, with its reason.
    QTest::newRow("save what cannot be saved") << QString() << int(MainWindow::SaveChanges) << false << QString();
}

void TestNvStudio::unsavedEditsAskBeforeSwitching()
{
    QFETCH(QString, typed);
    QFETCH(int, choice);
    QFETCH(bool, switched);
    QFETCH(QString, storedSurname);
    QString error;
    QVERIFY2(StudioStartup::openStore(LocalStorage::instance(), storePath(), 20, &error), qPrintable(error));
    const QList<nivaro::TYPE_ID> uids = twoEmployees();
    const QString original = LocalStorage::instance()->object(uids.at(0)).parameter(db::worker::LAST_NAME);

    MainWindow window(LocalStorage::instance());
    int asked = 0;
    window.askUnsaved = [&] {
        ++asked;
        return MainWindow::UnsavedChoice(choice);
    };
    window.show();
    window.selectUids({uids.at(0)});
    editSurname(window, typed);
    window.selectUids({uids.at(1)});
    QCOMPARE(asked, 1);

    auto *surname = window.workerView()->findChild<QLineEdit *>(QStringLiteral("leSurname"));
    const QString expectedShown = switched ? LocalStorage::instance()->object(uids.at(1)).parameter(db::worker::LAST_NAME)
                                           : typed;
    QCOMPARE(surname->text(), expectedShown);
    QTRY_COMPARE(window.frame()->pendingTasks(), 0);
    QCOMPARE(LocalStorage::instance()->object(uids.at(0)).parameter(db::worker::LAST_NAME),
             storedSurname.isEmpty() ? original : storedSurname);
    window.askUnsaved = [] { return MainWindow::DiscardChanges; };
}

void TestNvStudio::screenshotIsWritten()
{
    QString error;
    QVERIFY2(StudioStartup::openStore(LocalStorage::instance(), storePath(), 20, &error), qPrintable(error));
    MainWindow window(LocalStorage::instance());
    window.show();
    const QString png = m_dir->filePath(QStringLiteral("shot.png"));
    QVERIFY2(StudioStartup::saveScreenshot(&window, png, &error), qPrintable(error));
    QImage image(png);
    QVERIFY(!image.isNull());
    QVERIFY(image.width() > 400);
}

void TestNvStudio::bulkUpdateWritesTheSelection()
{
    QString error;
    QVERIFY2(StudioStartup::openStore(LocalStorage::instance(), storePath(), 20, &error), qPrintable(error));
    const QList<nivaro::TYPE_ID> uids = twoEmployees();
    MainWindow window(LocalStorage::instance());
    window.show();
    QVERIFY(!window.bulkUpdateAction()->isEnabled());
    window.selectUids(uids);
    QVERIFY(window.bulkUpdateAction()->isEnabled());
    QCOMPARE(window.selectedObjects().size(), 2);

    UpdateObjectWizard *wizard = window.startBulkUpdate(window.selectedObjects(), db::worker::LOCKED, QStringLiteral("true"));
    QVERIFY(wizard);
    wizard->next(); // to the summary, nothing sent yet
    QCOMPARE(wizard->currentId(), int(UpdateObjectWizard::SummaryPage));
    QCOMPARE(window.executor()->pendingCount(), 0);
    QCOMPARE(wizard->summaryPage()->changes().size(), 2);
    QVERIFY(wizard->summaryPage()->summaryText().contains(QStringLiteral("Блокировка: ")));
    QVERIFY(wizard->summaryPage()->summaryText().contains(QStringLiteral(" -> Да")));
    wizard->next();
    QTRY_COMPARE(wizard->progressPage()->statusText(), QStringLiteral("Успешно завершено"));
    for (nivaro::TYPE_ID uid : uids)
        QCOMPARE(LocalStorage::instance()->object(uid).parameter(db::worker::LOCKED), QStringLiteral("true"));

    // The finished run's log can be kept.
    const QString log = m_dir->filePath(QStringLiteral("log.txt"));
    QVERIFY(StudioStartup::writeText(log, wizard->progressPage()->logText(), &error));
    QFile file(log);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(QString::fromUtf8(file.readAll()).count(QStringLiteral("обработан")), 2);
    QVERIFY(!StudioStartup::writeText(m_dir->filePath(QStringLiteral("no/such/dir/log.txt")), QStringLiteral("x"), &error));
    QVERIFY(!error.isEmpty());
    wizard->close();
}

void TestNvStudio::failedBulkRunSaysWhy()
{
    QString error;
    QVERIFY2(StudioStartup::openStore(LocalStorage::instance(), storePath(), 20, &error), qPrintable(error));
    const QList<nivaro::TYPE_ID> uids = twoEmployees();
    {
        MainWindow window(LocalStorage::instance());
        window.show();
        UpdateObjectWizard *wizard = window.startBulkUpdate(uids, db::worker::LOCKED, QStringLiteral("true"));
        QVERIFY(wizard);
        // Gone from the store behind the wizard's back: the executor refuses it.
        QVERIFY(LocalStorage::instance()->removeObjects({uids.at(0)}));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("executor: task failed")));
        wizard->next(); // to the summary, nothing sent yet
        wizard->next();
        QTRY_COMPARE(wizard->progressPage()->statusText(), QStringLiteral("Ошибка"));
        const QStringList log = wizard->progressPage()->logText().split(QLatin1Char('\n'));
        QCOMPARE(log.size(), 3);
        QVERIFY(log.at(1).startsWith(QStringLiteral("Ошибка обработки ")));
        QCOMPARE(log.at(2), window.executor()->lastError());
        QVERIFY(!log.at(2).isEmpty());
        // The failed run is over; its retry is a run of its own, here cut
        // short by a client that goes before the executor answers.
        wizard->progressPage()->retryFailed();
        wizard->close();
    }
    QStringList asked;
    MainWindow window(LocalStorage::instance());
    window.askInterrupted = [&asked](const QString &question) {
        asked << question;
        return MainWindow::LeaveAsIs;
    };
    window.offerInterruptedRuns();
    QCOMPARE(asked, QStringList{QStringLiteral("Массовое изменение прервано: обработано 0 из 2 объектов.")});
}

void TestNvStudio::bulkRunBesideASaveKeepsTheFrameWaiting()
{
    QString error;
    QVERIFY2(StudioStartup::openStore(LocalStorage::instance(), storePath(), 20, &error), qPrintable(error));
    const QList<nivaro::TYPE_ID> uids = twoEmployees();
    MainWindow window(LocalStorage::instance());
    window.show();
    window.selectUids({uids.at(0)});
    UpdateObjectWizard *wizard = window.startBulkUpdate({uids.at(1)}, db::worker::LOCKED, QStringLiteral("true"));
    QVERIFY(wizard);
    editSurname(window, QStringLiteral("Параллельнова"));
    wizard->next(); // to the summary, nothing sent yet
    wizard->next(); // the executor answers the wizard's task first
    window.frame()->save();
    QList<int> pendingAfterWizardTask;
    connect(window.executor(), &nivaro::TaskExecutor::taskFinished, this, [&](const nivaro::TaskInfo &task) {
        if (task.widget == wizard->progressPage())
            pendingAfterWizardTask << window.frame()->pendingTasks();
    });
    QTRY_COMPARE(window.frame()->pendingTasks(), 0);
    // The wizard's answer was not the frame's: its save was still out.
    QCOMPARE(pendingAfterWizardTask, QList<int>{1});
    QCOMPARE(LocalStorage::instance()->object(uids.at(0)).parameter(db::worker::LAST_NAME), QStringLiteral("Параллельнова"));
    QCOMPARE(window.frame()->message(), QStringLiteral("Параметры сохранены"));
    wizard->close();
}

void TestNvStudio::interruptedBulkRunIsOffered_data()
{
    QTest::addColumn<int>("choice");
    QTest::newRow("run the rest") << int(MainWindow::RunRemaining);
    QTest::newRow("leave as is") << int(MainWindow::LeaveAsIs);
}

void TestNvStudio::interruptedBulkRunIsOffered()
{
    QFETCH(int, choice);
    QString error;
    QVERIFY2(StudioStartup::openStore(LocalStorage::instance(), storePath(), 20, &error), qPrintable(error));
    LocalStorage *store = LocalStorage::instance();
    QList<nivaro::TYPE_ID> uids = store->constObjects(nivaro::SUBJECT_DATANAME)->uniqueKeys();
    std::sort(uids.begin(), uids.end());
    uids = uids.mid(0, 5);
    QStringList asked;
    auto answer = [&asked, choice](const QString &question) {
        asked << question;
        return MainWindow::InterruptedChoice(choice);
    };
    {
        // The operator closes the wizard with the first object out.
        MainWindow window(store);
        window.show();
        window.askInterrupted = answer;
        window.offerInterruptedRuns();
        QVERIFY(asked.isEmpty());
        UpdateObjectWizard *wizard = window.startBulkUpdate(uids, db::worker::LOCKED, QStringLiteral("true"));
        QVERIFY(wizard);
        wizard->next(); // to the summary, nothing sent yet
        wizard->next();
        delete wizard;
        QTRY_COMPARE(window.executor()->pendingCount(), 0);
    }
    QCOMPARE(store->object(uids.at(0)).parameter(db::worker::LOCKED), QStringLiteral("true"));
    QVERIFY(store->object(uids.at(1)).parameter(db::worker::LOCKED) != QStringLiteral("true"));

    {
        MainWindow window(store);
        window.show();
        window.askInterrupted = answer;
        window.offerInterruptedRuns();
        QCOMPARE(asked, QStringList{QStringLiteral("Массовое изменение прервано: обработано 1 из 5 объектов.")});
        auto *wizard = window.findChild<UpdateObjectWizard *>();
        QCOMPARE(wizard != nullptr, choice == MainWindow::RunRemaining);
        if (wizard) {
            QCOMPARE(wizard->progressPage()->uids(), uids.mid(1));
            wizard->next(); // to the summary, nothing sent yet
            wizard->next();
            QTRY_COMPARE(wizard->progressPage()->statusText(), QStringLiteral("Успешно завершено"));
            for (nivaro::TYPE_ID uid : qAsConst(uids))
                QCOMPARE(store->object(uid).parameter(db::worker::LOCKED), QStringLiteral("true"));
            wizard->close();
        }
    }
    // Settled either way: neither the old run nor the new one comes back.
    asked.clear();
    MainWindow window(store);
    window.askInterrupted = answer;
    window.offerInterruptedRuns();
    QVERIFY(asked.isEmpty());
}

void TestNvStudio::readOnlyStoreEditsNothing()
{
    QString error;
    QVERIFY2(StudioStartup::openStore(LocalStorage::instance(), storePath(), 20, &error), qPrintable(error));
    const QList<nivaro::TYPE_ID> uids = twoEmployees();
    {
        // A run cut short, which a writable store would offer to finish.
        nivaro::RunJournal journal;
        QVERIFY(journal.open(storePath()));
        QVERIFY(journal.beginRun(QStringLiteral("update"), {{QStringLiteral("key"), db::worker::LOCKED}}, uids) > 0);
    }
    // The file as an operator without write rights finds it.
    LocalStorage::instance()->close();
    AsNobody::setMode(storePath(), 0444);
    AsNobody::setMode(m_dir->path(), 0755);
    AsNobody nobody;
    if (!nobody.isActive())
        QSKIP("needs root to act as another user");
    QVERIFY2(LocalStorage::instance()->open(storePath(), &error), qPrintable(error));
    QVERIFY(LocalStorage::instance()->isReadOnly());
    const QString reason = LocalStorage::instance()->readOnlyReason();
    QVERIFY(!reason.isEmpty());

    MainWindow window(LocalStorage::instance());
    window.show();
    QCOMPARE(window.statusBar()->findChild<QLabel *>(QStringLiteral("storeAccess"))->text(),
             QStringLiteral("Только чтение: ") + reason);

    window.selectUids(uids);
    QVERIFY(!window.bulkUpdateAction()->isEnabled());
    QVERIFY(window.bulkUpdateAction()->toolTip().contains(reason));
    QVERIFY(!window.startBulkUpdate(uids, db::worker::LOCKED, QStringLiteral("true")));
    QVERIFY(window.frame()->message().contains(reason));

    auto *surname = window.workerView()->findChild<QLineEdit *>(QStringLiteral("leSurname"));
    surname->setFocus();
    QTest::keyClicks(surname, QStringLiteral("xyz"));
    QVERIFY(!window.frame()->isModified());
    auto *save = window.frame()->findChild<QPushButton *>(QStringLiteral("saveButton"));
    QVERIFY(!save->isEnabled());
    QVERIFY(save->toolTip().contains(reason));

    // Nothing is offered to run on a store that cannot take it.
    int asked = 0;
    window.askInterrupted = [&asked](const QString &) {
        ++asked;
        return MainWindow::LeaveAsIs;
    };
    window.offerInterruptedRuns();
    QCOMPARE(asked, 0);

    // Nor is anything written to a card whose record could not be kept.
    window.selectUids({uids.first()});
    auto *cards = window.findChild<CardWidget *>();
    QVERIFY(cards);
    for (const char *name : {"pbFormat", "pbWriteUid", "pbWriteTemplates"}) {
        auto *button = cards->findChild<QPushButton *>(QLatin1String(name));
        QVERIFY2(!button->isEnabled() && button->toolTip().contains(reason), name);
    }
}

void TestNvStudio::calendarPagesFollowOneEmployee()
{
    QString error;
    QVERIFY2(StudioStartup::openStore(LocalStorage::instance(), storePath(), 20, &error), qPrintable(error));
    LocalStorage *store = LocalStorage::instance();
    // The sample gives the first employees a calendar, kept in the file.
    const QList<nivaro::TYPE_ID> uids = twoEmployees();
    store->close();
    QVERIFY2(store->open(storePath(), &error), qPrintable(error));
    const nivaro::TYPE_ID uid = uids.at(0);
    QVERIFY(!store->scheduleHistory(uid).isEmpty());
    QVERIFY(!store->absenceReasons(uid).records.isEmpty());
    QVERIFY(!store->constObjects(nivaro::REASON_DATANAME)->isEmpty());

    MainWindow window(store);
    window.show();
    window.selectUids({uid});
    QTabWidget *tabs = window.employeeTabs();
    QVERIFY(tabs->isTabEnabled(1) && tabs->isTabEnabled(2));
    tabs->setCurrentIndex(1);
    WorkerScheduleModel *calendar = window.schedulePage()->model();
    QCOMPARE(calendar->schedules(), store->scheduleHistory(uid));
    const auto first = store->absenceReasons(uid).records.constFirst();
    QCOMPARE(calendar->indexByDate(first.start.date()).data(WorkerScheduleModel::ReasonRole).toUInt(), first.reason);
    const QDate today = QDate::currentDate();
    QVERIFY(calendar->indexByDate(today).data(WorkerScheduleModel::ScheduleRole).isValid());
    QCOMPARE(window.absencePage()->model()->rowCount(), store->absenceReasons(uid).records.size());
    window.absencePage()->setWindow(QDate(), QDate());
    QCOMPARE(window.absencePage()->proxy()->rowCount(), store->absenceReasons(uid).records.size());

    // A new absence written to the store shows at once.
    nivaro::_WORKER_ABSENCE_REASON absences = store->absenceReasons(uid);
    nivaro::_WORKER_ABSENCE_REASON_RECORD added = first;
    added.id = 99;
    added.start = QDateTime(today, QTime(0, 0));
    added.end = added.start;
    absences.records.append(added);
    QVERIFY(store->setAbsenceReasons(absences, &error));
    QCOMPARE(calendar->indexByDate(today).data(WorkerScheduleModel::ReasonRole).toUInt(), added.reason);
    QCOMPARE(window.absencePage()->model()->rowCount(), absences.records.size());

    // Several people have no one calendar.
    window.selectUids(uids);
    QVERIFY(!tabs->isTabEnabled(1) && !tabs->isTabEnabled(2));
    QCOMPARE(tabs->currentIndex(), 0);
    QVERIFY(window.schedulePage()->model()->schedules().isEmpty());
}

// The whole way a card takes in the client: a virtual card on the reader,
// the employee's templates written to it with a profile of the sample, the
// card in the Cards tab and, after a restart, still in the store.
void TestNvStudio::cardWrittenSurvivesRestart()
{
    auto backend = std::make_shared<nvsmartcard::SimulatedBackend>();
    backend->addReader(QStringLiteral("Считыватель смарт-карт"), db::devices::cardreader::SMARTCARD);
    backend->addReader(QStringLiteral("Считыватель HID"), db::devices::cardreader::HID);
    nvsmartcard::setDefaultBackend(backend);
    QString error;
    QVERIFY2(StudioStartup::openStore(LocalStorage::instance(), storePath(), 20, &error), qPrintable(error));
    LocalStorage *store = LocalStorage::instance();
    QCOMPARE(store->constObjects(nivaro::SMARTCARD_PROFILE_DATANAME)->size(), 3);
    QSet<int> kinds;
    for (const nivaro::TYPE_ID w : store->constObjects(nivaro::SUBJECT_DATANAME)->uniqueKeys()) {
        for (const nivaro::_TEMPLATE_DATA &t : store->templates(w))
            kinds.insert(t.type);
    }
    QCOMPARE(kinds, (QSet<int>{2001, 2, 13, 3}));

    const nivaro::TYPE_ID uid = twoEmployees().constFirst();
    QVERIFY(!store->templates(uid).isEmpty());
    const int cardsBefore = store->cardIds(uid, false).size();
    QString number;
    {
        MainWindow window(store);
        window.show();
        window.selectUids({uid});
        QVERIFY(window.employeeTabs()->isTabEnabled(window.employeeTabs()->indexOf(window.cardsPage())));
        window.employeeTabs()->setCurrentWidget(window.cardsPage());
        QVERIFY(window.readersMenu());
        window.readersMenu()->putCard(0, 3); // DESFire 4 KB
        number = QString::number(CardWidget::cardNumberFromUid(QString::fromLatin1(backend->cardOn(0)->uid.toHex())));

        CardWidget *widget = window.cardsPage()->cardWidget();
        auto *profiles = widget->findChild<QComboBox *>(QStringLiteral("cbProfile"));
        profiles->setCurrentIndex(profiles->findText(QStringLiteral("Mifare DESFire — шаблоны v2")));
        QVERIFY(profiles->currentIndex() > 0);
        int offered = 0;
        widget->execTemplatesDialog = [&offered](QDialog *, CardTemplatesWidget *chooser) {
            auto *table = chooser->findChild<QTableWidget *>(QStringLiteral("tableWidget"));
            offered = table->rowCount();
            table->item(0, 0)->setCheckState(Qt::Checked);
            return true;
        };
        widget->findChild<QPushButton *>(QStringLiteral("pbWriteTemplates"))->click();
        QTRY_VERIFY_WITH_TIMEOUT(offered > 0 && !widget->isBusy() && window.executor()->pendingCount() == 0, 10000);
        QTRY_VERIFY2(widget->resultText().contains(QStringLiteral("выдана сотруднику")), qPrintable(widget->resultText()));
        QCOMPARE(offered, store->templates(uid).size());
        QVERIFY(!widget->resultIsError());
        EmployeeCardsModel *cards = window.cardsPage()->cardsView()->model();
        QCOMPARE(cards->rowCount(), cardsBefore + 1);
        // The card just issued is the one whose QR code shows.
        QVERIFY(window.cardsPage()->cardsView()->qrText().startsWith(QStringLiteral("CARD:") + number));
        // The virtual card keeps what was written even if the client dies
        // now, before it could save on exit.
        nvsmartcard::SimulatedBackend kept;
        QVERIFY(kept.loadState(StudioStartup::cardStatePath(storePath())));
        QVERIFY(kept.cardOn(0).has_value());
        QCOMPARE(kept.cardOn(0)->userData, backend->cardOn(0)->userData);
        QCOMPARE(kept.cardOn(0)->masterKey, backend->cardOn(0)->masterKey);
    }
    store->close();
    nvsmartcard::setDefaultBackend(nullptr);

    QVERIFY2(StudioStartup::openStore(store, storePath(), 20, &error), qPrintable(error));
    bool found = false;
    for (const nivaro::ObjectInfo &card : store->cards(uid, false)) {
        if (card.parameter(db::card::NUMBER) != number)
            continue;
        found = true;
        QCOMPARE(card.parameter(db::card::CARD_NAME), QStringLiteral("Mifare DESFire 4K"));
    }
    QVERIFY(found);
}

void TestNvStudio::commandLineWithoutDisplay_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("output");
    QTest::newRow("help") << QStringList{QStringLiteral("--help")} << 0 << QStringLiteral("--store");
    QTest::newRow("version") << QStringList{QStringLiteral("--version")} << 0 << QStringLiteral("nvstudio 6.0");
    QTest::newRow("unknown option") << QStringList{QStringLiteral("--stroe"), QStringLiteral("x")} << 2
                                    << QStringLiteral("stroe");
    QTest::newRow("Qt's own option beside help")
        << QStringList{QStringLiteral("-platform"), QStringLiteral("xcb"), QStringLiteral("--help")} << 0
        << QStringLiteral("--generate");
}

// A machine without a display still answers what the program is and takes.
void TestNvStudio::commandLineWithoutDisplay()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, output);
    QProcess nvstudio;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("DISPLAY"));
    env.remove(QStringLiteral("WAYLAND_DISPLAY"));
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    nvstudio.setProcessEnvironment(env);
    nvstudio.start(QCoreApplication::applicationDirPath() + QStringLiteral("/nvstudio"), arguments);
    QVERIFY(nvstudio.waitForFinished(60000));
    QCOMPARE(nvstudio.exitStatus(), QProcess::NormalExit);
    QCOMPARE(nvstudio.exitCode(), exitCode);
    const QString all = QString::fromUtf8(nvstudio.readAllStandardOutput() + nvstudio.readAllStandardError());
    QVERIFY2(all.contains(output), qPrintable(all));
}

namespace {

// The first object of a type in the sample, and one of its employees.
nivaro::TYPE_ID firstOf(const QString &type, bool dismissed = false)
{
    LocalStorage *store = LocalStorage::instance();
    if (type == nivaro::OT_WORKER) {
        const auto *people = store->constObjects(dismissed ? nivaro::SUBJECT_FIRED_DATANAME : nivaro::SUBJECT_DATANAME);
        return people->isEmpty() ? 0 : people->cbegin().key();
    }
    nivaro::TYPE_ID found = 0;
    for (const nivaro::ObjectInfo &unit : *store->constObjects(nivaro::ORGSTRUCTURE_DATANAME)) {
        if (unit.typeName() == type && (!found || unit.uid() < found))
            found = unit.uid();
    }
    return found;
}

} // namespace

void TestNvStudio::selectionPicksViewAndActions_data()
{
    QTest::addColumn<QStringList>("selected"); // types; "fired" is a dismissed employee
    QTest::addColumn<QString>("frame");        // object name of what the right side shows
    QTest::addColumn<QString>("enabled");      // t(ransfer) d(ismiss) x (delete)
    QTest::newRow("nothing") << QStringList{} << QStringLiteral("placeholder") << QString();
    QTest::newRow("employee") << QStringList{nivaro::OT_WORKER} << QStringLiteral("employeeTabs") << QStringLiteral("tdx");
    QTest::newRow("dismissed employee") << QStringList{QStringLiteral("fired")} << QStringLiteral("employeeTabs")
                                        << QStringLiteral("tx");
    QTest::newRow("department") << QStringList{nivaro::OT_DEPARTMENT} << QStringLiteral("departmentFrame")
                                << QStringLiteral("tx");
    QTest::newRow("firm") << QStringList{nivaro::OT_FIRM} << QStringLiteral("firmFrame") << QStringLiteral("x");
    QTest::newRow("firm and department") << QStringList{nivaro::OT_FIRM, nivaro::OT_DEPARTMENT}
                                         << QStringLiteral("placeholder") << QStringLiteral("x");
    QTest::newRow("employee and department") << QStringList{nivaro::OT_WORKER, nivaro::OT_DEPARTMENT}
                                             << QStringLiteral("employeeTabs") << QStringLiteral("x");
    QTest::newRow("root") << QStringList{nivaro::OT_SUBJECT_ROOT} << QStringLiteral("placeholder") << QString();
}

void TestNvStudio::selectionPicksViewAndActions()
{
    QFETCH(QStringList, selected);
    QFETCH(QString, frame);
    QFETCH(QString, enabled);
    QString error;
    QVERIFY2(StudioStartup::openStore(LocalStorage::instance(), storePath(), 30, &error), qPrintable(error));
    MainWindow window(LocalStorage::instance());
    window.show();
    QList<nivaro::TYPE_ID> uids;
    for (const QString &type : selected) {
        const nivaro::TYPE_ID uid = type == QLatin1String("fired") ? firstOf(nivaro::OT_WORKER, true)
                                    : type == nivaro::OT_SUBJECT_ROOT ? nivaro::SUBJECT_ROOT_UID
                                                                      : firstOf(type);
        QVERIFY2(uid, qPrintable(type));
        uids << uid;
    }
    // Whatever was shown before must not matter.
    window.selectUids({firstOf(nivaro::OT_DEPARTMENT)});
    window.selectUids(uids);
    const QHash<QString, PropertyFrame *> frames{{QStringLiteral("placeholder"), nullptr},
                                                 {QStringLiteral("employeeTabs"), window.frame()},
                                                 {QStringLiteral("departmentFrame"), window.departmentFrame()},
                                                 {QStringLiteral("firmFrame"), window.firmFrame()}};
    QCOMPARE(window.currentFrame(), frames.value(frame));
    OrganisationActions *actions = window.organisationActions();
    QVERIFY(actions->newWorkerAction()->isEnabled() && actions->newFirmAction()->isEnabled());
    QCOMPARE(actions->transferAction()->isEnabled(), enabled.contains(QLatin1Char('t')));
    QCOMPARE(actions->dismissAction()->isEnabled(), enabled.contains(QLatin1Char('d')));
    QCOMPARE(actions->deleteAction()->isEnabled(), enabled.contains(QLatin1Char('x')));
    // A disabled action says why.
    for (QAction *action : actions->actions())
        QVERIFY(action->isEnabled() || !action->toolTip().isEmpty());
}

void TestNvStudio::createdDepartmentIsSelected()
{
    QString error;
    QVERIFY2(StudioStartup::openStore(LocalStorage::instance(), storePath(), 10, &error), qPrintable(error));
    MainWindow window(LocalStorage::instance());
    window.show();
    const nivaro::TYPE_ID firm = firstOf(nivaro::OT_FIRM);
    window.selectUids({firm});
    window.organisationActions()->newDepartmentAction()->trigger();
    QWizard *wizard = window.organisationActions()->lastWizard();
    QVERIFY(wizard);
    auto *name = wizard->findChild<QLineEdit *>(QStringLiteral("leName"));
    QVERIFY(name);
    name->insert(QStringLiteral("Новый отдел"));
    // Through the summary, whose button starts the run.
    while (wizard->nextId() != -1) {
        QVERIFY2(wizard->currentPage()->isComplete(), qPrintable(wizard->currentPage()->objectName()));
        wizard->next();
    }
    QTRY_VERIFY(wizard->button(QWizard::FinishButton)->isEnabled());
    const QModelIndexList rows = window.tree()->selectionModel()->selectedRows();
    QCOMPARE(rows.size(), 1);
    const nivaro::ObjectInfo created = LocalStorage::instance()->object(rows.first().data(nivaro::ObjectTreeModel::UidRole).toUInt());
    QCOMPARE(created.parameter(db::orgstructure::NAME), QStringLiteral("Новый отдел"));
    QCOMPARE(created.parent(), firm);
    QCOMPARE(window.departmentFrame()->isVisible(), true);
    wizard->close();
}

void TestNvStudio::dismissedEmployeeTurnsReadOnly()
{
    QString error;
    QVERIFY2(StudioStartup::openStore(LocalStorage::instance(), storePath(), 10, &error), qPrintable(error));
    MainWindow window(LocalStorage::instance());
    window.show();
    const nivaro::TYPE_ID uid = firstOf(nivaro::OT_WORKER);
    window.selectUids({uid});
    auto *surname = window.workerView()->findChild<QLineEdit *>(QStringLiteral("leSurname"));
    QVERIFY(surname->isEnabled() && !surname->isReadOnly());
    window.organisationActions()->dismissAction()->trigger();
    auto *wizard = qobject_cast<DismissalWizard *>(window.organisationActions()->lastWizard());
    QVERIFY(wizard);
    QCOMPARE(wizard->uids(), QList<nivaro::TYPE_ID>{uid});
    wizard->setReason(QStringLiteral("по соглашению сторон"));
    while (wizard->nextId() != -1) {
        QVERIFY2(wizard->currentPage()->isComplete(), qPrintable(wizard->currentPage()->objectName()));
        wizard->next();
    }
    QTRY_VERIFY(LocalStorage::instance()->constObject(uid, nivaro::SUBJECT_FIRED_DATANAME));
    // The same selection, now of someone dismissed: nothing to edit, and
    // nobody to dismiss again.
    QTRY_VERIFY(!surname->isEnabled() || surname->isReadOnly());
    QVERIFY(!window.organisationActions()->dismissAction()->isEnabled());
    wizard->close();
}

void TestNvStudio::firstRunReadersSpeakTheClientLanguage()
{
    // As the library's shared instance comes: readers named in English.
    auto backend = std::make_shared<nvsmartcard::SimulatedBackend>();
    backend->addReader(QStringLiteral("Simulated Contactless Reader 0"), db::devices::cardreader::SMARTCARD);
    backend->addReader(QStringLiteral("Simulated Keyboard Reader 1"), db::devices::cardreader::HID);
    nvsmartcard::setDefaultBackend(backend);
    StudioStartup::setUpCardReaders(storePath()); // no card state yet
    QCOMPARE(backend->readerCount(), 2);
    QStringList names;
    for (const nvcm::ReaderInfo &reader : backend->listReaders())
        names << backend->readerProperty(reader, nvcm::NAME);
    QCOMPARE(names, (QStringList{QStringLiteral("Считыватель смарт-карт"), QStringLiteral("Считыватель HID")}));
    // The readers menu still finds them where they were.
    CardReadersMenu menu(backend, StudioStartup::cardStatePath(storePath()));
    menu.putCard(0, 0);
    QVERIFY(backend->cardOn(0).has_value());
    nvsmartcard::setDefaultBackend(nullptr);
}

QTEST_MAIN(TestNvStudio)
#include "tst_nvstudio.moc"
