#include "workersearchdialog.h"
#include "ui_workersearchdialog.h"

#include "customvaluecolumn.h"
#include "cardwidget.h"
#include "subjectviewdelegate.h"
#include "usbcardreadermanager.h"

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <nvcustomparams.h>
#include <nvglobals.h>
#include <nvsmartcardtypes.h>
#include <objecttreemodel.h>
#include <objecttreeproxy.h>
#include <objecttypes.h>
#include <sortedset.h>

#include <QCloseEvent>
#include <QElapsedTimer>
#include <QFutureWatcher>
#include <QHash>
#include <QItemSelectionModel>
#include <QLoggingCategory>
#include <QMutexLocker>
#include <QPushButton>
#include <QRegularExpression>
#include <QTimer>
#include <QtConcurrent/QtConcurrentRun>

#include <array>
#include <optional>
#include <vector>

Q_LOGGING_CATEGORY(lcSearch, "nvdialogs.search", QtInfoMsg)

using nivaro::LocalStorage;
using nivaro::ObjectInfo;
using nivaro::ObjectTreeModel;
using nivaro::TYPE_ID;

namespace {

const QString NameSearch = QStringLiteral("hidden/fio");
const QString CardSearch = QStringLiteral("hidden/card");
constexpr int ReaderIdRole = Qt::UserRole;
constexpr int ReaderTypeRole = Qt::UserRole + 1;
// A keyboard-type reader types the number itself; the dialog only waits.
constexpr int KeyboardReaderWait = 5;

// A result of a million uids would drown the log; its size says enough.
template<typename Set>
QString describe(const Set &uids)
{
    if (uids.size() > 20)
        return QStringLiteral("%1 uids").arg(uids.size());
    QStringList parts;
    for (unsigned int uid : uids)
        parts.append(QString::number(uid));
    return QLatin1Char('{') + parts.join(QLatin1Char(',')) + QLatin1Char('}');
}

// The orgstructure index holds employees and the firms and departments of
// the "orgstructure" collection, nothing else: an uid there that is not an
// organisation is an employee. The organisations are few, so this look-up
// stays in cache where the employee's own record would not.
bool isWorker(const nivaro::NVHash<TYPE_ID, ObjectInfo> &organisations, TYPE_ID uid)
{
    return !organisations.contains(uid);
}

// The revisions of the collections whose objects carry the numbers the
// dialog files into the orgstructure index, and of the database settings,
// which change when the store is opened anew (emptying its indexes) and
// which no dialog follows. While they are what they were when the numbers
// were last filed (and kept current by an open dialog), filing them all
// again at the next opening would change nothing: over a million
// employees it takes most of a second.
using NumbersStamp = std::array<quint64, 4>;
std::optional<NumbersStamp> &numbersFiled()
{
    static std::optional<NumbersStamp> stamp;
    return stamp;
}
NumbersStamp numbersStamp(const LocalStorage *store)
{
    return {store->revision(nivaro::ORGSTRUCTURE_DATANAME), store->revision(nivaro::SUBJECT_DATANAME),
            store->revision(nivaro::SUBJECT_FIRED_DATANAME), store->revision(nivaro::DB_DATANAME)};
}
// An open dialog has filed what changed: the stamp follows, but not for
// a reopened store, which announces nothing.
void numbersFollowed(const LocalStorage *store)
{
    if (!numbersFiled())
        return;
    NumbersStamp now = numbersStamp(store);
    now[3] = (*numbersFiled())[3];
    numbersFiled() = now;
}
struct CustomOutcome
{
    QSet<unsigned int> uids;
    std::shared_ptr<const CustomValueColumn> builtColumn;
};

// Columns built by earlier searches, by parameter key; a column is reused
// while the employees' collection still has the revision it was built from.
// GUI thread only.
QHash<QString, std::shared_ptr<const CustomValueColumn>> &columnCache()
{
    static QHash<QString, std::shared_ptr<const CustomValueColumn>> cache;
    return cache;
}

// The pool thread's whole work. It reads only what it was handed: the
// snapshot is a copy of the store's collection taken on the GUI thread;
// NVHash and ObjectInfo share their data implicitly with atomic counts and
// the store never changes shared data in place (a write detaches its own
// copy first), so the GUI thread may take in new data meanwhile.
CustomOutcome runCustomSearch(nivaro::NVHash<TYPE_ID, ObjectInfo> snapshot,
                              std::shared_ptr<const CustomValueColumn> column, const QString &key,
                              const QString &text, quint64 revision)
{
    CustomOutcome outcome;
    if (!column) {
        auto built = std::make_shared<CustomValueColumn>();
        if (!built->build(snapshot, key, &WorkerSearchCancel::isCancelled))
            return outcome;
        built->revision = revision;
        column = built;
        outcome.builtColumn = built;
    }
    // Let go of the store's collection before the scan, so that a write
    // arriving now does not have to copy it.
    snapshot = {};
    outcome.uids = WorkerSearchDialog::searchCustom(*column, text);
    return outcome;
}

} // namespace

