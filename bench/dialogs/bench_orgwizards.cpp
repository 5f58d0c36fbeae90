// The transfer wizard moving 10,000 employees, end to end: the wizard's
// pages (list, target, the summary of 10,000 changes), then the run through
// the executor into the store file. Beside it, in the same program and on
// the same store, the update wizard writing one parameter to the same
// 10,000 employees, which is the figure a transfer should stay close to:
// both send one save task per employee.
#include "benchdata.h"

#include <benchmark/benchmark.h>

#include <transferprogresswizardpages.h>
#include <transferwizard.h>
#include <updateobjectwizard.h>

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <objecttypes.h>
#include <taskexecutor.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

using namespace nivaro;

namespace {

constexpr int Employees = 10000;

// One store for both benchmarks: 10,000 employees in department 20, an
// empty department 21 beside it.
class Organisation
{
public:
    Organisation()
    {
        LocalStorage *store = LocalStorage::instance();
        if (!store->open(m_dir.filePath(QStringLiteral("org.store")), &error))
            return;
        QList<ObjectInfo> org{ObjectInfo(SUBJECT_ROOT_UID, OT_SUBJECT_ROOT, {{db::common::NAME, QStringLiteral("Организация")}})};
        ObjectInfo firm(10, OT_FIRM, {{db::common::NAME, QStringLiteral("Фирма")}});
        firm.setParent(SUBJECT_ROOT_UID);
        org << firm;
        for (TYPE_ID uid : {20u, 21u}) {
            ObjectInfo dep(uid, OT_DEPARTMENT, {{db::common::NAME, QStringLiteral("Отдел %1").arg(uid)}});
            dep.setParent(10);
            org << dep;
        }
        QRandomGenerator rng(5);
        QList<ObjectInfo> workers;
        for (int i = 0; i < Employees; ++i) {
            workers << benchdata::employee(rng, 1000 + TYPE_ID(i), 20, i);
            uids << 1000 + TYPE_ID(i);
        }
        if (store->putObjects(ORGSTRUCTURE_DATANAME, org, &error) && store->putObjects(SUBJECT_DATANAME, workers, &error))
            error.clear();
    }
    ~Organisation() { LocalStorage::instance()->close(); }

    QString error;
    QList<TYPE_ID> uids;

private:
    QTemporaryDir m_dir;
};

Organisation &organisation()
{
    static Organisation org;
    return org;
}

void waitFor(const std::function<bool()> &done)
{
    while (!done())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
}

void BM_TransferWizardEmployees(benchmark::State &state)
{
    Organisation &org = organisation();
    if (!org.error.isEmpty())
        state.SkipWithError(qPrintable(org.error));
    TaskExecutor executor(LocalStorage::instance());
    TYPE_ID target = 21;
    bool ok = true;
    for (auto _ : state) {
        auto *wizard = new TransferWizard;
        QObject::connect(wizard, &TransferWizard::appendTask, &executor, &TaskExecutor::execute);
        wizard->setUids(org.uids);
        wizard->show();
        wizard->next();
        wizard->setTarget(target);
        wizard->next(); // the summary
        wizard->next(); // the run
        TransferProgressWizardPage *page = wizard->progressPage();
        waitFor([page] { return page->isComplete(); });
        ok = ok && !page->isFailed() && LocalStorage::instance()->object(org.uids.constLast()).parent() == target;
        delete wizard;
        target = target == 21 ? 20 : 21; // back again next time
    }
    if (!ok)
        state.SkipWithError("the transfer did not reach the store");
    state.counters["employees"] = Employees;
}
BENCHMARK(BM_TransferWizardEmployees)->Unit(benchmark::kMillisecond)->Iterations(2);

void BM_UpdateWizardSameEmployees(benchmark::State &state)
{
    Organisation &org = organisation();
    if (!org.error.isEmpty())
        state.SkipWithError(qPrintable(org.error));
    TaskExecutor executor(LocalStorage::instance());
    bool locked = true;
    for (auto _ : state) {
        auto *wizard = new UpdateObjectWizard;
        QObject::connect(wizard, &UpdateObjectWizard::appendTask, &executor, &TaskExecutor::execute);
        wizard->setUids(org.uids);
        wizard->addUpdateParameter(db::worker::LOCKED, locked ? QStringLiteral("true") : QStringLiteral("false"));
        wizard->show();
        wizard->next();
        UpdateProgressWizardPage *page = wizard->progressPage();
        waitFor([page] { return !page->statusText().isEmpty(); });
        delete wizard;
        locked = !locked;
    }
    state.counters["employees"] = Employees;
}
BENCHMARK(BM_UpdateWizardSameEmployees)->Unit(benchmark::kMillisecond)->Iterations(2);

} // namespace
