#include "usbcardreadermanager.h"

#include "cardblocks_p.h"
#include "nvdialogsutils.h"
#include "usbcardreadermanager_p.h"

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <objecttypes.h>

#include <nvscsettings.h>

#include <QMessageLogger>
#include <QThread>
#include <QtConcurrent>

using nivaro::ObjectInfo;

// Card work is chatty (fifty open attempts per read), so its lines appear
// only while the library's debug switch is on.
#define CARD_DEBUG                                                                                                     \
    if (!NVDialogsUtils::debugEnabled()) {                                                                             \
    } else                                                                                                             \
        QMessageLogger("src/usbcardreadermanager", __LINE__, Q_FUNC_INFO).debug()

namespace {

constexpr int OpenAttempts = 50;
constexpr int AttemptsPerTick = 10;
constexpr unsigned long OpenIntervalMs = 100;
constexpr unsigned long RemoveCardWaitMs = 3000;

// Ticks of each operation: five while waiting for the card, then one per
// step (authorise, format, format done for a plain format; authorise,
// format, write, change keys for a write).
constexpr int WaitTicks = OpenAttempts / AttemptsPerTick;
constexpr int ReadTicks = WaitTicks;
constexpr int FormatTicks = WaitTicks + 3;
constexpr int WriteTicks = WaitTicks + 4;

// The data type of the employee identifier block.
constexpr quint8 UidDataType = 2;

QString removeCardText()
{
    return USBCardReaderManager::tr("Ошибка. Уберите карту со считывателя и повторите операцию.");
}

QString readErrorText()
{
    return USBCardReaderManager::tr("Ошибка чтения идентификатора карты.");
}

// The card record as the dialogs keep it. The number the card widget shows
// is its own business (it derives it from the UID in the site's format).
ObjectInfo cardRecord(const nvcm::SCardInfo &info)
{
    ObjectInfo card(0, nivaro::OT_CARD);
    card.setParameter(nvcm::UID, info.uidText());
    card.setParameter(nvcm::TYPE, QString::number(int(info.type)));
    card.setParameter(nvcm::SUBTYPE, QString::number(info.subType));
    card.setParameter(nvcm::CARD_NAME, info.name);
    card.setParameter(nvcm::MEM_SIZE, QString::number(info.memSize));
    card.setParameter(nvcm::USER_MEM_SIZE, QString::number(info.userMemSize));
    return card;
}

// The UID bytes as one number, first byte most significant, as the hex
// text reads. Longer UIDs than eight bytes keep their last eight.
} // namespace

// ---- USBCardReaderManagerPrivate ---------------------------------------------

USBCardReaderManagerPrivate::USBCardReaderManagerPrivate(USBCardReaderManager *qq)
    : QObject(qq)
    , q(qq)
    , cardManager(new NVCardManager(this))
{
    // The library is the one that asks for keys, so it is the source; this
    // side only relays, and directly, because the question is asked on the
    // worker thread and needs its answer there.
    connect(cardManager, &NVCardManager::getCardKeys, this, &USBCardReaderManagerPrivate::getCardKeys,
            Qt::DirectConnection);

    const QList<nvcm::ReaderInfo> list = cardManager->listReaders();
    for (int i = 0; i < list.size(); ++i) {
        const nvcm::ReaderInfo &info = list.at(i);
        ObjectInfo reader(quint32(i), nivaro::OT_DEVICE);
        reader.setParameter(nvcm::NAME, info.name);
        reader.setParameter(db::devices::TYPE, info.deviceType);
        readers.insert(quint32(i), reader);
        readerInfos.insert(quint32(i), info);
    }
    CARD_DEBUG << "Readers" << list.size();
}

USBCardReaderManagerPrivate::~USBCardReaderManagerPrivate()
{
    // The worker uses this object until it returns; the card widget may be
    // closed in the middle of a write.
    watcher.waitForFinished();
}

int USBCardReaderManagerPrivate::start(quint32 reader, Worker worker, void (USBCardReaderManagerPrivate::*finished)(),
                                       int ticks)
{
    // Two workers on one reader would interleave their commands to the
    // card, and the running one reads the fields set below.
    if (busy) {
        CARD_DEBUG << "Reader busy" << reader;
        return 0;
    }
    currentReader = reader;
    const auto it = readers.constFind(reader);
    if (it == readers.constEnd() || it->parameter(db::devices::TYPE) != db::devices::cardreader::SMARTCARD) {
        CARD_DEBUG << "No smart-card reader" << reader;
        return 0;
    }
    updateCardProfileInherit();
    operationCard = cardObject;
    watcher.disconnect(this);
    const QFuture<ObjectInfo> future = QtConcurrent::run(this, worker);
    connect(&watcher, &QFutureWatcher<ObjectInfo>::finished, this, finished);
    connect(&watcher, &QFutureWatcher<ObjectInfo>::canceled, this, finished);
    busy = true;
    watcher.setFuture(future);
    return ticks;
}

