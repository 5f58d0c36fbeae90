#ifndef READERBACKEND_H
#define READERBACKEND_H

#include "nvscsettings.h"

#include <functional>
#include <memory>

namespace nvsmartcard {

using ProgressCallback = std::function<void(int done, int total)>;

/**
 * What NVCardManager needs from a kind of reader. One implementation plays
 * virtual readers and cards (SimulatedBackend), another drives real readers
 * through PC/SC. Everything here must be possible on a real reader: a
 * backend learns about a card only by talking to it, and a card can vanish
 * between any two calls.
 *
 * Calls come from the manager's worker thread while other threads may list
 * readers, so implementations are thread-safe. Result codes are nvcm::Result.
 */
class NVSMARTCARD_EXPORT ReaderBackend
{
public:
    virtual ~ReaderBackend();

    virtual QString backendName() const = 0;

    virtual QList<nvcm::ReaderInfo> listReaders() = 0;
    virtual QString readerProperty(const nvcm::ReaderInfo &reader, const QString &key) = 0;

    // 0: a card is present and a session with it is open; NoCard: nothing
    // on the reader; RemoveCard: the card there cannot be used until it is
    // taken off (e.g. it was pulled mid-write and put back).
    virtual int openDevice(const nvcm::ReaderInfo &reader) = 0;
    virtual bool isOpened(const nvcm::ReaderInfo &reader) = 0;
    virtual void closeDevice(const nvcm::ReaderInfo &reader) = 0;
    // Powers the card down; the operator still has to take it off.
    virtual void ejectCard(const nvcm::ReaderInfo &reader) = 0;

    virtual int getCard(const nvcm::ReaderInfo &reader, nvcm::SCardInfo &info) = 0;

    // Tries the settings' keys (legacy keys first in legacy mode), then the
    // card family's factory keys, so that a new card can be formatted with
    // any profile. The keys that worked are kept for the session.
    virtual int authorize(const nvcm::ReaderInfo &reader, const nvsc::SmartCardSettings &settings) = 0;
    // Clears the user memory the settings describe, with the session's keys.
    virtual int formatCard(const nvcm::ReaderInfo &reader, const nvsc::SmartCardSettings &settings,
                           const ProgressCallback &progress) = 0;
    virtual int writeData(const nvcm::ReaderInfo &reader, const nvsc::SmartCardSettings &settings,
                          const QByteArray &data, const ProgressCallback &progress) = 0;
    virtual int readData(const nvcm::ReaderInfo &reader, const nvsc::SmartCardSettings &settings,
                         QByteArray &data) = 0;
    // Installs the settings' own keys (never the legacy ones); later
    // sessions must authorise with them.
    virtual int updateKeys(const nvcm::ReaderInfo &reader, const nvsc::SmartCardSettings &settings) = 0;
};

// The backend a default-constructed NVCardManager uses: the one given to
// setDefaultBackend(), else the one NV_CARD_BACKEND names ("simulated",
// the default, or "pcsc" where built). The simulated backend is one
// instance per process, so a host can put cards on the readers the
// managers see.
NVSMARTCARD_EXPORT std::shared_ptr<ReaderBackend> defaultBackend();
NVSMARTCARD_EXPORT void setDefaultBackend(std::shared_ptr<ReaderBackend> backend);
// Whether NV_CARD_BACKEND names a backend, so that a host leaves the choice
// to it.
NVSMARTCARD_EXPORT bool backendForcedByEnvironment();
// Real readers when the PC/SC daemon answers and lists at least one reader,
// else null. A host that was not told which backend to use prefers the
// readers an operator has plugged in.
NVSMARTCARD_EXPORT std::shared_ptr<ReaderBackend> probePcscBackend();

} // namespace nvsmartcard

#endif
