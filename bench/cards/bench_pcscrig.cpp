// PC/SC round trips on the rig: run under scripts/pcsc-rig, e.g.
//   scripts/pcsc-rig build/bin/bench_pcscrig --benchmark_repetitions=5
// The card is our emulator on the virtual reader, so the figures are the
// cost of pcscd, the vpcd driver and the socket, not of a radio link.
#include <benchmark/benchmark.h>

#include <pcscbackend.h>

#include <QProcess>

using nvsmartcard::PcscBackend;

namespace {

struct Rig
{
    std::shared_ptr<PcscBackend> backend = std::make_shared<PcscBackend>();
    nvcm::ReaderInfo reader;
    QProcess card;
    QString error;

    Rig()
    {
        for (const nvcm::ReaderInfo &r : backend->listReaders()) {
            // vpcd's first slot: the one whose port the emulator plugs into.
            if (r.id.startsWith(QStringLiteral("Virtual PCD")) && !reader.isValid())
                reader = r;
        }
        if (!reader.isValid()) {
            error = QStringLiteral("no virtual reader: run under scripts/pcsc-rig");
            return;
        }
        card.start(QStringLiteral(CARDEMU_PATH), {QStringLiteral("--type"), QStringLiteral("1k")});
        if (!card.waitForStarted() || backend->waitForCard(reader, 10000) != nvcm::OK
            || backend->openDevice(reader) != nvcm::OK) {
            error = QStringLiteral("the emulated card did not come up");
            return;
        }
        nvcm::SCardInfo info;
        if (backend->getCard(reader, info) != nvcm::OK)
            error = QStringLiteral("the emulated card cannot be read");
    }
    ~Rig()
    {
        backend->closeDevice(reader);
        card.terminate();
        card.waitForFinished();
    }
};

Rig &rig()
{
    static Rig instance;
    return instance;
}

void BM_ApduRoundTrip(benchmark::State &state)
{
    Rig &r = rig();
    if (!r.error.isEmpty()) {
        state.SkipWithError(qPrintable(r.error));
        return;
    }
    const QByteArray getUid = QByteArray::fromHex("FFCA000000");
    QByteArray answer;
    for (auto _ : state) {
        if (r.backend->transmit(r.reader, getUid, answer) != nvcm::OK) {
            state.SkipWithError("transmit failed");
            break;
        }
    }
}
BENCHMARK(BM_ApduRoundTrip)->Unit(benchmark::kMicrosecond)->UseRealTime();

// Authorise with the factory key, then read the whole user memory of a 1K
// card (47 blocks, 16 sectors to authenticate).
void BM_ReadClassic1K(benchmark::State &state)
{
    Rig &r = rig();
    if (!r.error.isEmpty()) {
        state.SkipWithError(qPrintable(r.error));
        return;
    }
    const nvsc::MifareClassicSettings settings;
    QByteArray data;
    for (auto _ : state) {
        if (r.backend->authorize(r.reader, settings) != nvcm::OK || r.backend->readData(r.reader, settings, data) != nvcm::OK) {
            state.SkipWithError("read failed");
            break;
        }
    }
}
BENCHMARK(BM_ReadClassic1K)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
