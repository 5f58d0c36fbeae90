// A DESFire EV1 8K card on the rig, end to end through the card reader
// manager: run under scripts/pcsc-rig, e.g.
//   scripts/pcsc-rig build-rel/bin/bench_pcscrig_desfire
// Target: a version-2 write that fills the card's data file (format, AES
// authentication, write, key update) takes at most 3 s beyond the waits the
// manager prescribes (beyond_waits_ms; the one 100 ms pause after the
// reader is opened). apdu_median_us is the median round trip of one
// wrapped command through pcscd, the vpcd driver and the emulator.
#include <benchmark/benchmark.h>

#include <usbcardreadermanager.h>

#include <cardlayout.h>
#include <pcscbackend.h>

#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>

#include <algorithm>

using nivaro::_TEMPLATE_DATA;
using nvsmartcard::PcscBackend;

namespace {

// What the manager sleeps on the way of a write that succeeds: one open
// interval after the card is found.
constexpr double PrescribedWaitMs = 100;

struct Rig
{
    std::shared_ptr<PcscBackend> backend = std::make_shared<PcscBackend>();
    nvcm::ReaderInfo reader;
    QProcess card;
    QString error;

    Rig()
    {
        const QList<nvcm::ReaderInfo> readers = backend->listReaders();
        if (readers.isEmpty() || !readers.first().id.startsWith(QStringLiteral("Virtual PCD"))) {
            error = QStringLiteral("no virtual reader: run under scripts/pcsc-rig");
            return;
        }
        reader = readers.first();
        card.start(QStringLiteral(CARDEMU_PATH),
                   { QStringLiteral("--type"), QStringLiteral("desfire8k"), QStringLiteral("--master-key"),
                     QString(32, QLatin1Char('0')) });
        if (!card.waitForStarted() || backend->waitForCard(reader, 10000) != nvcm::OK)
            error = QStringLiteral("the emulated card did not come up");
    }
    ~Rig()
    {
        card.terminate();
        card.waitForFinished();
    }
};

Rig &rig()
{
    static Rig instance;
    return instance;
}

// Templates that, with the block's header, fill an 8K card's data file.
QList<_TEMPLATE_DATA> fullCard()
{
    const int room = int(nvsmartcard::desfireUserMemory(8192)) - 32;
    QList<_TEMPLATE_DATA> list;
    for (int i = 0; i < 4; ++i) {
        _TEMPLATE_DATA t;
        t.type = i % 2 ? _TEMPLATE_DATA::Face : _TEMPLATE_DATA::Fingerprint;
        t.data = QByteArray(room / 4 - 6, char('a' + i));
        list.append(t);
    }
    return list;
}

void BM_DesfireTemplateWrite8K(benchmark::State &state)
{
    Rig &r = rig();
    if (!r.error.isEmpty()) {
        state.SkipWithError(qPrintable(r.error));
        return;
    }
    nvsmartcard::setDefaultBackend(r.backend);
    const QList<_TEMPLATE_DATA> list = fullCard();
    QVector<double> beyond;
    for (auto _ : state) {
        USBCardReaderManager manager;
        QEventLoop loop;
        bool written = false;
        QObject::connect(&manager, &USBCardReaderManager::finished, &loop, &QEventLoop::quit);
        QObject::connect(&manager, &USBCardReaderManager::message, [&written](const QString &text) {
            written = written || text == QStringLiteral("Данные записаны.");
        });
        QElapsedTimer clock;
        clock.start();
        if (manager.writeWorkerTemplates_v2(0, list, QByteArray()) == 0) {
            state.SkipWithError("the write did not start");
            break;
        }
        loop.exec();
        beyond.append(double(clock.nsecsElapsed()) / 1e6 - PrescribedWaitMs);
        if (!written) {
            state.SkipWithError("the write failed");
            break;
        }
    }
    nvsmartcard::setDefaultBackend(nullptr);
    if (!beyond.isEmpty()) {
        std::sort(beyond.begin(), beyond.end());
        state.counters["beyond_waits_ms"] = beyond.at(beyond.size() / 2);
    }
}
BENCHMARK(BM_DesfireTemplateWrite8K)->Unit(benchmark::kMillisecond)->Iterations(5)->UseRealTime();

void BM_DesfireApduRoundTrip(benchmark::State &state)
{
    Rig &r = rig();
    if (!r.error.isEmpty() || r.backend->openDevice(r.reader) != nvcm::OK) {
        state.SkipWithError("no card on the rig");
        return;
    }
    // GetFreeMemory, outside any session: one frame each way.
    const QByteArray apdu = QByteArray::fromHex("906E000000");
    QByteArray answer;
    QVector<double> times;
    QElapsedTimer clock;
    for (auto _ : state) {
        clock.start();
        if (r.backend->transmit(r.reader, apdu, answer) != nvcm::OK) {
            state.SkipWithError("transmit failed");
            break;
        }
        times.append(double(clock.nsecsElapsed()) / 1e3);
    }
    r.backend->closeDevice(r.reader);
    if (!times.isEmpty()) {
        std::sort(times.begin(), times.end());
        state.counters["apdu_median_us"] = times.at(times.size() / 2);
    }
}
BENCHMARK(BM_DesfireApduRoundTrip)->Unit(benchmark::kMicrosecond)->Iterations(2000)->UseRealTime();

} // namespace