QMutex WorkerSearchCancel::m_mutex;
bool WorkerSearchCancel::m_cancelled = false;

void WorkerSearchCancel::setCancelled(bool cancelled)
{
    QMutexLocker lock(&m_mutex);
    m_cancelled = cancelled;
}

bool WorkerSearchCancel::isCancelled()
{
    QMutexLocker lock(&m_mutex);
    return m_cancelled;
}

QString WorkerSearchDialog::_saved_search_type;
QString WorkerSearchDialog::_saved_name;
QString WorkerSearchDialog::_saved_card;
QString WorkerSearchDialog::_saved_custom;
QStringList WorkerSearchDialog::_saved_custom_list;
unsigned int WorkerSearchDialog::_saved_selected_uid = 0;

class WorkerSearchDialog::SearchTask
{
public:
    QFutureWatcher<CustomOutcome> *watcher = nullptr;
};

WorkerSearchDialog::WorkerSearchDialog(QWidget *parent)
    : QDialog(parent)
    , ui(new Ui::WorkerSearchDialog)
    , m_task(new SearchTask)
{
    ui->setupUi(this);
    LocalStorage *store = LocalStorage::instance();

    m_model = store->model(nivaro::ORGSTRUCTURE_DATANAME);
    m_proxy = new nivaro::ObjectTreeProxy(this);
    m_proxy->setTypeFilter({nivaro::OT_SUBJECT_ROOT, nivaro::OT_FIRM, nivaro::OT_DEPARTMENT, nivaro::OT_WORKER});
    m_proxy->setSourceModel(m_model);
    m_proxy->setFilterUids({});
    m_delegate = new SubjectViewDelegate(this);
    ui->resultView->setModel(m_proxy);
    ui->resultView->setItemDelegate(m_delegate);

    QPushButton *gotoButton = ui->buttonBox->addButton(tr("Перейти"), QDialogButtonBox::ActionRole);
    gotoButton->setObjectName(QStringLiteral("gotoButton"));
    gotoButton->setEnabled(false);
    connect(gotoButton, &QPushButton::clicked, this, qOverload<>(&WorkerSearchDialog::gotoWorker));
    connect(ui->buttonBox, &QDialogButtonBox::rejected, this, &QDialog::reject);

    m_readerManager = new USBCardReaderManager(this);
    connect(m_readerManager, &USBCardReaderManager::cardReadDelay, this, &WorkerSearchDialog::readCardSucceed);
    connect(m_readerManager, &USBCardReaderManager::finished, this, &WorkerSearchDialog::readCardFinished);
    connect(m_readerManager, &USBCardReaderManager::error, this, &WorkerSearchDialog::showCriticalMessage);
    connect(m_readerManager, &USBCardReaderManager::tickMessage, this, &WorkerSearchDialog::setProgressFormat);
    m_tickTimer = new QTimer(this);
    m_tickTimer->setInterval(1000);
    connect(m_tickTimer, &QTimer::timeout, this, &WorkerSearchDialog::waitCardTick);

    fillSearchTypes();
    fillReaders();

    connect(ui->searchEdit, &QLineEdit::returnPressed, this, &WorkerSearchDialog::search);
    connect(ui->searchEdit, &QLineEdit::textEdited, this, &WorkerSearchDialog::searchTextEdited);
    connect(ui->searchTypeCombo, qOverload<int>(&QComboBox::activated), this, &WorkerSearchDialog::searchTypeChanged);
    connect(ui->readerCombo, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &WorkerSearchDialog::readerSelected);
    connect(ui->readButton, &QPushButton::clicked, this, &WorkerSearchDialog::readCard);
    connect(ui->resultView, &QTreeView::activated, this, qOverload<const QModelIndex &>(&WorkerSearchDialog::gotoWorker));
    connect(ui->resultView->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &WorkerSearchDialog::selectionChanged);
    connect(ui->resultView, &QWidget::customContextMenuRequested, this, &WorkerSearchDialog::showResultViewContextMenu);
    connect(store, &LocalStorage::dataChanged, this, &WorkerSearchDialog::dataHasChanged);
    connect(store, &LocalStorage::dataRemoved, this, &WorkerSearchDialog::dataHasRemoved);

    // The store files names; the numbers are the search's own addition.
    if (m_model && numbersFiled() != numbersStamp(store)) {
        fileNumbers(m_model->uids());
        numbersFiled() = numbersStamp(store);
    }

    const int remembered = ui->searchTypeCombo->findData(_saved_search_type);
    ui->searchTypeCombo->setCurrentIndex(remembered >= 0 ? remembered : 0);
    const QString type = currentSearchType();
    if (type == NameSearch)
        ui->searchEdit->setText(_saved_name);
    else if (type == CardSearch)
        ui->searchEdit->setText(_saved_card);
    else
        ui->searchEdit->setText(_saved_custom);
    readerSelected(ui->readerCombo->currentIndex());
    if (remembered >= 0 && !ui->searchEdit->text().isEmpty()) {
        m_pendingSelect = _saved_selected_uid;
        search();
    }
}

