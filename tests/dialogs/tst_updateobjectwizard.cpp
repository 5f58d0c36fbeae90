#include <deletelistwizardpage.h>
#include <deleteprogresswizardpage.h>
#include <updateobjectwizard.h>

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <nvprogressbar.h>
#include <objecttreeproxy.h>
#include <objecttypes.h>
#include <pagelistwizard.h>
#include <taskexecutor.h>

#include <QAbstractButton>
#include <QProgressBar>
#include <QTextBrowser>
#include <QTemporaryDir>
#include <QtTest>

using namespace nivaro;

class TestUpdateObjectWizard : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void wizardShape();
    void sendsOneTaskPerObject_data();
    void sendsOneTaskPerObject();
    void taskCarriesEveryParameter();
    void stopsAtTheFirstFailure();
    void nextTaskGoesOutBeforeCompletenessChanges_data();
    void nextTaskGoesOutBeforeCompletenessChanges();
    void runsThroughTheExecutorIntoTheStore();
    void progressShowsWhileTheRunRuns();
    void hostLinesFollowTheFailure();
    void deletesMembersBeforeTheirDepartment();

private:
    QList<TaskInfo> run(UpdateProgressWizardPage &page);
    QTemporaryDir m_dir;
    LocalStorage *store = LocalStorage::instance();
};

void TestUpdateObjectWizard::init()
{
    QFile::remove(m_dir.filePath(QStringLiteral("s.db")));
    QString error;
    QVERIFY2(store->open(m_dir.filePath(QStringLiteral("s.db")), &error), qPrintable(error));
    ObjectInfo root(SUBJECT_ROOT_UID, OT_SUBJECT_ROOT, {{db::common::NAME, QStringLiteral("Организация")}});
    ObjectInfo dep(20, OT_DEPARTMENT, {{db::common::NAME, QStringLiteral("Склад")}});
    dep.setParent(SUBJECT_ROOT_UID);
    QList<ObjectInfo> workers;
    for (TYPE_ID uid : {101u, 102u, 103u}) {
        ObjectInfo w(uid, OT_WORKER, {{db::worker::LAST_NAME, QStringLiteral("Сотрудник%1").arg(uid)}});
        w.setParent(20);
        workers << w;
    }
    QVERIFY(store->putObjects(ORGSTRUCTURE_DATANAME, {root, dep}));
    QVERIFY(store->putObjects(SUBJECT_DATANAME, workers));
}

void TestUpdateObjectWizard::cleanup()
{
    store->close();
}

QList<TaskInfo> TestUpdateObjectWizard::run(UpdateProgressWizardPage &page)
{
    QList<TaskInfo> sent;
    connect(&page, &UpdateProgressWizardPage::appendTask, this, [&sent](const TaskInfo &t) { sent.append(t); });
    page.initializePage();
    return sent;
}

void TestUpdateObjectWizard::wizardShape()
{
    QPointer<UpdateObjectWizard> wizard = new UpdateObjectWizard;
    QVERIFY(!wizard->isPageListVisible());
    QCOMPARE(wizard->pageIds(), (QList<int>{0, 1}));
    QVERIFY(qobject_cast<DeleteListWizardPage *>(wizard->page(0)));

    // The list shows the chosen objects with the path to them.
    wizard->setUids({102});
    QAbstractItemModel *proxy = wizard->proxy();
    QCOMPARE(proxy->rowCount(), 1);
    const QModelIndex dep = proxy->index(0, 0, proxy->index(0, 0));
    QCOMPARE(dep.data().toString(), QStringLiteral("Склад"));
    QCOMPARE(proxy->rowCount(dep), 1);
    QCOMPARE(proxy->index(0, 0, dep).data().toString(), QStringLiteral("Сотрудник102"));

    wizard->show();
    wizard->close(); // deleted when closed
    QTRY_VERIFY(wizard.isNull());
}

void TestUpdateObjectWizard::sendsOneTaskPerObject_data()
{
    QTest::addColumn<QList<unsigned int>>("uids");
    QTest::addColumn<QList<unsigned int>>("sent");
    QTest::newRow("none") << QList<unsigned int>{} << QList<unsigned int>{};
    QTest::newRow("in the order given") << QList<unsigned int>{103, 101} << QList<unsigned int>{103, 101};
    // A selection holding an employee twice (through the tree and a search)
    // must not write it twice.
    QTest::newRow("duplicates") << QList<unsigned int>{101, 102, 101, 102, 102} << QList<unsigned int>{101, 102};
    QTest::newRow("unknown left out") << QList<unsigned int>{999, 103} << QList<unsigned int>{103};
}

