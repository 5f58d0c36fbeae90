#include <baseprogresswizardpage.h>
#include <changesummarywizardpage.h>
#include <deletelistwizardpage.h>
#include <deleteobjectwizard.h>
#include <deleteprogresswizardpage.h>
#include <departmentselectiondialog.h>
#include <dismissalwizard.h>
#include <dismissprogresswizardpage.h>
#include <transferprogresswizardpages.h>
#include <transferwizard.h>
#include <updateobjectwizard.h>

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <objecttypes.h>
#include <taskexecutor.h>

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

using namespace nivaro;
using Uids = QList<TYPE_ID>;

// The transfer, dismissal and delete wizards end to end through the task
// executor and a store file, what each refuses before a run, and the retry
// of a failed run.
class TestOrgWizards : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void transferRunsIntoTheStore_data();
    void transferRunsIntoTheStore();
    void transferRefusesBeforeTheRun_data();
    void transferRefusesBeforeTheRun();
    void chooserRefusesTheMovedDepartment();
    void dismissalNeedsDateAndReason_data();
    void dismissalNeedsDateAndReason();
    void dismissalRunsIntoTheStore();
    void deleteRunsIntoTheStore_data();
    void deleteRunsIntoTheStore();
    void retrySendsTheFailedAgain_data();
    void retrySendsTheFailedAgain();

private:
    void reopen();
    QTemporaryDir m_dir;
    LocalStorage *store = LocalStorage::instance();
    TaskExecutor *executor = nullptr;
    QList<TYPE_ID> executed; // uids of the tasks that reached the executor
};

void TestOrgWizards::init()
{
    QFile::remove(m_dir.filePath(QStringLiteral("s.db")));
    QString error;
    QVERIFY2(store->open(m_dir.filePath(QStringLiteral("s.db")), &error), qPrintable(error));
    // 10 Фирма { 20 Склад {101, 102}, 21 Цех {103, 22 Участок {104}} }; 105 dismissed
    QList<ObjectInfo> org{ObjectInfo(SUBJECT_ROOT_UID, OT_SUBJECT_ROOT, {{db::common::NAME, QStringLiteral("Организация")}})};
    const QList<std::tuple<TYPE_ID, QString, TYPE_ID, QString>> units{
        {10, OT_FIRM, SUBJECT_ROOT_UID, QStringLiteral("Фирма")}, {20, OT_DEPARTMENT, 10, QStringLiteral("Склад")},
        {21, OT_DEPARTMENT, 10, QStringLiteral("Цех")}, {22, OT_DEPARTMENT, 21, QStringLiteral("Участок")}};
    for (const auto &[uid, type, parent, name] : units) {
        ObjectInfo o(uid, type, {{db::common::NAME, name}});
        o.setParent(parent);
        org << o;
    }
    QList<ObjectInfo> people;
    for (const auto &[uid, parent] : QList<QPair<TYPE_ID, TYPE_ID>>{{101, 20}, {102, 20}, {103, 21}, {104, 22}}) {
        ObjectInfo w(uid, OT_WORKER, {{db::worker::LAST_NAME, QStringLiteral("Сотрудник%1").arg(uid)}});
        w.setParent(parent);
        people << w;
    }
    ObjectInfo fired(105, OT_WORKER, {{db::worker::LAST_NAME, QStringLiteral("Уволенный")}, {db::common::OBJECTSTATE, db::common::STATE_FIRED}});
    fired.setParent(20);
    QVERIFY(store->putObjects(ORGSTRUCTURE_DATANAME, org));
    QVERIFY(store->putObjects(SUBJECT_DATANAME, people));
    QVERIFY(store->putObjects(SUBJECT_FIRED_DATANAME, {fired}));
    executor = new TaskExecutor(store);
    executed.clear();
    connect(executor, &TaskExecutor::taskFinished, this, [this](const TaskInfo &t) { executed << t.uid; });
}

void TestOrgWizards::cleanup()
{
    // Wizards closed by a test are deleted later; no event loop of a test
    // function may have got round to it.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    delete executor;
    store->close();
    const QWidgetList windows = QApplication::topLevelWidgets();
    QVERIFY(std::none_of(windows.cbegin(), windows.cend(), [](QWidget *w) { return w->isVisible(); }));
}

// What the executor wrote must be in the file, not only in memory.
void TestOrgWizards::reopen()
{
    store->close();
    QVERIFY(store->open(m_dir.filePath(QStringLiteral("s.db"))));
}