WorkerSearchDialog::~WorkerSearchDialog()
{
    cancelCustomSearch();
}

void WorkerSearchDialog::setTypeInfo(const nivaro::TypeInfo &info)
{
    m_typeInfo = info;
    _saved_custom_list = info.customParamKeys();
    const QString current = currentSearchType();
    fillSearchTypes();
    const int row = ui->searchTypeCombo->findData(current);
    if (row >= 0)
        ui->searchTypeCombo->setCurrentIndex(row);
}

void WorkerSearchDialog::fillSearchTypes()
{
    QComboBox *combo = ui->searchTypeCombo;
    const QSignalBlocker blocker(combo);
    combo->clear();
    combo->addItem(tr("ФИО или табельный номер"), NameSearch);
    combo->addItem(tr("Номер карты"), CardSearch);
    if (!_saved_custom_list.isEmpty()) {
        combo->insertSeparator(combo->count());
        for (const QString &key : qAsConst(_saved_custom_list))
            combo->addItem(NVCustomParams::paramName(key), key);
    }
}

void WorkerSearchDialog::fillReaders()
{
    QComboBox *combo = ui->readerCombo;
    const QSignalBlocker blocker(combo);
    combo->clear();
    const auto addReader = [combo](const ObjectInfo &reader) {
        const QString type = reader.parameter(db::devices::TYPE);
        QString name = reader.parameter(db::common::NAME);
        if (name.isEmpty())
            name = NVGlobals::objectName(reader);
        combo->addItem(name);
        combo->setItemData(combo->count() - 1, reader.uid(), ReaderIdRole);
        combo->setItemData(combo->count() - 1, type, ReaderTypeRole);
    };
    // Keyboard-type readers configured as devices, then the USB readers
    // the reader library sees.
    const auto *devices = LocalStorage::instance()->constObjects(nivaro::DEVICE_DATANAME);
    for (const ObjectInfo &device : *devices) {
        if (device.parameter(db::devices::TYPE) == db::devices::cardreader::HID)
            addReader(device);
    }
    const QList<ObjectInfo> usb = m_readerManager->readers();
    for (const ObjectInfo &reader : usb)
        addReader(reader);
    if (combo->count() == 0) {
        combo->addItem(tr("Нет подключенных считывателей"));
        combo->setEnabled(false);
    } else {
        combo->insertItem(0, tr("Выберите считыватель"));
        combo->setCurrentIndex(0);
        combo->setEnabled(true);
    }
}

QString WorkerSearchDialog::currentSearchType() const
{
    return ui->searchTypeCombo->currentData().toString();
}

