// The search index filled as the employee search fills it: surname, first
// name, personnel number and card number of 1,000,000 employees (about four
// million key/uid pairs), all lower-case. Targets: a two-letter prefix
// <= 0.5 ms median, a full key <= 5 us, removing one uid <= 20 us, building
// <= 1.2 us and <= 64 bytes per pair. The Reference* runs measure the plain
// ordered map of hash sets for comparison.
#include "benchdata.h"
#include "referenceindex.h"

#include <benchmark/benchmark.h>

#include <trie>

#include <QMap>
#include <QSet>

#include <chrono>


namespace {

constexpr int Employees = 1000000;

struct Pair
{
    QString key;
    unsigned uid;
};

const std::vector<Pair> &pairs()
{
    static const std::vector<Pair> list = [] {
        std::vector<Pair> out;
        out.reserve(std::size_t(Employees) * 4);
        QRandomGenerator rng(7);
        const QStringList &surnames = benchdata::surnames();
        const QStringList &names = benchdata::firstNames();
        for (int i = 0; i < Employees; ++i) {
            const unsigned uid = 1000 + unsigned(i);
            QString surname = surnames.at(rng.bounded(surnames.size())).toLower();
            if (rng.bounded(100) < 45)
                surname += QStringLiteral("а");
            out.push_back({surname, uid});
            out.push_back({names.at(rng.bounded(names.size())).toLower(), uid});
            out.push_back({QStringLiteral("%1").arg(i + 1, 6, 10, QLatin1Char('0')), uid});
            out.push_back({QString::number(rng.generate64() % 10000000000ull), uid});
        }
        return out;
    }();
    return list;
}

template<typename Index>
void fill(Index &index)
{
    for (const Pair &p : pairs())
        index.add(p.key, p.uid);
}

const TrieStatic<unsigned> &filled()
{
    static const TrieStatic<unsigned> trie = [] {
        TrieStatic<unsigned> t;
        fill(t);
        return t;
    }();
    return trie;
}

const ReferenceIndex &referenceFilled()
{
    static const ReferenceIndex index = [] {
        ReferenceIndex r;
        fill(r);
        return r;
    }();
    return index;
}

template<typename Index>
void buildBenchmark(benchmark::State &state)
{
    pairs(); // generated outside the measurement
    double bytes = 0;
    double seconds = 0;
    for (auto _ : state) {
        const std::size_t before = benchdata::heapInUse();
        const auto start = std::chrono::steady_clock::now();
        Index index;
        fill(index);
        seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        bytes = double(benchdata::heapInUse() - before);
        state.PauseTiming();
        { Index discard = std::move(index); }
        state.ResumeTiming();
    }
    const double n = double(pairs().size());
    state.counters["pairs"] = n;
    state.counters["ns_per_pair"] = seconds * 1e9 / (n * double(state.iterations()));
    state.counters["bytes_per_pair"] = bytes / n;
}

void BM_TrieBuild(benchmark::State &state)
{
    buildBenchmark<TrieStatic<unsigned>>(state);
}
BENCHMARK(BM_TrieBuild)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(3)->ReportAggregatesOnly(true);

void BM_ReferenceBuild(benchmark::State &state)
{
    buildBenchmark<ReferenceIndex>(state);
}
BENCHMARK(BM_ReferenceBuild)->Unit(benchmark::kMillisecond)->Iterations(1);

const QStringList prefixArgs{QStringLiteral("ив"), QStringLiteral("12"), QStringLiteral("000123"),
                             QStringLiteral("иванова"), QStringLiteral("м")};

template<typename Index, typename Result>
void prefixBenchmark(benchmark::State &state, const Index &index)
{
    const QString prefix = prefixArgs.at(int(state.range(0)));
    state.SetLabel(prefix.toStdString());
    Result found;
    for (auto _ : state)
        index.contains(prefix, found);
    state.counters["values"] = double(found.size());
}

void BM_TriePrefix(benchmark::State &state)
{
    prefixBenchmark<TrieStatic<unsigned>, TrieStatic<unsigned>::Set>(state, filled());
}
BENCHMARK(BM_TriePrefix)->DenseRange(0, 4)->Unit(benchmark::kMicrosecond)->Repetitions(5)->ReportAggregatesOnly(true);

void BM_ReferencePrefix(benchmark::State &state)
{
    prefixBenchmark<ReferenceIndex, QSet<unsigned>>(state, referenceFilled());
}
BENCHMARK(BM_ReferencePrefix)->DenseRange(0, 4)->Unit(benchmark::kMicrosecond);

// A different unique key every time: personnel numbers and card numbers.
void BM_TrieFullKey(benchmark::State &state)
{
    const TrieStatic<unsigned> &trie = filled();
    TrieStatic<unsigned>::Set found;
    std::size_t i = 0;
    for (auto _ : state) {
        trie.contains(pairs()[2 + (i * 4 + (i & 1)) % pairs().size()].key, found);
        i += 7919;
    }
}
BENCHMARK(BM_TrieFullKey)->Unit(benchmark::kMicrosecond)->Repetitions(5)->ReportAggregatesOnly(true);

// Withdraws a different employee each time, from lists of thousands of
// values (surnames, first names) and from unique keys alike.
void BM_TrieRemove(benchmark::State &state)
{
    TrieStatic<unsigned> trie = filled();
    trie.add(QStringLiteral("detach"), 0); // the copy is made here, not in the loop
    unsigned uid = 1000;
    for (auto _ : state) {
        trie.remove(uid);
        uid += 13;
        if (uid >= 1000 + Employees)
            uid -= Employees;
    }
}
BENCHMARK(BM_TrieRemove)->Unit(benchmark::kMicrosecond)->Iterations(100000);

} // namespace
