// The employee property view with large selections. Targets: setCurrent
// with 10,000 employees <= 20 ms and with one <= 0.5 ms; applyChanges on
// 10,000 employees with one edited field <= 20 ms; constructing a view
// <= 15 ms the first time in a process (form and country list) and <= 3 ms
// later.
#include "benchdata.h"

#include <benchmark/benchmark.h>

#include <workerpropertyview.h>

#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

#include <chrono>

using namespace nivaro;

namespace {

NVHash<unsigned int, ObjectInfo> selection(int count, TYPE_ID firstUid = 1000)
{
    QRandomGenerator rng(firstUid);
    NVHash<unsigned int, ObjectInfo> objects;
    for (int i = 0; i < count; ++i) {
        const TYPE_ID uid = firstUid + TYPE_ID(i);
        objects.insert(uid, benchdata::employee(rng, uid, 20, i));
    }
    return objects;
}

// Registered first and run once: nothing in the process has built a view
// yet. Qt's own first-widget costs (fonts, style) are paid beforehand, so
// that the figure is the view's: its form and the country list.
void BM_ConstructFirst(benchmark::State &state)
{
    {
        QWidget warm;
        QLineEdit edit(&warm);
        QComboBox combo(&warm);
        QDateEdit date(&warm);
        QPlainTextEdit text(&warm);
        QPushButton button(QStringLiteral("Печать"), &warm);
        warm.ensurePolished();
        edit.sizeHint();
    }
    for (auto _ : state) {
        WorkerPropertyView view;
        benchmark::DoNotOptimize(&view);
    }
}
BENCHMARK(BM_ConstructFirst)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_ConstructLater(benchmark::State &state)
{
    for (auto _ : state) {
        WorkerPropertyView view;
        benchmark::DoNotOptimize(&view);
    }
}
BENCHMARK(BM_ConstructLater)->Unit(benchmark::kMillisecond);

// Alternates between two different selections, as clicking through the
// tree does, so that no control is left with the text it already shows.
void BM_SetCurrent(benchmark::State &state)
{
    const NVHash<unsigned int, ObjectInfo> selections[2] = {selection(int(state.range(0)), 1000),
                                                            selection(int(state.range(0)), 500000)};
    WorkerPropertyView view;
    int i = 0;
    for (auto _ : state)
        view.setCurrent(selections[++i & 1]);
}
BENCHMARK(BM_SetCurrent)->Arg(1)->Arg(10000)->Unit(benchmark::kMillisecond);

void BM_ApplyChangesOneField(benchmark::State &state)
{
    const NVHash<unsigned int, ObjectInfo> objects = selection(int(state.range(0)));
    WorkerPropertyView view;
    view.setCurrent(objects);
    auto *docType = view.findChild<QLineEdit *>(QStringLiteral("leDocType"));
    docType->setText(QStringLiteral("Вид на жительство")); // as typing would
    int tasks = 0;
    QObject::connect(&view, &PropertyBaseWidget::appendTask, [&tasks](const TaskInfo &) { ++tasks; });
    for (auto _ : state)
        view.applyChanges();
    state.counters["tasks_per_apply"] = double(tasks) / double(state.iterations());
}
BENCHMARK(BM_ApplyChangesOneField)->Arg(10000)->Unit(benchmark::kMillisecond);

} // namespace