void WorkerSearchDialog::searchTextEdited()
{
    const QString text = ui->searchEdit->text().toLower();
    const QString type = currentSearchType();
    if (type == NameSearch)
        _saved_name = text;
    else if (type == CardSearch)
        _saved_card = text;
    else
        _saved_custom = text;
}

void WorkerSearchDialog::searchTypeChanged()
{
    const QString type = currentSearchType();
    _saved_search_type = type;
    if (type == NameSearch) {
        ui->searchEdit->setText(_saved_name);
        ui->searchEdit->selectAll();
    } else if (type == CardSearch) {
        ui->searchEdit->setText(_saved_card);
    } else {
        ui->searchEdit->setText(_saved_custom);
    }
    readerSelected(ui->readerCombo->currentIndex());
    ui->searchEdit->setFocus();
}

void WorkerSearchDialog::search()
{
    qCDebug(lcSearch) << "search" << ui->searchEdit->text();
    // The line is what the operator sees: a host that filled it without
    // typing searches for that too.
    searchTextEdited();
    _saved_search_type = currentSearchType();
    const QString type = currentSearchType();
    if (type == NameSearch || type == CardSearch) {
        cancelCustomSearch();
        ++m_generation;
        applySearchResult(type == NameSearch ? searchName(_saved_name) : searchCard(_saved_card));
    } else if (!type.isEmpty()) {
        searchByCustom(type);
    }
}

QSet<unsigned int> WorkerSearchDialog::searchName(const QString &text)
{
    static const QRegularExpression space(QStringLiteral("\\s"));
    const QStringList words = text.split(space, Qt::SkipEmptyParts);
    LocalStorage *store = LocalStorage::instance();
    const TrieStatic<TYPE_ID> *index = store->index(nivaro::ORGSTRUCTURE_DATANAME);
    SortedSet<TYPE_ID> result;
    for (int i = 0; i < words.size(); ++i) {
        SortedSet<TYPE_ID> part;
        index->contains(words.at(i), part);
        qCDebug(lcSearch) << "part_uids" << words.at(i) << describe(part);
        if (i == 0)
            result = std::move(part);
        else
            result.intersect(part);
        if (result.isEmpty())
            break;
    }
    // Departments are filed by name too; only people are found. Filtering
    // the intersection rather than every word's part gives the same set
    // with far fewer look-ups.
    const nivaro::NVHash<TYPE_ID, ObjectInfo> &organisations = *store->constObjects(nivaro::ORGSTRUCTURE_DATANAME);
    QSet<unsigned int> workers;
    workers.reserve(result.size());
    for (TYPE_ID uid : result) {
        if (isWorker(organisations, uid))
            workers.insert(uid);
    }
    qCDebug(lcSearch) << "only_workers" << describe(workers);
    return workers;
}

QSet<unsigned int> WorkerSearchDialog::searchCard(const QString &text)
{
    static const QRegularExpression leadingZeros(QStringLiteral("^(0+)"));
    QString number = text.trimmed();
    number.remove(leadingZeros);
    qCDebug(lcSearch) << "Search: card" << number;
    LocalStorage *store = LocalStorage::instance();
    const TrieStatic<TYPE_ID> *index = store->index(nivaro::CARD_DATANAME);
    SortedSet<TYPE_ID> found;
    if (!number.isEmpty())
        index->contains(number, found);
    const int format = store->dbSettings().parameter(db::database::CARD_VIEW_FORMAT).toInt();
    const quint64 id = NVGlobals::cardId(number, format);
    if (id != 0) {
        SortedSet<TYPE_ID> formatted;
        index->contains(QString::number(id), formatted);
        qCDebug(lcSearch) << "Search: card formatted" << id << describe(formatted);
        found.unite(formatted);
    }
    QSet<unsigned int> owners;
    owners.reserve(found.size());
    for (TYPE_ID uid : found)
        owners.insert(uid);
    return owners;
}

QSet<unsigned int> WorkerSearchDialog::searchCustom(const CustomValueColumn &column, const QString &text)
{
    QElapsedTimer timer;
    timer.start();
    const QSet<unsigned int> found = column.search(text, &WorkerSearchCancel::isCancelled);
    qCDebug(lcSearch) << "Search: custom finished!" << describe(found) << timer.elapsed() << "msec";
    return found;
}