void TestUpdateObjectWizard::sendsOneTaskPerObject()
{
    QFETCH(QList<unsigned int>, uids);
    QFETCH(QList<unsigned int>, sent);
    UpdateProgressWizardPage page;
    if (uids.contains(999))
        QTest::ignoreMessage(QtDebugMsg, QRegularExpression(QStringLiteral("object 999 is not in the store")));
    page.setUids(uids);
    auto *bar = page.findChild<NVProgressBar *>(QStringLiteral("progressBar"));
    // A reply logs, sends the next task and only then raises the bar.
    QList<int> barAtSend;
    connect(&page, &UpdateProgressWizardPage::appendTask, this, [&] { barAtSend << bar->value(); });
    QList<TaskInfo> tasks = run(page);
    QCOMPARE(bar->maximum(), sent.size());
    // The run ends with the last reply, not with the last task sent.
    for (int i = 0; i < tasks.size(); ++i) {
        QVERIFY(!page.isComplete());
        QVERIFY(page.statusText().isEmpty());
        page.updated(tasks.at(i).uid);
    }
    QList<unsigned int> sentUids;
    for (const TaskInfo &t : qAsConst(tasks))
        sentUids << t.uid;
    QCOMPARE(sentUids, sent);
    QCOMPARE(bar->value(), sent.size());
    for (int i = 0; i < barAtSend.size(); ++i)
        QCOMPARE(barAtSend.at(i), qMax(0, i - 1));
    QCOMPARE(page.statusText(), QStringLiteral("Успешно завершено"));
    QVERIFY(page.isComplete());
}

void TestUpdateObjectWizard::taskCarriesEveryParameter()
{
    UpdateProgressWizardPage page;
    page.setUids({101});
    page.addUpdateParameter(db::worker::LOCKED, QStringLiteral("true"));
    page.addUpdateParameter(db::worker::SCHEDULE, 3);
    const QList<TaskInfo> sent = run(page);
    QCOMPARE(sent.size(), 1);
    const TaskInfo &t = sent.constFirst();
    QCOMPARE(t.uid, 101u);
    QCOMPARE(t.params.value(QStringLiteral("property-%1").arg(db::worker::LOCKED)).toString(), QStringLiteral("true"));
    QCOMPARE(t.params.value(QStringLiteral("property-%1").arg(db::worker::SCHEDULE)).toInt(), 3);
    QCOMPARE(t.params.size(), 3); // object_type beside them, never a parent
}

void TestUpdateObjectWizard::stopsAtTheFirstFailure()
{
    UpdateProgressWizardPage page;
    page.setUids({101, 102, 103});
    page.addUpdateParameter(db::worker::LOCKED, QStringLiteral("true"));
    QList<TaskInfo> sent = run(page);
    QCOMPARE(sent.size(), 1);
    page.updated(sent.at(0).uid);
    QCOMPARE(sent.size(), 2);
    page.updated(0);
    QCOMPARE(sent.size(), 2); // nothing more goes out
    QCOMPARE(page.statusText(), QStringLiteral("Ошибка"));
    QVERIFY(page.isComplete());
    auto *bar = page.findChild<NVProgressBar *>(QStringLiteral("progressBar"));
    QCOMPARE(bar->value(), 1);
    QCOMPARE(bar->state(), NVProgressBar::Failed);
    const QString first = sent.at(0).startMessage.mid(QStringLiteral("Обработка ").size());
    const QString second = sent.at(1).startMessage.mid(QStringLiteral("Обработка ").size());
    QCOMPARE(page.logText().split(QLatin1Char('\n')),
             (QStringList{QStringLiteral("Обработка %1").arg(first), QStringLiteral("%1 обработан").arg(first),
                          QStringLiteral("Обработка %1").arg(second), QStringLiteral("Ошибка обработки %1").arg(second)}));

    QTest::ignoreMessage(QtDebugMsg, QRegularExpression(QStringLiteral("no task out")));
    page.updated(103); // a late reply changes nothing
    QCOMPARE(bar->value(), 1);
}

void TestUpdateObjectWizard::nextTaskGoesOutBeforeCompletenessChanges_data()
{
    QTest::addColumn<bool>("queued");
    QTest::newRow("answered inside the signal") << false;
    QTest::newRow("answered from the event loop") << true;
}

void TestUpdateObjectWizard::nextTaskGoesOutBeforeCompletenessChanges()
{
    QFETCH(bool, queued);
    UpdateProgressWizardPage page;
    page.setUids({101, 102});
    QStringList order;
    connect(&page, &UpdateProgressWizardPage::appendTask, &page, [&](const TaskInfo &t) {
        order << QString::number(t.uid);
        QMetaObject::invokeMethod(t.widget.data(), "updated", queued ? Qt::QueuedConnection : Qt::DirectConnection,
                                  Q_ARG(unsigned int, t.uid));
    });
    connect(&page, &QWizardPage::completeChanged, &page, [&] { order << QStringLiteral("complete"); });
    page.initializePage();
    QTRY_VERIFY(page.isComplete());
    // The first change is the run starting.
    QCOMPARE(order, (QStringList{QStringLiteral("complete"), QStringLiteral("101"), QStringLiteral("102"),
                                 QStringLiteral("complete")}));
}

