#include <baseprogresswizardpage.h>
#include <newprogresswizardpages.h>
#include <newworkerwizardparameterspage.h>

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <nvprogressbar.h>
#include <objecttypes.h>
#include <taskexecutor.h>

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <QWizard>
#include <QtTest>

using namespace nivaro;

namespace {

TaskInfo makeTask(const QString &name, const QString &command = QStringLiteral("save_object"),
                  const QString &slot = QStringLiteral("objectUpdated"))
{
    TaskInfo task;
    task.id = TaskInfo::newId();
    task.command = command;
    task.startMessage = QStringLiteral("Начато: %1").arg(name);
    task.errorMessage = QStringLiteral("Ошибка: %1").arg(name);
    task.slot = slot;
    return task;
}

// A wizard whose last page is the one under test, as the library's wizards
// hold them.
struct Harness
{
    explicit Harness(BaseProgressWizardPage *p, QWizardPage *first = nullptr)
        : page(p)
    {
        if (first)
            wizard.addPage(first);
        wizard.addPage(page);
        QObject::connect(page, &BaseProgressWizardPage::executeTask, [this](const TaskInfo &t) { sent.append(t); });
        QObject::connect(page, &BaseProgressWizardPage::tasksFinished, [this] { ++finished; });
    }
    NVProgressBar *bar() const { return page->findChild<NVProgressBar *>(QStringLiteral("progressBar")); }
    QString label() const { return page->findChild<QLabel *>(QStringLiteral("lbCurrentMessage"))->text(); }
    QStringList log() const { return page->logText().split(QLatin1Char('\n'), Qt::SkipEmptyParts); }

    QWizard wizard;
    BaseProgressWizardPage *page;
    QList<TaskInfo> sent;
    int finished = 0;
};

// The parameters page as an operator leaves it: a surname is all it needs.
NewWorkerWizardParametersPage *agreeingParametersPage()
{
    auto *page = new NewWorkerWizardParametersPage;
    page->findChild<QLineEdit *>(QStringLiteral("leSurname"))->setText(QStringLiteral("Иванов"));
    return page;
}

class RefusingParametersPage : public NewWorkerWizardParametersPage
{
public:
    bool verifyCreateWorker() override { return false; }
};

} // namespace

class TestProgressWizardPage : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void noTasksFinishesAtOnce();
    void headStaysQueuedUntilReply();
    void objectAddedHandsTheUidOn();
    void objectAddedZeroIsAFailure();
    void failureInTheMiddle_data();
    void failureInTheMiddle();
    void taskByCommandIsTheEarliest();
    void emptyMessageChangesNothing();
    void droppingTheQueue();
    void logIsInTheViewWhenTheCallReturns_data();
    void logIsInTheViewWhenTheCallReturns();
    void executorAnsweringAtOnceRunsWithoutRecursion();
    void nextTaskGoesOutBeforeCompletenessChanges_data();
    void nextTaskGoesOutBeforeCompletenessChanges();
    void wizardButtonsFollowCompleteness_data();
    void wizardButtonsFollowCompleteness();
    void newWorkerPageNeedsItsParametersPage_data();
    void newWorkerPageNeedsItsParametersPage();
    void replySlotsThroughTheExecutor();
};

void TestProgressWizardPage::noTasksFinishesAtOnce()
{
    Harness h(new BaseProgressWizardPage);
    QVERIFY(h.page->isComplete());
    h.page->initializePage();
    QCOMPARE(h.page->logText(), QStringLiteral("Создание завершено"));
    QCOMPARE(h.bar()->value(), h.bar()->maximum());
    QCOMPARE(h.finished, 1);
    QVERIFY(h.sent.isEmpty());
    QVERIFY(h.page->isComplete());
}