void WorkerSearchDialog::searchByCustom(const QString &key)
{
    cancelCustomSearch();
    const quint64 generation = ++m_generation;
    setSearchControlsEnabled(false);
    WorkerSearchCancel::setCancelled(false);

    LocalStorage *store = LocalStorage::instance();
    const quint64 revision = store->revision(nivaro::SUBJECT_DATANAME);
    std::shared_ptr<const CustomValueColumn> column = columnCache().value(key);
    nivaro::NVHash<TYPE_ID, ObjectInfo> snapshot;
    if (!column || column->revision != revision) {
        // Built from data the store no longer holds: let its memory go.
        columnCache().remove(key);
        column.reset();
        snapshot = *store->constObjects(nivaro::SUBJECT_DATANAME);
    }
    auto *watcher = new QFutureWatcher<CustomOutcome>(this);
    m_task->watcher = watcher;
    connect(watcher, &QFutureWatcherBase::finished, this, [this, watcher, generation, key] {
        watcher->deleteLater();
        if (m_task->watcher == watcher)
            m_task->watcher = nullptr;
        const CustomOutcome outcome = watcher->result();
        if (outcome.builtColumn
            && outcome.builtColumn->revision == LocalStorage::instance()->revision(nivaro::SUBJECT_DATANAME))
            columnCache().insert(key, outcome.builtColumn);
        if (generation != m_generation) {
            qCDebug(lcSearch) << "Search: custom result dropped, a newer search replaced it";
            return;
        }
        applySearchResult(outcome.uids);
    });
    watcher->setFuture(QtConcurrent::run(runCustomSearch, snapshot, column, key, _saved_custom, revision));
}

void WorkerSearchDialog::cancelCustomSearch()
{
    QFutureWatcher<CustomOutcome> *watcher = m_task->watcher;
    if (!watcher)
        return;
    m_task->watcher = nullptr;
    WorkerSearchCancel::setCancelled(true);
    // Within a hundred objects of the flag: microseconds.
    watcher->waitForFinished();
}

bool WorkerSearchDialog::isSearching() const
{
    return m_task->watcher != nullptr;
}

void WorkerSearchDialog::applySearchResult(const QSet<unsigned int> &uids)
{
    qCDebug(lcSearch) << "apply search result" << uids.size();
    QSet<TYPE_ID> shown = uids;
    if (m_model) {
        // Thousands of people sit in a few departments: the ancestors of
        // each department are taken once.
        QSet<TYPE_ID> widened;
        for (TYPE_ID uid : uids) {
            const TYPE_ID parent = m_model->uid(m_model->indexOf(uid).parent());
            if (!parent || widened.contains(parent))
                continue;
            widened.insert(parent);
            shown.insert(parent);
            const QSet<TYPE_ID> parents = m_model->parentKeys(parent);
            shown.unite(parents);
        }
    }
    m_proxy->setFilterUids(shown);
    ui->resultView->expandAll();
    // The subject root is everyone's ancestor: its row says nothing.
    const QModelIndex root = m_model ? m_proxy->mapFromSource(m_model->indexOf(nivaro::SUBJECT_ROOT_UID)) : QModelIndex();
    ui->resultView->setRootIndex(root);
    if (m_pendingSelect) {
        const QModelIndex row = m_proxy->mapFromSource(m_model->indexOf(m_pendingSelect));
        if (row.isValid())
            ui->resultView->setCurrentIndex(row);
        m_pendingSelect = 0;
    }
    setSearchControlsEnabled(true);
    ui->searchEdit->setFocus();
}

QSet<unsigned int> WorkerSearchDialog::shownUids() const
{
    return m_proxy->filterUids();
}

nivaro::ObjectTreeProxy *WorkerSearchDialog::resultProxy() const
{
    return m_proxy;
}

void WorkerSearchDialog::setSearchControlsEnabled(bool enabled)
{
    ui->searchTypeCombo->setEnabled(enabled);
    ui->searchEdit->setEnabled(enabled);
    if (enabled)
        readerSelected(ui->readerCombo->currentIndex());
    else
        ui->readButton->setEnabled(false);
}

TYPE_ID WorkerSearchDialog::selectedUid() const
{
    const QModelIndexList rows = ui->resultView->selectionModel()->selectedRows();
    return rows.isEmpty() ? 0 : rows.first().data(ObjectTreeModel::UidRole).toUInt();
}