bool USBCardReaderManagerPrivate::finishOperation()
{
    // finished() and canceled() both lead here; answer once.
    if (!busy)
        return false;
    busy = false;
    return true;
}

void USBCardReaderManagerPrivate::removeCard(const nvcm::ReaderInfo &reader)
{
    cardManager->ejectCard(reader);
    Q_EMIT q->error(removeCardText());
    QThread::msleep(RemoveCardWaitMs);
    cardManager->closeDevice(reader);
}

void USBCardReaderManagerPrivate::failAndClose(const nvcm::ReaderInfo &reader, const QString &text)
{
    cardManager->closeDevice(reader);
    Q_EMIT q->error(text);
}

bool USBCardReaderManagerPrivate::waitCard(const nvcm::ReaderInfo &reader)
{
    CARD_DEBUG << "WAIT CARD";
    if (cardManager->isOpened(reader))
        return true;
    int result = -1;
    int attempt = 0;
    while (attempt < OpenAttempts) {
        ++attempt;
        result = cardManager->openDevice(reader);
        CARD_DEBUG << "WAIT CARD: open" << result;
        QThread::msleep(OpenIntervalMs);
        if (attempt % AttemptsPerTick == 0) {
            Q_EMIT q->tick();
            Q_EMIT q->tickMessage(USBCardReaderManager::tr("Идет чтение карты. Осталось %1 сек.")
                                          .arg((OpenAttempts - attempt) / AttemptsPerTick));
        }
        if (result == nvcm::OK)
            break;
    }
    if (result != nvcm::OK) {
        if (result == nvcm::RemoveCard)
            removeCard(reader);
        else
            cardManager->closeDevice(reader);
        return false;
    }
    // The progress bar was sized for the whole wait.
    for (int i = attempt / AttemptsPerTick; i < WaitTicks; ++i)
        Q_EMIT q->tick();
    return true;
}

bool USBCardReaderManagerPrivate::readCardInfo(const nvcm::ReaderInfo &reader, nvcm::SCardInfo &info)
{
    const int code = cardManager->getCard(reader, info);
    CARD_DEBUG << "GET CARD!!!" << code;
    if (code == nvcm::RemoveCard) {
        removeCard(reader);
        return false;
    }
    if (code != nvcm::OK) {
        failAndClose(reader, readErrorText());
        return false;
    }
    return true;
}

void USBCardReaderManagerPrivate::updateReader(const nvcm::ReaderInfo &reader, ObjectInfo *card)
{
    const QString typeName = cardManager->getCardTypeName(reader);
    const QString canWrite = cardManager->readerProperty(reader, nvcm::CAN_WRITE_DATA);
    if (card) {
        card->setParameter(nvcm::CARD_NAME, typeName);
        card->setParameter(nvcm::CAN_WRITE_DATA, canWrite);
    }
    ObjectInfo record = readers.value(currentReader);
    record.setParameter(nvcm::CARD_NAME, typeName);
    record.setParameter(nvcm::CAN_WRITE_DATA, canWrite);
    // The hash belongs to the GUI thread (readers() reads it there): update
    // it there, ahead of readerAdded, which is queued behind this.
    const quint32 index = currentReader;
    QMetaObject::invokeMethod(
            this, [this, index, record] { readers.insert(index, record); }, Qt::QueuedConnection);
    Q_EMIT q->readerAdded(record);
}

