#include "readerbackend.h"
#include "nvsmartcardlog_p.h"
#include "simulatedbackend.h"
#ifdef NVD_HAVE_PCSC
#include "pcscbackend.h"
#endif

#include <QMutex>
#include <QMutexLocker>

Q_LOGGING_CATEGORY(lcSmartCard, "nvd.smartcard", QtInfoMsg)

namespace nvsmartcard {

ReaderBackend::~ReaderBackend() = default;

namespace {

QMutex &defaultMutex()
{
    static QMutex mutex;
    return mutex;
}

std::shared_ptr<ReaderBackend> &chosenBackend()
{
    static std::shared_ptr<ReaderBackend> backend;
    return backend;
}

// Where the PC/SC backend is not built, asking for it falls back to the
// simulated readers with a warning, so a host started with
// NV_CARD_BACKEND=pcsc still comes up.
std::shared_ptr<ReaderBackend> createPcscBackend()
{
#ifdef NVD_HAVE_PCSC
    return std::make_shared<PcscBackend>();
#else
    return nullptr;
#endif
}

std::shared_ptr<ReaderBackend> backendFromEnvironment()
{
    const QString name = qEnvironmentVariable("NV_CARD_BACKEND").trimmed().toLower();
    if (name.isEmpty() || name == QLatin1String("simulated"))
        return SimulatedBackend::shared();
    if (name == QLatin1String("pcsc")) {
        if (auto pcsc = createPcscBackend())
            return pcsc;
        qCWarning(lcSmartCard) << "NV_CARD_BACKEND: pcsc is not built in, using simulated readers";
        return SimulatedBackend::shared();
    }
    qCWarning(lcSmartCard) << "NV_CARD_BACKEND: unknown backend" << name << "- using simulated readers";
    return SimulatedBackend::shared();
}

} // namespace

std::shared_ptr<ReaderBackend> defaultBackend()
{
    QMutexLocker locker(&defaultMutex());
    if (!chosenBackend())
        chosenBackend() = backendFromEnvironment();
    return chosenBackend();
}

bool backendForcedByEnvironment()
{
    return !qEnvironmentVariable("NV_CARD_BACKEND").trimmed().isEmpty();
}

std::shared_ptr<ReaderBackend> probePcscBackend()
{
    std::shared_ptr<ReaderBackend> pcsc = createPcscBackend();
    if (!pcsc)
        return nullptr;
    // Without a daemon the listing fails at once (no service), so a machine
    // without readers starts as fast as before.
    const int readers = pcsc->listReaders().size();
    qCDebug(lcSmartCard) << "pcsc probe: readers" << readers;
    return readers > 0 ? pcsc : nullptr;
}

void setDefaultBackend(std::shared_ptr<ReaderBackend> backend)
{
    QMutexLocker locker(&defaultMutex());
    chosenBackend() = std::move(backend);
}

} // namespace nvsmartcard
