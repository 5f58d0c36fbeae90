// The schedule calendar and the absence list. Targets: setInterval over
// 100 years at most 10 ms and 15 MB; indexByDate at most 1 us median on a
// 100-year calendar; every role a delegate reads for one visible year
// (13 rows x 42 cells) at most 2 ms with 50 assignments and 500 absences;
// addReason into a list of 1,000 records at most 100 us median.
#include "benchdata.h"

#include <benchmark/benchmark.h>

#include <workerschedulemodel.h>
#include <workerscheduleproxymodel.h>

#include <localstorage.h>

#include <QRandomGenerator>
#include <QTemporaryDir>

#include <memory>

#include <malloc.h>

using namespace nivaro;

namespace {

const QDate CalendarStart(2000, 1, 1);
const QDate CalendarEnd(2099, 12, 31);

// count periods of 1 to 5 days with gaps between them, from `from` on.
QList<_WORKER_ABSENCE_REASON_RECORD> absences(int count, const QDate &from, QRandomGenerator &rng)
{
    QList<_WORKER_ABSENCE_REASON_RECORD> list;
    QDate day = from;
    for (int i = 0; i < count; ++i) {
        day = day.addDays(1 + rng.bounded(20));
        _WORKER_ABSENCE_REASON_RECORD r;
        r.id = quint32(i);
        r.reason = 500 + rng.bounded(5);
        r.start = QDateTime(day, QTime(0, 0));
        day = day.addDays(rng.bounded(5));
        r.end = QDateTime(day, QTime(23, 59));
        list.append(r);
    }
    return list;
}

std::unique_ptr<WorkerScheduleModel> calendar()
{
    auto model = std::make_unique<WorkerScheduleModel>();
    model->setInterval(CalendarStart, CalendarEnd);
    return model;
}

// Run first with the heap as the C library manages it: the memory of each
// freed calendar goes back to the system and the next one faults it in
// again, which on this virtual machine costs more than the building.
// Then (argument 1) with the heap kept, as a client that opens calendar
// after calendar has it: the model's own cost.
void BM_SetInterval100Years(benchmark::State &state)
{
    if (state.range(0) != 0)
        mallopt(M_TRIM_THRESHOLD, 512 * 1024 * 1024);
    double megabytes = 0;
    for (auto _ : state) {
        const std::size_t before = benchdata::heapInUse();
        auto model = std::make_unique<WorkerScheduleModel>();
        model->setInterval(CalendarStart, CalendarEnd);
        state.PauseTiming();
        megabytes = double(benchdata::heapInUse() - before) / (1024.0 * 1024.0);
        model.reset();
        state.ResumeTiming();
    }
    state.counters["heap_MB"] = megabytes;
}
BENCHMARK(BM_SetInterval100Years)->Arg(0)->Arg(1)->Repetitions(5)->ReportAggregatesOnly(true)->Unit(benchmark::kMillisecond);

// The look-up, and the model search it stands for.
void BM_IndexByDate(benchmark::State &state)
{
    const bool search = state.range(0) != 0;
    auto model = calendar();
    QRandomGenerator rng(3);
    QVector<QDate> dates(1024);
    for (QDate &d : dates)
        d = CalendarStart.addDays(rng.bounded(36500));
    int i = 0;
    for (auto _ : state) {
        const QDate &d = dates[i++ & 1023];
        if (search)
            benchmark::DoNotOptimize(model->match(model->index(0, 0), Qt::UserRole, QDate(d.year(), d.month(), 1), -1,
                                                  Qt::MatchStartsWith | Qt::MatchWrap));
        else
            benchmark::DoNotOptimize(model->indexByDate(d));
    }
}
BENCHMARK(BM_IndexByDate)->Arg(0)->Repetitions(5)->ReportAggregatesOnly(true);
BENCHMARK(BM_IndexByDate)->Arg(1)->Iterations(200);

// What the calendar's delegate and the view ask of each cell of one year.
void BM_VisibleYearRoles(benchmark::State &state)
{
    QTemporaryDir dir;
    LocalStorage::instance()->open(dir.filePath(QStringLiteral("s.db")));
    auto model = calendar();
    QRandomGenerator rng(7);
    for (int i = 0; i < 50; ++i) {
        _WORKER_SCHEDULE_HISTORY_RECORD_V2 a;
        a.scheduleId = 1 + rng.bounded(4);
        a.startDate = CalendarStart.addDays(rng.bounded(36000));
        a.endDate = a.startDate.addDays(rng.bounded(3000));
        model->addSchedule(a);
    }
    for (const auto &r : absences(500, QDate(2020, 1, 1), rng))
        model->addReason(r);
    WorkerScheduleProxyModel proxy;
    proxy.setSourceModel(model.get());
    proxy.setMinimumYear(2024);
    proxy.setMaximumYear(2024);
    const QVector<int> roles{Qt::DisplayRole, Qt::DecorationRole, Qt::FontRole, Qt::TextAlignmentRole, Qt::ForegroundRole,
                             Qt::BackgroundRole, Qt::ToolTipRole, Qt::UserRole, Qt::UserRole + 1, Qt::UserRole + 2, Qt::UserRole + 3};
    for (auto _ : state) {
        for (int row = 0; row < proxy.rowCount(); ++row) {
            for (int column = 0; column < proxy.columnCount(); ++column) {
                const QModelIndex index = proxy.index(row, column);
                benchmark::DoNotOptimize(proxy.flags(index));
                for (int role : roles)
                    benchmark::DoNotOptimize(proxy.data(index, role));
            }
        }
    }
    state.counters["cells"] = double(proxy.rowCount() * proxy.columnCount());
    LocalStorage::instance()->close();
}
BENCHMARK(BM_VisibleYearRoles)->Unit(benchmark::kMillisecond);

// Replacing one period of 1,000: the list stays at 1,000 records.
void BM_AddReason(benchmark::State &state)
{
    auto model = calendar();
    QRandomGenerator rng(11);
    const QList<_WORKER_ABSENCE_REASON_RECORD> list = absences(1000, QDate(2010, 1, 1), rng);
    for (const auto &r : list)
        model->addReason(r);
    int i = 0;
    for (auto _ : state)
        model->addReason(list.at((i++ * 7919) % list.size()));
    if (model->reasons().size() != 1000)
        state.SkipWithError("the list did not stay at 1,000 records");
}
BENCHMARK(BM_AddReason)->Repetitions(5)->ReportAggregatesOnly(true);

} // namespace