void TestProgressWizardPage::headStaysQueuedUntilReply()
{
    Harness h(new BaseProgressWizardPage);
    QSignalSpy complete(h.page, &QWizardPage::completeChanged);
    h.page->addTask(makeTask(QStringLiteral("первая")));
    h.page->addTask(makeTask(QStringLiteral("вторая")));
    QCOMPARE(complete.size(), 2);
    QVERIFY(!h.page->isComplete());
    QCOMPARE(h.bar()->maximum(), 2);

    h.page->initializePage();
    QCOMPARE(h.sent.size(), 1);
    QCOMPARE(h.sent.at(0).widget.data(), h.page);
    QCOMPARE(h.page->queuedTaskCount(), 2);
    QCOMPARE(h.label(), QStringLiteral("Начато: первая"));

    h.page->objectUpdated(5);
    QCOMPARE(h.sent.size(), 2);
    QCOMPARE(h.page->queuedTaskCount(), 1);
    QCOMPARE(h.bar()->value(), 1);
    QVERIFY(!h.page->isComplete());
    QCOMPARE(h.finished, 0); // finished with the last reply, not the last task sent

    h.page->objectUpdated(6);
    QVERIFY(h.page->isComplete());
    QCOMPARE(h.finished, 1);
    QCOMPARE(h.bar()->value(), 2);
    QCOMPARE(h.bar()->state(), NVProgressBar::Succeeded);
    QCOMPARE(h.log(), (QStringList{QStringLiteral("Начато: первая"), QStringLiteral("Начато: вторая"),
                                   QStringLiteral("Создание завершено")}));
}

void TestProgressWizardPage::objectAddedHandsTheUidOn()
{
    Harness h(new BaseProgressWizardPage);
    for (const QString &name : {QStringLiteral("создать"), QStringLiteral("карты"), QStringLiteral("доступ")})
        h.page->addTask(makeTask(name));
    h.page->initializePage();
    QCOMPARE(h.sent.at(0).uid, 0u);

    h.page->objectAdded(17);
    QCOMPARE(h.wizard.property("uid").toUInt(), 17u);
    QCOMPARE(h.sent.size(), 2);
    QCOMPARE(h.sent.at(1).uid, 17u);
    QCOMPARE(h.page->task(QStringLiteral("save_object")).uid, 17u);
    h.page->objectUpdated(17);
    QCOMPARE(h.sent.at(2).uid, 17u);
}

void TestProgressWizardPage::objectAddedZeroIsAFailure()
{
    Harness h(new BaseProgressWizardPage);
    h.page->addTask(makeTask(QStringLiteral("создать")));
    h.page->addTask(makeTask(QStringLiteral("карты")));
    h.page->initializePage();
    h.page->objectAdded(0);
    QVERIFY(!h.wizard.property("uid").isValid());
    QCOMPARE(h.log().last(), QStringLiteral("Ошибка: создать"));
    QCOMPARE(h.sent.size(), 1);
    QCOMPARE(h.bar()->state(), NVProgressBar::Failed);
    QVERIFY(h.page->isComplete());
}

void TestProgressWizardPage::failureInTheMiddle_data()
{
    QTest::addColumn<int>("policy");
    QTest::addColumn<int>("tasksSent");
    QTest::addColumn<int>("barValue");
    QTest::addColumn<QStringList>("log");

    QTest::newRow("stop") << 0 << 2 << 3
                          << QStringList{QStringLiteral("Начато: 1"), QStringLiteral("Начато: 2"),
                                         QStringLiteral("Ошибка: 2")};
    QTest::newRow("go on") << 1 << 3 << 3
                           << QStringList{QStringLiteral("Начато: 1"), QStringLiteral("Начато: 2"),
                                          QStringLiteral("Ошибка: 2"), QStringLiteral("Начато: 3"),
                                          QStringLiteral("Создание завершено")};
}

