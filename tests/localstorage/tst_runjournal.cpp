#include <localstorage.h>
#include <runjournal.h>

#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <QtTest>

#include <cstdio>

using nivaro::RunJournal;
using nivaro::TYPE_ID;

namespace {

// Set in the environment of the child that plays a client killed mid-run;
// its value is the store file.
const char ChildStoreVariable[] = "NVD_RUNJOURNAL_CHILD_STORE";
const QList<TYPE_ID> RunUids{5, 3, 9, 1};
const QVariantMap RunParameters{{QStringLiteral("key"), QStringLiteral("locked")},
                                {QStringLiteral("value"), QStringLiteral("true")}};

// Begins a run, marks two objects, says so, and waits to be killed.
int runChild(const QString &store)
{
    RunJournal journal;
    QString error;
    if (!journal.open(store, &error))
        return 2;
    const qint64 run = journal.beginRun(QStringLiteral("update"), RunParameters, RunUids, &error);
    if (run == 0 || !journal.markDone(run, 3) || !journal.markDone(run, 1))
        return 3;
    std::printf("ready %lld\n", static_cast<long long>(run));
    std::fflush(stdout);
    for (;;)
        QThread::sleep(1);
}

} // namespace

class TestRunJournal : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void runSurvivesItsClient();
    void liveOwnersRunIsLeftAlone();
    void killedClientsRunIsFound();
    void refusesWithoutAStore();

private:
    QString store() const { return m_dir->filePath(QStringLiteral("journal.store")); }
    QScopedPointer<QTemporaryDir> m_dir;
};

void TestRunJournal::init()
{
    m_dir.reset(new QTemporaryDir);
    QString error;
    // The journal shares the file with the store's own connection.
    QVERIFY2(nivaro::LocalStorage::instance()->open(store(), &error), qPrintable(error));
}

void TestRunJournal::cleanup()
{
    nivaro::LocalStorage::instance()->close();
}

void TestRunJournal::runSurvivesItsClient()
{
    qint64 run = 0;
    {
        RunJournal journal;
        QString error;
        QVERIFY2(journal.open(store(), &error), qPrintable(error));
        run = journal.beginRun(QStringLiteral("update"), RunParameters, RunUids, &error);
        QVERIFY2(run > 0, qPrintable(error));
        QVERIFY(QFileInfo::exists(journal.lockFileName(run)));
        QVERIFY(journal.markDone(run, 3));
        QVERIFY(journal.markDone(run, 3));
        QVERIFY(journal.markDone(run, 1));
        QVERIFY(journal.interruptedRuns(QStringLiteral("update")).isEmpty()); // our own run is running
        const qint64 finished = journal.beginRun(QStringLiteral("update"), {}, {7});
        QVERIFY(finished > run);
        QVERIFY(journal.endRun(finished));
        QVERIFY(!journal.markDone(finished, 7));
    } // the client goes away with the first run open

    RunJournal next;
    QVERIFY(next.open(store()));
    const QList<RunJournal::Run> runs = next.interruptedRuns(QStringLiteral("update"));
    QCOMPARE(runs.size(), 1);
    const RunJournal::Run &found = runs.constFirst();
    QCOMPARE(found.id, run);
    QCOMPARE(found.kind, QStringLiteral("update"));
    QCOMPARE(found.parameters, RunParameters);
    QCOMPARE(found.uids, RunUids);
    QCOMPARE(found.done, (QSet<TYPE_ID>{3, 1}));
    QCOMPARE(found.remaining(), (QList<TYPE_ID>{5, 9}));
    QVERIFY(found.started.isValid());

    // Taken over: a third client does not offer it as well.
    RunJournal third;
    QVERIFY(third.open(store()));
    QVERIFY(third.interruptedRuns(QStringLiteral("update")).isEmpty());
    QVERIFY(!third.endRun(run));

    QVERIFY(next.endRun(run));
    QVERIFY(!QFileInfo::exists(next.lockFileName(run)));
    QVERIFY(third.interruptedRuns(QStringLiteral("update")).isEmpty());
}

void TestRunJournal::liveOwnersRunIsLeftAlone()
{
    RunJournal owner;
    RunJournal other;
    QVERIFY(owner.open(store()));
    QVERIFY(other.open(store()));
    const qint64 run = owner.beginRun(QStringLiteral("update"), RunParameters, RunUids);
    QVERIFY(run > 0);
    QVERIFY(other.interruptedRuns(QStringLiteral("update")).isEmpty());
    QVERIFY(!other.markDone(run, 5));
    owner.close();
    QVERIFY(other.interruptedRuns(QStringLiteral("delete")).isEmpty());
    QCOMPARE(other.interruptedRuns(QStringLiteral("update")).size(), 1);
}

void TestRunJournal::killedClientsRunIsFound()
{
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QString::fromLatin1(ChildStoreVariable), store());
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(QCoreApplication::applicationFilePath(), {});
    QVERIFY(child.waitForStarted());
    QByteArray said;
    while (!said.contains('\n') && child.waitForReadyRead(30000))
        said += child.readAllStandardOutput();
    QVERIFY2(said.startsWith("ready "), said.constData());

    RunJournal journal;
    QVERIFY(journal.open(store()));
    QVERIFY(journal.interruptedRuns(QStringLiteral("update")).isEmpty()); // its client still runs

    child.kill();
    QVERIFY(child.waitForFinished());
    const QList<RunJournal::Run> runs = journal.interruptedRuns(QStringLiteral("update"));
    QCOMPARE(runs.size(), 1);
    QCOMPARE(runs.constFirst().id, said.mid(6).trimmed().toLongLong());
    QCOMPARE(runs.constFirst().uids, RunUids);
    QCOMPARE(runs.constFirst().done, (QSet<TYPE_ID>{3, 1}));
}

void TestRunJournal::refusesWithoutAStore()
{
    RunJournal journal;
    QString error;
    QTest::ignoreMessage(QtDebugMsg, QRegularExpression(QStringLiteral("run journal: cannot open")));
    QVERIFY(!journal.open(m_dir->filePath(QStringLiteral("missing.store")), &error));
    QVERIFY(error.contains(QStringLiteral("Не удалось открыть журнал")));
    QVERIFY(!QFileInfo::exists(m_dir->filePath(QStringLiteral("missing.store"))));
    QCOMPARE(journal.beginRun(QStringLiteral("update"), {}, {1}, &error), 0);
}

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (qEnvironmentVariableIsSet(ChildStoreVariable))
        return runChild(qEnvironmentVariable(ChildStoreVariable));
    TestRunJournal test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_runjournal.moc"
