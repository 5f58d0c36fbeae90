#include "pcscbackend.h"
#include "cardatr.h"
#include "cardlayout.h"
#include "desfireprotocol.h"
#include "nvsmartcardlog_p.h"

#include <dbparams.h>

#include <QDeadlineTimer>
#include <QHash>
#include <QMutex>
#include <QMutexLocker>

#include <winscard.h>

#include <algorithm>

namespace nvsmartcard {

namespace {

constexpr int BlockSize = CardBlockSize;
constexpr uchar KeySlotA = 0x60;
constexpr uchar KeySlotB = 0x61;

QString pcscError(LONG rv)
{
    return QStringLiteral("%1 (0x%2)").arg(QString::fromLatin1(pcsc_stringify_error(rv))).arg(quint32(rv), 8, 16, QLatin1Char('0'));
}

// A card that left the field in the middle of a command: the operator has
// to take it off and put it back, whatever the reader made of it.
bool cardGone(LONG rv)
{
    return rv == LONG(SCARD_W_REMOVED_CARD) || rv == LONG(SCARD_E_NOT_TRANSACTED) || rv == LONG(SCARD_E_NO_SMARTCARD)
        || rv == LONG(SCARD_W_RESET_CARD) || rv == LONG(SCARD_W_UNPOWERED_CARD) || rv == LONG(SCARD_W_UNRESPONSIVE_CARD);
}

bool readerGone(LONG rv)
{
    return rv == LONG(SCARD_E_UNKNOWN_READER) || rv == LONG(SCARD_E_READER_UNAVAILABLE)
        || rv == LONG(SCARD_E_NO_READERS_AVAILABLE);
}

int sectorOf(int block)
{
    return block < 128 ? block / 4 : 32 + (block - 128) / 16;
}

int trailerOf(int block)
{
    return block < 128 ? block | 3 : 128 + (block - 128) / 16 * 16 + 15;
}

// The card block holding user data block `index` (0-based; block 0 and the
// trailers carry none).
int blockOfDataIndex(int index)
{
    int block = 1;
    for (int seen = -1;; ++block) {
        if (!isSectorTrailer(block) && ++seen == index)
            return block;
    }
}

struct Candidate
{
    uchar slot;
    QByteArray key;
};

// DESFire keys authorisation tries: the legacy key (in legacy mode), the
// settings' own, then the factory key of the settings' cipher (a card
// personalised for DES refuses an all-zero AES key and vice versa).
QVector<Key> desfireCandidates(const Key &own, const Key &legacy, bool legacyMode)
{
    QVector<Key> list;
    auto add = [&list](const Key &key) {
        if (!key.isEmpty() && !list.contains(key))
            list.append(key);
    };
    if (legacyMode)
        add(legacy);
    add(own);
    const int type = own.isEmpty() ? DesKey : own.type;
    add(Key(type, nvsc::MifareDESFireSettings::defaultKey(type)));
    return list;
}

// DES and two-key 3DES keys are one family on the card; AES and three-key 3DES others.
int cipherFamily(desfire::Cipher cipher)
{
    return cipher == desfire::Cipher::TwoKey3Des ? int(desfire::Cipher::Des) : int(cipher);
}

// The application keeps its settings open to its own keys: each key
// changes itself (E), the master key may change, listing is free,
// creating files wants the master key, the settings may change.
constexpr uchar AppKeySettings = 0xEB;
constexpr int MaxAppKeyNo = 13;

QVector<Candidate> candidates(const nvsc::MifareBaseSettings &s)
{
    QVector<Candidate> list;
    // Crypto1 keys are 6 bytes; a reader refuses to load anything else.
    for (const auto &c : s.authorisationKeys()) {
        if (c.key.data.size() == 6)
            list.append({c.isKeyB ? KeySlotB : KeySlotA, c.key.data});
    }
    return list;
}

} // namespace

struct PcscBackend::Private
{
    struct Session
    {
        SCARDHANDLE handle = 0;
        DWORD protocol = 0;
        bool gone = false;       // the card left while the session was open
        AtrInfo card;
        bool authorised = false;
        Candidate key{0, QByteArray()};
        int authSector = -1;     // sector the card is authenticated for
        // DESFire: the command channel, the card master key that authorised
        // and the application key the channel's session stands on.
        std::shared_ptr<desfire::Channel> channel;
        Key masterKey;
        Key appKey;
        bool appReady = false;
    };

    // Operations and listing use separate contexts so that listing the
    // readers does not wait for a card being written; waits have their own
    // so that cancelling one does not cancel a command.
    QMutex opMutex;
    SCARDCONTEXT opContext = 0;
    QHash<QString, Session> sessions;

    QMutex listMutex;
    SCARDCONTEXT listContext = 0;

    QMutex waitMutex;
    SCARDCONTEXT waitContext = 0;