void WorkerSearchDialog::gotoWorker()
{
    const TYPE_ID uid = selectedUid();
    if (uid)
        emit selectObject(uid);
}

void WorkerSearchDialog::gotoWorker(const QModelIndex &index)
{
    const TYPE_ID uid = index.data(ObjectTreeModel::UidRole).toUInt();
    if (uid)
        emit selectObject(uid);
}

void WorkerSearchDialog::selectionChanged()
{
    QList<unsigned int> workers;
    QList<unsigned int> orgstructure;
    const QModelIndexList rows = ui->resultView->selectionModel()->selectedRows();
    for (const QModelIndex &row : rows) {
        const TYPE_ID uid = row.data(ObjectTreeModel::UidRole).toUInt();
        if (row.data(ObjectTreeModel::TypeRole).toString() == nivaro::OT_WORKER)
            workers.append(uid);
        else
            orgstructure.append(uid);
    }
    if (!rows.isEmpty())
        _saved_selected_uid = rows.first().data(ObjectTreeModel::UidRole).toUInt();
    updateCanGotoWorker();
    if (!workers.isEmpty())
        emit workerSelected(workers);
    if (!orgstructure.isEmpty())
        emit orgstructureSelected(orgstructure);
}

void WorkerSearchDialog::updateCanGotoWorker()
{
    if (auto *button = findChild<QPushButton *>(QStringLiteral("gotoButton")))
        button->setEnabled(ui->resultView->selectionModel()->hasSelection());
}

void WorkerSearchDialog::showResultViewContextMenu(const QPoint &pos)
{
    Q_UNUSED(pos) // no actions on results yet
}

void WorkerSearchDialog::readerSelected(int row)
{
    const bool cardType = currentSearchType() == CardSearch;
    const bool reader = ui->readerCombo->isEnabled() && row > 0;
    ui->readerCombo->setVisible(cardType);
    ui->readButton->setVisible(cardType);
    ui->readProgress->setVisible(cardType);
    ui->readButton->setEnabled(cardType && reader && !m_readingCard && ui->searchEdit->isEnabled());
}

void WorkerSearchDialog::readCard()
{
    const int row = ui->readerCombo->currentIndex();
    if (m_readingCard || row <= 0 || !ui->readerCombo->isEnabled())
        return;
    const unsigned int reader = ui->readerCombo->itemData(row, ReaderIdRole).toUInt();
    const QString type = ui->readerCombo->itemData(row, ReaderTypeRole).toString();
    int wait = 0;
    if (type.contains(QLatin1String("hid"), Qt::CaseInsensitive)) {
        emit cardRead(reader);
        wait = KeyboardReaderWait;
    } else {
        wait = m_readerManager->getCard(reader);
    }
    qCDebug(lcSearch) << "read card" << reader << type << wait;
    if (wait <= 0) {
        emit failedMessage(tr("Считыватель занят или недоступен."));
        return;
    }
    m_readingCard = true;
    ui->searchEdit->clear();
    ui->searchEdit->setEnabled(false);
    ui->searchEdit->setPlaceholderText(tr("Идет чтение карты..."));
    ui->searchTypeCombo->setEnabled(false);
    ui->readerCombo->setEnabled(false);
    ui->readButton->setEnabled(false);
    ui->readProgress->setMaximum(wait);
    ui->readProgress->setValue(wait);
    ui->readProgress->setFormat(tr("Чтение карты"));
    m_tickTimer->start();
}

void WorkerSearchDialog::waitCardTick()
{
    if (!m_readingCard)
        return;
    const int left = ui->readProgress->value() - 1;
    ui->readProgress->setValue(qMax(0, left));
    ui->readProgress->setFormat(tr("Идет чтение карты. Осталось %1 сек.").arg(qMax(0, left)));
    if (left <= 0)
        readCardFailed();
}

void WorkerSearchDialog::setProgressFormat(const QString &format)
{
    ui->readProgress->setFormat(format);
}

void WorkerSearchDialog::showCriticalMessage(const QString &text)
{
    qCDebug(lcSearch) << "card reader:" << text;
    emit failedMessage(text);
}