void TestUpdateObjectWizard::hostLinesFollowTheFailure()
{
    UpdateProgressWizardPage page;
    page.setUids({101, 102});
    const QList<TaskInfo> sent = run(page);
    page.appendMessage(QString());
    page.updated(0);
    page.appendMessage(QStringLiteral("Сервер отказал: нет прав"));
    page.appendMessage(QString());
    QCOMPARE(page.logText().split(QLatin1Char('\n')),
             (QStringList{sent.at(0).startMessage, sent.at(0).errorMessage, QStringLiteral("Сервер отказал: нет прав")}));
    QCOMPARE(page.statusText(), QStringLiteral("Ошибка"));
}

void TestUpdateObjectWizard::runsThroughTheExecutorIntoTheStore()
{
    TaskExecutor executor(store);
    auto *wizard = new UpdateObjectWizard;
    connect(wizard, &UpdateObjectWizard::appendTask, &executor, &TaskExecutor::execute);
    wizard->setUids({101, 102, 103});
    wizard->addUpdateParameter(db::worker::LOCKED, QStringLiteral("true"));
    wizard->show();
    wizard->next();
    QTRY_COMPARE(wizard->progressPage()->statusText(), QStringLiteral("Успешно завершено"));
    for (TYPE_ID uid : {101u, 102u, 103u})
        QCOMPARE(store->object(uid).parameter(db::worker::LOCKED), QStringLiteral("true"));
    QVERIFY(wizard->button(QWizard::FinishButton)->isEnabled());
    // Paints held during the run come back once it has ended.
    QTRY_VERIFY(wizard->progressPage()->updatesEnabled());
    delete wizard;
}

namespace {
// Notes the bar's values painted once the log had shown its first lines:
// before that the page paints as any widget does.
class PaintWatcher : public QObject
{
public:
    PaintWatcher(QProgressBar *bar, QTextBrowser *log)
        : m_bar(bar)
        , m_log(log)
    {
        bar->installEventFilter(this);
    }
    QList<int> values;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (watched == m_bar && event->type() == QEvent::Paint && !m_log->document()->isEmpty())
            values << m_bar->value();
        return false;
    }

private:
    QProgressBar *m_bar;
    QTextBrowser *m_log;
};
} // namespace

void TestUpdateObjectWizard::progressShowsWhileTheRunRuns()
{
    // Long enough a run that the operator would stare at a blank bar.
    QList<ObjectInfo> workers;
    QList<unsigned int> uids;
    for (TYPE_ID uid = 1000; uid < 6000; ++uid) {
        ObjectInfo w(uid, OT_WORKER, {{db::worker::LAST_NAME, QStringLiteral("Сотрудник%1").arg(uid)}});
        w.setParent(20);
        workers << w;
        uids << uid;
    }
    QVERIFY(store->putObjects(SUBJECT_DATANAME, workers));
    TaskExecutor executor(store);
    QScopedPointer<UpdateObjectWizard> wizard(new UpdateObjectWizard);
    connect(wizard.data(), &UpdateObjectWizard::appendTask, &executor, &TaskExecutor::execute);
    wizard->setUids(uids);
    wizard->addUpdateParameter(db::worker::LOCKED, QStringLiteral("true"));
    wizard->show();
    QVERIFY(QTest::qWaitForWindowExposed(wizard.data()));
    auto *bar = wizard->progressPage()->findChild<NVProgressBar *>(QStringLiteral("progressBar"));
    PaintWatcher watcher(bar, wizard->progressPage()->findChild<QTextBrowser *>(QStringLiteral("logView")));
    QAbstractButton *back = wizard->button(QWizard::BackButton);
    wizard->next();
    QVERIFY(!back->isEnabled());
    QTRY_COMPARE_WITH_TIMEOUT(wizard->progressPage()->statusText(), QStringLiteral("Успешно завершено"), 60000);
    QVERIFY(std::any_of(watcher.values.cbegin(), watcher.values.cend(),
                        [bar](int value) { return value > 0 && value < bar->maximum(); }));
    QVERIFY(!back->isEnabled());
}

void TestUpdateObjectWizard::deletesMembersBeforeTheirDepartment()
{
    TaskExecutor executor(store);
    DeleteProgressWizardPage page;
    connect(&page, &DeleteProgressWizardPage::appendTask, &executor, &TaskExecutor::execute);
    QTest::ignoreMessage(QtDebugMsg, QRegularExpression(QStringLiteral("object 999 is not in the store")));
    page.setUids({20, 101, 999, 102, 103});
    QCOMPARE(page.objectCount(), 4);
    page.initializePage();
    QTRY_COMPARE(page.statusText(), QStringLiteral("Успешно завершено"));
    for (TYPE_ID uid : {20u, 101u, 102u, 103u})
        QVERIFY(!store->constObject(uid));
    QCOMPARE(page.logText().split(QLatin1Char('\n')),
             (QStringList{QStringLiteral("Удаление Сотрудник101"), QStringLiteral("Сотрудник101 удален"),
                          QStringLiteral("Удаление Сотрудник102"), QStringLiteral("Сотрудник102 удален"),
                          QStringLiteral("Удаление Сотрудник103"), QStringLiteral("Сотрудник103 удален"),
                          QStringLiteral("Удаление Склад"), QStringLiteral("Склад удален")}));
}

QTEST_MAIN(TestUpdateObjectWizard)
#include "tst_updateobjectwizard.moc"