void TestOrgWizards::transferRunsIntoTheStore_data()
{
    QTest::addColumn<Uids>("uids");
    QTest::addColumn<TYPE_ID>("target");
    QTest::addColumn<Uids>("moved");
    QTest::addColumn<QString>("oldParent");
    QTest::newRow("employees") << Uids{101, 103} << TYPE_ID(22) << Uids{101, 103} << QStringLiteral("Склад");
    // One already there is no task and no line of the summary.
    QTest::newRow("one already there") << Uids{104, 102} << TYPE_ID(20) << Uids{104} << QStringLiteral("Участок");
    QTest::newRow("a department with its people") << Uids{22} << TYPE_ID(20) << Uids{22} << QStringLiteral("Цех");
    QTest::newRow("a department to the firm") << Uids{22} << TYPE_ID(10) << Uids{22} << QStringLiteral("Цех");
}

void TestOrgWizards::transferRunsIntoTheStore()
{
    QFETCH(Uids, uids);
    QFETCH(TYPE_ID, target);
    QFETCH(Uids, moved);
    QFETCH(QString, oldParent);
    QPointer<TransferWizard> wizard = new TransferWizard;
    connect(wizard, &TransferWizard::appendTask, executor, &TaskExecutor::execute);
    wizard->setUids(uids);
    QVERIFY(wizard->refusal().isEmpty());
    wizard->show();
    wizard->next();
    QCOMPARE(wizard->currentId(), int(TransferWizard::TargetPage));
    QVERIFY(!wizard->button(QWizard::NextButton)->isEnabled());
    wizard->setTarget(target);
    QVERIFY(wizard->button(QWizard::NextButton)->isEnabled());
    wizard->next();
    QCOMPARE(wizard->currentId(), int(TransferWizard::SummaryPage));
    const QList<ChangeSummaryWizardPage::Change> changes = wizard->summaryPage()->changes();
    QCOMPARE(changes.size(), moved.size());
    QCOMPARE(changes.constFirst().action, QStringLiteral("Перевод"));
    QCOMPARE(changes.constFirst().fields.constFirst().name, QStringLiteral("Подразделение"));
    QCOMPARE(changes.constFirst().fields.constFirst().oldValue, oldParent);
    QCOMPARE(changes.constFirst().fields.constFirst().newValue, store->object(target).parameter(db::common::NAME));
    QTest::qWait(0);
    QVERIFY(executed.isEmpty()); // nothing runs before the summary is passed
    wizard->next();
    QTRY_VERIFY(wizard->progressPage()->isComplete());
    QVERIFY(!wizard->progressPage()->isFailed());
    QCOMPARE(executed, moved);
    QCOMPARE(wizard->progressPage()->inherits("TransferDepartmentWizardProgressPage"), wizard->movesDepartments());
    wizard->close();
    QTRY_VERIFY(wizard.isNull());
    reopen();
    for (TYPE_ID uid : uids)
        QCOMPARE(store->object(uid).parent(), target);
    // Whoever was in a moved department went with it.
    QCOMPARE(store->object(104).parent(), uids.contains(104) ? target : TYPE_ID(22));
}

void TestOrgWizards::transferRefusesBeforeTheRun_data()
{
    QTest::addColumn<Uids>("uids");
    QTest::addColumn<QString>("listRefusal");
    QTest::addColumn<TYPE_ID>("target");
    QTest::addColumn<QString>("targetRefusal");
    QTest::newRow("people and departments") << Uids{101, 20} << QStringLiteral("по отдельности") << TYPE_ID(0) << QString();
    QTest::newRow("a firm") << Uids{10} << QStringLiteral("Фирма нельзя перевести") << TYPE_ID(0) << QString();
    QTest::newRow("nothing") << Uids{999} << QStringLiteral("Не выбраны") << TYPE_ID(0) << QString();
    QTest::newRow("into itself") << Uids{21} << QString() << TYPE_ID(21) << QStringLiteral("само себя");
    QTest::newRow("below itself") << Uids{20, 21} << QString() << TYPE_ID(22) << QStringLiteral("Цех нельзя перевести");
    QTest::newRow("already all there") << Uids{101, 102} << QString() << TYPE_ID(20) << QStringLiteral("переводить нечего");
    QTest::newRow("an employee as target") << Uids{101} << QString() << TYPE_ID(103) << QStringLiteral("Выберите");
}