    static bool ensure(SCARDCONTEXT &context)
    {
        if (context && SCardIsValidContext(context) == SCARD_S_SUCCESS)
            return true;
        if (context)
            SCardReleaseContext(context);
        context = 0;
        const LONG rv = SCardEstablishContext(SCARD_SCOPE_SYSTEM, nullptr, nullptr, &context);
        if (rv != SCARD_S_SUCCESS) {
            qCDebug(lcSmartCard) << "pcsc: no context:" << pcscError(rv);
            context = 0;
            return false;
        }
        return true;
    }

    Session *session(const nvcm::ReaderInfo &reader)
    {
        auto it = sessions.find(reader.id);
        return it == sessions.end() ? nullptr : &it.value();
    }

    // OK when the session can take a command.
    int begin(const nvcm::ReaderInfo &reader, Session *&s)
    {
        s = session(reader);
        if (!s)
            return nvcm::DeviceNotOpened;
        if (s->gone)
            return nvcm::RemoveCard;
        return nvcm::OK;
    }

    // OK when the session can take a command for a card that settings fit
    // and that was authorised with them.
    int beginAuthorised(const nvcm::ReaderInfo &reader, const nvsc::SmartCardSettings &settings, Session *&s)
    {
        if (const int code = begin(reader, s); code != nvcm::OK)
            return code;
        if (const int fit = settingsFit(*s, settings); fit != nvcm::OK)
            return fit;
        return s->authorised ? nvcm::OK : nvcm::AuthError;
    }

    int transmit(Session &s, const QByteArray &apdu, QByteArray &answer)
    {
        BYTE buffer[258 + 2];
        DWORD length = sizeof buffer;
        const SCARD_IO_REQUEST *pci = s.protocol == SCARD_PROTOCOL_T0 ? SCARD_PCI_T0 : SCARD_PCI_T1;
        const LONG rv = SCardTransmit(s.handle, pci, reinterpret_cast<const BYTE *>(apdu.constData()),
                                      DWORD(apdu.size()), nullptr, buffer, &length);
        if (rv != SCARD_S_SUCCESS) {
            qCDebug(lcSmartCard) << "pcsc: transmit" << apdu.left(5).toHex(' ') << pcscError(rv);
            if (cardGone(rv)) {
                s.gone = true;
                return nvcm::RemoveCard;
            }
            return readerGone(rv) ? nvcm::NoReader : nvcm::CommunicationError;
        }
        if (length < 2) {
            // Half an answer: the card went while it was answering.
            s.gone = true;
            return nvcm::RemoveCard;
        }
        answer = QByteArray(reinterpret_cast<const char *>(buffer), int(length));
        return nvcm::OK;
    }

    static bool statusOk(const QByteArray &answer)
    {
        return answer.size() >= 2 && uchar(answer[answer.size() - 2]) == 0x90 && answer.back() == 0;
    }

    // Loads the key into the reader's volatile slot 0 and authenticates
    // the sector of `block` with it.
    int authenticate(Session &s, const Candidate &c, int block)
    {
        QByteArray answer;
        int code = transmit(s, QByteArray::fromHex("FF82000006") + c.key, answer);
        if (code != nvcm::OK)
            return code;
        if (!statusOk(answer)) {
            qCDebug(lcSmartCard) << "pcsc: load key refused" << answer.toHex(' ');
            return nvcm::CommunicationError;
        }
        QByteArray apdu = QByteArray::fromHex("FF860000050100");
        apdu.append(char(block));
        apdu.append(char(c.slot));
        apdu.append('\0');
        code = transmit(s, apdu, answer);
        if (code != nvcm::OK)
            return code;
        if (!statusOk(answer)) {
            s.authSector = -1;
            return nvcm::AuthError;
        }
        s.authSector = sectorOf(block);
        return nvcm::OK;
    }

    int reactivate(Session &s)
    {
        s.authSector = -1;
        const LONG rv = SCardReconnect(s.handle, SCARD_SHARE_SHARED, SCARD_PROTOCOL_T0 | SCARD_PROTOCOL_T1,
                                       SCARD_RESET_CARD, &s.protocol);
        if (rv == SCARD_S_SUCCESS)
            return nvcm::OK;
        qCDebug(lcSmartCard) << "pcsc: reselecting the card:" << pcscError(rv);
        if (readerGone(rv))
            return nvcm::NoReader;
        s.gone = true;
        return nvcm::RemoveCard;
    }

    int ensureSector(Session &s, int block)
    {
        if (s.authSector == sectorOf(block))
            return nvcm::OK;
        return authenticate(s, s.key, block);
    }

