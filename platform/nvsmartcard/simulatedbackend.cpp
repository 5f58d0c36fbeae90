#include "simulatedbackend.h"
#include "cardlayout.h"
#include "nvsmartcardlog_p.h"

#include <dbparams.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMutexLocker>
#include <QRandomGenerator>
#include <QSaveFile>
#include <QThread>

#include <algorithm>
#include <cctype>

namespace nvsmartcard {

namespace {

// Classic and Plus are written a 16-byte block at a time; DESFire
// WriteData frames carry at most 52 bytes, we send 48 like most readers.
constexpr int BlockSize = CardBlockSize;
constexpr int DesfireFrame = 48;
// Larger than any contactless card there is.
constexpr qint64 MaxCardMemory = 64 * 1024;

const QLatin1String IdPrefix("sim:");

QByteArray randomUid(int length)
{
    QByteArray uid(length, '\0');
    for (char &c : uid)
        c = char(QRandomGenerator::global()->bounded(256));
    if (length == 7)
        uid[0] = '\x04'; // NXP's manufacturer code, as on every 7-byte Mifare UID
    else if (uint(uchar(uid[0])) == 0x88)
        uid[0] = '\x08'; // 0x88 is the cascade tag, never a first UID byte
    return uid;
}

bool isBlockCard(const VirtualCard &card)
{
    return card.type == MifareClassic || card.type == MifarePlus;
}

// PC/SC part 3 ATRs: storage cards carry their card name code, ISO 14443-4
// cards (DESFire, Plus in level 3) answer with the short generic form.
QByteArray atrFor(const VirtualCard &card)
{
    QByteArray atr;
    if (card.type == MifareClassic || (card.type == MifarePlus && card.plusLevel1)) {
        quint16 name = 0x0001;
        if (card.type == MifareClassic)
            name = card.memSize > 1024 ? 0x0002 : 0x0001;
        else
            name = card.memSize > 2048 ? 0x0037 : 0x0036;
        atr = QByteArray::fromHex("3B8F8001804F0CA000000306030000000000");
        atr[13] = char(name >> 8);
        atr[14] = char(name & 0xFF);
    } else {
        atr = QByteArray::fromHex("3B81800180");
    }
    char tck = 0;
    for (int i = 1; i < atr.size(); ++i)
        tck = char(tck ^ atr[i]);
    return atr + tck;
}

int keyTypeOf(const Key &key)
{
    if (key.type != NoKey)
        return key.type;
    switch (key.data.size()) {
    case 6:
        return Crypto1KeyA;
    case 16:
        return AesKey;
    case 24:
        return TripleDesKey;
    default:
        return DesKey;
    }
}

bool keyLengthFits(int type, int length)
{
    switch (type) {
    case Crypto1KeyA:
    case Crypto1KeyB:
        return length == 6;
    case DesKey:
        return length == 8 || length == 16;
    case AesKey:
        return length == 16;
    case TripleDesKey:
        return length == 24;
    default:
        return false;
    }
}

// OK when the settings are the kind the card's family needs, so that the
// casts below are safe; a card family we do not play is NotSupported.
int settingsFit(const VirtualCard &card, const nvsc::SmartCardSettings &settings)
{
    const nvsc::SmartCardSettings *s = &settings;
    bool fits = false;
    switch (card.type) {
    case MifareClassic:
        fits = dynamic_cast<const nvsc::MifareBaseSettings *>(s) != nullptr;
        break;
    case MifarePlus:
        fits = dynamic_cast<const nvsc::MifarePlusSettings *>(s) != nullptr;
        break;
    case MifareDESFire:
        fits = dynamic_cast<const nvsc::MifareDESFireSettings *>(s) != nullptr;
        break;
    default:
        return nvcm::NotSupported;
    }
    if (!fits || settings.cardType() != card.type) {
        qCDebug(lcSmartCard) << "settings for card type" << settings.cardType() << "on a" << card.name;
        return nvcm::AuthError;
    }
    return nvcm::OK;
}

enum class Slot { A, B, Master };

struct Candidate
{
    Slot slot;
    Key key;
};

// The keys authorisation tries, in order: legacy keys (in legacy mode),
// the settings' own, then the family's factory keys.
QVector<Candidate> candidates(const VirtualCard &card, const nvsc::SmartCardSettings &settings)
{
    QVector<Candidate> list;
    auto add = [&list](Slot slot, const Key &key) {
        if (!key.isEmpty())
            list.append({slot, key});
    };
    const bool legacy = settings.useLegacyMode;
    if (card.type == MifareDESFire) {
        const auto &s = static_cast<const nvsc::MifareDESFireSettings &>(settings);
        if (legacy)
            add(Slot::Master, s.legacyKey);
        add(Slot::Master, s.masterKey);
        // Only the factory key of the cipher the settings name: a card
        // personalised for DES refuses an all-zero AES key and vice versa.
        const int type = s.masterKey.isEmpty() ? DesKey : keyTypeOf(s.masterKey);
        add(Slot::Master, Key(type, nvsc::MifareDESFireSettings::defaultKey(type)));
    } else if (card.type == MifarePlus && !card.plusLevel1) {
        const auto &s = static_cast<const nvsc::MifarePlusSettings &>(settings).sl3;
        if (legacy) {
            add(Slot::A, s.legacyKey);
            add(Slot::B, s.legacyKey);
        }
        add(Slot::A, s.keyA);
        add(Slot::B, s.keyB);
        add(Slot::A, Key(AesKey, nvsc::MifarePlusSL3Settings::defaultKey()));
        add(Slot::B, Key(AesKey, nvsc::MifarePlusSL3Settings::defaultKey()));
    } else {
        for (const auto &c : static_cast<const nvsc::MifareBaseSettings &>(settings).authorisationKeys())
            add(c.isKeyB ? Slot::B : Slot::A, c.key);
    }
    return list;
}

bool keyOpens(const VirtualCard &card, const Candidate &c)
{
    switch (c.slot) {
    case Slot::A:
        return c.key.data == card.keyA.data;
    case Slot::B:
        return c.key.data == card.keyB.data;
    case Slot::Master:
        return keyTypeOf(c.key) == keyTypeOf(card.masterKey) && c.key.data == card.masterKey.data;
    }
    return false;
}

std::pair<int, int> userRange(const VirtualCard &card, const nvsc::SmartCardSettings &settings)
{
    return userDataRange(card.type, card.plusLevel1, card.memSize, card.userMemSize, settings);
}

VirtualCard blockCard(const QByteArray &uid, int uidLength, CardType type, quint32 memSize)
{
    VirtualCard card;
    card.uid = uid.isEmpty() ? randomUid(uidLength) : uid;
    card.type = type;
    card.memSize = memSize;
    card.userMemSize = blockCardUserMemory(memSize);
    card.keyA = Key(Crypto1KeyA, nvsc::MifareBaseSettings::transportKey());
    card.keyB = Key(Crypto1KeyB, nvsc::MifareBaseSettings::transportKey());
    card.userData = QByteArray(int(card.userMemSize), '\0');
    return card;
}

QJsonObject keyToJson(const Key &key)
{
    return QJsonObject{{QStringLiteral("type"), key.type},
                       {QStringLiteral("data"), QString::fromLatin1(key.data.toHex())}};
}

bool hexToBytes(const QJsonValue &value, QByteArray &out)
{
    if (!value.isString())
        return false;
    const QByteArray text = value.toString().toLatin1();
    if (text.size() % 2 != 0)
        return false;
    for (char c : text) {
        if (!std::isxdigit(uchar(c)))
            return false;
    }
    out = QByteArray::fromHex(text);
    return true;
}

bool keyFromJson(const QJsonValue &value, Key &key)
{
    if (value.isUndefined() || value.isNull()) {
        key = Key();
        return true;
    }
    const QJsonObject o = value.toObject();
    key.type = o.value(QStringLiteral("type")).toInt(-1);
    return key.type >= NoKey && key.type <= Crypto1KeyB && hexToBytes(o.value(QStringLiteral("data")), key.data);
}

QJsonObject cardToJson(const VirtualCard &card)
{
    return QJsonObject{
        {QStringLiteral("uid"), QString::fromLatin1(card.uid.toHex())},
        {QStringLiteral("type"), int(card.type)},
        {QStringLiteral("subType"), card.subType},
        {QStringLiteral("name"), card.name},
        {QStringLiteral("memSize"), qint64(card.memSize)},
        {QStringLiteral("userMemSize"), qint64(card.userMemSize)},
        {QStringLiteral("plusLevel1"), card.plusLevel1},
        {QStringLiteral("keyA"), keyToJson(card.keyA)},
        {QStringLiteral("keyB"), keyToJson(card.keyB)},
        {QStringLiteral("masterKey"), keyToJson(card.masterKey)},
        {QStringLiteral("appKey"), keyToJson(card.appKey)},
        {QStringLiteral("data"), QString::fromLatin1(card.userData.toHex())},
    };
}

// Empty when the card is sound, else what is wrong with it.
QString cardFromJson(const QJsonObject &o, VirtualCard &card)
{
    if (!hexToBytes(o.value(QStringLiteral("uid")), card.uid) || !(card.uid.size() == 4 || card.uid.size() == 7))
        return QStringLiteral("bad uid");
    const int type = o.value(QStringLiteral("type")).toInt();
    if (type != MifareClassic && type != MifareDESFire && type != MifarePlus)
        return QStringLiteral("unsupported card type %1").arg(type);
    card.type = CardType(type);
    card.subType = o.value(QStringLiteral("subType")).toInt();
    card.name = o.value(QStringLiteral("name")).toString();
    const qint64 mem = o.value(QStringLiteral("memSize")).toVariant().toLongLong();
    const qint64 user = o.value(QStringLiteral("userMemSize")).toVariant().toLongLong();
    if (mem <= 0 || mem > MaxCardMemory || user < 0 || user > mem)
        return QStringLiteral("bad memory sizes %1/%2").arg(user).arg(mem);
    card.memSize = quint32(mem);
    card.userMemSize = quint32(user);
    card.plusLevel1 = o.value(QStringLiteral("plusLevel1")).toBool();
    if (!keyFromJson(o.value(QStringLiteral("keyA")), card.keyA) || !keyFromJson(o.value(QStringLiteral("keyB")), card.keyB)
        || !keyFromJson(o.value(QStringLiteral("masterKey")), card.masterKey)
        || !keyFromJson(o.value(QStringLiteral("appKey")), card.appKey))
        return QStringLiteral("bad key");
    if (!hexToBytes(o.value(QStringLiteral("data")), card.userData) || card.userData.size() != int(card.userMemSize))
        return QStringLiteral("data is not %1 bytes of hex").arg(card.userMemSize);
    return QString();
}

} // namespace

// ---------------------------------------------------------------------------

VirtualCard VirtualCard::classic1K(const QByteArray &uid)
{
    VirtualCard card = blockCard(uid, 4, MifareClassic, 1024);
    card.subType = 1;
    card.name = QStringLiteral("Mifare Classic 1K");
    return card;
}

VirtualCard VirtualCard::classic4K(const QByteArray &uid)
{
    VirtualCard card = blockCard(uid, 4, MifareClassic, 4096);
    card.subType = 4;
    card.name = QStringLiteral("Mifare Classic 4K");
    return card;
}

VirtualCard VirtualCard::desfire(const QByteArray &uid, int kilobytes, int masterKeyType)
{
    kilobytes = std::clamp(kilobytes, 1, 32);
    VirtualCard card;
    card.uid = uid.isEmpty() ? randomUid(7) : uid;
    card.type = MifareDESFire;
    card.subType = kilobytes;
    card.name = QStringLiteral("Mifare DESFire %1K").arg(kilobytes);
    card.memSize = quint32(kilobytes) * 1024;
    card.userMemSize = desfireUserMemory(card.memSize);
    card.masterKey = Key(masterKeyType, nvsc::MifareDESFireSettings::defaultKey(masterKeyType));
    card.appKey = card.masterKey;
    card.userData = QByteArray(int(card.userMemSize), '\0');
    return card;
}

VirtualCard VirtualCard::plusLevel1Card(const QByteArray &uid, int kilobytes)
{
    VirtualCard card = blockCard(uid, 7, MifarePlus, kilobytes >= 4 ? 4096 : 2048);
    card.subType = card.memSize / 1024;
    card.plusLevel1 = true;
    card.name = QStringLiteral("Mifare Plus %1K SL1").arg(card.subType);
    card.masterKey = Key(AesKey, nvsc::MifarePlusSL3Settings::defaultKey());
    return card;
}

VirtualCard VirtualCard::plusLevel3Card(const QByteArray &uid, int kilobytes)
{
    VirtualCard card = blockCard(uid, 7, MifarePlus, kilobytes >= 4 ? 4096 : 2048);
    card.subType = card.memSize / 1024;
    card.name = QStringLiteral("Mifare Plus %1K SL3").arg(card.subType);
    card.keyA = Key(AesKey, nvsc::MifarePlusSL3Settings::defaultKey());
    card.keyB = card.keyA;
    card.masterKey = card.keyA;
    return card;
}

// ---------------------------------------------------------------------------

struct SimulatedBackend::Reader
{
    QString name;
    QString deviceType;
    bool plugged = true;

