#include <transferprogresswizardpages.h>

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <nvprogressbar.h>
#include <objecttypes.h>
#include <taskexecutor.h>

#include <QTemporaryDir>
#include <QtTest>

using namespace nivaro;

class TestTransferProgressWizardPage : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup() { store->close(); }
    void refusesWhatCannotMove_data();
    void refusesWhatCannotMove();
    void movesEmployeesThroughTheExecutor();
    void firstFailureEndsTheRun();
    void nextTaskGoesOutBeforeCompletenessChanges_data();
    void nextTaskGoesOutBeforeCompletenessChanges();
    void movesADepartmentWithItsPeople();

private:
    QTemporaryDir m_dir;
    LocalStorage *store = LocalStorage::instance();
};

namespace {

NVProgressBar *barOf(QWidget *page)
{
    return page->findChild<NVProgressBar *>(QStringLiteral("progressBar"));
}

QStringList logLines(const TransferProgressWizardPage &page)
{
    return page.logText().split(QLatin1Char('\n'));
}

} // namespace

void TestTransferProgressWizardPage::init()
{
    QFile::remove(m_dir.filePath(QStringLiteral("s.db")));
    QString error;
    QVERIFY2(store->open(m_dir.filePath(QStringLiteral("s.db")), &error), qPrintable(error));
    ObjectInfo root(SUBJECT_ROOT_UID, OT_SUBJECT_ROOT, {{db::common::NAME, QStringLiteral("Организация")}});
    QList<ObjectInfo> org{root};
    // 20 Склад { 22 Охрана }, 21 Цех
    const QList<QPair<TYPE_ID, TYPE_ID>> departments{{20, SUBJECT_ROOT_UID}, {21, SUBJECT_ROOT_UID}, {22, 20}};
    const QStringList names{QStringLiteral("Склад"), QStringLiteral("Цех"), QStringLiteral("Охрана")};
    for (int i = 0; i < departments.size(); ++i) {
        ObjectInfo dep(departments.at(i).first, OT_DEPARTMENT, {{db::common::NAME, names.at(i)}});
        dep.setParent(departments.at(i).second);
        org << dep;
    }
    QList<ObjectInfo> workers;
    for (TYPE_ID uid : {101u, 102u, 103u}) {
        ObjectInfo w(uid, OT_WORKER, {{db::worker::LAST_NAME, QStringLiteral("Сотрудник%1").arg(uid)}});
        w.setParent(uid == 103 ? 22 : 20);
        workers << w;
    }
    QVERIFY(store->putObjects(ORGSTRUCTURE_DATANAME, org));
    QVERIFY(store->putObjects(SUBJECT_DATANAME, workers));
}

void TestTransferProgressWizardPage::refusesWhatCannotMove_data()
{
    QTest::addColumn<bool>("departments");
    QTest::addColumn<QList<TYPE_ID>>("uids");
    QTest::addColumn<TYPE_ID>("target");
    QTest::addColumn<QString>("reason");
    const QList<TYPE_ID> workers{101, 102};
    QTest::newRow("nothing chosen") << false << QList<TYPE_ID>{} << TYPE_ID(21) << QStringLiteral("Не выбраны объекты для перевода");
    QTest::newRow("unknown target") << false << workers << TYPE_ID(999)
                                    << QStringLiteral("Не выбрано подразделение, в которое выполняется перевод");
    QTest::newRow("employee as target") << false << workers << TYPE_ID(103)
                                        << QStringLiteral("Не выбрано подразделение, в которое выполняется перевод");
    QTest::newRow("unknown object") << false << QList<TYPE_ID>{101, 998} << TYPE_ID(21) << QStringLiteral("Объект 998 не найден");
    QTest::newRow("department on the employee page")
        << false << QList<TYPE_ID>{22} << TYPE_ID(21) << QStringLiteral("Охрана не является объектом вида «сотрудник»");
    QTest::newRow("employee on the department page")
        << true << QList<TYPE_ID>{101} << TYPE_ID(21) << QStringLiteral("Сотрудник101 не является объектом вида «подразделение»");
    QTest::newRow("department into itself") << true << QList<TYPE_ID>{20} << TYPE_ID(20) << QStringLiteral("Нельзя перевести Склад в Склад");
    QTest::newRow("department into its own member")
        << true << QList<TYPE_ID>{21, 20} << TYPE_ID(22) << QStringLiteral("Нельзя перевести Склад в Охрана");
}

void TestTransferProgressWizardPage::refusesWhatCannotMove()
{
    QFETCH(bool, departments);
    QFETCH(QList<TYPE_ID>, uids);
    QFETCH(TYPE_ID, target);
    QFETCH(QString, reason);
    QScopedPointer<TransferProgressWizardPage> page;
    if (departments)
        page.reset(new TransferDepartmentWizardProgressPage);
    else
        page.reset(new TransferWorkerWizardProgressPage);
    QSignalSpy sent(page.data(), &TransferProgressWizardPage::executeTask);
    page->setTransfer(uids, target);
    page->initializePage();

    QVERIFY(sent.isEmpty());
    QCOMPARE(logLines(*page), (QStringList{reason, QStringLiteral("Операция отменена")}));
    QCOMPARE(barOf(page.data())->state(), NVProgressBar::Failed);
    QVERIFY(page->isFailed());
    QCOMPARE(store->object(101).parent(), 20u);
    QCOMPARE(store->object(20).parent(), SUBJECT_ROOT_UID);
}