void TestOrgWizards::transferRefusesBeforeTheRun()
{
    QFETCH(Uids, uids);
    QFETCH(QString, listRefusal);
    QFETCH(TYPE_ID, target);
    QFETCH(QString, targetRefusal);
    TransferWizard wizard;
    if (uids.contains(999))
        QTest::ignoreMessage(QtDebugMsg, QRegularExpression(QStringLiteral("999 is not in the store")));
    wizard.setUids(uids);
    QCOMPARE(wizard.refusal().isEmpty(), listRefusal.isEmpty());
    QVERIFY2(wizard.refusal().contains(listRefusal), qPrintable(wizard.refusal()));
    QCOMPARE(wizard.listPage()->notice(), wizard.refusal());
    QCOMPARE(wizard.listPage()->isComplete(), listRefusal.isEmpty());
    if (!listRefusal.isEmpty())
        return;
    QTest::ignoreMessage(QtDebugMsg, QRegularExpression(QStringLiteral("transfer: target \\d+ refused")));
    wizard.setTarget(target);
    QVERIFY2(wizard.targetRefusal().contains(targetRefusal), qPrintable(wizard.targetRefusal()));
    QVERIFY(!wizard.page(TransferWizard::TargetPage)->isComplete());
    QCOMPARE(wizard.page(TransferWizard::TargetPage)->findChild<QLabel *>(QStringLiteral("lbRefusal"))->text(),
             wizard.targetRefusal());
}

void TestOrgWizards::chooserRefusesTheMovedDepartment()
{
    TransferWizard wizard;
    wizard.setUids({21});
    QString refusal;
    QTimer::singleShot(0, this, [&refusal] {
        auto *dialog = qobject_cast<DepartmentSelectionDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        dialog->setSelectedUids({22});
        refusal = dialog->refusal();
        dialog->setSelectedUids({20});
        dialog->accept();
    });
    wizard.page(TransferWizard::TargetPage)->findChild<QPushButton *>(QStringLiteral("btnChooseTarget"))->click();
    QVERIFY2(refusal.contains(QStringLiteral("«Участок»")), qPrintable(refusal));
    QCOMPARE(wizard.target(), TYPE_ID(20));
    QVERIFY(wizard.targetRefusal().isEmpty());
}

void TestOrgWizards::dismissalNeedsDateAndReason_data()
{
    QTest::addColumn<QDate>("date");
    QTest::addColumn<QString>("reason");
    QTest::addColumn<bool>("complete");
    QTest::newRow("today, no reason") << QDate::currentDate() << QString() << false;
    QTest::newRow("blank reason") << QDate::currentDate() << QStringLiteral(" \t ") << false;
    QTest::newRow("no date") << QDate() << QStringLiteral("Сокращение") << false;
    QTest::newRow("both") << QDate(2026, 3, 31) << QStringLiteral("Сокращение") << true;
}

void TestOrgWizards::dismissalNeedsDateAndReason()
{
    QFETCH(QDate, date);
    QFETCH(QString, reason);
    QFETCH(bool, complete);
    DismissalWizard wizard;
    QCOMPARE(wizard.dismissDate(), QDate::currentDate());
    wizard.setDismissDate(date);
    wizard.setReason(reason);
    QCOMPARE(wizard.page(DismissalWizard::ParametersPage)->isComplete(), complete);
}