    std::optional<VirtualCard> card;   // lying on the reader
    std::optional<VirtualCard> pulled; // pulled off mid-write: in the operator's hand
    quint64 cardGeneration = 0;        // bumped whenever a card comes or goes
    int attemptsUntilVisible = 0;
    int pullAfterChunks = -1;

    bool opened = false;
    quint64 sessionGeneration = 0;     // the card the session was opened with
    bool authorised = false;
    Key sessionKey;
};

struct SimulatedBackend::Failure
{
    QString call;
    int code = 0;
    int times = -1;
};

SimulatedBackend::SimulatedBackend() = default;

SimulatedBackend::~SimulatedBackend()
{
    qDeleteAll(m_readers);
    qDeleteAll(m_failures);
}

std::shared_ptr<SimulatedBackend> SimulatedBackend::shared()
{
    static std::shared_ptr<SimulatedBackend> instance = [] {
        auto backend = std::make_shared<SimulatedBackend>();
        backend->addReader(QStringLiteral("Simulated Contactless Reader 0"), db::devices::cardreader::SMARTCARD);
        backend->addReader(QStringLiteral("Simulated Keyboard Reader 1"), db::devices::cardreader::HID);
        return backend;
    }();
    return instance;
}

int SimulatedBackend::addReader(const QString &name, const QString &deviceType)
{
    QMutexLocker locker(&m_mutex);
    auto *reader = new Reader;
    reader->name = name;
    reader->deviceType = deviceType;
    m_readers.append(reader);
    return m_readers.size() - 1;
}

void SimulatedBackend::removeReader(int reader)
{
    QMutexLocker locker(&m_mutex);
    if (Reader *r = readerAt(reader)) {
        // Unplugged: the slot stays so that ids of the others do not move.
        r->plugged = false;
        r->card.reset();
        r->pulled.reset();
        r->opened = false;
        r->authorised = false;
        ++r->cardGeneration;
    }
}

void SimulatedBackend::setReaderName(int reader, const QString &name)
{
    QMutexLocker locker(&m_mutex);
    if (Reader *r = readerAt(reader))
        r->name = name;
}

QString SimulatedBackend::readerDeviceType(int reader) const
{
    QMutexLocker locker(&m_mutex);
    const Reader *r = readerAt(reader);
    return r ? r->deviceType : QString();
}

int SimulatedBackend::readerCount() const
{
    QMutexLocker locker(&m_mutex);
    return int(std::count_if(m_readers.cbegin(), m_readers.cend(), [](const Reader *r) { return r->plugged; }));
}

void SimulatedBackend::putCard(int reader, const VirtualCard &card)
{
    QMutexLocker locker(&m_mutex);
    Reader *r = readerAt(reader);
    if (!r) {
        qCWarning(lcSmartCard) << "putCard: no reader" << reader;
        return;
    }
    if (card.userMemSize > card.memSize || card.memSize > MaxCardMemory) {
        qCWarning(lcSmartCard) << "putCard: no card has" << card.userMemSize << "of" << card.memSize << "bytes";
        return;
    }
    r->card = card;
    r->card->userData.resize(int(card.userMemSize));
    r->pulled.reset();
    ++r->cardGeneration;
}

std::optional<VirtualCard> SimulatedBackend::takeCard(int reader)
{
    QMutexLocker locker(&m_mutex);
    Reader *r = readerAt(reader);
    if (!r)
        return std::nullopt;
    std::optional<VirtualCard> card;
    if (r->card) {
        card.swap(r->card);
        ++r->cardGeneration;
    } else {
        card.swap(r->pulled);
    }
    return card;
}

std::optional<VirtualCard> SimulatedBackend::cardOn(int reader) const
{
    QMutexLocker locker(&m_mutex);
    const Reader *r = readerAt(reader);
    return r ? r->card : std::nullopt;
}

void SimulatedBackend::setCardAppearsOnAttempt(int reader, int attempt)
{
    QMutexLocker locker(&m_mutex);
    if (Reader *r = readerAt(reader))
        r->attemptsUntilVisible = std::max(0, attempt);
}

void SimulatedBackend::pullCardAfterChunks(int reader, int chunks)
{
    QMutexLocker locker(&m_mutex);
    if (Reader *r = readerAt(reader))
        r->pullAfterChunks = chunks;
}

void SimulatedBackend::failCall(const QString &call, int code, int times)
{
    QMutexLocker locker(&m_mutex);
    if (times == 0 || code < 0)
        return;
    m_failures.append(new Failure{call, code, times});
}

void SimulatedBackend::setChunkDelay(int ms)
{
    QMutexLocker locker(&m_mutex);
    m_chunkDelayMs = std::max(0, ms);
}

void SimulatedBackend::clearScript()
{
    QMutexLocker locker(&m_mutex);
    qDeleteAll(m_failures);
    m_failures.clear();
    m_chunkDelayMs = 0;
    for (Reader *r : std::as_const(m_readers)) {
        r->attemptsUntilVisible = 0;
        r->pullAfterChunks = -1;
    }
}

// ---------------------------------------------------------------------------

SimulatedBackend::Reader *SimulatedBackend::readerAt(int index) const
{
    if (index < 0 || index >= m_readers.size() || !m_readers.at(index)->plugged)
        return nullptr;
    return m_readers.at(index);
}

SimulatedBackend::Reader *SimulatedBackend::findReader(const nvcm::ReaderInfo &reader) const
{
    if (!reader.id.startsWith(IdPrefix))
        return nullptr;
    bool ok = false;
    const int index = reader.id.mid(IdPrefix.size()).toInt(&ok);
    return ok ? readerAt(index) : nullptr;
}

int SimulatedBackend::scriptedFailure(const QString &call)
{
    for (int i = 0; i < m_failures.size(); ++i) {
        Failure *f = m_failures.at(i);
        if (f->call != call)
            continue;
        const int code = f->code;
        if (f->times > 0 && --f->times == 0)
            delete m_failures.takeAt(i);
        return code;
    }
    return -1;
}

int SimulatedBackend::beginCall(const nvcm::ReaderInfo &reader, const QString &call, Reader *&found)
{
    found = findReader(reader);
    if (!found)
        return nvcm::NoReader;
    if (found->deviceType != db::devices::cardreader::SMARTCARD)
        return nvcm::NotSupported;
    const int failure = scriptedFailure(call);
    if (failure >= 0)
        return failure;
    if (!found->opened)
        return nvcm::DeviceNotOpened;
    // Like a PC/SC handle: once its card left, it answers "removed" until
    // it is closed, even if a card lies there again.
    if (!found->card || found->cardGeneration != found->sessionGeneration)
        return nvcm::RemoveCard;
    return nvcm::OK;
}

QList<nvcm::ReaderInfo> SimulatedBackend::listReaders()
{
    QMutexLocker locker(&m_mutex);
    QList<nvcm::ReaderInfo> list;
    for (int i = 0; i < m_readers.size(); ++i) {
        const Reader *r = m_readers.at(i);
        if (r->plugged)
            list.append({IdPrefix + QString::number(i), r->name, r->deviceType});
    }
    return list;
}

QString SimulatedBackend::readerProperty(const nvcm::ReaderInfo &reader, const QString &key)
{
    QMutexLocker locker(&m_mutex);
    const Reader *r = findReader(reader);
    if (!r)
        return QString();
    if (key == nvcm::CAN_WRITE_DATA)
        return r->deviceType == db::devices::cardreader::SMARTCARD ? QStringLiteral("1") : QStringLiteral("0");
    if (key == nvcm::NAME)
        return r->name;
    return QString();
}

int SimulatedBackend::openDevice(const nvcm::ReaderInfo &reader)
{
    QMutexLocker locker(&m_mutex);
    Reader *r = findReader(reader);
    if (!r)
        return nvcm::NoReader;
    // A keyboard reader types the number itself; there is nothing to open.
    if (r->deviceType != db::devices::cardreader::SMARTCARD)
        return nvcm::NotSupported;
    const int failure = scriptedFailure(QStringLiteral("openDevice"));
    if (failure >= 0)
        return failure;
    if (r->attemptsUntilVisible > 0 && --r->attemptsUntilVisible > 0)
        return nvcm::NoCard;
    if (!r->card)
        return nvcm::NoCard;
    if (r->opened)
        return r->cardGeneration == r->sessionGeneration ? int(nvcm::OK) : int(nvcm::RemoveCard);
    r->opened = true;
    r->sessionGeneration = r->cardGeneration;
    r->authorised = false;
    r->sessionKey = Key();
    return nvcm::OK;
}

bool SimulatedBackend::isOpened(const nvcm::ReaderInfo &reader)
{
    QMutexLocker locker(&m_mutex);
    const Reader *r = findReader(reader);
    return r && r->opened;
}

void SimulatedBackend::closeDevice(const nvcm::ReaderInfo &reader)
{
    QMutexLocker locker(&m_mutex);
    if (Reader *r = findReader(reader)) {
        r->opened = false;
        r->authorised = false;
        r->sessionKey = Key();
    }
}

void SimulatedBackend::ejectCard(const nvcm::ReaderInfo &reader)
{
    // A contactless reader cannot push a card out: powering it down ends the
    // session, and the card stays in the field until the operator takes it.
    closeDevice(reader);
}

int SimulatedBackend::getCard(const nvcm::ReaderInfo &reader, nvcm::SCardInfo &info)
{
    QMutexLocker locker(&m_mutex);
    Reader *r = nullptr;
    const int code = beginCall(reader, QStringLiteral("getCard"), r);
    if (code != nvcm::OK)
        return code;
    const VirtualCard &card = *r->card;
    info.uid = card.uid;
    info.type = card.type;
    info.subType = card.subType;
    info.name = card.name;
    info.memSize = card.memSize;
    info.userMemSize = card.userMemSize;
    info.atr = atrFor(card);
    return nvcm::OK;
}

int SimulatedBackend::authorize(const nvcm::ReaderInfo &reader, const nvsc::SmartCardSettings &settings)
{
    QMutexLocker locker(&m_mutex);
    Reader *r = nullptr;
    const int code = beginCall(reader, QStringLiteral("authorize"), r);
    if (code != nvcm::OK)
        return code;
    r->authorised = false;
    r->sessionKey = Key();
    const VirtualCard &card = *r->card;
    if (const int fit = settingsFit(card, settings); fit != nvcm::OK)
        return fit;
    for (const Candidate &c : candidates(card, settings)) {
        if (keyOpens(card, c)) {
            r->authorised = true;
            r->sessionKey = c.key;
            return nvcm::OK;
        }
    }
    return nvcm::AuthError;
}

int SimulatedBackend::writeChunks(const nvcm::ReaderInfo &reader, const QString &call,
                                  const nvsc::SmartCardSettings &settings, const QByteArray *data,
                                  const ProgressCallback &progress)
{
    QByteArray payload;
    int offset = 0;
    int chunk = BlockSize;
    {
        QMutexLocker locker(&m_mutex);
        Reader *r = nullptr;
        const int code = beginCall(reader, call, r);
        if (code != nvcm::OK)
            return code;
        if (const int fit = settingsFit(*r->card, settings); fit != nvcm::OK)
            return fit;
        if (!r->authorised)
            return nvcm::AuthError;
        const auto [begin, length] = userRange(*r->card, settings);
        offset = begin;
        if (data) {
            if (data->size() > length)
                return nvcm::TooMuchData;
            payload = *data;
        } else {
            payload = QByteArray(length, '\0');
        }
        if (isBlockCard(*r->card)) {
            // A block is always written whole; the rest of the last one is
            // zero, as formatting left it.
            // (QByteArray::resize() would leave the new bytes uninitialised.)
            payload.append(QByteArray((BlockSize - payload.size() % BlockSize) % BlockSize, '\0'));
        } else {
            chunk = DesfireFrame;
        }
    }

    const int total = (payload.size() + chunk - 1) / chunk;
    for (int i = 0; i < total; ++i) {
        int delay = 0;
        {
            QMutexLocker locker(&m_mutex);
            Reader *r = findReader(reader);
            if (!r)
                return nvcm::NoReader;
            if (!r->opened)
                return nvcm::DeviceNotOpened;
            if (!r->card || r->cardGeneration != r->sessionGeneration)
                return nvcm::RemoveCard;
            if (r->pullAfterChunks == 0) {
                r->pullAfterChunks = -1;
                r->pulled.swap(r->card);
                ++r->cardGeneration;
                qCDebug(lcSmartCard) << call << "card pulled after chunk" << i << "of" << total;
                return nvcm::RemoveCard;
            }
            const QByteArray piece = payload.mid(i * chunk, chunk);
            r->card->userData.replace(offset + i * chunk, piece.size(), piece);
            if (r->pullAfterChunks > 0)
                --r->pullAfterChunks;
            delay = m_chunkDelayMs;
        }
        if (progress)
            progress(i + 1, total);
        if (delay > 0)
            QThread::msleep(ulong(delay));
    }
    return nvcm::OK;
}

int SimulatedBackend::formatCard(const nvcm::ReaderInfo &reader, const nvsc::SmartCardSettings &settings,
                                 const ProgressCallback &progress)
{
    return writeChunks(reader, QStringLiteral("formatCard"), settings, nullptr, progress);
}

int SimulatedBackend::writeData(const nvcm::ReaderInfo &reader, const nvsc::SmartCardSettings &settings,
                                const QByteArray &data, const ProgressCallback &progress)
{
    return writeChunks(reader, QStringLiteral("writeData"), settings, &data, progress);
}

int SimulatedBackend::readData(const nvcm::ReaderInfo &reader, const nvsc::SmartCardSettings &settings,
                               QByteArray &data)
{
    QMutexLocker locker(&m_mutex);
    Reader *r = nullptr;
    const int code = beginCall(reader, QStringLiteral("readData"), r);
    if (code != nvcm::OK)
        return code;
    if (const int fit = settingsFit(*r->card, settings); fit != nvcm::OK)
        return fit;
    if (!r->authorised)
        return nvcm::AuthError;
    const auto [offset, length] = userRange(*r->card, settings);
    data = r->card->userData.mid(offset, length);
    return nvcm::OK;
}

int SimulatedBackend::updateKeys(const nvcm::ReaderInfo &reader, const nvsc::SmartCardSettings &settings)
{
    QMutexLocker locker(&m_mutex);
    Reader *r = nullptr;
    const int code = beginCall(reader, QStringLiteral("updateKeys"), r);
    if (code != nvcm::OK)
        return code;
    if (const int fit = settingsFit(*r->card, settings); fit != nvcm::OK)
        return fit;
    if (!r->authorised)
        return nvcm::AuthError;
    VirtualCard &card = *r->card;

    // Every new key is checked before any is written, so a bad one leaves
    // the card with the keys it had.
    struct Change
    {
        Key *target;
        Key key;
    };
    QVector<Change> changes;
    auto change = [&changes](Key *target, const Key &key, int type) {
        if (!key.isEmpty())
            changes.append({target, Key(type, key.data)});
    };
    if (card.type == MifareDESFire) {
        const auto &s = static_cast<const nvsc::MifareDESFireSettings &>(settings);
        change(&card.masterKey, s.masterKey, keyTypeOf(s.masterKey));
        change(&card.appKey, s.appKey, keyTypeOf(s.appKey));
    } else if (card.type == MifarePlus && !card.plusLevel1) {
        const auto &s = static_cast<const nvsc::MifarePlusSettings &>(settings).sl3;
        change(&card.keyA, s.keyA, AesKey);
        change(&card.keyB, s.keyB, AesKey);
        change(&card.masterKey, s.masterKey, AesKey);
    } else {
        const auto &s = static_cast<const nvsc::MifareBaseSettings &>(settings);
        change(&card.keyA, s.keyA, Crypto1KeyA);
        change(&card.keyB, s.keyB, Crypto1KeyB);
    }
    for (const Change &c : std::as_const(changes)) {
        if (!keyLengthFits(c.key.type, c.key.data.size())) {
            qCWarning(lcSmartCard) << "updateKeys: a key of type" << c.key.type << "cannot be" << c.key.data.size()
                                   << "bytes long";
            return nvcm::NotSupported;
        }
    }
    for (const Change &c : std::as_const(changes))
        *c.target = c.key;
    // The session authenticated with the old key; a card drops it on change.
    r->authorised = false;
    r->sessionKey = Key();
    return nvcm::OK;
}

// ---------------------------------------------------------------------------

bool SimulatedBackend::saveState(const QString &path) const
{
    QJsonArray readers;
    {
        QMutexLocker locker(&m_mutex);
        for (const Reader *r : std::as_const(m_readers)) {
            QJsonObject o{{QStringLiteral("name"), r->name},
                          {QStringLiteral("deviceType"), r->deviceType},
                          {QStringLiteral("plugged"), r->plugged}};
            if (r->card)
                o.insert(QStringLiteral("card"), cardToJson(*r->card));
            readers.append(o);
        }
    }
    const QByteArray bytes =
        QJsonDocument(QJsonObject{{QStringLiteral("version"), 1}, {QStringLiteral("readers"), readers}}).toJson();

    QString error;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        error = QStringLiteral("cannot write %1: %2").arg(path, file.errorString());
    QMutexLocker locker(&m_mutex);
    m_error = error;
    if (!error.isEmpty())
        qCWarning(lcSmartCard).noquote() << "saveState:" << error;
    return error.isEmpty();
}

bool SimulatedBackend::loadState(const QString &path)
{
    struct Entry
    {
        QString name;
        QString deviceType;
        bool plugged = true;
        std::optional<VirtualCard> card;
    };
    QVector<Entry> entries;
    QString error;
    auto parse = [&]() -> QString {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return QStringLiteral("cannot read %1: %2").arg(path, file.errorString());
        QJsonParseError parseError;
        const QJsonDocument doc = QJsonDocument::fromJson(file.readAll(), &parseError);
        if (parseError.error != QJsonParseError::NoError)
            return QStringLiteral("%1 is not JSON: %2 at %3").arg(path, parseError.errorString()).arg(parseError.offset);
        const QJsonObject root = doc.object();
        if (root.value(QStringLiteral("version")).toInt() != 1 || !root.value(QStringLiteral("readers")).isArray())
            return QStringLiteral("%1 is not a card state of version 1").arg(path);
        const QJsonArray readers = root.value(QStringLiteral("readers")).toArray();
        for (int i = 0; i < readers.size(); ++i) {
            const QJsonObject o = readers.at(i).toObject();
            Entry entry;
            entry.name = o.value(QStringLiteral("name")).toString();
            entry.deviceType = o.value(QStringLiteral("deviceType")).toString();
            entry.plugged = o.value(QStringLiteral("plugged")).toBool(true);
            if (o.contains(QStringLiteral("card"))) {
                VirtualCard card;
                const QString why = cardFromJson(o.value(QStringLiteral("card")).toObject(), card);
                if (!why.isEmpty())
                    return QStringLiteral("%1: card of reader %2: %3").arg(path).arg(i).arg(why);
                entry.card = card;
            }
            entries.append(entry);
        }
        return QString();
    };
    error = parse();

    QMutexLocker locker(&m_mutex);
    m_error = error;
    if (!error.isEmpty()) {
        qCWarning(lcSmartCard).noquote() << "loadState:" << error;
        return false;
    }
    // Readers the host already has keep their names; missing ones come back.
    for (int i = 0; i < entries.size(); ++i) {
        const Entry &entry = entries.at(i);
        if (i >= m_readers.size()) {
            auto *reader = new Reader;
            reader->name = entry.name;
            reader->deviceType = entry.deviceType.isEmpty() ? db::devices::cardreader::SMARTCARD : entry.deviceType;
            reader->plugged = entry.plugged;
            m_readers.append(reader);
        }
        Reader *r = m_readers.at(i);
        if (!r->plugged)
            continue;
        r->card = entry.card;
        r->pulled.reset();
        ++r->cardGeneration;
    }
    return true;
}

QString SimulatedBackend::errorString() const
{
    QMutexLocker locker(&m_mutex);
    return m_error;
}

} // namespace nvsmartcard