void WorkerSearchDialog::readCardFailed()
{
    if (!m_readingCard)
        return;
    endCardWait();
    ui->searchEdit->setFocus();
    emit failedMessage(tr("Время ожидания истекло."));
}

// However the wait for a card ends, the search controls come back as they
// were before it.
void WorkerSearchDialog::endCardWait()
{
    m_tickTimer->stop();
    m_readingCard = false;
    ui->searchEdit->setPlaceholderText(QString());
    ui->readerCombo->setEnabled(ui->readerCombo->count() > 1);
    ui->readProgress->setValue(0);
    ui->readProgress->setFormat(tr("%v сек"));
    setSearchControlsEnabled(true);
}

quint64 WorkerSearchDialog::cardNumberFromUid(const QString &uidText)
{
    // A card is found by the number it was issued under.
    return CardWidget::cardNumberFromUid(uidText);
}

void WorkerSearchDialog::readCardSucceed(const nivaro::ObjectInfo &card)
{
    const bool wasReading = m_readingCard;
    endCardWait();
    const QString uid = card.parameter(nvcm::UID);
    const quint64 number = cardNumberFromUid(uid);
    qCDebug(lcSearch) << "card read" << uid << number << wasReading;
    if (number == 0) {
        emit failedMessage(tr("Номер прочитанной карты не распознан."));
        return;
    }
    ui->searchEdit->setText(QString::number(number));
    _saved_card = ui->searchEdit->text();
    ui->searchEdit->setFocus();
}

void WorkerSearchDialog::readCardFinished()
{
    // The manager reported its own failure already; only the wait ends.
    if (m_readingCard)
        endCardWait();
    emit finishedReadCard();
}

void WorkerSearchDialog::fileNumbers(const QList<unsigned int> &uids)
{
    LocalStorage *store = LocalStorage::instance();
    TrieStatic<TYPE_ID> *index = store->index(nivaro::ORGSTRUCTURE_DATANAME);
    for (TYPE_ID uid : uids) {
        const ObjectInfo *object = store->constObject(uid);
        if (!object)
            continue;
        for (const QString *key : {&db::worker::WORKERNUM, &db::orgstructure::DEPARTNUM}) {
            const QString value = object->parameter(*key).toLower();
            if (!value.isEmpty())
                index->add(value, uid);
        }
    }
}

void WorkerSearchDialog::dataHasChanged(const QString &dataname, const QList<unsigned int> &uids)
{
    // The store files an employee's names again on every change, and drops
    // every key of it first: the numbers must follow each time.
    if (dataname != nivaro::ORGSTRUCTURE_DATANAME && dataname != nivaro::SUBJECT_DATANAME
        && dataname != nivaro::SUBJECT_FIRED_DATANAME)
        return;
    fileNumbers(uids);
    numbersFollowed(LocalStorage::instance());
}

void WorkerSearchDialog::dataHasRemoved(const QString &dataname, const QList<unsigned int> &uids)
{
    if (dataname != nivaro::ORGSTRUCTURE_DATANAME && dataname != nivaro::SUBJECT_DATANAME
        && dataname != nivaro::SUBJECT_FIRED_DATANAME)
        return;
    // A dismissed employee leaves "subject" for "subject_fired" and is
    // still there, filed anew under its names: withdraw only the gone.
    LocalStorage *store = LocalStorage::instance();
    TrieStatic<TYPE_ID> *index = store->index(nivaro::ORGSTRUCTURE_DATANAME);
    for (TYPE_ID uid : uids) {
        if (!store->constObject(uid))
            index->remove(uid);
    }
    numbersFollowed(store);
}

void WorkerSearchDialog::closeEvent(QCloseEvent *event)
{
    cancelCustomSearch();
    ++m_generation;
    QDialog::closeEvent(event);
}

void WorkerSearchDialog::hideEvent(QHideEvent *event)
{
    // Closing with the Close button or Escape hides without a close event.
    // Shown again, the dialog must not wait for a result that never comes.
    cancelCustomSearch();
    ++m_generation;
    setSearchControlsEnabled(true);
    QDialog::hideEvent(event);
}

void WorkerSearchDialog::resetSavedState()
{
    _saved_search_type.clear();
    _saved_name.clear();
    _saved_card.clear();
    _saved_custom.clear();
    _saved_custom_list.clear();
    _saved_selected_uid = 0;
}