    int writeBlock(Session &s, int block, const QByteArray &bytes)
    {
        if (const int code = ensureSector(s, block); code != nvcm::OK)
            return code;
        QByteArray apdu = QByteArray::fromHex("FFD60000");
        apdu[3] = char(block);
        apdu.append(char(BlockSize));
        apdu.append(bytes);
        QByteArray answer;
        if (const int code = transmit(s, apdu, answer); code != nvcm::OK)
            return code;
        if (!statusOk(answer)) {
            qCDebug(lcSmartCard) << "pcsc: update binary of block" << block << "refused" << answer.toHex(' ');
            s.authSector = -1;
            return nvcm::AuthError;
        }
        return nvcm::OK;
    }

    int readBlock(Session &s, int block, QByteArray &bytes)
    {
        if (const int code = ensureSector(s, block); code != nvcm::OK)
            return code;
        QByteArray apdu = QByteArray::fromHex("FFB00000");
        apdu[3] = char(block);
        apdu.append(char(BlockSize));
        QByteArray answer;
        if (const int code = transmit(s, apdu, answer); code != nvcm::OK)
            return code;
        if (!statusOk(answer) || answer.size() != BlockSize + 2) {
            qCDebug(lcSmartCard) << "pcsc: read binary of block" << block << "refused" << answer.toHex(' ');
            s.authSector = -1;
            return answer.size() == 2 ? nvcm::AuthError : nvcm::CommunicationError;
        }
        bytes = answer.left(BlockSize);
        return nvcm::OK;
    }

    // OK when the card is one we drive and the settings are for it.
    static int settingsFit(const Session &s, const nvsc::SmartCardSettings &settings)
    {
        if (s.card.type == MifareDESFire) {
            if (!dynamic_cast<const nvsc::MifareDESFireSettings *>(&settings)) {
                qCDebug(lcSmartCard) << "pcsc: settings for card type" << settings.cardType() << "on a" << s.card.name;
                return nvcm::AuthError;
            }
            return nvcm::OK;
        }
        if (!s.card.isBlockCard()) {
            qCDebug(lcSmartCard) << "pcsc: no operations for a" << s.card.name;
            return nvcm::NotSupported;
        }
        const bool fits = s.card.type == MifarePlus ? dynamic_cast<const nvsc::MifarePlusSettings *>(&settings) != nullptr
                                                    : dynamic_cast<const nvsc::MifareBaseSettings *>(&settings) != nullptr;
        if (!fits || settings.cardType() != s.card.type) {
            qCDebug(lcSmartCard) << "pcsc: settings for card type" << settings.cardType() << "on a" << s.card.name;
            return nvcm::AuthError;
        }
        return nvcm::OK;
    }

    std::pair<int, int> range(const Session &s, const nvsc::SmartCardSettings &settings) const
    {
        return userDataRange(s.card.type, s.card.plusLevel1, s.card.memSize, s.card.userMemSize, settings);
    }

    // --- DESFire ------------------------------------------------------

    desfire::Channel &channel(Session &s, const QString &id)
    {
        if (!s.channel) {
            s.channel = std::make_shared<desfire::Channel>([this, id](const QByteArray &apdu, QByteArray &answer) {
                Session *current = session(nvcm::ReaderInfo{id, id, QString()});
                return current ? transmit(*current, apdu, answer) : int(nvcm::DeviceNotOpened);
            });
        }
        return *s.channel;
    }

    // An ISO 14443-4 card tells what it is only when asked.
    int identify(Session &s, const QString &id)
    {
        desfire::Version version;
        // The card may still be in a session of an earlier connection (the
        // reader leaves it powered); selecting the card level ends that.
        // A Plus knows no applications and refuses, which is no harm.
        int code = channel(s, id).selectApplication(0);
        if (code != nvcm::RemoveCard && code != nvcm::NoReader)
            code = s.channel->getVersion(version);
        if (code == nvcm::RemoveCard || code == nvcm::NoReader)
            return code;
        if (code != nvcm::OK) {
            qCDebug(lcSmartCard) << "pcsc: the ISO 14443-4 card does not answer GetVersion:" << code << "status"
                                 << s.channel->lastStatus();
            return nvcm::OK; // an unknown card, still with a UID to read
        }
        const quint32 memory = version.memorySize();
        if (version.isDesfire()) {
            s.card.type = MifareDESFire;
            s.card.subType = int(memory / 1024);
            s.card.memSize = memory;
            s.card.userMemSize = desfireUserMemory(memory);
            s.card.name = QStringLiteral("Mifare DESFire %1K").arg(s.card.subType);
        } else if (version.isPlus()) {
            // Level 3 speaks AES sector commands of its own: recognised, not driven.
            s.card.type = MifarePlus;
            s.card.subType = int(memory / 1024);
            s.card.memSize = memory;
            s.card.userMemSize = blockCardUserMemory(memory);
            s.card.name = QStringLiteral("Mifare Plus %1K SL3").arg(s.card.subType);
        }
        return nvcm::OK;
    }

