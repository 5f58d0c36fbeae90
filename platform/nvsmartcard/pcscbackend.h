#ifndef PCSCBACKEND_H
#define PCSCBACKEND_H

#include "readerbackend.h"

#include <memory>

namespace nvsmartcard {

/**
 * Real contactless readers through the PC/SC daemon. Readers are named by
 * their PC/SC names; Classic and Plus level 1 cards are driven with the
 * PC/SC part 3 storage card commands, which every such reader translates to
 * Crypto1. Cards that speak ISO 14443-4 are asked what they are: DESFire
 * is driven with its native commands wrapped in APDUs (desfireprotocol.h);
 * formatting puts the settings' application and data file on it. Plus in
 * level 3 is recognised but its operations answer NotSupported.
 */
class NVSMARTCARD_EXPORT PcscBackend : public ReaderBackend
{
public:
    PcscBackend();
    ~PcscBackend() override;
    PcscBackend(const PcscBackend &) = delete;
    PcscBackend &operator=(const PcscBackend &) = delete;

    QString backendName() const override;

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
    int writeData(const nvcm::ReaderInfo &reader, const nvsc::SmartCardSettings &settings, const QByteArray &data,
                  const ProgressCallback &progress) override;
    int readData(const nvcm::ReaderInfo &reader, const nvsc::SmartCardSettings &settings,
                 QByteArray &data) override;
    int updateKeys(const nvcm::ReaderInfo &reader, const nvsc::SmartCardSettings &settings) override;

    // Blocks until a card lies on the reader (or, with present false, until
    // none does): OK; NoCard when the time runs out or cancelWaits() is
    // called; NoReader when the reader is gone.
    int waitForCard(const nvcm::ReaderInfo &reader, int timeoutMs, bool present = true);
    void cancelWaits();

    // Sends one APDU in the open session; the answer includes SW1 SW2.
    // For tools and measurements, not for the manager.
    int transmit(const nvcm::ReaderInfo &reader, const QByteArray &apdu, QByteArray &answer);

    // The Classic access bytes (6..9 of a trailer) for the given C1C2C3
    // values of block groups 0..3; empty when they are not four values of
    // 0..7. The factory conditions are FF 07 80 69.
    static QByteArray accessBytes(const QVector<quint8> &groups);
    static bool accessBytesValid(const QByteArray &bytes);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace nvsmartcard

#endif