void TestProgressWizardPage::failureInTheMiddle()
{
    QFETCH(int, policy);
    QFETCH(int, tasksSent);
    QFETCH(int, barValue);
    QFETCH(QStringList, log);

    Harness h(new BaseProgressWizardPage);
    h.page->setErrorHandlingPolicy(BaseProgressWizardPage::ErrorHandlingPolicy(policy));
    for (const QString &name : {QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")})
        h.page->addTask(makeTask(name));
    h.page->initializePage();
    h.page->objectUpdated(1);
    h.page->objectUpdated(0);
    if (policy != 0)
        h.page->objectUpdated(3);

    QCOMPARE(h.sent.size(), tasksSent);
    QCOMPARE(h.log(), log);
    QCOMPARE(h.bar()->value(), barValue);
    QCOMPARE(h.bar()->maximum(), 3);
    // Later successes do not paint over the failure.
    QCOMPARE(h.bar()->state(), NVProgressBar::Failed);
    QCOMPARE(h.finished, 1);
    QVERIFY(h.page->isComplete());
}

void TestProgressWizardPage::taskByCommandIsTheEarliest()
{
    BaseProgressWizardPage page;
    const TaskInfo first = makeTask(QStringLiteral("a"));
    page.addTask(makeTask(QStringLiteral("b"), QStringLiteral("save_cards")));
    page.addTask(first);
    page.addTask(makeTask(QStringLiteral("c")));
    QCOMPARE(page.task(QStringLiteral("save_object")).id, first.id);
    QCOMPARE(page.task(QStringLiteral("delete_object")).id, 0);
    QVERIFY(page.task(QStringLiteral("delete_object")).command.isEmpty());
}

void TestProgressWizardPage::emptyMessageChangesNothing()
{
    Harness h(new BaseProgressWizardPage);
    h.page->appendMessage(QStringLiteral("Первое"));
    h.page->appendMessage(QString());
    QCOMPARE(h.label(), QStringLiteral("Первое"));
    QCOMPARE(h.log(), QStringList{QStringLiteral("Первое")});
    h.page->clearMessages();
    QVERIFY(h.label().isEmpty());
    QVERIFY(h.log().isEmpty());
}

void TestProgressWizardPage::droppingTheQueue()
{
    Harness h(new BaseProgressWizardPage);
    h.page->addTask(makeTask(QStringLiteral("1")));
    h.page->addTask(makeTask(QStringLiteral("2")));
    h.page->dropTaskQueue(QStringLiteral("Отменено оператором"));
    QVERIFY(h.page->isComplete());
    QCOMPARE(h.log(), QStringList{QStringLiteral("Отменено оператором")});
    QCOMPARE(h.bar()->value(), 2);
    QCOMPARE(h.bar()->state(), NVProgressBar::Failed);
    QVERIFY(h.sent.isEmpty());
}

// A host reads the log, or checks that its newest line is in view, as
// soon as the call that wrote it returns; only the painting may wait.
void TestProgressWizardPage::logIsInTheViewWhenTheCallReturns_data()
{
    QTest::addColumn<int>("replies"); // before the call under test
    QTest::addColumn<int>("call");    // 0 appendMessage, 1 start, 2 reply, 3 failing reply
    QTest::addColumn<QString>("line");
    QTest::newRow("message") << 0 << 0 << QStringLiteral("Сообщение");
    QTest::newRow("task start") << 0 << 1 << QStringLiteral("Начато: первая");
    QTest::newRow("reply starts the next") << 0 << 2 << QStringLiteral("Начато: вторая");
    QTest::newRow("last reply") << 1 << 2 << QStringLiteral("Создание завершено");
    QTest::newRow("failure") << 1 << 3 << QStringLiteral("Ошибка: вторая");
}

void TestProgressWizardPage::logIsInTheViewWhenTheCallReturns()
{
    QFETCH(int, replies);
    QFETCH(int, call);
    QFETCH(QString, line);

    BaseProgressWizardPage page;
    auto *view = page.findChild<QTextBrowser *>(QStringLiteral("logView"));
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    for (int i = 0; i < 50; ++i) // more than the view shows
        page.appendMessage(QString::number(i));
    page.addTask(makeTask(QStringLiteral("первая")));
    page.addTask(makeTask(QStringLiteral("вторая")));
    if (call > 1)
        page.initializePage();
    for (int i = 0; i < replies; ++i)
        page.objectUpdated(1);
    QTest::qWait(150); // whatever waits for the event loop has had its turn

    switch (call) {
    case 0:
        page.appendMessage(line);
        break;
    case 1:
        page.initializePage();
        break;
    default:
        page.objectUpdated(call == 2 ? 1 : 0);
    }
    QCOMPARE(view->toPlainText().section(QLatin1Char('\n'), -1), line);
    QScrollBar *scroll = view->verticalScrollBar();
    QVERIFY(scroll->maximum() > 0);
    QCOMPARE(scroll->value(), scroll->maximum());
    QTextCursor end(view->document());
    end.movePosition(QTextCursor::End);
    QVERIFY(view->viewport()->rect().contains(view->cursorRect(end)));
}

void TestProgressWizardPage::executorAnsweringAtOnceRunsWithoutRecursion()
{
    BaseProgressWizardPage page;
    page.setFinishMessage(QString());
    int answered = 0;
    connect(&page, &BaseProgressWizardPage::executeTask, &page, [&](const TaskInfo &t) {
        ++answered;
        QMetaObject::invokeMethod(t.widget.data(), "objectUpdated", Q_ARG(unsigned int, 1));
    });
    for (int i = 0; i < 20000; ++i)
        page.addTask(makeTask(QString::number(i)));
    page.initializePage();
    QCOMPARE(answered, 20000);
    QVERIFY(page.isComplete());
}

// Whether the executor answers inside executeTask() or later, a host that
// enables Finish on completeChanged() must already have the next task.
void TestProgressWizardPage::nextTaskGoesOutBeforeCompletenessChanges_data()
{
    QTest::addColumn<bool>("queued");
    QTest::newRow("answered inside the signal") << false;
    QTest::newRow("answered from the event loop") << true;
}

void TestProgressWizardPage::nextTaskGoesOutBeforeCompletenessChanges()
{
    QFETCH(bool, queued);
    BaseProgressWizardPage page;
    page.addTask(makeTask(QStringLiteral("первая")));
    page.addTask(makeTask(QStringLiteral("вторая")));
    QStringList order;
    connect(&page, &BaseProgressWizardPage::executeTask, &page, [&](const TaskInfo &t) {
        order << t.startMessage;
        QMetaObject::invokeMethod(t.widget.data(), "objectUpdated", queued ? Qt::QueuedConnection : Qt::DirectConnection,
                                  Q_ARG(unsigned int, 1));
    });
    connect(&page, &QWizardPage::completeChanged, &page, [&] { order << QStringLiteral("complete"); });
    page.initializePage();
    QTRY_VERIFY(page.isComplete());
    // The last reply finishes the run (one change) and then answers as
    // every reply does.
    QCOMPARE(order, (QStringList{QStringLiteral("Начато: первая"), QStringLiteral("Начато: вторая"),
                                 QStringLiteral("complete"), QStringLiteral("complete"), QStringLiteral("complete")}));
}

void TestProgressWizardPage::wizardButtonsFollowCompleteness_data()
{
    QTest::addColumn<bool>("queued");
    QTest::addColumn<int>("failingTask"); // -1: none
    QTest::addColumn<bool>("secondRun");
    QTest::newRow("direct") << false << -1 << false;
    QTest::newRow("queued") << true << -1 << false;
    QTest::newRow("queued, failure stops the run") << true << 1 << false;
    QTest::newRow("tasks added after the end") << true << -1 << true;
    QTest::newRow("back and run again") << false << 2 << true;
}

// The wizard's Finish button must say what the page says after every
// change of completeness, however the replies arrive and whatever the
// page went through before.
void TestProgressWizardPage::wizardButtonsFollowCompleteness()
{
    QFETCH(bool, queued);
    QFETCH(int, failingTask);
    QFETCH(bool, secondRun);
    Harness h(new BaseProgressWizardPage, new QWizardPage);
    h.wizard.setOption(QWizard::NoCancelButtonOnLastPage, false);
    int replies = 0;
    connect(h.page, &BaseProgressWizardPage::executeTask, h.page, [&](const TaskInfo &t) {
        const unsigned int uid = replies++ == failingTask ? 0 : 1;
        QMetaObject::invokeMethod(t.widget.data(), "objectUpdated", queued ? Qt::QueuedConnection : Qt::DirectConnection,
                                  Q_ARG(unsigned int, uid));
    });
    for (int i = 0; i < 4; ++i)
        h.page->addTask(makeTask(QString::number(i)));
    h.wizard.show();
    QAbstractButton *finish = h.wizard.button(QWizard::FinishButton);
    QStringList mismatches;
    // While the wizard turns to the page it restates the buttons only once
    // initializePage() has returned, so the check waits for that.
    bool turning = false;
    auto check = [&] {
        if (!turning && h.wizard.currentPage() == h.page && finish->isEnabled() != h.page->isComplete())
            mismatches << QStringLiteral("reply %1: finish %2, complete %3").arg(replies).arg(finish->isEnabled()).arg(h.page->isComplete());
    };
    auto turnToPage = [&] {
        turning = true;
        h.wizard.next();
        turning = false;
        check();
    };
    turnToPage();
    connect(h.page, &QWizardPage::completeChanged, h.page, check);
    QTRY_VERIFY(h.page->isComplete());
    QVERIFY(finish->isEnabled());
    if (secondRun) {
        if (failingTask >= 0) {
            h.wizard.back();
            for (int i = 0; i < 2; ++i)
                h.page->addTask(makeTask(QString::number(i)));
            turnToPage();
        } else {
            h.page->addTask(makeTask(QStringLiteral("ещё")));
            QVERIFY(!finish->isEnabled());
            h.page->initializePage();
        }
        QTRY_VERIFY(h.page->isComplete());
        QVERIFY(finish->isEnabled());
    }
    QCOMPARE(mismatches, QStringList());
}

void TestProgressWizardPage::newWorkerPageNeedsItsParametersPage_data()
{
    QTest::addColumn<int>("first"); // 0 none, 1 refusing, 2 agreeing
    QTest::addColumn<bool>("runs");
    QTest::addColumn<bool>("queued");
    QTest::newRow("no parameters page") << 0 << false << true;
    QTest::newRow("parameters page refuses") << 1 << false << true;
    QTest::newRow("refused with nothing queued") << 1 << false << false;
    QTest::newRow("parameters page agrees") << 2 << true << true;
}

void TestProgressWizardPage::newWorkerPageNeedsItsParametersPage()
{
    QFETCH(int, first);
    QFETCH(bool, runs);
    QFETCH(bool, queued);

    QWizardPage *firstPage = first == 0 ? new QWizardPage
                             : first == 1 ? static_cast<QWizardPage *>(new RefusingParametersPage)
                                          : agreeingParametersPage();
    auto *page = new NewWorkerProgressWizardPage;
    Harness h(page, firstPage);
    page->appendMessage(QStringLiteral("старое"));
    if (queued)
        page->addTask(makeTask(QStringLiteral("сотрудник"), QStringLiteral("save_object"), QStringLiteral("save")));
    page->initializePage();
    QCOMPARE(h.sent.size(), runs ? 1 : 0);
    QCOMPARE(h.log(), runs ? QStringList{QStringLiteral("Начато: сотрудник")}
                           : QStringList{QStringLiteral("Операция отменена")});
    QCOMPARE(page->isComplete(), false);
}

// The host's executor answers through whatever reply slot a task names,
// with the text argument where the slot has one.
void TestProgressWizardPage::replySlotsThroughTheExecutor()
{
    QTemporaryDir dir;
    LocalStorage *store = LocalStorage::instance();
    QString error;
    QVERIFY2(store->open(dir.filePath(QStringLiteral("s.db")), &error), qPrintable(error));
    ObjectInfo w(100, OT_WORKER, {{db::worker::LAST_NAME, QStringLiteral("Иванов")}});
    QVERIFY(store->putObjects(SUBJECT_DATANAME, {w}));

    TaskExecutor executor(store);
    auto *page = new NewWorkerProgressWizardPage;
    Harness h(page, agreeingParametersPage());
    connect(page, &BaseProgressWizardPage::executeTask, &executor, &TaskExecutor::execute);
    const QStringList replySlots{QStringLiteral("save"), QStringLiteral("saveParameters"), QStringLiteral("saveCards"),
                            QStringLiteral("saveAccess")};
    for (const QString &slot : replySlots) {
        TaskInfo t = makeTask(slot, QStringLiteral("save_object"), slot);
        t.uid = 100;
        t.params.insert(QStringLiteral("object_type"), OT_WORKER);
        t.params.insert(QStringLiteral("property-%1").arg(db::worker::FIRST_NAME), slot);
        page->addTask(t);
    }
    page->initializePage();
    QTRY_COMPARE(h.finished, 1);
    QCOMPARE(h.sent.size(), 4);
    QCOMPARE(h.bar()->state(), NVProgressBar::Succeeded);
    QCOMPARE(h.wizard.property("uid").toUInt(), 100u);
    QCOMPARE(store->object(100).parameter(db::worker::FIRST_NAME), QStringLiteral("saveAccess"));
    store->close();
}

QTEST_MAIN(TestProgressWizardPage)
#include "tst_progresswizardpage.moc"