    int authorizeDesfire(Session &s, const QString &id, const nvsc::MifareDESFireSettings &settings)
    {
        desfire::Channel &ch = channel(s, id);
        s.appReady = false;
        if (const int code = ch.selectApplication(0); code != nvcm::OK)
            return code;
        for (const Key &key : desfireCandidates(settings.masterKey, settings.legacyKey, settings.useLegacyMode)) {
            const int code = ch.authenticate(0, key);
            if (code == nvcm::AuthError || code == nvcm::NotSupported)
                continue; // the card forgets a refused attempt; no reselection needed
            if (code != nvcm::OK)
                return code;
            s.authorised = true;
            s.masterKey = key;
            return nvcm::OK;
        }
        return nvcm::AuthError;
    }

    // The channel authenticated with the settings' application key.
    int openApplication(Session &s, const QString &id, const nvsc::MifareDESFireSettings &settings)
    {
        desfire::Channel &ch = channel(s, id);
        if (s.appReady && ch.authenticated() && ch.authenticatedKey() == int(settings.appKeyNr))
            return nvcm::OK;
        s.appReady = false;
        if (const int code = ch.selectApplication(settings.appId); code != nvcm::OK) {
            if (ch.lastStatus() == desfire::ApplicationNotFound)
                qCDebug(lcSmartCard) << "pcsc: the card has no application" << Qt::hex << settings.appId << "(not formatted)";
            return code;
        }
        for (const Key &key : desfireCandidates(settings.appKey, settings.legacyKey, settings.useLegacyMode)) {
            const int code = ch.authenticate(int(settings.appKeyNr), key);
            if (code == nvcm::AuthError || code == nvcm::NotSupported)
                continue;
            if (code != nvcm::OK)
                return code;
            s.appKey = key;
            s.appReady = true;
            return nvcm::OK;
        }
        return nvcm::AuthError;
    }

    // A fresh card layout: everything on the card goes, the site's
    // application and data file come back empty, with factory keys.
    int formatDesfire(Session &s, const QString &id, const nvsc::MifareDESFireSettings &settings,
                      const ProgressCallback &progress)
    {
        const Key appKey = settings.appKey.isEmpty() ? settings.masterKey : settings.appKey;
        const desfire::Cipher appCipher = desfire::cipherFor(appKey.type, appKey.data.size());
        if (appCipher == desfire::Cipher::None || settings.appKeyNr > MaxAppKeyNo || settings.fileId > 31
            || settings.appId == 0 || settings.appId > 0xFFFFFF) {
            qCWarning(lcSmartCard) << "formatCard: the DESFire settings cannot be put on a card: key type" << appKey.type
                                   << "of" << appKey.data.size() << "bytes, key number" << settings.appKeyNr
                                   << "application" << settings.appId << "file" << settings.fileId;
            return nvcm::NotSupported;
        }
        const auto [offset, length] = range(s, settings);
        desfire::Channel &ch = channel(s, id);
        s.appReady = false;
        const Key factory(appKey.type, nvsc::MifareDESFireSettings::defaultKey(appKey.type));
        quint32 free = 0;
        int code = ch.selectApplication(0);
        if (code == nvcm::OK)
            code = ch.authenticate(0, s.masterKey);
        if (code == nvcm::OK)
            code = ch.formatPicc();
        if (code == nvcm::OK)
            code = ch.createApplication(settings.appId, AppKeySettings, desfire::keyCountByte(appCipher, int(settings.appKeyNr) + 1));
        if (code == nvcm::OK)
            code = ch.getFreeMemory(free);
        // The file header takes a block of its own.
        const quint32 room = free >= 32 ? (free - 32) / 32 * 32 : 0;
        const quint32 size = std::min(quint32(offset + length), room);
        if (code == nvcm::OK)
            code = ch.selectApplication(settings.appId);
        if (code == nvcm::OK)
            code = ch.authenticate(0, factory);
        if (code == nvcm::OK)
            code = ch.createStdDataFile(int(settings.fileId), desfire::accessRights(int(settings.appKeyNr)), size);
        if (code == nvcm::OK && settings.appKeyNr != 0)
            code = ch.authenticate(int(settings.appKeyNr), factory);
        if (code != nvcm::OK)
            return code;
        s.appKey = factory;
        s.appReady = true;
        const int clear = std::max(0, std::min(length, int(size) - offset));
        if (clear == 0)
            return nvcm::OK;
        return ch.writeData(int(settings.fileId), quint32(offset), QByteArray(clear, '\0'), progress);
    }