void TestTransferProgressWizardPage::movesEmployeesThroughTheExecutor()
{
    TaskExecutor executor(store);
    TransferWorkerWizardProgressPage page;
    connect(&page, &TransferProgressWizardPage::executeTask, &executor, &TaskExecutor::execute);
    QSignalSpy finished(&page, &TransferProgressWizardPage::tasksFinished);
    page.setTransfer({101, 102, 103}, 21);
    QVERIFY(page.verifyTransferWorker());
    QTest::ignoreMessage(QtDebugMsg, "Add task 101 \"save_object\"");
    QTest::ignoreMessage(QtDebugMsg, "Save 101");
    page.initializePage();
    QVERIFY(!page.isComplete());
    QCOMPARE(barOf(&page)->maximum(), 3);

    QTRY_COMPARE(finished.size(), 1);
    for (TYPE_ID uid : {101u, 102u, 103u})
        QCOMPARE(store->object(uid).parent(), 21u);
    QVERIFY(page.isComplete());
    QVERIFY(!page.isFailed());
    QCOMPARE(barOf(&page)->value(), 3);
    QCOMPARE(barOf(&page)->state(), NVProgressBar::Succeeded);
    QCOMPARE(logLines(page), (QStringList{QStringLiteral("Перевод Сотрудник101 в Цех"), QStringLiteral("Перевод Сотрудник102 в Цех"),
                                          QStringLiteral("Перевод Сотрудник103 в Цех"), QStringLiteral("Перевод сотрудников завершен!")}));
}

void TestTransferProgressWizardPage::firstFailureEndsTheRun()
{
    TransferWorkerWizardProgressPage page;
    QList<TaskInfo> sent;
    connect(&page, &TransferProgressWizardPage::executeTask, this, [&sent](const TaskInfo &t) { sent.append(t); });
    QSignalSpy finished(&page, &TransferProgressWizardPage::tasksFinished);
    page.setTransfer({101, 102, 103}, 21);
    page.initializePage();
    QCOMPARE(sent.size(), 1);

    page.save(101);
    QCOMPARE(sent.size(), 2); // the next goes out only after the reply
    QCOMPARE(finished.size(), 0);
    QVERIFY(!page.isComplete());
    page.save(0);
    QCOMPARE(sent.size(), 2);
    QCOMPARE(page.queuedTaskCount(), 0);
    QVERIFY(page.isFailed());
    QVERIFY(page.isComplete());
    QCOMPARE(finished.size(), 1);
    QCOMPARE(barOf(&page)->value(), 1);
    QCOMPARE(barOf(&page)->state(), NVProgressBar::Failed);
    QCOMPARE(logLines(page).last(), QStringLiteral("Ошибка перевода Сотрудник102"));

    // Late replies after the end change nothing; a failure without a task
    // says so in general terms.
    page.save(103);
    QCOMPARE(barOf(&page)->value(), 1);
    page.save(0);
    QCOMPARE(logLines(page).last(), QStringLiteral("Неизвестная ошибка"));
}

void TestTransferProgressWizardPage::nextTaskGoesOutBeforeCompletenessChanges_data()
{
    QTest::addColumn<bool>("queued");
    QTest::newRow("answered inside the signal") << false;
    QTest::newRow("answered from the event loop") << true;
}

void TestTransferProgressWizardPage::nextTaskGoesOutBeforeCompletenessChanges()
{
    QFETCH(bool, queued);
    TransferWorkerWizardProgressPage page;
    page.setTransfer({101, 102}, 21);
    QStringList order;
    connect(&page, &TransferProgressWizardPage::executeTask, &page, [&](const TaskInfo &t) {
        order << QString::number(t.uid);
        QMetaObject::invokeMethod(t.widget.data(), "save", queued ? Qt::QueuedConnection : Qt::DirectConnection,
                                  Q_ARG(nivaro::TYPE_ID, t.uid));
    });
    connect(&page, &QWizardPage::completeChanged, &page, [&] { order << QStringLiteral("complete"); });
    page.initializePage();
    QTRY_VERIFY(page.isComplete());
    QCOMPARE(order, (QStringList{QStringLiteral("101"), QStringLiteral("102"), QStringLiteral("complete")}));
}

void TestTransferProgressWizardPage::movesADepartmentWithItsPeople()
{
    TaskExecutor executor(store);
    TransferDepartmentWizardProgressPage page;
    connect(&page, &TransferProgressWizardPage::executeTask, &executor, &TaskExecutor::execute);
    page.setTransfer({22}, 21);
    QVERIFY(page.verifyTransferDepartment());
    page.initializePage();
    QTRY_VERIFY(page.isComplete());
    QVERIFY(!page.isFailed());
    QCOMPARE(store->object(22).parent(), 21u);
    QCOMPARE(store->object(103).parent(), 22u);
}

QTEST_MAIN(TestTransferProgressWizardPage)
#include "tst_transferprogresswizardpage.moc"
