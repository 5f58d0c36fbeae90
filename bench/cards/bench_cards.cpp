// The card data blocks and the GUI while a card is written. Targets:
// building a block of 64 KiB of templates (either format) takes at most
// 100 us; the CRC runs at 400 MB/s or more; while a template write runs
// on a reader the GUI thread never stalls for more than 16 ms (max_gap_ms,
// the largest gap between the timeouts of a 1 ms timer, minus its period).
#include <benchmark/benchmark.h>

#include <cardblocks_p.h>
#include <usbcardreadermanager.h>

#include <dbparams.h>

#include <simulatedbackend.h>

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

using nivaro::_TEMPLATE_DATA;

namespace {

constexpr int BlockBytes = 64 * 1024;
constexpr int TemplateBytes = 2048;

QList<_TEMPLATE_DATA> templates(int total)
{
    static const int types[] = {_TEMPLATE_DATA::Fingerprint, _TEMPLATE_DATA::PalmVein, _TEMPLATE_DATA::Face,
                                _TEMPLATE_DATA::FingerVein};
    QList<_TEMPLATE_DATA> list;
    for (int i = 0; i * TemplateBytes < total; ++i) {
        _TEMPLATE_DATA t;
        t.type = types[i % 4];
        t.data = QByteArray(TemplateBytes, char(i));
        list.append(t);
    }
    return list;
}

void BM_PrepareData(benchmark::State &state)
{
    QList<QByteArray> records;
    for (const _TEMPLATE_DATA &t : templates(BlockBytes))
        records.append(t.data);
    for (auto _ : state)
        benchmark::DoNotOptimize(cardblocks::prepareData(1, records));
    state.SetBytesProcessed(int64_t(state.iterations()) * BlockBytes);
}
BENCHMARK(BM_PrepareData)->Unit(benchmark::kMicrosecond);

void BM_PrepareData_v2(benchmark::State &state)
{
    const QList<_TEMPLATE_DATA> list = templates(BlockBytes);
    for (auto _ : state)
        benchmark::DoNotOptimize(cardblocks::prepareData_v2(list, 0x04A1B2C3D4E5F6, QByteArray("extra")));
    state.SetBytesProcessed(int64_t(state.iterations()) * BlockBytes);
}
BENCHMARK(BM_PrepareData_v2)->Unit(benchmark::kMicrosecond);

void BM_Crc16Modbus(benchmark::State &state)
{
    QByteArray bytes(int(state.range(0)), '\0');
    for (int i = 0; i < bytes.size(); ++i)
        bytes[i] = char(i * 131);
    for (auto _ : state)
        benchmark::DoNotOptimize(cardblocks::crc16Modbus(bytes));
    state.SetBytesProcessed(int64_t(state.iterations()) * bytes.size());
}
BENCHMARK(BM_Crc16Modbus)->Arg(BlockBytes)->Arg(1 << 20);

// A version-2 write of 4 KiB of templates to a DESFire card whose frames
// take 5 ms each, as on a real reader, with the GUI's event loop running.
void BM_GuiStallDuringWrite(benchmark::State &state)
{
    auto backend = std::make_shared<nvsmartcard::SimulatedBackend>();
    const int reader = backend->addReader(QStringLiteral("ACR122U"), db::devices::cardreader::SMARTCARD);
    backend->setChunkDelay(5);
    nvsmartcard::setDefaultBackend(backend);
    const QList<_TEMPLATE_DATA> list = templates(4096);
    double worstGap = 0;
    for (auto _ : state) {
        backend->putCard(reader, nvsmartcard::VirtualCard::desfire(QByteArray::fromHex("04A1B2C3D4E5F6"), 8));
        USBCardReaderManager manager;
        QEventLoop loop;
        QObject::connect(&manager, &USBCardReaderManager::finished, &loop, &QEventLoop::quit);
        QElapsedTimer clock;
        qint64 last = 0;
        qint64 gap = 0;
        QTimer timer;
        timer.setTimerType(Qt::PreciseTimer);
        timer.setInterval(1);
        QObject::connect(&timer, &QTimer::timeout, [&] {
            const qint64 now = clock.nsecsElapsed();
            gap = std::max(gap, now - last);
            last = now;
        });
        clock.start();
        timer.start();
        if (manager.writeWorkerTemplates_v2(quint32(reader), list, QByteArray()) == 0) {
            state.SkipWithError("the write did not start");
            break;
        }
        loop.exec();
        timer.stop();
        worstGap = std::max(worstGap, double(gap) / 1e6 - 1.0);
        backend->takeCard(reader);
    }
    nvsmartcard::setDefaultBackend(nullptr);
    state.counters["max_gap_ms"] = worstGap;
}
BENCHMARK(BM_GuiStallDuringWrite)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();

} // namespace