void TestOrgWizards::dismissalRunsIntoTheStore()
{
    QPointer<DismissalWizard> wizard = new DismissalWizard;
    QList<TaskInfo> sent;
    connect(wizard, &DismissalWizard::appendTask, this, [&sent](const TaskInfo &t) { sent << t; });
    connect(wizard, &DismissalWizard::appendTask, executor, &TaskExecutor::execute);
    wizard->setUids({105, 101, 20, 103});
    QCOMPARE(wizard->uids(), (Uids{101, 103}));
    QVERIFY2(wizard->refusal().contains(QStringLiteral("Уволенный: уже уволен")), qPrintable(wizard->refusal()));
    QVERIFY(wizard->refusal().contains(QStringLiteral("Склад: не сотрудник")));
    wizard->show();
    wizard->next();
    QVERIFY(!wizard->button(QWizard::NextButton)->isEnabled()); // the reason is still missing
    wizard->setDismissDate(QDate(2026, 3, 31));
    wizard->setReason(QStringLiteral("  По собственному желанию\n"));
    wizard->next();
    QCOMPARE(wizard->summaryPage()->summaryText(),
             QStringLiteral("Увольнение: Сотрудник101\n  Состояние: Работает -> Уволен\n  Дата увольнения:  -> 31.03.2026\n"
                            "  Причина увольнения:  -> По собственному желанию\n"
                            "Увольнение: Сотрудник103\n  Состояние: Работает -> Уволен\n  Дата увольнения:  -> 31.03.2026\n"
                            "  Причина увольнения:  -> По собственному желанию"));
    wizard->next();
    QTRY_VERIFY(wizard->progressPage()->isComplete());
    QCOMPARE(wizard->progressPage()->statusText(), QStringLiteral("Успешно завершено"));
    QCOMPARE(sent.size(), 2);
    QCOMPARE(sent.constFirst().command, QStringLiteral("dismiss_object"));
    QCOMPARE(sent.constFirst().params.value(QStringLiteral("date")).toString(), QStringLiteral("2026-03-31"));
    QCOMPARE(sent.constFirst().params.value(QStringLiteral("reason")).toString(), QStringLiteral("По собственному желанию"));
    wizard->close();
    reopen();
    for (TYPE_ID uid : {101u, 103u}) {
        const ObjectInfo *fired = store->constObject(uid, SUBJECT_FIRED_DATANAME);
        QVERIFY(fired);
        QCOMPARE(fired->parameter(db::worker::DISMISS_DATE), QStringLiteral("2026-03-31"));
        QCOMPARE(fired->parameter(db::worker::DISMISS_REASON), QStringLiteral("По собственному желанию"));
    }
    QVERIFY(store->constObject(102, SUBJECT_DATANAME));
}

void TestOrgWizards::deleteRunsIntoTheStore_data()
{
    QTest::addColumn<Uids>("uids");
    QTest::addColumn<Uids>("deleted");
    QTest::addColumn<QString>("refusal");
    QTest::newRow("an employee") << Uids{104} << Uids{104} << QString();
    QTest::newRow("a department with its people") << Uids{22, 104} << Uids{104, 22} << QString();
    // 21 keeps 22 and its member, so it stays; 103 still goes.
    QTest::newRow("a department with someone left") << Uids{21, 103} << Uids{103} << QStringLiteral("«Цех»: внутри остаются");
    QTest::newRow("only a department that is not empty") << Uids{20} << Uids{} << QStringLiteral("Нечего удалять");
    QTest::newRow("the whole firm") << Uids{10, 20, 21, 22, 101, 102, 103, 104, 105}
                                    << Uids{104, 22, 101, 102, 103, 105, 20, 21, 10} << QString();
    // A dismissed employee still belongs to the department.
    QTest::newRow("a department keeping a dismissed one") << Uids{20, 101, 102} << Uids{101, 102}
                                                          << QStringLiteral("«Склад»: внутри остаются");
    // One left out keeps whatever holds it too.
    QTest::newRow("a chain held by one member") << Uids{10, 21, 22} << Uids{} << QStringLiteral("«Фирма»: внутри остаются");
    QTest::newRow("the organisation itself") << Uids{SUBJECT_ROOT_UID, 104} << Uids{104}
                                             << QStringLiteral("удаляет только сотрудников");
}

void TestOrgWizards::deleteRunsIntoTheStore()
{
    QFETCH(Uids, uids);
    QFETCH(Uids, deleted);
    QFETCH(QString, refusal);
    QPointer<DeleteObjectWizard> wizard = new DeleteObjectWizard;
    connect(wizard, &DeleteObjectWizard::appendTask, executor, &TaskExecutor::execute);
    wizard->setUids(uids);
    QVERIFY2(wizard->refusal().contains(refusal), qPrintable(wizard->refusal()));
    QVERIFY2(wizard->refusal().isEmpty() == refusal.isEmpty(), qPrintable(wizard->refusal()));
    QCOMPARE(wizard->uids(), deleted);
    QCOMPARE(wizard->listPage()->notice(), wizard->refusal());
    wizard->show();
    QCOMPARE(wizard->button(QWizard::NextButton)->isEnabled(), !deleted.isEmpty());
    if (deleted.isEmpty()) {
        wizard->close();
        return;
    }
    wizard->next();
    QCOMPARE(wizard->summaryPage()->changes().size(), deleted.size());
    QCOMPARE(wizard->summaryPage()->changes().constFirst().action, QStringLiteral("Удаление"));
    wizard->next();
    QTRY_VERIFY(wizard->progressPage()->isComplete());
    QCOMPARE(wizard->progressPage()->statusText(), QStringLiteral("Успешно завершено"));
    QCOMPARE(executed, deleted);
    wizard->close();
    reopen();
    for (TYPE_ID uid : {10u, 20u, 21u, 22u, 101u, 102u, 103u, 104u, 105u})
        QCOMPARE(store->constObject(uid) == nullptr, deleted.contains(uid));
}