bool USBCardReaderManagerPrivate::authorizeCard(const nvcm::ReaderInfo &reader, const SmartCardProfile &profile,
                                                nvsmartcard::CardType type,
                                                std::unique_ptr<nvsc::SmartCardSettings> &used)
{
    Q_EMIT q->tick();
    Q_EMIT q->tickMessage(USBCardReaderManager::tr("Авторизация на карте"));
    const QList<nvsc::SmartCardSettings *> candidates = profile.smartCardSettings(type);
    std::vector<std::unique_ptr<nvsc::SmartCardSettings>> owned;
    for (nvsc::SmartCardSettings *settings : candidates)
        owned.emplace_back(settings);

    int code = nvcm::AuthError;
    for (auto &settings : owned) {
        cardManager->setSmartCardSettings(settings.get());
        code = cardManager->authorize(reader);
        if (code == nvcm::OK) {
            used = std::move(settings);
            break;
        }
        if (code == nvcm::RemoveCard)
            break;
    }
    if (code == nvcm::OK) {
        CARD_DEBUG << "AUTHORIZED";
        return true;
    }
    CARD_DEBUG << "AUTHORIZE FAILED" << code << candidates.size();
    if (code == nvcm::RemoveCard) {
        removeCard(reader);
    } else {
        Q_EMIT q->error(USBCardReaderManager::tr("Авторизация на карте не удалась. Выберите другой профиль карты."));
        cardManager->ejectCard(reader);
        cardManager->closeDevice(reader);
    }
    return false;
}

bool USBCardReaderManagerPrivate::formatStep(const nvcm::ReaderInfo &reader, const nvsc::SmartCardSettings &settings,
                                             bool tickOnSuccess)
{
    Q_UNUSED(settings)
    Q_EMIT q->tick();
    Q_EMIT q->tickMessage(USBCardReaderManager::tr("Форматирование карты. Ожидайте..."));
    cardManager->setWriteCallback([this](int done, int total) { q->formatCallback(done, total); });
    const int code = cardManager->formatCard(reader);
    cardManager->setWriteCallback({});
    if (code == nvcm::OK) {
        if (tickOnSuccess)
            Q_EMIT q->tick();
        return true;
    }
    CARD_DEBUG << "FORMAT FAILED" << code;
    if (code == nvcm::RemoveCard)
        removeCard(reader);
    else
        failAndClose(reader, USBCardReaderManager::tr("Ошибка форматирования карты."));
    return false;
}

bool USBCardReaderManagerPrivate::updateKeysStep(const nvcm::ReaderInfo &reader, nvsc::SmartCardSettings &settings)
{
    CARD_DEBUG << "CHANGE KEY";
    const int code = cardManager->updateSmartCardKeys(reader, &settings);
    if (code == nvcm::OK)
        return true;
    CARD_DEBUG << "CHANGE KEY FAILED" << code;
    if (code == nvcm::AuthError)
        failAndClose(reader, USBCardReaderManager::tr("Ошибка авторизации при записи ключа на карту."));
    else if (code == nvcm::RemoveCard)
        removeCard(reader);
    else
        failAndClose(reader, USBCardReaderManager::tr("Ошибка записи ключа авторизации на карту (%1).").arg(code));
    return false;
}

ObjectInfo USBCardReaderManagerPrivate::doReadCard()
{
    const nvcm::ReaderInfo reader = readerInfos.value(currentReader);
    if (!waitCard(reader))
        return ObjectInfo();

    nvcm::SCardInfo info;
    const int code = cardManager->getCard(reader, info);
    CARD_DEBUG << "GET CARD!!!" << code;
    if (code == nvcm::RemoveCard) {
        removeCard(reader);
        return ObjectInfo();
    }
    // A card that answered with an error has no UID to show; reporting it
    // as read would hand the card widget an empty number.
    if (code != nvcm::OK) {
        cardManager->closeDevice(reader);
        return ObjectInfo();
    }
    // The library names the card it read last, so ask after reading it.
    ObjectInfo card = cardRecord(info);
    updateReader(reader, nullptr);
    cardManager->closeDevice(reader);
    return card;
}

void USBCardReaderManagerPrivate::doReadCardFinished()
{
    if (!finishOperation())
        return;
    if (watcher.isCanceled()) {
        Q_EMIT q->finished();
        return;
    }
    const ObjectInfo result = watcher.result();
    if (result.isValid()) {
        Q_EMIT q->message(USBCardReaderManager::tr("Прочитан идентификатор карты."));
        Q_EMIT q->cardReadDelay(result);
    } else {
        Q_EMIT q->error(readErrorText());
    }
    Q_EMIT q->finished();
}

ObjectInfo USBCardReaderManagerPrivate::doFormatCard()
{
    CARD_DEBUG << "DO FORMAT CARD";
    const nvcm::ReaderInfo reader = readerInfos.value(currentReader);
    if (!waitCard(reader))
        return ObjectInfo();
    nvcm::SCardInfo info;
    if (!readCardInfo(reader, info))
        return ObjectInfo();
    ObjectInfo card = cardRecord(info);
    updateReader(reader, &card);
    Q_EMIT q->message(USBCardReaderManager::tr("Прочитан идентификатор карты"));

    const SmartCardProfile profile = getCardProfile(card);
    std::unique_ptr<nvsc::SmartCardSettings> settings;
    if (!authorizeCard(reader, profile, info.type, settings))
        return ObjectInfo();
    if (!formatStep(reader, *settings, true))
        return ObjectInfo();
    if (!updateKeysStep(reader, *settings))
        return ObjectInfo();

    mergeCardInfo(card);
    cardManager->closeDevice(reader);
    CARD_DEBUG << "DO FORMAT CARD FINISHED";
    return card;
}

void USBCardReaderManagerPrivate::doFormatCardFinished()
{
    finishWithCard(USBCardReaderManager::tr("Данные очищены."));
}

// Format and writes end alike: the card, then what was done; a failure
// has already said why.
void USBCardReaderManagerPrivate::finishWithCard(const QString &doneText)
{
    if (!finishOperation())
        return;
    if (!watcher.isCanceled()) {
        const ObjectInfo result = watcher.result();
        if (result.isValid()) {
            Q_EMIT q->cardReadDelay(result);
            Q_EMIT q->message(doneText);
        }
    }
    Q_EMIT q->finished();
}

ObjectInfo USBCardReaderManagerPrivate::doWriteData(const QByteArray &data)
{
    CARD_DEBUG << "DO WRITE DATA";
    const nvcm::ReaderInfo reader = readerInfos.value(currentReader);
    if (!waitCard(reader))
        return ObjectInfo();
    nvcm::SCardInfo info;
    if (!readCardInfo(reader, info))
        return ObjectInfo();
    ObjectInfo card = cardRecord(info);
    CARD_DEBUG << "DO WRITE DATA CARD MEM SIZE" << card.parameter(nvcm::MEM_SIZE);
    // A block exactly as long as the memory still fits.
    if (card.parameter(nvcm::MEM_SIZE).toLongLong() < data.size()) {
        Q_EMIT q->error(USBCardReaderManager::tr("Слишком много данных для карты данного типа."));
        QThread::msleep(RemoveCardWaitMs);
        cardManager->closeDevice(reader);
        return ObjectInfo();
    }
    updateReader(reader, &card);
    Q_EMIT q->message(USBCardReaderManager::tr("Прочитан идентификатор карты"));

    const SmartCardProfile profile = getCardProfile(card);
    std::unique_ptr<nvsc::SmartCardSettings> settings;
    if (!authorizeCard(reader, profile, info.type, settings))
        return ObjectInfo();
    if (!formatStep(reader, *settings, false))
        return ObjectInfo();

    Q_EMIT q->tick();
    Q_EMIT q->tickMessage(USBCardReaderManager::tr("Запись данных. Ожидайте..."));
    cardManager->setWriteCallback([this](int done, int total) { q->writeCallback(done, total); });
    const int code = cardManager->writeData(reader, data);
    cardManager->setWriteCallback({});
    if (code != nvcm::OK) {
        CARD_DEBUG << "WRITE DATA FAILED" << code;
        if (code == nvcm::AuthError)
            failAndClose(reader, USBCardReaderManager::tr("Ошибка авторизации при записи данных на карту."));
        else if (code == nvcm::RemoveCard)
            removeCard(reader);
        else
            failAndClose(reader, USBCardReaderManager::tr("Ошибка записи данных на карту (%1).").arg(code));
        return ObjectInfo();
    }

    Q_EMIT q->tick();
    Q_EMIT q->tickMessage(USBCardReaderManager::tr("Обновление ключа авторизации карты"));
    if (!updateKeysStep(reader, *settings))
        return ObjectInfo();

    mergeCardInfo(card);
    cardManager->closeDevice(reader);
    CARD_DEBUG << "DO WRITE DATA FINISHED";
    return card;
}

// The steps both writes take before they build their block from the card:
// wait for it, read it, and note its type name and write capability.
bool USBCardReaderManagerPrivate::cardForWrite(const char *tag, nvcm::SCardInfo &info, ObjectInfo &card)
{
    const nvcm::ReaderInfo reader = readerInfos.value(currentReader);
    if (!waitCard(reader))
        return false;
    CARD_DEBUG << QByteArray(QByteArray(tag) + ": card exists, then get card").constData();
    if (!readCardInfo(reader, info))
        return false;
    CARD_DEBUG << QByteArray(QByteArray(tag) + ": card exists, then get card type name").constData();
    card = cardRecord(info);
    updateReader(reader, &card);
    return true;
}

ObjectInfo USBCardReaderManagerPrivate::doWriteData_v2(const QList<nivaro::_TEMPLATE_DATA> &templates,
                                                       const QByteArray &extra)
{
    CARD_DEBUG << "DO WRITE DATA V2";
    nvcm::SCardInfo info;
    ObjectInfo card;
    if (!cardForWrite("DO WRITE DATA V2", info, card))
        return ObjectInfo();
    const quint64 uid = cardblocks::uidNumber(info.uid);
    CARD_DEBUG << "DO WRITE DATA V2: card uid" << card.parameter(nvcm::UID) << uid;
    return doWriteData(prepareData_v2(templates, uid, extra));
}

ObjectInfo USBCardReaderManagerPrivate::doWriteCardUID()
{
    CARD_DEBUG << "DO WRITE CARD UID";
    nvcm::SCardInfo info;
    ObjectInfo card;
    if (!cardForWrite("DO WRITE CARD UID", info, card))
        return ObjectInfo();

    // The identifier the card widget put into its card object: the
    // employee's card UID as the terminals look it up.
    const QString uid = operationCard.parameter(nvcm::UID);
    if (getCardProfile(card).writeMode())
        CARD_DEBUG << "DO WRITE CARD UID V2: card uid" << uid;
    else
        CARD_DEBUG << "DO WRITE CARD UID: card uid" << uid;
    return doWriteData(prepareData(UidDataType, {uid.toUtf8()}));
}

void USBCardReaderManagerPrivate::doWriteDataFinished()
{
    finishWithCard(USBCardReaderManager::tr("Данные записаны."));
}

QByteArray USBCardReaderManagerPrivate::prepareData(quint8 type, const QList<QByteArray> &records)
{
    const QByteArray block = cardblocks::prepareData(type, records);
    CARD_DEBUG << "DO WRITE DATA: prepared data" << block.toHex();
    return block;
}

QByteArray USBCardReaderManagerPrivate::prepareData_v2(const QList<nivaro::_TEMPLATE_DATA> &templates, quint64 uid,
                                                       const QByteArray &extra)
{
    const QByteArray block = cardblocks::prepareData_v2(templates, uid, extra);
    CARD_DEBUG << "DO WRITE DATA V2: prepared data" << block.toHex();
    return block;
}

SmartCardProfile USBCardReaderManagerPrivate::getCardProfile(const ObjectInfo &card) const
{
    CARD_DEBUG << "Get card profile for" << card.parameter(nvcm::TYPE) << card.parameter(nvcm::SUBTYPE);
    CARD_DEBUG << "Card profiles" << candidateProfiles.join(QStringLiteral(", "));
    if (resolvedProfile.isValid()) {
        CARD_DEBUG << "Select card profile db" << resolvedProfile.uid();
        return SmartCardProfile(resolvedProfile);
    }
    CARD_DEBUG << "Select card profile default";
    return SmartCardProfile(ObjectInfo());
}

// The card widget's card object keeps its identity (uid, parent, owner,
// validity); what the reader learnt about the card is laid over it, so the
// record handed back can be saved as it stands.
void USBCardReaderManagerPrivate::mergeCardInfo(ObjectInfo &card) const
{
    if (!operationCard.isValid())
        return;
    ObjectInfo merged = operationCard;
    const ObjectInfo::Parameters &read = card.parameters();
    for (auto it = read.constBegin(); it != read.constEnd(); ++it)
        merged.setParameter(it.key(), it.value());
    card = merged;
}

// Resolves the chosen profile against the store as it is when the
// operation starts: an operator who edited the profile's keys meanwhile
// gets the edited keys, and a profile deleted meanwhile falls back to the
// factory defaults instead of keys nobody keeps any more.
void USBCardReaderManagerPrivate::updateCardProfileInherit()
{
    resolvedProfile = ObjectInfo();
    candidateProfiles.clear();
    const auto *profiles = nivaro::LocalStorage::instance()->constObjects(nivaro::SMARTCARD_PROFILE_DATANAME);
    for (auto it = profiles->constBegin(); it != profiles->constEnd(); ++it)
        candidateProfiles.append(it.value().parameter(db::scardprofile::common::NAME));
    candidateProfiles.sort();
    if (smartCardProfile.isValid()) {
        const auto found = profiles->constFind(smartCardProfile.uid());
        if (found != profiles->constEnd())
            resolvedProfile = found.value();
    }
}

// ---- USBCardReaderManager ---------------------------------------------------

USBCardReaderManager::USBCardReaderManager(QObject *parent)
    : QObject(parent)
    , d(new USBCardReaderManagerPrivate(this))
{
    qRegisterMetaType<nivaro::ObjectInfo>();
}

USBCardReaderManager::~USBCardReaderManager()
{
    delete d;
}

QList<nivaro::ObjectInfo> USBCardReaderManager::readers() const
{
    QList<nivaro::ObjectInfo> list;
    const quint32 count = quint32(d->readers.size());
    for (quint32 i = 0; i < count; ++i)
        list.append(d->readers.value(i));
    return list;
}

void USBCardReaderManager::setCardObject(const nivaro::ObjectInfo &card)
{
    d->cardObject = card;
}

void USBCardReaderManager::setSmartCardProfile(const nivaro::ObjectInfo &profile)
{
    d->smartCardProfile = profile;
}

int USBCardReaderManager::getCard(quint32 reader)
{
    return d->start(reader, &USBCardReaderManagerPrivate::doReadCard, &USBCardReaderManagerPrivate::doReadCardFinished,
                    ReadTicks);
}

int USBCardReaderManager::formatCard(quint32 reader)
{
    return d->start(reader, &USBCardReaderManagerPrivate::doFormatCard,
                    &USBCardReaderManagerPrivate::doFormatCardFinished, FormatTicks);
}

int USBCardReaderManager::writeCardUID(quint32 reader)
{
    return d->start(reader, &USBCardReaderManagerPrivate::doWriteCardUID,
                    &USBCardReaderManagerPrivate::doWriteDataFinished, WriteTicks);
}

// The version-1 block carries one data type for all its records, so the
// templates go one record each, grouped by type (in the order in which the
// types first appear) so that a terminal meets each kind in one run. The
// data type is the template kind when all are of one kind, 0 when they are
// mixed or unknown: such a card is better written in the second format.
// There is no reader argument: the templates go to the card the operator
// has just read or formatted, on the reader of the last operation.
int USBCardReaderManager::writeWorkerTemplates(nivaro::TYPE_ID worker, const QList<nivaro::_TEMPLATE_DATA> &templates,
                                               const QByteArray &extra)
{
    // The first format has no room for extra data; the second carries it.
    Q_UNUSED(extra)
    if (d->busy)
        return 0;
    CARD_DEBUG << "Add templates to card by type" << worker;
    QList<int> types;
    for (const nivaro::_TEMPLATE_DATA &tpl : templates) {
        if (!types.contains(tpl.type))
            types.append(tpl.type);
    }
    QList<QByteArray> records;
    qsizetype dataSize = 0;
    for (const int type : qAsConst(types)) {
        for (const nivaro::_TEMPLATE_DATA &tpl : templates) {
            if (tpl.type == type) {
                records.append(tpl.data);
                dataSize += tpl.data.size();
            }
        }
    }
    CARD_DEBUG << "Data size" << dataSize;
    const int kind = types.size() == 1 ? cardblocks::templateKindV2(types.first()) : -1;
    const QByteArray block = USBCardReaderManagerPrivate::prepareData(quint8(kind < 0 ? 0 : kind), records);
    CARD_DEBUG << "Write worker templates. Count" << templates.size();
    CARD_DEBUG << "Data size" << block.size();
    d->writeBuffer = block;
    return d->start(d->currentReader, &USBCardReaderManagerPrivate::runWriteBuffer,
                    &USBCardReaderManagerPrivate::doWriteDataFinished, WriteTicks);
}

int USBCardReaderManager::writeWorkerTemplates_v2(quint32 reader, const QList<nivaro::_TEMPLATE_DATA> &templates,
                                                  const QByteArray &extra)
{
    if (d->busy)
        return 0;
    d->writeTemplates = templates;
    d->writeExtra = extra;
    return d->start(reader, &USBCardReaderManagerPrivate::runWriteTemplates,
                    &USBCardReaderManagerPrivate::doWriteDataFinished, WriteTicks);
}

bool USBCardReaderManager::isBusy() const
{
    return d->busy;
}

void USBCardReaderManager::stopReadCard()
{
    Q_EMIT cardFound();
}

void USBCardReaderManager::dataAvailable()
{
}

void USBCardReaderManager::writeCallback(int done, int total)
{
    Q_EMIT tickMessage(tr("Запись данных. %1 из %2").arg(done).arg(total));
}

void USBCardReaderManager::formatCallback(int done, int total)
{
    Q_EMIT tickMessage(tr("Форматирование карты. %1 из %2").arg(done).arg(total));
}
