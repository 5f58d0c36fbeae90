#ifndef NVCARDMANAGER_H
#define NVCARDMANAGER_H

#include "readerbackend.h"

#include <QHash>
#include <QObject>

/**
 * The reader library's entry point. Operations are synchronous and are
 * meant to be called from a worker thread; they may block for as long as
 * the card takes. The settings and callback set here are used by the
 * operations that follow, so set them before starting one.
 */
class NVSMARTCARD_EXPORT NVCardManager : public QObject
{
    Q_OBJECT
public:
    explicit NVCardManager(QObject *parent = nullptr);
    NVCardManager(std::shared_ptr<nvsmartcard::ReaderBackend> backend, QObject *parent = nullptr);
    ~NVCardManager() override;

    nvsmartcard::ReaderBackend *backend() const { return m_backend.get(); }

    QList<nvcm::ReaderInfo> listReaders();
    bool isOpened(const nvcm::ReaderInfo &reader);
    int openDevice(const nvcm::ReaderInfo &reader);
    void closeDevice(const nvcm::ReaderInfo &reader);
    void ejectCard(const nvcm::ReaderInfo &reader);
    int getCard(const nvcm::ReaderInfo &reader, nvcm::SCardInfo &info);
    // The type name of the card last read on this reader ("" before).
    QString getCardTypeName(const nvcm::ReaderInfo &reader);
    QString readerProperty(const nvcm::ReaderInfo &reader, const QString &key);

    // Keeps a copy; the caller keeps ownership of its object.
    void setSmartCardSettings(nvsc::SmartCardSettings *settings);
    int authorize(const nvcm::ReaderInfo &reader);
    int formatCard(const nvcm::ReaderInfo &reader);
    int writeData(const nvcm::ReaderInfo &reader, const QByteArray &data);
    int readData(const nvcm::ReaderInfo &reader, QByteArray &data);
    int updateSmartCardKeys(const nvcm::ReaderInfo &reader, nvsc::SmartCardSettings *settings);

    // Called from the operation's thread during formatCard and writeData.
    void setWriteCallback(std::function<void(int, int)> callback);

Q_SIGNALS:
    // Asked when a card needs keys that no settings provided.
    void getCardKeys(const nvsmartcard::CardType &type, quint32 keyNumber);

private:
    Q_DISABLE_COPY(NVCardManager)
    bool haveSettings(const nvcm::ReaderInfo &reader);
    nvsmartcard::ProgressCallback progress() const;

    std::shared_ptr<nvsmartcard::ReaderBackend> m_backend;
    std::unique_ptr<nvsc::SmartCardSettings> m_settings;
    std::function<void(int, int)> m_writeCallback;
    QHash<QString, QString> m_cardTypeNames; // by reader id
    QHash<QString, nvsmartcard::CardType> m_cardTypes; // by reader id
};

#endif