void TestOrgWizards::retrySendsTheFailedAgain_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<Uids>("retried");
    // Pages that stop at a failure send it again with what it kept back;
    // the continue policy sent the rest already.
    QTest::newRow("update page") << QStringLiteral("update") << Uids{102, 103};
    QTest::newRow("transfer page") << QStringLiteral("transfer") << Uids{102, 103};
    QTest::newRow("base page, stop") << QStringLiteral("stop") << Uids{102, 103};
    QTest::newRow("base page, continue") << QStringLiteral("continue") << Uids{102};
}

void TestOrgWizards::retrySendsTheFailedAgain()
{
    QFETCH(QString, page);
    QFETCH(Uids, retried);
    // 102 goes from the store once 101 is done, behind the page's back.
    const ObjectInfo missing = store->object(102);
    connect(executor, &TaskExecutor::taskFinished, this, [this](const TaskInfo &t) {
        if (t.uid == 101 && executed.size() == 1)
            QVERIFY(store->removeObjects({102}));
    });
    QScopedPointer<QWizard> wizard;
    QWizardPage *progress = nullptr;
    std::function<bool()> ended;
    if (page == QLatin1String("update")) {
        auto *w = new UpdateObjectWizard;
        connect(w, &UpdateObjectWizard::appendTask, executor, &TaskExecutor::execute);
        w->setUids({101, 102, 103});
        w->addUpdateParameter(db::worker::LOCKED, QStringLiteral("true"));
        wizard.reset(w);
        progress = w->progressPage();
        ended = [p = w->progressPage()] { return !p->statusText().isEmpty(); };
    } else if (page == QLatin1String("transfer")) {
        auto *w = new TransferWizard;
        connect(w, &TransferWizard::appendTask, executor, &TaskExecutor::execute);
        w->setUids({101, 102, 103});
        w->setTarget(22);
        wizard.reset(w);
        progress = w->progressPage();
        ended = [p = w->progressPage()] { return p->isComplete(); };
    } else {
        wizard.reset(new QWizard);
        wizard->addPage(new QWizardPage);
        auto *p = new BaseProgressWizardPage;
        p->setErrorHandlingPolicy(page == QLatin1String("stop") ? BaseProgressWizardPage::StopOnFailure
                                                                : BaseProgressWizardPage::ContinueOnFailure);
        connect(p, &BaseProgressWizardPage::executeTask, executor, &TaskExecutor::execute);
        for (TYPE_ID uid : {101u, 102u, 103u}) {
            TaskInfo t;
            t.id = TaskInfo::newId();
            t.uid = uid;
            t.command = QStringLiteral("save_object");
            t.params.insert(QStringLiteral("object_type"), OT_WORKER);
            t.params.insert(QStringLiteral("property-") + db::worker::LOCKED, QStringLiteral("true"));
            t.slot = QStringLiteral("objectUpdated");
            p->addTask(t);
        }
        wizard->addPage(p);
        progress = p;
        ended = [p] { return p->isComplete(); };
    }
    wizard->setAttribute(Qt::WA_DeleteOnClose, false);
    wizard->show();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("executor: task failed")));
    while (wizard->currentPage() != progress)
        wizard->next();
    QTRY_VERIFY(ended() && executor->pendingCount() == 0);
    auto *retry = progress->findChild<QPushButton *>(QStringLiteral("btnRetry"));
    QVERIFY(retry);
    QCOMPARE(retry->text(), QStringLiteral("Повторить неудачные"));
    QVERIFY(!retry->isHidden());
    const int before = executed.size();
    QVERIFY(store->putObjects(SUBJECT_DATANAME, {missing}));
    retry->click();
    QVERIFY(retry->isHidden());
    QTRY_VERIFY(ended() && executor->pendingCount() == 0);
    QCOMPARE(executed.mid(before), retried);
    QVERIFY(retry->isHidden()); // nothing failed the second time
}

QTEST_MAIN(TestOrgWizards)
#include "tst_orgwizards.moc"