    int updateDesfireKeys(Session &s, const QString &id, const nvsc::MifareDESFireSettings &settings)
    {
        const desfire::Cipher appCipher = desfire::cipherFor(settings.appKey.type, settings.appKey.data.size());
        const desfire::Cipher masterCipher = desfire::cipherFor(settings.masterKey.type, settings.masterKey.data.size());
        if ((!settings.appKey.isEmpty() && appCipher == desfire::Cipher::None)
            || (!settings.masterKey.isEmpty() && masterCipher == desfire::Cipher::None)) {
            qCWarning(lcSmartCard) << "updateKeys: DESFire keys of types" << settings.masterKey.type << settings.appKey.type
                                   << "cannot be" << settings.masterKey.data.size() << "and" << settings.appKey.data.size()
                                   << "bytes long";
            return nvcm::NotSupported;
        }
        desfire::Channel &ch = channel(s, id);
        if (!settings.appKey.isEmpty() && settings.appKey != s.appKey) {
            if (const int code = openApplication(s, id, settings); code != nvcm::OK)
                return code;
            // An application keeps the cipher it was created with.
            if (cipherFamily(appCipher) != cipherFamily(desfire::cipherFor(s.appKey.type, s.appKey.data.size()))) {
                qCWarning(lcSmartCard) << "updateKeys: the application's keys are of another cipher than" << settings.appKey.type;
                return nvcm::NotSupported;
            }
            if (const int code = ch.changeKey(uchar(settings.appKeyNr), settings.appKey); code != nvcm::OK)
                return code;
            s.appReady = false;
        }
        if (!settings.appKey.isEmpty() && settings.appKeyNr != 0) {
            // Key 0 rules the application's files and settings: left at
            // the factory value, anyone could delete the data file.
            s.appReady = false;
            if (const int code = ch.selectApplication(settings.appId); code != nvcm::OK)
                return code;
            int code = ch.authenticate(0, settings.appKey);
            if (code == nvcm::AuthError) {
                code = ch.authenticate(0, Key(settings.appKey.type, nvsc::MifareDESFireSettings::defaultKey(settings.appKey.type)));
                if (code == nvcm::OK)
                    code = ch.changeKey(0, settings.appKey);
            }
            if (code != nvcm::OK)
                return code;
        }
        if (!settings.masterKey.isEmpty() && settings.masterKey != s.masterKey) {
            int code = ch.selectApplication(0);
            if (code == nvcm::OK)
                code = ch.authenticate(0, s.masterKey);
            // The card master key carries its cipher in the key number.
            if (code == nvcm::OK)
                code = ch.changeKey(uchar(desfire::keyCountByte(masterCipher, 0)), settings.masterKey);
            if (code != nvcm::OK)
                return code;
        }
        s.appReady = false;
        s.authorised = false;
        return nvcm::OK;
    }

