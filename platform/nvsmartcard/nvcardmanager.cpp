#include "nvcardmanager.h"
#include "nvsmartcardlog_p.h"

using nvsmartcard::ReaderBackend;

NVCardManager::NVCardManager(QObject *parent)
    : NVCardManager(nullptr, parent)
{
}

NVCardManager::NVCardManager(std::shared_ptr<ReaderBackend> backend, QObject *parent)
    : QObject(parent)
    , m_backend(backend ? std::move(backend) : nvsmartcard::defaultBackend())
{
    qRegisterMetaType<nvsmartcard::CardType>("nvsmartcard::CardType");
}

NVCardManager::~NVCardManager() = default;

QList<nvcm::ReaderInfo> NVCardManager::listReaders()
{
    return m_backend->listReaders();
}

bool NVCardManager::isOpened(const nvcm::ReaderInfo &reader)
{
    return m_backend->isOpened(reader);
}

int NVCardManager::openDevice(const nvcm::ReaderInfo &reader)
{
    return m_backend->openDevice(reader);
}

void NVCardManager::closeDevice(const nvcm::ReaderInfo &reader)
{
    m_backend->closeDevice(reader);
}

void NVCardManager::ejectCard(const nvcm::ReaderInfo &reader)
{
    m_backend->ejectCard(reader);
}

int NVCardManager::getCard(const nvcm::ReaderInfo &reader, nvcm::SCardInfo &info)
{
    const int code = m_backend->getCard(reader, info);
    if (code == nvcm::OK) {
        m_cardTypeNames.insert(reader.id, info.name);
        m_cardTypes.insert(reader.id, info.type);
    }
    return code;
}

QString NVCardManager::getCardTypeName(const nvcm::ReaderInfo &reader)
{
    return m_cardTypeNames.value(reader.id);
}

QString NVCardManager::readerProperty(const nvcm::ReaderInfo &reader, const QString &key)
{
    return m_backend->readerProperty(reader, key);
}

void NVCardManager::setSmartCardSettings(nvsc::SmartCardSettings *settings)
{
    m_settings = settings ? settings->clone() : nullptr;
}

bool NVCardManager::haveSettings(const nvcm::ReaderInfo &reader)
{
    if (m_settings)
        return true;
    // Nobody gave keys: let whoever listens supply them for next time.
    qCDebug(lcSmartCard) << "no card settings for reader" << reader.id;
    const auto type = m_cardTypes.value(reader.id, nvsmartcard::UnknownCard);
    if (type != nvsmartcard::UnknownCard)
        Q_EMIT getCardKeys(type, 0);
    return false;
}

nvsmartcard::ProgressCallback NVCardManager::progress() const
{
    return m_writeCallback ? nvsmartcard::ProgressCallback(m_writeCallback) : nvsmartcard::ProgressCallback();
}

int NVCardManager::authorize(const nvcm::ReaderInfo &reader)
{
    if (!haveSettings(reader))
        return nvcm::NoSettings;
    return m_backend->authorize(reader, *m_settings);
}

int NVCardManager::formatCard(const nvcm::ReaderInfo &reader)
{
    if (!haveSettings(reader))
        return nvcm::NoSettings;
    return m_backend->formatCard(reader, *m_settings, progress());
}

int NVCardManager::writeData(const nvcm::ReaderInfo &reader, const QByteArray &data)
{
    if (!haveSettings(reader))
        return nvcm::NoSettings;
    return m_backend->writeData(reader, *m_settings, data, progress());
}

int NVCardManager::readData(const nvcm::ReaderInfo &reader, QByteArray &data)
{
    if (!haveSettings(reader))
        return nvcm::NoSettings;
    return m_backend->readData(reader, *m_settings, data);
}

int NVCardManager::updateSmartCardKeys(const nvcm::ReaderInfo &reader, nvsc::SmartCardSettings *settings)
{
    if (settings)
        return m_backend->updateKeys(reader, *settings);
    if (!haveSettings(reader))
        return nvcm::NoSettings;
    return m_backend->updateKeys(reader, *m_settings);
}

void NVCardManager::setWriteCallback(std::function<void(int, int)> callback)
{
    m_writeCallback = std::move(callback);
}
