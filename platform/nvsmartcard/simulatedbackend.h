#ifndef SIMULATEDBACKEND_H
#define SIMULATEDBACKEND_H

#include "readerbackend.h"

#include <QMutex>
#include <QVector>

#include <optional>

namespace nvsmartcard {

/** A virtual card: what a real one carries, and nothing a reader could not see. */
struct NVSMARTCARD_EXPORT VirtualCard
{
    QByteArray uid;
    CardType type = UnknownCard;
    int subType = 0;
    QString name;
    quint32 memSize = 0;
    quint32 userMemSize = 0;
    bool plusLevel1 = false;  // Mifare Plus in security level 1

    // Current keys. Classic and Plus level 1: keyA/keyB (Crypto1). DESFire:
    // masterKey (DES or AES by its type) and appKey. Plus level 3: AES keyA/keyB.
    Key keyA;
    Key keyB;
    Key masterKey;
    Key appKey;
    QByteArray userData; // userMemSize bytes

    static VirtualCard classic1K(const QByteArray &uid);
    static VirtualCard classic4K(const QByteArray &uid);
    static VirtualCard desfire(const QByteArray &uid, int kilobytes, int masterKeyType = DesKey);
    static VirtualCard plusLevel1Card(const QByteArray &uid, int kilobytes = 2);
    static VirtualCard plusLevel3Card(const QByteArray &uid, int kilobytes = 2);
};

/**
 * Virtual readers and cards. Tests and the client script it: cards are put
 * on and taken off from any thread, also while an operation runs, and any
 * call can be made to fail.
 */
class NVSMARTCARD_EXPORT SimulatedBackend : public ReaderBackend
{
public:
    SimulatedBackend();
    ~SimulatedBackend() override;

    // The one instance that defaultBackend() hands out when none was set.
    static std::shared_ptr<SimulatedBackend> shared();

    int addReader(const QString &name, const QString &deviceType);
    void removeReader(int reader);
    // What hosts show for the reader; its id and cards stay.
    void setReaderName(int reader, const QString &name);
    // SMARTCARD or HID, empty for no such reader.
    QString readerDeviceType(int reader) const;
    int readerCount() const;

    void putCard(int reader, const VirtualCard &card);
    // Returns the card as it is now (keys, data), if one was there; a card
    // pulled off mid-write (pullCardAfterChunks) is the one in the hand.
    std::optional<VirtualCard> takeCard(int reader);
    std::optional<VirtualCard> cardOn(int reader) const;

    // The card put on the reader is seen only by the n-th openDevice from now.
    void setCardAppearsOnAttempt(int reader, int attempt);
    // The card leaves the reader after n more write chunks; every call then
    // answers RemoveCard until the card is put back and the device reopened.
    void pullCardAfterChunks(int reader, int chunks);
    // The named call ("openDevice", "getCard", "authorize", "formatCard",
    // "writeData", "readData", "updateKeys") answers code, `times` times
    // (-1: until clearScript()).
    void failCall(const QString &call, int code, int times = -1);
    // Milliseconds each written chunk takes (real cards: a few ms per block).
    void setChunkDelay(int ms);
    void clearScript();

    // Keeps the virtual cards (keys and data) across runs of a host.
    bool saveState(const QString &path) const;
    bool loadState(const QString &path);
    // Why the last saveState()/loadState() failed.
    QString errorString() const;

    QString backendName() const override { return QStringLiteral("simulated"); }
    QList<nvcm::ReaderInfo> listReaders() override;
    QString readerProperty(const nvcm::ReaderInfo &reader, const QString &key) override;
    int openDevice(const nvcm::ReaderInfo &reader) override;
    bool isOpened(const nvcm::ReaderInfo &reader) override;
    void closeDevice(const nvcm::ReaderInfo &reader) override;
    void ejectCard(const nvcm::ReaderInfo &reader) override;
    int getCard(const nvcm::ReaderInfo &reader, nvcm::SCardInfo &info) override;
    int authorize(const nvcm::ReaderInfo &reader, const nvsc::SmartCardSettings &settings) override;
    int formatCard(const nvcm::ReaderInfo &reader, const nvsc::SmartCardSettings &settings,
                   const ProgressCallback &progress) override;
    int writeData(const nvcm::ReaderInfo &reader, const nvsc::SmartCardSettings &settings,
                  const QByteArray &data, const ProgressCallback &progress) override;
    int readData(const nvcm::ReaderInfo &reader, const nvsc::SmartCardSettings &settings,
                 QByteArray &data) override;
    int updateKeys(const nvcm::ReaderInfo &reader, const nvsc::SmartCardSettings &settings) override;

private:
    Q_DISABLE_COPY(SimulatedBackend)
    struct Reader;
    struct Failure;

    // All of these expect m_mutex to be held.
    Reader *readerAt(int index) const;
    Reader *findReader(const nvcm::ReaderInfo &reader) const;
    int scriptedFailure(const QString &call);
    int beginCall(const nvcm::ReaderInfo &reader, const QString &call, Reader *&found);

    int writeChunks(const nvcm::ReaderInfo &reader, const QString &call, const nvsc::SmartCardSettings &settings,
                    const QByteArray *data, const ProgressCallback &progress);

    mutable QMutex m_mutex;
    QVector<Reader *> m_readers;  // owned; index is the reader id's number
    QVector<Failure *> m_failures;
    int m_chunkDelayMs = 0;
    mutable QString m_error; // of the last saveState()/loadState()
};

} // namespace nvsmartcard

#endif