    int writeRange(const nvcm::ReaderInfo &reader, const nvsc::SmartCardSettings &settings, const QByteArray *data,
                   const ProgressCallback &progress)
    {
        QMutexLocker locker(&opMutex);
        Session *s = nullptr;
        if (const int code = beginAuthorised(reader, settings, s); code != nvcm::OK)
            return code;
        if (s->card.type == MifareDESFire) {
            const auto &desfireSettings = static_cast<const nvsc::MifareDESFireSettings &>(settings);
            if (!data)
                return formatDesfire(*s, reader.id, desfireSettings, progress);
            const auto [offset, length] = range(*s, settings);
            if (data->size() > length)
                return nvcm::TooMuchData;
            if (const int code = openApplication(*s, reader.id, desfireSettings); code != nvcm::OK)
                return code;
            if (data->isEmpty())
                return nvcm::OK;
            return channel(*s, reader.id).writeData(int(desfireSettings.fileId), quint32(offset), *data, progress);
        }
        const auto [offset, length] = range(*s, settings);
        QByteArray payload = data ? *data : QByteArray(length, '\0');
        if (payload.size() > length)
            return nvcm::TooMuchData;
        // Blocks are written whole; the rest of the last one is zero.
        // (QByteArray::resize() would leave the new bytes uninitialised.)
        payload.append(QByteArray((BlockSize - payload.size() % BlockSize) % BlockSize, '\0'));
        const int first = offset / BlockSize;
        const int total = payload.size() / BlockSize;
        for (int i = 0; i < total; ++i) {
            const int code = writeBlock(*s, blockOfDataIndex(first + i), payload.mid(i * BlockSize, BlockSize));
            if (code != nvcm::OK)
                return code;
            if (progress)
                progress(i + 1, total);
        }
        return nvcm::OK;
    }
};

PcscBackend::PcscBackend() : d(std::make_unique<Private>()) {}

PcscBackend::~PcscBackend()
{
    for (auto it = d->sessions.begin(); it != d->sessions.end(); ++it)
        SCardDisconnect(it->handle, SCARD_LEAVE_CARD);
    for (SCARDCONTEXT c : {d->opContext, d->listContext, d->waitContext}) {
        if (c)
            SCardReleaseContext(c);
    }
}

QString PcscBackend::backendName() const
{
    return QStringLiteral("pcsc");
}

QList<nvcm::ReaderInfo> PcscBackend::listReaders()
{
    QMutexLocker locker(&d->listMutex);
    QList<nvcm::ReaderInfo> list;
    if (!Private::ensure(d->listContext))
        return list;
    DWORD length = 0;
    LONG rv = SCardListReaders(d->listContext, nullptr, nullptr, &length);
    if (rv == SCARD_S_SUCCESS && length > 0) {
        QByteArray names(int(length), '\0');
        rv = SCardListReaders(d->listContext, nullptr, names.data(), &length);
        if (rv == SCARD_S_SUCCESS) {
            for (const QByteArray &name : names.left(int(length)).split('\0')) {
                if (name.isEmpty())
                    continue;
                const QString text = QString::fromUtf8(name);
                list.append({text, text, db::devices::cardreader::SMARTCARD});
            }
        }
    }
    if (rv != SCARD_S_SUCCESS && rv != LONG(SCARD_E_NO_READERS_AVAILABLE))
        qCDebug(lcSmartCard) << "pcsc: list readers:" << pcscError(rv);
    return list;
}

QString PcscBackend::readerProperty(const nvcm::ReaderInfo &reader, const QString &key)
{
    if (key == nvcm::CAN_WRITE_DATA)
        return QStringLiteral("1");
    if (key == nvcm::NAME)
        return reader.id;
    return QString();
}

int PcscBackend::openDevice(const nvcm::ReaderInfo &reader)
{
    QMutexLocker locker(&d->opMutex);
    if (!Private::ensure(d->opContext))
        return nvcm::NoReader;
    if (Private::Session *s = d->session(reader)) {
        if (s->gone)
            return nvcm::RemoveCard;
        DWORD state = 0;
        DWORD protocol = 0;
        DWORD atrLength = MAX_ATR_SIZE;
        BYTE atr[MAX_ATR_SIZE];
        const LONG rv = SCardStatus(s->handle, nullptr, nullptr, &state, &protocol, atr, &atrLength);
        if (rv == SCARD_S_SUCCESS)
            return nvcm::OK;
        s->gone = true;
        return readerGone(rv) ? nvcm::NoReader : nvcm::RemoveCard;
    }
    Private::Session s;
    const QByteArray name = reader.id.toUtf8();
    const LONG rv = SCardConnect(d->opContext, name.constData(), SCARD_SHARE_SHARED,
                                 SCARD_PROTOCOL_T0 | SCARD_PROTOCOL_T1, &s.handle, &s.protocol);
    if (rv != SCARD_S_SUCCESS) {
        if (rv == LONG(SCARD_E_NO_SMARTCARD) || rv == LONG(SCARD_W_REMOVED_CARD) || rv == LONG(SCARD_W_UNRESPONSIVE_CARD)
            || rv == LONG(SCARD_W_UNPOWERED_CARD))
            return nvcm::NoCard;
        qCDebug(lcSmartCard) << "pcsc: connect to" << reader.id << pcscError(rv);
        return readerGone(rv) ? nvcm::NoReader : nvcm::CommunicationError;
    }
    d->sessions.insert(reader.id, s);
    return nvcm::OK;
}

bool PcscBackend::isOpened(const nvcm::ReaderInfo &reader)
{
    QMutexLocker locker(&d->opMutex);
    return d->session(reader) != nullptr;
}

void PcscBackend::closeDevice(const nvcm::ReaderInfo &reader)
{
    QMutexLocker locker(&d->opMutex);
    if (Private::Session *s = d->session(reader)) {
        SCardDisconnect(s->handle, SCARD_LEAVE_CARD);
        d->sessions.remove(reader.id);
    }
}

void PcscBackend::ejectCard(const nvcm::ReaderInfo &reader)
{
    QMutexLocker locker(&d->opMutex);
    if (Private::Session *s = d->session(reader)) {
        SCardDisconnect(s->handle, SCARD_UNPOWER_CARD);
        d->sessions.remove(reader.id);
    }
}

int PcscBackend::getCard(const nvcm::ReaderInfo &reader, nvcm::SCardInfo &info)
{
    QMutexLocker locker(&d->opMutex);
    Private::Session *s = nullptr;
    if (const int code = d->begin(reader, s); code != nvcm::OK)
        return code;
    DWORD state = 0;
    DWORD protocol = 0;
    DWORD atrLength = MAX_ATR_SIZE;
    BYTE atr[MAX_ATR_SIZE];
    const LONG rv = SCardStatus(s->handle, nullptr, nullptr, &state, &protocol, atr, &atrLength);
    if (rv != SCARD_S_SUCCESS) {
        qCDebug(lcSmartCard) << "pcsc: status of" << reader.id << pcscError(rv);
        if (readerGone(rv))
            return nvcm::NoReader;
        s->gone = true;
        return nvcm::RemoveCard;
    }
    const QByteArray atrBytes(reinterpret_cast<const char *>(atr), int(atrLength));
    s->card = classifyAtr(atrBytes);
    s->appReady = false;
    if (s->card.iso14443_4) {
        if (const int code = d->identify(*s, reader.id); code != nvcm::OK)
            return code;
    }
    QByteArray answer;
    if (const int code = d->transmit(*s, QByteArray::fromHex("FFCA000000"), answer); code != nvcm::OK)
        return code;
    if (!Private::statusOk(answer)) {
        qCDebug(lcSmartCard) << "pcsc: the reader gives no UID:" << answer.toHex(' ');
        return nvcm::CommunicationError;
    }
    info.uid = answer.left(answer.size() - 2);
    info.type = s->card.type;
    info.subType = s->card.subType;
    info.name = s->card.name;
    info.memSize = s->card.memSize;
    info.userMemSize = s->card.userMemSize;
    info.atr = atrBytes;
    return nvcm::OK;
}

int PcscBackend::authorize(const nvcm::ReaderInfo &reader, const nvsc::SmartCardSettings &settings)
{
    QMutexLocker locker(&d->opMutex);
    Private::Session *s = nullptr;
    if (const int code = d->begin(reader, s); code != nvcm::OK)
        return code;
    s->authorised = false;
    s->authSector = -1;
    if (s->card.memSize == 0) {
        // getCard() was not called in this session: learn the card first.
        locker.unlock();
        nvcm::SCardInfo info;
        if (const int code = getCard(reader, info); code != nvcm::OK)
            return code;
        locker.relock();
        if (const int code = d->begin(reader, s); code != nvcm::OK)
            return code;
    }
    if (const int fit = Private::settingsFit(*s, settings); fit != nvcm::OK)
        return fit;
    if (s->card.type == MifareDESFire)
        return d->authorizeDesfire(*s, reader.id, static_cast<const nvsc::MifareDESFireSettings &>(settings));
    const auto &base = static_cast<const nvsc::MifareBaseSettings &>(settings);
    const auto [offset, length] = d->range(*s, settings);
    Q_UNUSED(length);
    const int block = blockOfDataIndex(offset / BlockSize);
    for (const Candidate &c : candidates(base)) {
        const int code = d->authenticate(*s, c, block);
        if (code == nvcm::AuthError) {
            // A Classic card halts after a refused key and ignores the
            // next one until it is selected again.
            if (const int reset = d->reactivate(*s); reset != nvcm::OK)
                return reset;
            continue;
        }
        if (code != nvcm::OK)
            return code;
        s->authorised = true;
        s->key = c;
        return nvcm::OK;
    }
    return nvcm::AuthError;
}

int PcscBackend::formatCard(const nvcm::ReaderInfo &reader, const nvsc::SmartCardSettings &settings,
                            const ProgressCallback &progress)
{
    return d->writeRange(reader, settings, nullptr, progress);
}

int PcscBackend::writeData(const nvcm::ReaderInfo &reader, const nvsc::SmartCardSettings &settings,
                           const QByteArray &data, const ProgressCallback &progress)
{
    return d->writeRange(reader, settings, &data, progress);
}

int PcscBackend::readData(const nvcm::ReaderInfo &reader, const nvsc::SmartCardSettings &settings, QByteArray &data)
{
    QMutexLocker locker(&d->opMutex);
    Private::Session *s = nullptr;
    if (const int code = d->beginAuthorised(reader, settings, s); code != nvcm::OK)
        return code;
    const auto [offset, length] = d->range(*s, settings);
    if (s->card.type == MifareDESFire) {
        const auto &desfireSettings = static_cast<const nvsc::MifareDESFireSettings &>(settings);
        if (const int code = d->openApplication(*s, reader.id, desfireSettings); code != nvcm::OK)
            return code;
        if (length == 0) {
            data.clear();
            return nvcm::OK;
        }
        return d->channel(*s, reader.id).readData(int(desfireSettings.fileId), quint32(offset), quint32(length), data);
    }
    QByteArray out;
    out.reserve(length + BlockSize);
    const int first = offset / BlockSize;
    const int total = (length + BlockSize - 1) / BlockSize;
    for (int i = 0; i < total; ++i) {
        QByteArray bytes;
        if (const int code = d->readBlock(*s, blockOfDataIndex(first + i), bytes); code != nvcm::OK)
            return code;
        out.append(bytes);
    }
    data = out.left(length);
    return nvcm::OK;
}

QByteArray PcscBackend::accessBytes(const QVector<quint8> &groups)
{
    if (groups.isEmpty())
        return QByteArray::fromHex("FF078069");
    if (groups.size() != 4)
        return QByteArray();
    uint c1 = 0, c2 = 0, c3 = 0;
    for (int i = 0; i < 4; ++i) {
        const uint v = groups.at(i);
        if (v > 7)
            return QByteArray();
        c1 |= ((v >> 2) & 1) << i;
        c2 |= ((v >> 1) & 1) << i;
        c3 |= (v & 1) << i;
    }
    QByteArray bytes(4, '\0');
    bytes[0] = char(((~c2 & 0xF) << 4) | (~c1 & 0xF));
    bytes[1] = char((c1 << 4) | (~c3 & 0xF));
    bytes[2] = char((c3 << 4) | c2);
    bytes[3] = char(0x69); // general purpose byte, as shipped
    return bytes;
}

bool PcscBackend::accessBytesValid(const QByteArray &bytes)
{
    if (bytes.size() < 3)
        return false;
    const uint b6 = uchar(bytes[0]), b7 = uchar(bytes[1]), b8 = uchar(bytes[2]);
    const uint c1 = b7 >> 4, c2 = b8 & 0xF, c3 = b8 >> 4;
    return (b6 & 0xF) == (~c1 & 0xF) && (b6 >> 4) == (~c2 & 0xF) && (b7 & 0xF) == (~c3 & 0xF);
}

int PcscBackend::updateKeys(const nvcm::ReaderInfo &reader, const nvsc::SmartCardSettings &settings)
{
    QMutexLocker locker(&d->opMutex);
    Private::Session *s = nullptr;
    if (const int code = d->beginAuthorised(reader, settings, s); code != nvcm::OK)
        return code;
    if (s->card.type == MifareDESFire)
        return d->updateDesfireKeys(*s, reader.id, static_cast<const nvsc::MifareDESFireSettings &>(settings));
    const auto &base = static_cast<const nvsc::MifareBaseSettings &>(settings);
    // Everything is checked before the first trailer is written: wrong
    // access bits lock a sector for good.
    const QByteArray access = accessBytes(base.blockAccess);
    if (!accessBytesValid(access)) {
        qCWarning(lcSmartCard) << "updateKeys: the access conditions" << base.blockAccess << "cannot be written";
        return nvcm::NotSupported;
    }
    if (base.keyA.data.size() != 6 || base.keyB.data.size() != 6) {
        qCWarning(lcSmartCard) << "updateKeys: Classic keys are 6 bytes, not" << base.keyA.data.size() << "and"
                               << base.keyB.data.size();
        return nvcm::NotSupported;
    }
    const QByteArray trailer = base.keyA.data + access + base.keyB.data;
    const auto [offset, length] = d->range(*s, settings);
    if (length <= 0)
        return nvcm::OK;
    const int firstBlock = blockOfDataIndex(offset / BlockSize);
    const int lastBlock = blockOfDataIndex((offset + length - 1) / BlockSize);
    for (int block = firstBlock; block <= lastBlock; block = trailerOf(block) + 1) {
        if (const int code = d->writeBlock(*s, trailerOf(block), trailer); code != nvcm::OK)
            return code;
    }
    // The card keeps the old key's authentication; later calls must
    // authorise with the new keys, as the next session will.
    s->authorised = false;
    s->authSector = -1;
    return nvcm::OK;
}

int PcscBackend::waitForCard(const nvcm::ReaderInfo &reader, int timeoutMs, bool present)
{
    QMutexLocker locker(&d->waitMutex);
    if (!Private::ensure(d->waitContext))
        return nvcm::NoReader;
    const QByteArray name = reader.id.toUtf8();
    SCARD_READERSTATE state{};
    state.szReader = name.constData();
    state.dwCurrentState = SCARD_STATE_UNAWARE;
    SCARDCONTEXT context = d->waitContext;
    const QDeadlineTimer deadline(timeoutMs);
    locker.unlock(); // cancelWaits() takes the mutex only to read the context
    LONG rv = SCardGetStatusChange(context, 0, &state, 1);
    while (rv == SCARD_S_SUCCESS && bool(state.dwEventState & SCARD_STATE_PRESENT) != present) {
        if (state.dwEventState & (SCARD_STATE_UNKNOWN | SCARD_STATE_UNAVAILABLE))
            return nvcm::NoReader;
        if (deadline.hasExpired())
            return nvcm::NoCard;
        state.dwCurrentState = state.dwEventState & ~DWORD(SCARD_STATE_CHANGED);
        rv = SCardGetStatusChange(context, DWORD(std::max<qint64>(1, deadline.remainingTime())), &state, 1);
    }
    if (rv == SCARD_S_SUCCESS)
        return nvcm::OK;
    if (readerGone(rv))
        return nvcm::NoReader;
    return nvcm::NoCard; // timed out or cancelled
}

void PcscBackend::cancelWaits()
{
    QMutexLocker locker(&d->waitMutex);
    if (d->waitContext)
        SCardCancel(d->waitContext);
}

int PcscBackend::transmit(const nvcm::ReaderInfo &reader, const QByteArray &apdu, QByteArray &answer)
{
    QMutexLocker locker(&d->opMutex);
    Private::Session *s = nullptr;
    if (const int code = d->begin(reader, s); code != nvcm::OK)
        return code;
    return d->transmit(*s, apdu, answer);
}

} // namespace nvsmartcard
