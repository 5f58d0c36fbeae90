// The wizards' progress pages over long runs. Targets: a progress page
// running 10,000 tasks against an executor that answers at once costs at
// most 100 us per task in all, log included, and answered from the event
// loop at most a quarter of what a log costs that paints every line
// (of_plain <= 0.25); the update wizard over 10,000 employees with the real
// executor and store file finishes in at most 15 s.
#include "benchdata.h"

#include <benchmark/benchmark.h>

#include <baseprogresswizardpage.h>
#include <updateobjectwizard.h>

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <taskexecutor.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QHash>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <QWizard>

using namespace nivaro;

namespace {

QString logLine(int i)
{
    return QStringLiteral("Сохранение объекта %1").arg(i);
}

// What the page's log would cost if it painted every line: append the
// paragraph, scroll it into view, paint the view there and then.
double plainLogMicrosPerLine(int lines)
{
    static QHash<int, double> measured;
    if (!measured.contains(lines)) {
        QTextBrowser view;
        view.resize(537, 300);
        view.show();
        QCoreApplication::processEvents();
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < lines; ++i) {
            view.append(logLine(i));
            view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum());
            view.repaint();
        }
        measured.insert(lines, double(timer.nsecsElapsed()) / 1e3 / lines);
    }
    return measured.value(lines);
}

void BM_PlainLogPaintedPerLine(benchmark::State &state)
{
    for (auto _ : state)
        state.counters["us_per_line"] = plainLogMicrosPerLine(int(state.range(0)));
}
BENCHMARK(BM_PlainLogPaintedPerLine)->Arg(10000)->Unit(benchmark::kMillisecond)->Iterations(1);

// The page shown in a wizard, as on screen, so that the log lays out and
// paints; the run starts as the wizard turns to it. The executor answers
// inside the signal (0) or, as the real one does, from the event loop (1),
// which gives the page a chance to repaint between tasks. The clock stops
// with the last reply; the one paint the page still owes comes later.
void BM_ProgressPageTasks(benchmark::State &state)
{
    const int tasks = int(state.range(0));
    const bool queued = state.range(1) != 0;
    double seconds = 0;
    for (auto _ : state) {
        state.PauseTiming();
        QWizard wizard;
        wizard.addPage(new QWizardPage);
        auto *page = new BaseProgressWizardPage;
        wizard.addPage(page);
        QObject::connect(page, &BaseProgressWizardPage::executeTask, page, [queued](const TaskInfo &t) {
            QMetaObject::invokeMethod(t.widget.data(), "objectUpdated", queued ? Qt::QueuedConnection : Qt::DirectConnection,
                                      Q_ARG(unsigned int, 1));
        });
        for (int i = 0; i < tasks; ++i) {
            TaskInfo t;
            t.id = TaskInfo::newId();
            t.command = QStringLiteral("save_object");
            t.startMessage = logLine(i);
            t.slot = QStringLiteral("objectUpdated");
            page->addTask(t);
        }
        wizard.show();
        QCoreApplication::processEvents();
        state.ResumeTiming();
        QElapsedTimer timer;
        timer.start();
        wizard.next();
        while (!page->isComplete())
            QCoreApplication::processEvents();
        seconds += double(timer.nsecsElapsed()) / 1e9;
        state.PauseTiming();
        state.counters["log_lines"] = double(page->logText().count(QLatin1Char('\n')) + 1);
        state.ResumeTiming();
    }
    const double perTask = seconds * 1e6 / (double(tasks) * double(state.iterations()));
    state.counters["us_per_task"] = perTask;
    state.counters["of_plain"] = perTask / plainLogMicrosPerLine(tasks);
}
BENCHMARK(BM_ProgressPageTasks)->Args({10000, 0})->Args({10000, 1})->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_UpdateWizardEmployees(benchmark::State &state)
{
    const int employees = int(state.range(0));
    QTemporaryDir dir;
    LocalStorage *store = LocalStorage::instance();
    QString error;
    if (!store->open(dir.filePath(QStringLiteral("update.store")), &error))
        state.SkipWithError(qPrintable(error));
    QRandomGenerator rng(5);
    QList<ObjectInfo> workers;
    QList<unsigned int> uids;
    for (int i = 0; i < employees; ++i) {
        workers << benchdata::employee(rng, 1000 + TYPE_ID(i), 20, i);
        uids << 1000 + unsigned(i);
    }
    if (!store->putObjects(SUBJECT_DATANAME, workers, &error))
        state.SkipWithError(qPrintable(error));
    TaskExecutor executor(store);
    for (auto _ : state) {
        auto *wizard = new UpdateObjectWizard;
        QObject::connect(wizard, &UpdateObjectWizard::appendTask, &executor, &TaskExecutor::execute);
        wizard->setUids(uids);
        wizard->addUpdateParameter(db::worker::LOCKED, QStringLiteral("true"));
        wizard->show();
        wizard->next();
        while (wizard->progressPage()->statusText().isEmpty())
            QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
        delete wizard;
    }
    store->close();
}
BENCHMARK(BM_UpdateWizardEmployees)->Arg(10000)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace
