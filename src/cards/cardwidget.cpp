#include "cardwidget.h"
#include "ui_cardwidget.h"

#include "cardblocks_p.h"
#include "cardtemplateswidget.h"
#include "smartcardprofile.h"
#include "usbcardreadermanager.h"

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <nvglobals.h>
#include <cardlayout.h>
#include <nvsmartcardtypes.h>
#include <objecttypes.h>

#include <QDate>
#include <QDebug>
#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

using nivaro::LocalStorage;
using nivaro::ObjectInfo;
using nivaro::TYPE_ID;

namespace {

bool isSmartCardReader(const ObjectInfo &reader)
{
    return reader.typeName() == db::devices::cardreader::SMARTCARD
        || reader.parameter(db::devices::TYPE) == db::devices::cardreader::SMARTCARD;
}

// The manager files readers under their position in the reader list.
quint32 readerIndex(const ObjectInfo &reader)
{
    return reader.uid();
}

QString readerName(const ObjectInfo &reader)
{
    const QString name = reader.parameter(nvcm::NAME);
    return name.isEmpty() ? QString::number(readerIndex(reader)) : name;
}

} // namespace

CardWidget::CardWidget(QWidget *parent)
    : QWidget(parent)
    , ui(new Ui::CardWidget)
    , m_manager(new USBCardReaderManager(this))
    , m_countdown(new QTimer(this))
{
    ui->setupUi(this);
    ui->progressBar->setRange(0, 1);
    ui->progressBar->setValue(0);
    m_countdown->setInterval(1000);

    connect(ui->pbRead, &QPushButton::clicked, this, [this] { start(Step::Read); });
    connect(ui->pbFormat, &QPushButton::clicked, this, [this] { start(Step::Format); });
    connect(ui->pbWriteUid, &QPushButton::clicked, this, [this] { start(Step::WriteUid); });
    // The chooser needs the card's memory: the card is read first.
    connect(ui->pbWriteTemplates, &QPushButton::clicked, this, [this] { start(Step::ReadForTemplates); });
    connect(ui->cbReader, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this] { updateActions(); });

    connect(m_countdown, &QTimer::timeout, this, [this] {
        m_secondsLeft = qMax(0, m_secondsLeft - 1);
        ui->lbCountdown->setText(tr("Осталось %1 сек.").arg(m_secondsLeft));
        if (m_secondsLeft == 0)
            m_countdown->stop();
    });
    connect(m_manager, &USBCardReaderManager::tick, this,
            [this] { ui->progressBar->setValue(qMin(ui->progressBar->maximum(), ui->progressBar->value() + 1)); });
    connect(m_manager, &USBCardReaderManager::tickMessage, ui->lbStatus, &QLabel::setText);
    connect(m_manager, &USBCardReaderManager::message, this, [this](const QString &text) { showResult(text, false); });
    connect(m_manager, &USBCardReaderManager::error, this, [this](const QString &text) {
        m_failed = true;
        showResult(text, true);
    });
    connect(m_manager, &USBCardReaderManager::cardReadDelay, this, &CardWidget::cardArrived);
    connect(m_manager, &USBCardReaderManager::readerAdded, this, [this] { refreshReaders(); });
    connect(m_manager, &USBCardReaderManager::finished, this, &CardWidget::operationFinished);
    connect(LocalStorage::instance(), &LocalStorage::dataChanged, this, &CardWidget::storeChanged);
    connect(LocalStorage::instance(), &LocalStorage::dataRemoved, this, &CardWidget::storeChanged);

    refreshReaders();
    refreshProfiles();
}

CardWidget::~CardWidget()
{
    delete ui;
}

void CardWidget::setWorker(TYPE_ID uid)
{
    if (uid != m_worker && !m_busy) {
        // What the last operation said was about the employee shown before.
        ui->lbStatus->clear();
        ui->lbCard->clear();
        showResult(QString(), false);
        ui->progressBar->setValue(0);
    }
    m_worker = uid;
    updateActions();
}

QString CardWidget::resultText() const
{
    return ui->lbResult->text();
}

quint64 CardWidget::cardNumberFromUid(const QString &uidHex)
{
    QString digits = uidHex.trimmed();
    digits.remove(QLatin1Char(' '));
    digits.remove(QLatin1Char(':'));
    if (digits.isEmpty() || digits.size() % 2 != 0)
        return 0;
    // fromHex reads what is not hex as something: check first.
    const bool hex = std::all_of(digits.cbegin(), digits.cend(), [](QChar c) {
        const ushort u = c.unicode();
        return (u >= '0' && u <= '9') || (u >= 'a' && u <= 'f') || (u >= 'A' && u <= 'F');
    });
    if (!hex)
        return 0;
    return cardblocks::uidNumber(QByteArray::fromHex(digits.toLatin1()));
}

QString CardWidget::cardNumberText(quint64 number)
{
    const int format = nivaro::LocalStorage::instance()->dbSettings().parameter(db::database::CARD_VIEW_FORMAT).toInt();
    return NVGlobals::cardIdText(number, format);
}

void CardWidget::refreshReaders()
{
    bool hadReader = false;
    const quint32 previous = currentReader(&hadReader);
    QList<ObjectInfo> readers = m_manager->readers();
    std::sort(readers.begin(), readers.end(),
              [](const ObjectInfo &a, const ObjectInfo &b) { return readerIndex(a) < readerIndex(b); });
    const QSignalBlocker blocker(ui->cbReader);
    ui->cbReader->clear();
    if (readers.isEmpty())
        ui->cbReader->addItem(tr("Нет подключенных считывателей"));
    for (const ObjectInfo &reader : qAsConst(readers)) {
        const QString text = isSmartCardReader(reader) ? readerName(reader)
                                                       : tr("%1 (только номер карты)").arg(readerName(reader));
        ui->cbReader->addItem(text, readerIndex(reader));
        if (hadReader && readerIndex(reader) == previous)
            ui->cbReader->setCurrentIndex(ui->cbReader->count() - 1);
    }
    if (!hadReader) {
        // A smart-card reader first: it is the one that can do everything.
        const auto smart = std::find_if(readers.cbegin(), readers.cend(), isSmartCardReader);
        if (smart != readers.cend())
            ui->cbReader->setCurrentIndex(int(smart - readers.cbegin()));
    }
    updateActions();
}

void CardWidget::refreshProfiles()
{
    const TYPE_ID previous = ui->cbProfile->currentData().toUInt();
    const nivaro::NVHash<TYPE_ID, ObjectInfo> &all = *LocalStorage::instance()->constObjects(nivaro::SMARTCARD_PROFILE_DATANAME);
    QList<ObjectInfo> profiles;
    for (const ObjectInfo &p : all) {
        if (p.typeName() == nivaro::OT_SMARTCARD_PROFILE)
            profiles.append(p);
    }
    std::sort(profiles.begin(), profiles.end(), [](const ObjectInfo &a, const ObjectInfo &b) {
        return QString::localeAwareCompare(NVGlobals::objectName(a), NVGlobals::objectName(b)) < 0;
    });
    const QSignalBlocker blocker(ui->cbProfile);
    ui->cbProfile->clear();
    ui->cbProfile->addItem(tr("Ключи по умолчанию"), 0u);
    for (const ObjectInfo &p : qAsConst(profiles)) {
        const QString name = NVGlobals::objectName(p);
        ui->cbProfile->addItem(name.isEmpty() ? tr("Профиль %1").arg(p.uid()) : name, p.uid());
        if (p.uid() == previous)
            ui->cbProfile->setCurrentIndex(ui->cbProfile->count() - 1);
    }
}

quint32 CardWidget::currentReader(bool *ok) const
{
    const QVariant index = ui->cbReader->currentData();
    *ok = index.isValid();
    return index.toUInt();
}

ObjectInfo CardWidget::currentProfile() const
{
    const TYPE_ID uid = ui->cbProfile->currentData().toUInt();
    // No profile (or one deleted meanwhile) is the invalid record: factory keys.
    return uid ? LocalStorage::instance()->object(uid, nivaro::SMARTCARD_PROFILE_DATANAME) : ObjectInfo();
}

void CardWidget::updateActions()
{
    bool hasReader = false;
    currentReader(&hasReader);
    const bool idle = !m_busy;
    ui->cbReader->setEnabled(idle && hasReader);
    ui->cbProfile->setEnabled(idle);
    ui->pbRead->setEnabled(idle && hasReader);
    // A card whose keys or data change must be recorded as the employee's:
    // on a store that cannot take the record, nothing is written to cards.
    const LocalStorage *store = LocalStorage::instance();
    const bool recordable = !store->isReadOnly();
    ui->pbFormat->setEnabled(idle && hasReader && recordable);
    ui->pbWriteUid->setEnabled(idle && hasReader && recordable && m_worker != 0);
    ui->pbWriteTemplates->setEnabled(idle && hasReader && recordable && m_worker != 0);
    const QString why = recordable ? QString() : tr("Только чтение: %1").arg(store->readOnlyReason());
    for (QPushButton *button : {ui->pbFormat, ui->pbWriteUid, ui->pbWriteTemplates})
        button->setToolTip(why);
}

void CardWidget::setBusy(bool busy)
{
    m_busy = busy;
    updateActions();
}

void CardWidget::showResult(const QString &text, bool isError)
{
    m_resultIsError = isError;
    ui->lbResult->setStyleSheet(isError ? QStringLiteral("color: #c00000;") : QString());
    ui->lbResult->setText(text);
}

bool CardWidget::readerForOperation(quint32 *reader)
{
    bool ok = false;
    *reader = currentReader(&ok);
    if (!ok)
        showResult(tr("Нет подключенных считывателей"), true);
    return ok;
}

void CardWidget::start(Step step)
{
    if (m_busy)
        return;
    quint32 reader = 0;
    if (!readerForOperation(&reader))
        return;
    m_failed = false;
    m_continueTemplates = false;
    m_opWorker = m_worker;
    m_lastCard = ObjectInfo();
    ui->lbStatus->clear();
    ui->lbCard->clear();
    showResult(QString(), false);
    m_manager->setSmartCardProfile(currentProfile());
    int ticks = 0;
    switch (step) {
    case Step::Read:
        ticks = m_manager->getCard(reader);
        break;
    case Step::ReadForTemplates:
        if (LocalStorage::instance()->templates(m_worker).isEmpty()) {
            showResult(tr("У сотрудника нет биометрических шаблонов"), true);
            return;
        }
        m_continueTemplates = true;
        ticks = m_manager->getCard(reader);
        break;
    case Step::Format:
        ticks = m_manager->formatCard(reader);
        break;
    case Step::WriteUid: {
        // The identifier a terminal reads off the card is the employee's uid.
        ObjectInfo card(0, nivaro::OT_CARD,
                        {{nvcm::UID, QString::number(m_worker)}, {db::card::OWNER, QString::number(m_worker)}});
        card.setParent(m_worker);
        m_manager->setCardObject(card);
        ticks = m_manager->writeCardUID(reader);
        break;
    }
    case Step::WriteTemplates:
    case Step::None:
        break;
    }
    began(ticks, step);
}

void CardWidget::began(int ticks, Step step)
{
    if (ticks <= 0) {
        m_continueTemplates = false;
        qDebug() << "card widget: operation not started" << int(step);
        showResult(tr("Выбранный считыватель не работает со смарт-картами"), true);
        setBusy(false);
        return;
    }
    m_step = step;
    ui->progressBar->setRange(0, ticks);
    ui->progressBar->setValue(0);
    if (step == Step::Read || step == Step::ReadForTemplates) {
        // Reading waits a second per tick for the card to be put on.
        m_secondsLeft = ticks;
        ui->lbCountdown->setText(tr("Осталось %1 сек.").arg(m_secondsLeft));
        m_countdown->start();
    }
    setBusy(true);
}

void CardWidget::operationFinished()
{
    m_countdown->stop();
    ui->lbCountdown->clear();
    if (!m_failed)
        ui->progressBar->setValue(ui->progressBar->maximum());
    m_finishedStep = m_step;
    m_step = Step::None;
    setBusy(false);
    if (m_continueTemplates && (m_failed || m_lastCard.isValid())) {
        m_continueTemplates = false;
        if (!m_failed) {
            // Not inside the manager's signal: the chooser is a modal dialog.
            const ObjectInfo card = m_lastCard;
            QTimer::singleShot(0, this, [this, card] { startTemplatesWrite(card); });
        }
    }
}

void CardWidget::cardArrived(const ObjectInfo &card)
{
    m_lastCard = card;
    const quint64 number = cardNumberFromUid(card.parameter(nvcm::UID));
    const QString type = card.parameter(nvcm::CARD_NAME);
    ui->lbCard->setText(tr("Карта: %1, номер %2, UID %3")
                            .arg(type.isEmpty() ? tr("тип неизвестен") : type)
                            .arg(number ? cardNumberText(number) : tr("не определен"))
                            .arg(card.parameter(nvcm::UID)));
    const Step step = m_step != Step::None ? m_step : m_finishedStep;
    if (step == Step::ReadForTemplates) {
        // The card may come after finished() when the manager queues it.
        if (m_continueTemplates && !m_busy) {
            m_continueTemplates = false;
            QTimer::singleShot(0, this, [this, card] { startTemplatesWrite(card); });
        }
        return;
    }
    saveCard(card);
}

int CardWidget::templatesRoom(const ObjectInfo &card, const ObjectInfo &profile, int templateCount)
{
    const quint32 memSize = card.parameter(nvcm::MEM_SIZE).toUInt();
    quint32 userMemSize = card.parameter(nvcm::USER_MEM_SIZE).toUInt();
    if (userMemSize == 0)
        userMemSize = memSize;
    int room = int(userMemSize);
    // The profile may give the data less than the whole card (a DESFire
    // file, a range of blocks): the chooser must not offer what the card
    // would then refuse halfway through the write.
    const auto type = nvsmartcard::CardType(card.parameter(nvcm::TYPE).toInt());
    const SmartCardProfile smartCardProfile(profile);
    const QList<nvsc::SmartCardSettings *> candidates = smartCardProfile.smartCardSettings(type);
    if (!candidates.isEmpty()) {
        const auto *plus = dynamic_cast<const nvsc::MifarePlusSettings *>(candidates.constFirst());
        const bool plusLevel1 = plus && plus->securityLevel1;
        room = std::min(room, nvsmartcard::userDataRange(type, plusLevel1, memSize, userMemSize, *candidates.constFirst()).second);
    }
    qDeleteAll(candidates);
    // The chooser counts template bytes only; the block adds its header
    // and a record header per template.
    // (version 1: a 16-bit length per record, one record per template)
    const int overhead = smartCardProfile.writeMode()
        ? cardblocks::HeaderSizeV2 + cardblocks::RecordHeaderSizeV2 * templateCount
        : cardblocks::HeaderSize + int(sizeof(quint16)) * templateCount;
    return std::max(0, room - overhead);
}

void CardWidget::startTemplatesWrite(const ObjectInfo &card)
{
    if (m_busy)
        return;
    const QList<nivaro::_TEMPLATE_DATA> templates = LocalStorage::instance()->templates(m_opWorker);
    const ObjectInfo profile = currentProfile();
    const int limit = templatesRoom(card, profile, templates.size());

    QDialog dialog(this);
    dialog.setWindowTitle(tr("Выбор шаблонов"));
    auto *layout = new QVBoxLayout(&dialog);
    auto *chooser = new CardTemplatesWidget(&dialog);
    chooser->setObjectName(QStringLiteral("cardTemplatesWidget"));
    chooser->setTemplates(templates);
    chooser->setMaxUserDataSize(limit);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    layout->addWidget(chooser);
    layout->addWidget(buttons);
    const bool accepted = execTemplatesDialog ? execTemplatesDialog(&dialog, chooser) : dialog.exec() == QDialog::Accepted;
    const QList<nivaro::_TEMPLATE_DATA> chosen = chooser->templates();
    if (!accepted) {
        showResult(tr("Запись шаблонов отменена"), false);
        return;
    }
    if (chosen.isEmpty()) {
        showResult(tr("Не выбрано ни одного шаблона"), true);
        return;
    }
    quint32 reader = 0;
    if (!readerForOperation(&reader))
        return;
    m_failed = false;
    m_manager->setSmartCardProfile(profile);
    const int ticks = SmartCardProfile(profile).writeMode()
        ? m_manager->writeWorkerTemplates_v2(reader, chosen, QByteArray())
        : m_manager->writeWorkerTemplates(m_opWorker, chosen, QByteArray());
    began(ticks, Step::WriteTemplates);
}

void CardWidget::saveCard(const ObjectInfo &card)
{
    if (!m_opWorker)
        return;
    const quint64 number = cardNumberFromUid(card.parameter(nvcm::UID));
    if (!number) {
        qDebug() << "card widget: no number in card uid" << card.parameter(nvcm::UID);
        showResult(tr("Не удалось определить номер карты по ее идентификатору"), true);
        return;
    }
    LocalStorage *store = LocalStorage::instance();
    const ObjectInfo *owner = store->constObject(m_opWorker);
    const QString numberText = QString::number(number);
    const QString shownNumber = cardNumberText(number);
    // The employee's own card with this number is updated, any other is new
    // (and refused by the server when someone else holds the number).
    ObjectInfo existingCard;
    const nivaro::NVHash<TYPE_ID, ObjectInfo> own = store->cards(m_opWorker, false);
    for (const ObjectInfo &c : own) {
        if (c.parameter(db::card::NUMBER).toULongLong() == number) {
            existingCard = c;
            break;
        }
    }
    const ObjectInfo *existing = existingCard.isValid() ? &existingCard : nullptr;
    const TYPE_ID profile = currentProfile().uid();
    QHash<QString, QString> values = {
        {db::card::NUMBER, numberText},
        {db::card::UID, card.parameter(nvcm::UID).toUpper()},
        {db::card::TYPE, card.parameter(nvcm::TYPE)},
        {db::card::CARD_NAME, card.parameter(nvcm::CARD_NAME)},
        {db::card::SMARTCARD_PROFILE, profile ? QString::number(profile) : QStringLiteral("-1")},
    };
    if (!existing)
        values.insert(db::card::DATE_BEGIN, QDate::currentDate().toString(Qt::ISODate));

    nivaro::TaskInfo task;
    task.id = nivaro::TaskInfo::newId();
    task.uid = existing ? existing->uid() : 0;
    task.command = QStringLiteral("save_object");
    task.params.insert(QStringLiteral("object_type"), nivaro::OT_CARD);
    task.params.insert(QStringLiteral("parent"), m_opWorker);
    int changed = 0;
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        if (existing && existing->parameter(it.key()) == it.value())
            continue;
        task.params.insert(QLatin1String("property-") + it.key(), it.value());
        ++changed;
    }
    if (existing && changed == 0) {
        showResult(resultText() + QLatin1Char(' ') + tr("Карта %1 уже выдана сотруднику.").arg(shownNumber), m_resultIsError);
        return;
    }
    const QString name = owner ? NVGlobals::objectName(*owner) : QString::number(m_opWorker);
    task.widget = this;
    task.slot = QStringLiteral("saved");
    task.startMessage = tr("Сохранение карты %1 сотрудника %2").arg(shownNumber, name);
    task.errorMessage = tr("Ошибка сохранения карты %1 сотрудника %2").arg(shownNumber, name);
    task.data = {shownNumber};
    m_outstanding.append(task);
    emit appendTask(task);
}

void CardWidget::saved(unsigned int uid)
{
    // Replies come in the order the tasks went out.
    const nivaro::TaskInfo task = m_outstanding.isEmpty() ? nivaro::TaskInfo() : m_outstanding.takeFirst();
    if (!uid) {
        showResult(task.errorMessage.isEmpty() ? tr("Ошибка сохранения карты") : task.errorMessage, true);
        return;
    }
    const QString number = task.data.value(0).toString();
    const QString done = tr("Карта %1 выдана сотруднику.").arg(number);
    showResult(m_resultIsError || resultText().isEmpty() ? done : resultText() + QLatin1Char(' ') + done, false);
    emit cardSaved(uid);
}

void CardWidget::storeChanged(const QString &dataname, const QList<unsigned int> &uids)
{
    Q_UNUSED(uids)
    if (dataname == nivaro::SMARTCARD_PROFILE_DATANAME)
        refreshProfiles();
}
