#include "workerpropertyview.h"

#include "nvdialogsutils.h"
#include "ui_workerpropertyview.h"

#include <datanames.h>
#include <dbparams.h>
#include <innvalidator.h>
#include <localstorage.h>
#include <nvglobals.h>
#include <nvguiglobals.h>

#include <QAbstractItemView>
#include <QCursor>
#include <QDebug>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QStandardItemModel>
#include <QTextDocument>
#include <QTimer>
#include <QToolTip>

#include <algorithm>

using nivaro::ObjectInfo;

namespace {

const QUrl PhotoResource(QStringLiteral("nvsheet://photo"));

QString mixedText()
{
    return QCoreApplication::translate("WorkerPropertyView", "(разные значения)");
}

struct Country
{
    QString code;
    QString name;
};

// Sorting 253 translated names per view would dominate its construction, so
// the sorted list is kept while the translation in force stays the same. A
// few translated names stand for the translation: a translator installed or
// removed changes them, and asking for them costs far less than the sort.
QString translationFingerprint(const QList<StateRegistryInfo> &registry)
{
    QString fingerprint;
    for (int i = 0; i < registry.size(); i += 50)
        fingerprint += NVDialogsUtils::translateState(registry.at(i).name) + QLatin1Char('\n');
    return fingerprint;
}

const QVector<Country> &sortedCountries()
{
    static QVector<Country> countries;
    static QString countriesFingerprint;
    const QList<StateRegistryInfo> registry = NVDialogsUtils::getStatesRegistry();
    const QString fingerprint = translationFingerprint(registry);
    if (!countries.isEmpty() && fingerprint == countriesFingerprint)
        return countries;

    const QStringList near = NVDialogsUtils::getNearAbroadCodes();
    QVector<Country> list;
    list.reserve(registry.size());
    for (const StateRegistryInfo &state : registry)
        list.append({state.code, NVDialogsUtils::translateState(state.name)});
    // Near abroad first, then by name. Equal names may come in either
    // order; the stable sort keeps them by code.
    std::stable_sort(list.begin(), list.end(), [&near](const Country &a, const Country &b) {
        const bool nearA = near.contains(a.code);
        const bool nearB = near.contains(b.code);
        if (nearA != nearB)
            return nearA;
        return a.name < b.name;
    });
    countries = std::move(list);
    countriesFingerprint = fingerprint;
    return countries;
}

QString escaped(const QString &text)
{
    return text.toHtmlEscaped();
}

// Long enough for any real name or document; a pasted page of text is cut
// here, where the operator sees the limit, not silently further down.
constexpr int MaxNameLength = 100;
constexpr int MaxDocumentFieldLength = 50;
constexpr int MaxDescriptionLength = 4000;

const QDate FirstBirthday(1900, 1, 1);

} // namespace

WorkerPropertyView::WorkerPropertyView(QWidget *parent)
    : PropertyBaseWidget(parent)
    , ui(new Ui::WorkerPropertyView)
    , m_innValidator(new INNValidator(INNValidator::Personal, this))
    , m_refreshTimer(new QTimer(this))
{
    ui->setupUi(this);
    ui->leInn->setValidator(m_innValidator);
    // Sized by its longest country name, the list would push the form far
    // wider than the panel; the popup still shows whole names.
    ui->cbCitizenship->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    ui->cbCitizenship->setMinimumContentsLength(16);
    ui->cbCitizenship->view()->setMinimumWidth(420);
    ui->cbGender->addItem(tr("Не задан"), 0);
    ui->cbGender->addItem(tr("Мужской"), 1);
    ui->cbGender->addItem(tr("Женский"), 2);
    ui->photoWidget->setDefaultPicture(placeholder());
    for (QLineEdit *edit : {ui->leSurname, ui->leName, ui->lePatronymic, ui->leDocType})
        NVDialogsUtils::limitTextInput(edit, MaxNameLength);
    for (QLineEdit *edit : {ui->leDocSeries, ui->leDocNumber})
        NVDialogsUtils::limitTextInput(edit, MaxDocumentFieldLength);
    initCitizenship();
    init();

    // Many tasks answered in a row each report changed data; one refresh
    // after the burst is enough.
    m_refreshTimer->setSingleShot(true);
    m_refreshTimer->setInterval(0);
    connect(m_refreshTimer, &QTimer::timeout, this, &WorkerPropertyView::refreshFromStore);
    connect(nivaro::LocalStorage::instance(), &nivaro::LocalStorage::dataChanged, this,
            &WorkerPropertyView::dataChanged);
    setCurrent({});
}

WorkerPropertyView::~WorkerPropertyView() = default;

QString WorkerPropertyView::widgetUid() const
{
    return QStringLiteral("WorkerPropertyView");
}

void WorkerPropertyView::init()
{
    connect(ui->leSurname, &QLineEdit::textChanged, this, &WorkerPropertyView::surnameEdited);
    connect(ui->leName, &QLineEdit::textChanged, this, &WorkerPropertyView::nameEdited);
    connect(ui->lePatronymic, &QLineEdit::textChanged, this, &WorkerPropertyView::patronymicEdited);
    connect(ui->photoWidget, &PhotoWidget::imageChanged, this, &WorkerPropertyView::photoEdited);
    connect(ui->cbGender, qOverload<int>(&QComboBox::activated), this, &WorkerPropertyView::genderEdited);
    connect(ui->leDocType, &QLineEdit::textChanged, this, &WorkerPropertyView::docTypeEdited);
    connect(ui->leDocSeries, &QLineEdit::textChanged, this, &WorkerPropertyView::docSeriesEdited);
    connect(ui->leDocNumber, &QLineEdit::textChanged, this, &WorkerPropertyView::docNumberEdited);
    connect(ui->deBirthday, &QDateEdit::editingFinished, this, &WorkerPropertyView::birthdayEdited);
    connect(ui->teDescription, &QPlainTextEdit::textChanged, this, &WorkerPropertyView::descriptionEdited);
    connect(ui->leSnils, &SnilsEdit::snilsChanged, this, &WorkerPropertyView::snilsEdited);
    connect(ui->leInn, &QLineEdit::textChanged, this, &WorkerPropertyView::innChanged);
    connect(ui->pbPrint, &QPushButton::clicked, this, &WorkerPropertyView::printDocuments);
}

void WorkerPropertyView::initCitizenship()
{
    fillCitizenship();
    connect(ui->cbCitizenship, qOverload<int>(&QComboBox::activated), this, &WorkerPropertyView::citizenshipActivated);
}

void WorkerPropertyView::fillCitizenship()
{
    auto *model = qobject_cast<QStandardItemModel *>(ui->cbCitizenship->model());
    Q_ASSERT(model);
    model->clear();
    QList<QStandardItem *> items;
    const QVector<Country> &countries = sortedCountries();
    items.reserve(countries.size() + 2);
    auto item = [](const QString &text, const QString &code) {
        auto *i = new QStandardItem(text);
        i->setData(code, Qt::UserRole);
        return i;
    };
    items.append(item(mixedText(), QStringLiteral("-1")));
    items.append(item(tr("Не задано"), QStringLiteral("0")));
    for (const Country &c : countries)
        items.append(item(c.name, c.code));
    // One insertion for all rows: a row at a time would notify the combo
    // and its filter 255 times.
    model->invisibleRootItem()->appendRows(items);
    ui->cbCitizenship->setRowHidden(0, true);
}

// A translator installed or removed while the view is open: the texts, the
// country names and their order follow it, the values shown stay.
void WorkerPropertyView::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        ui->retranslateUi(this);
        const bool loading = m_loading;
        m_loading = true;
        const QString citizenship = ui->cbCitizenship->currentData().toString();
        fillCitizenship();
        if (!ui->cbCitizenship->setCurrentData(citizenship))
            ui->cbCitizenship->setCurrentIndex(1);
        m_loading = loading;
    }
    PropertyBaseWidget::changeEvent(event);
}

// ---- Showing ---------------------------------------------------------------

void WorkerPropertyView::setCurrent(const nivaro::NVHash<unsigned int, ObjectInfo> &objects)
{
    m_objects = objects;
    m_uids = objects.uniqueKeys();
    m_edited.clear();
    m_pending.clear();
    m_saveFailed = false;
    m_refreshOwed = false;
    m_loading = true;
    showValues();
    m_loading = false;
    refreshControlStates(m_objects);
    setSaveBlock(QString());
}

// Whether every selected object holds the same value for key; absent keys
// read as the empty text.
bool WorkerPropertyView::uniformValue(const QString &key, QString *value) const
{
    bool first = true;
    for (auto it = m_objects.cbegin(); it != m_objects.cend(); ++it) {
        const QString v = it->parameter(key);
        if (first) {
            *value = v;
            first = false;
        } else if (v != *value) {
            return false;
        }
    }
    if (first)
        value->clear();
    return true;
}

// Shows the selection's values in every control except those of the keys
// in `keep`, which hold the operator's unsaved edits.
void WorkerPropertyView::showValues(const QSet<QString> &keep)
{
    const QList<QPair<QLineEdit *, QString>> texts = {
        {ui->leSurname, db::worker::LAST_NAME},     {ui->leName, db::worker::FIRST_NAME},
        {ui->lePatronymic, db::worker::MIDDLE_NAME}, {ui->leDocType, db::worker::DOC_TYPE},
        {ui->leDocSeries, db::worker::DOC_SERIES},   {ui->leDocNumber, db::worker::DOC_NUMBER},
        {ui->leInn, db::orgstructure::common::INN},  {ui->leExtId, db::common::EXT_GUID},
    };
    for (const auto &text : texts) {
        if (!keep.contains(text.second))
            showText(text.first, text.second);
    }
    QString value;
    if (!keep.contains(db::worker::SNILS)) {
        if (uniformValue(db::worker::SNILS, &value))
            ui->leSnils->setSnils(value);
        else
            ui->leSnils->showPlaceholder(mixedText());
    }
    if (!keep.contains(db::worker::DESCRIPTION)) {
        const bool same = uniformValue(db::worker::DESCRIPTION, &value);
        ui->teDescription->setPlainText(same ? NVGlobals::withoutControlCharacters(value, true) : QString());
        ui->teDescription->setPlaceholderText(same ? QString() : mixedText());
    }
    if (!keep.contains(db::worker::BIRTHDAY))
        showBirthday();
    if (!keep.contains(db::worker::GENDER))
        showGender();
    if (!keep.contains(db::worker::CITIZENSHIP_CODE))
        showCitizenship();
    if (!keep.contains(db::worker::PHOTO))
        showPhoto();
    ui->leDbId->setText(m_uids.isEmpty() ? QString() : QString::number(m_uids.constFirst()));
}

void WorkerPropertyView::showText(QLineEdit *edit, const QString &key)
{
    const QString placeholder = edit == ui->leInn ? tr("12 цифр") : QString();
    QString value;
    if (!uniformValue(key, &value)) {
        edit->clear();
        edit->setPlaceholderText(mixedText());
        return;
    }
    if (edit->maxLength() < value.size())
        qDebug() << "worker view: value longer than its field" << key << value.size();
    // A stored text is shown without the characters that would garble it;
    // it is written back only if the operator edits it.
    edit->setText(NVGlobals::withoutControlCharacters(value));
    edit->setPlaceholderText(placeholder);
}

void WorkerPropertyView::showGender()
{
    // The mixed row of the sex list exists only while it is needed.
    const bool mixedRow = ui->cbGender->itemData(0).toInt() == -1;
    QString value;
    if (uniformValue(db::worker::GENDER, &value)) {
        if (mixedRow)
            ui->cbGender->removeItem(0);
        if (!ui->cbGender->setCurrentData(QString::number(value.toUInt())))
            ui->cbGender->setCurrentIndex(0);
    } else {
        if (!mixedRow)
            ui->cbGender->insertItem(0, mixedText(), -1);
        ui->cbGender->setCurrentIndex(0);
    }
}

void WorkerPropertyView::showCitizenship()
{
    QString value;
    if (!uniformValue(db::worker::CITIZENSHIP_CODE, &value)) {
        ui->cbCitizenship->setCurrentIndex(0);
    } else if (!ui->cbCitizenship->setCurrentData(value.isEmpty() ? QStringLiteral("0") : value)) {
        qDebug() << "worker view: unknown citizenship code" << value;
        ui->cbCitizenship->setCurrentIndex(1);
    }
}

void WorkerPropertyView::showBirthday()
{
    QString value;
    // The bounds follow the calendar: a view left open overnight admits today.
    ui->deBirthday->setAllowedRange(FirstBirthday, QDate::currentDate());
    ui->deBirthday->setSpecialValueText(QStringLiteral(" "));
    if (uniformValue(db::worker::BIRTHDAY, &value)) {
        const QDate date = QDate::fromString(value, Qt::ISODate);
        if (!value.isEmpty() && !date.isValid())
            qDebug() << "worker view: unreadable birthday" << value;
        ui->deBirthday->setDateOrClear(date);
    } else {
        ui->deBirthday->clear();
        ui->deBirthday->setSpecialValueText(mixedText());
    }
    markBirthday();
}

// A stored birthday outside the bounds is shown as it is, and marked.
void WorkerPropertyView::markBirthday()
{
    const bool outside = ui->deBirthday->isOutsideAllowedRange();
    ui->deBirthday->setStyleSheet(outside ? QStringLiteral("color: #b00020;") : QString());
    ui->deBirthday->setToolTip(outside ? tr("Дата рождения должна быть не раньше %1 и не позже сегодняшнего дня")
                                             .arg(FirstBirthday.toString(QStringLiteral("dd.MM.yyyy")))
                                       : QString());
}

void WorkerPropertyView::showPhoto()
{
    QPixmap photo;
    if (!photosDenied() && m_uids.size() == 1) {
        const QByteArray hex = nivaro::LocalStorage::instance()->blob(m_uids.constFirst(), db::worker::PHOTO);
        if (!hex.isEmpty()) {
            photo = QPixmap::fromImage(NVGuiGlobals::imageFromDB(QByteArray::fromHex(hex)));
            if (photo.isNull())
                qDebug() << "worker view: photo blob is no image" << m_uids.constFirst();
        }
    }
    ui->photoWidget->setPhoto(photo);
    ui->photoWidget->setDefaultPicture(placeholder());
}

void WorkerPropertyView::enableControls()
{
    const bool any = !m_uids.isEmpty();
    const QList<QWidget *> editors = {ui->leSurname, ui->cbGender, ui->deBirthday, ui->cbCitizenship,
                                      ui->leSnils, ui->leInn, ui->teDescription, ui->leDbId, ui->leExtId};
    for (QWidget *w : editors)
        w->setEnabled(any);
    applyRestrictions();

    for (QLineEdit *edit : {ui->leSurname, ui->leName, ui->lePatronymic, ui->leDocType, ui->leDocSeries,
                            ui->leDocNumber, static_cast<QLineEdit *>(ui->leSnils), ui->leInn})
        edit->setReadOnly(m_readOnly);
    ui->cbGender->setReadOnly(m_readOnly);
    ui->cbCitizenship->setReadOnly(m_readOnly);
    ui->deBirthday->setReadOnly(m_readOnly);
    ui->teDescription->setReadOnly(m_readOnly);
    ui->photoWidget->setButtonsEnabled(any && !m_readOnly && !photosDenied());
    ui->pbPrint->setEnabled(m_uids.size() == 1);
}

// Loaded once per view: a resource load costs more than the rest of
// showing one employee.
const QPixmap &WorkerPropertyView::placeholder() const
{
    const bool denied = photosDenied();
    QPixmap &picture = denied ? m_banPicture : m_noPhotoPicture;
    if (picture.isNull())
        picture.load(denied ? QStringLiteral(":/accessctl/fz152") : QStringLiteral(":/accessctl/no_photo"));
    return picture;
}

bool WorkerPropertyView::photosDenied() const
{
    return nivaro::LocalStorage::instance()->dbSettings().parameter(db::database::PD_DENY_STORE_USER_PHOTOS)
        == QLatin1String("true");
}

void WorkerPropertyView::setReadOnly(bool readOnly)
{
    m_readOnly = readOnly;
    refreshControlStates(m_objects);
}

void WorkerPropertyView::setBlobData(const QHash<unsigned int, QHash<QString, QByteArray>> &blobs)
{
    if (m_uids.size() != 1 || photosDenied())
        return;
    const QByteArray hex = blobs.value(m_uids.constFirst()).value(db::worker::PHOTO);
    if (hex.isEmpty())
        return;
    const QImage image = NVGuiGlobals::imageFromDB(QByteArray::fromHex(hex));
    if (image.isNull()) {
        qDebug() << "worker view: blob photo is no image" << m_uids.constFirst();
        return;
    }
    ui->photoWidget->setPhoto(QPixmap::fromImage(image));
}

void WorkerPropertyView::enablePersonalDataFields(const QMap<QString, bool> &restrictions)
{
    m_restrictions = restrictions;
    refreshControlStates(m_objects);
    ui->photoWidget->setDefaultPicture(placeholder());
}

void WorkerPropertyView::applyRestrictions()
{
    using namespace db::database::json;
    const QMap<QString, bool> &restrictions = m_restrictions;
    const bool any = !m_uids.isEmpty();
    const QList<QPair<QString, QWidget *>> fields = {
        {PERSONAL_GENERAL_NAME, ui->leName},
        {PERSONAL_GENERAL_PATRONYMIC, ui->lePatronymic},
        {PERSONAL_GENERAL_SEX, ui->cbGender},
        {PERSONAL_GENERAL_BIRTHDATE, ui->deBirthday},
        {PERSONAL_GENERAL_CITIZENSHIP, ui->cbCitizenship},
        {PERSONAL_DOCUMENT_TYPE, ui->leDocType},
        {PERSONAL_DOCUMENT_SERIES, ui->leDocSeries},
        {PERSONAL_DOCUMENT_NUMBER, ui->leDocNumber},
        {PERSONAL_DOCUMENT_SNILS, ui->leSnils},
        {PERSONAL_DOCUMENT_INN, ui->leInn},
    };
    for (const auto &field : fields)
        field.second->setEnabled(any && !restrictions.value(field.first, false));
}

// ---- Editing ---------------------------------------------------------------

void WorkerPropertyView::edited(const QString &key)
{
    m_edited.insert(key);
    emit dataEdited();
}

// Save is possible while the surname is not emptied and the INN is empty or
// complete and right. Both are checked together, so fixing one field never
// re-enables Save while the other is still wrong.
void WorkerPropertyView::updateSaveState()
{
    const bool surnameOk = !m_edited.contains(db::worker::LAST_NAME) || !ui->leSurname->text().isEmpty();
    QString inn = ui->leInn->text();
    int pos = 0;
    const bool innOk = !m_edited.contains(db::orgstructure::common::INN) || inn.isEmpty()
        || m_innValidator->validate(inn, pos) == QValidator::Acceptable;
    if (!surnameOk)
        setSaveBlock(tr("Сохранение невозможно: фамилия не может быть пустой"));
    else if (!innOk)
        setSaveBlock(tr("Сохранение невозможно: ИНН сотрудника состоит из 12 цифр с верными контрольными цифрами"));
    else
        setSaveBlock(QString());
}

// A greyed-out Save says why in the message line; the line is cleared again
// once the reason is gone, so that it never shows an old result instead.
void WorkerPropertyView::setSaveBlock(const QString &reason)
{
    emit enableSave(widgetUid(), reason.isEmpty());
    if (reason == m_saveBlock)
        return;
    m_saveBlock = reason;
    if (reason.isEmpty())
        emit showMessage(QString());
    else
        emit showCriticalMessage(reason);
}

void WorkerPropertyView::surnameEdited(const QString &)
{
    if (m_loading)
        return;
    edited(db::worker::LAST_NAME);
    ui->leSurname->setPlaceholderText(QString());
    updateSaveState();
}

void WorkerPropertyView::nameEdited(const QString &)
{
    if (m_loading)
        return;
    edited(db::worker::FIRST_NAME);
    ui->leName->setPlaceholderText(QString());
}

void WorkerPropertyView::patronymicEdited(const QString &)
{
    if (m_loading)
        return;
    edited(db::worker::MIDDLE_NAME);
    ui->lePatronymic->setPlaceholderText(QString());
}

void WorkerPropertyView::photoEdited(const QPixmap &)
{
    if (m_loading)
        return;
    m_edited.insert(db::worker::PHOTO);
    edited(db::worker::PHOTO_PREVIEW);
}

void WorkerPropertyView::genderEdited(int index)
{
    if (m_loading || ui->cbGender->itemData(index).toInt() == -1)
        return;
    edited(db::worker::GENDER);
}

void WorkerPropertyView::docTypeEdited(const QString &)
{
    if (m_loading)
        return;
    edited(db::worker::DOC_TYPE);
    ui->leDocType->setPlaceholderText(QString());
}

void WorkerPropertyView::docSeriesEdited(const QString &)
{
    if (m_loading)
        return;
    edited(db::worker::DOC_SERIES);
    ui->leDocSeries->setPlaceholderText(QString());
}

void WorkerPropertyView::docNumberEdited(const QString &)
{
    if (m_loading)
        return;
    edited(db::worker::DOC_NUMBER);
    ui->leDocNumber->setPlaceholderText(QString());
}

void WorkerPropertyView::birthdayEdited()
{
    if (m_loading)
        return;
    // editingFinished also fires when the field merely loses focus: only a
    // date that differs from what was shown is an edit, or a mixed
    // selection would get its birthdays cleared by a stray click.
    const bool mixed = ui->deBirthday->specialValueText() == mixedText();
    if (mixed && ui->deBirthday->isEmpty())
        return;
    if (!mixed && !m_edited.contains(db::worker::BIRTHDAY)
        && shownValue(db::worker::BIRTHDAY)
            == (m_objects.isEmpty() ? QString() : m_objects.cbegin()->parameter(db::worker::BIRTHDAY)))
        return;
    ui->deBirthday->setSpecialValueText(QStringLiteral(" "));
    markBirthday();
    edited(db::worker::BIRTHDAY);
}

void WorkerPropertyView::descriptionEdited()
{
    if (m_loading)
        return;
    // A plain text edit has no length limit of its own: cut what was typed
    // or pasted past the limit, and strip what would garble the text.
    const QString text = ui->teDescription->toPlainText();
    const QString clean = NVGlobals::withoutControlCharacters(text, true).left(MaxDescriptionLength);
    if (clean != text) {
        const QSignalBlocker blocker(ui->teDescription);
        ui->teDescription->setPlainText(clean);
        ui->teDescription->moveCursor(QTextCursor::End);
        if (text.size() > MaxDescriptionLength)
            QToolTip::showText(ui->teDescription->mapToGlobal(QPoint()),
                               tr("Не более %n символов", nullptr, MaxDescriptionLength), ui->teDescription);
    }
    edited(db::worker::DESCRIPTION);
    ui->teDescription->setPlaceholderText(QString());
}

void WorkerPropertyView::snilsEdited(const QString &)
{
    if (m_loading)
        return;
    edited(db::worker::SNILS);
    ui->leSnils->setPlaceholderText(QString());
}

void WorkerPropertyView::innChanged(const QString &)
{
    if (m_loading)
        return;
    edited(db::orgstructure::common::INN);
    ui->leInn->setPlaceholderText(tr("12 цифр"));
    updateSaveState();
}

void WorkerPropertyView::citizenshipActivated(int index)
{
    if (m_loading || ui->cbCitizenship->itemData(index).toString() == QLatin1String("-1"))
        return;
    edited(db::worker::CITIZENSHIP_CODE);
}

// ---- Saving ----------------------------------------------------------------

// The control's value in the store's encoding; a null text for a control
// that shows the mixed-values row, which is never written.
QString WorkerPropertyView::shownValue(const QString &key) const
{
    if (key == db::worker::LAST_NAME)
        return ui->leSurname->text();
    if (key == db::worker::FIRST_NAME)
        return ui->leName->text();
    if (key == db::worker::MIDDLE_NAME)
        return ui->lePatronymic->text();
    if (key == db::worker::DOC_TYPE)
        return ui->leDocType->text();
    if (key == db::worker::DOC_SERIES)
        return ui->leDocSeries->text();
    if (key == db::worker::DOC_NUMBER)
        return ui->leDocNumber->text();
    if (key == db::orgstructure::common::INN)
        return ui->leInn->text();
    if (key == db::worker::SNILS)
        return ui->leSnils->snils();
    if (key == db::worker::DESCRIPTION)
        return ui->teDescription->toPlainText();
    if (key == db::worker::BIRTHDAY) {
        const QDate date = ui->deBirthday->dateOrNull();
        return date.isValid() ? date.toString(Qt::ISODate) : QStringLiteral("");
    }
    if (key == db::worker::GENDER) {
        const int value = ui->cbGender->currentData().toInt();
        return value < 0 ? QString() : QString::number(value);
    }
    if (key == db::worker::CITIZENSHIP_CODE) {
        const QString code = ui->cbCitizenship->currentData().toString();
        return code == QLatin1String("-1") ? QString() : code;
    }
    if (key == db::worker::PHOTO || key == db::worker::PHOTO_PREVIEW) {
        const QPixmap photo = ui->photoWidget->photo();
        if (photo.isNull())
            return QStringLiteral("");
        if (key == db::worker::PHOTO)
            return QString::fromLatin1(NVGuiGlobals::imageToDB(photo.toImage(), 50).toHex());
        const QImage preview = photo.toImage().scaled(64, 64, Qt::KeepAspectRatio, Qt::FastTransformation);
        return QString::fromLatin1(NVGuiGlobals::imageToDB(preview, 45).toHex());
    }
    return QString();
}

QHash<QString, QString> WorkerPropertyView::editedValues() const
{
    QHash<QString, QString> values;
    for (const QString &key : m_edited) {
        const bool photoKey = key == db::worker::PHOTO || key == db::worker::PHOTO_PREVIEW;
        if (photoKey && photosDenied())
            continue;
        const QString value = shownValue(key);
        if (!value.isNull())
            values.insert(key, value);
    }
    return values;
}

template<typename F>
void WorkerPropertyView::forEachChanged(F f) const
{
    // Each control's value is taken once; only the comparison is per object.
    const QHash<QString, QString> values = editedValues();
    if (values.isEmpty())
        return;
    // A copy, so that f may lead to a change of the selection.
    const nivaro::NVHash<unsigned int, nivaro::ObjectInfo> objects = m_objects;
    bool first = true;
    unsigned int previous = 0;
    for (auto object = objects.cbegin(); object != objects.cend(); ++object) {
        // Repeats of a uid follow its newest record, the one the view shows.
        if (!first && object.key() == previous)
            continue;
        first = false;
        previous = object.key();
        QHash<QString, QString> mine;
        for (auto it = values.cbegin(); it != values.cend(); ++it) {
            // Photos live as blobs, not in the record: an edited photo is
            // always sent, a cleared one too.
            const bool photoKey = it.key() == db::worker::PHOTO || it.key() == db::worker::PHOTO_PREVIEW;
            if (photoKey || object->parameter(it.key()) != it.value())
                mine.insert(it.key(), it.value());
        }
        if (!mine.isEmpty())
            f(*object, mine);
    }
}

QHash<unsigned int, QHash<QString, QString>> WorkerPropertyView::changedObjects() const
{
    QHash<unsigned int, QHash<QString, QString>> changed;
    forEachChanged([&changed](const nivaro::ObjectInfo &object, const QHash<QString, QString> &changes) {
        changed.insert(object.uid(), changes);
    });
    return changed;
}

void WorkerPropertyView::applyChanges()
{
    const QString startText = tr("Сохранение параметров сотрудника %1");
    const QString errorText = tr("Ошибка сохранения параметров сотрудника %1");
    forEachChanged([&](const nivaro::ObjectInfo &object, const QHash<QString, QString> &changes) {
        m_pending.add(object.uid(), changes);
        emit appendTask(makeSaveTask(object, changes, startText, errorText));
    });
}

void WorkerPropertyView::rejectChanges()
{
    setCurrent(storedOrShown(m_objects, {nivaro::SUBJECT_DATANAME, nivaro::SUBJECT_FIRED_DATANAME}));
}

void WorkerPropertyView::saved(unsigned int uid)
{
    unsigned int answered = 0;
    PendingSaves::Changes changes;
    if (!m_pending.take(uid, &answered, &changes)) {
        qDebug() << "worker view: reply for no outstanding save" << uid;
        return;
    }
    if (uid == 0) {
        // The edits stay for the operator to fix and retry.
        m_saveFailed = true;
        qDebug() << "worker view: save failed" << answered;
    } else {
        keepSaved(uid, changes);
    }
    if (m_pending.isEmpty())
        finishSaving();
}

// What a confirmed save wrote counts as stored from now on.
void WorkerPropertyView::keepSaved(unsigned int uid, const QHash<QString, QString> &changes)
{
    ObjectInfo object = m_objects.value(uid);
    for (auto change = changes.cbegin(); change != changes.cend(); ++change) {
        if (change.key() == db::worker::PHOTO || change.key() == db::worker::PHOTO_PREVIEW)
            continue;
        object.setParameter(change.key(), change.value());
    }
    m_objects.replace(uid, object);
}

// Every reply is in. Only a save that fully succeeded clears the edits; a
// failed one keeps them, so that Save sends again what did not arrive
// (objects saved meanwhile compare equal and are not sent twice).
void WorkerPropertyView::finishSaving()
{
    const bool failed = m_saveFailed;
    m_saveFailed = false;
    if (!failed) {
        m_edited.clear();
        for (QLineEdit *edit : {ui->leSurname, ui->leName, ui->lePatronymic, ui->leDocType, ui->leDocSeries,
                                ui->leDocNumber, ui->leExtId})
            if (edit->placeholderText() == mixedText() && !edit->text().isEmpty())
                edit->setPlaceholderText(QString());
        emit dataSaved();
        emit showMessage(tr("Параметры сохранены"));
    }
    if (m_refreshOwed)
        refreshFromStore();
}

void WorkerPropertyView::dataChanged(const QString &dataname, const QList<unsigned int> &uids)
{
    if (dataname != nivaro::SUBJECT_DATANAME && dataname != nivaro::SUBJECT_FIRED_DATANAME)
        return;
    if (std::any_of(uids.cbegin(), uids.cend(), [this](unsigned int uid) { return m_objects.contains(uid); }))
        m_refreshTimer->start();
}

nivaro::NVHash<unsigned int, ObjectInfo> WorkerPropertyView::storedSelection() const
{
    return storedObjects(m_uids, {nivaro::SUBJECT_DATANAME, nivaro::SUBJECT_FIRED_DATANAME});
}

void WorkerPropertyView::refreshFromStore()
{
    if (!m_pending.isEmpty()) {
        // Our own saves are still coming back; refresh once they are in.
        m_refreshOwed = true;
        return;
    }
    m_refreshOwed = false;
    const nivaro::NVHash<unsigned int, ObjectInfo> fresh = storedSelection();
    if (m_edited.isEmpty()) {
        setCurrent(fresh);
        return;
    }
    // The operator is typing: keep the edited controls, show the new stored
    // values everywhere else and compare against them, so that only real
    // changes are sent and nothing shown is older than the store.
    m_objects = fresh;
    m_uids = fresh.uniqueKeys();
    m_loading = true;
    showValues(m_edited);
    m_loading = false;
    refreshControlStates(m_objects);
}

void WorkerPropertyView::validated(bool ok)
{
    if (ok) {
        emit validationOk();
        return;
    }
    QToolTip::showText(QCursor::pos(), tr("Сотрудник с таким табельным номером уже существует"), this);
}

// ---- Printing --------------------------------------------------------------

QString WorkerPropertyView::citizenshipName(const QString &code) const
{
    const int row = ui->cbCitizenship->findData(code);
    return row > 0 ? ui->cbCitizenship->itemText(row) : QString();
}

QString WorkerPropertyView::personalDataSheet() const
{
    auto shown = [](const QString &text, const QString &placeholder) {
        return text.isEmpty() && placeholder == mixedText() ? mixedText() : text;
    };
    const QString snils = ui->leSnils->snils();
    const QString snilsText = snils.size() == 11 ? ui->leSnils->text() : shown(snils, ui->leSnils->placeholderText());
    const QString birthday = ui->deBirthday->isEmpty()
        ? (ui->deBirthday->specialValueText() == mixedText() ? mixedText() : QString())
        : ui->deBirthday->date().toString(QStringLiteral("dd.MM.yyyy"));
    const QString document = QStringList{ui->leDocType->text(), ui->leDocSeries->text(), ui->leDocNumber->text()}
                                 .join(QLatin1Char(' '))
                                 .simplified();
    const QString name = QStringList{ui->leSurname->text(), ui->leName->text(), ui->lePatronymic->text()}
                             .join(QLatin1Char(' '))
                             .simplified();

    const QList<QPair<QString, QString>> rows = {
        {tr("Фамилия"), shown(ui->leSurname->text(), ui->leSurname->placeholderText())},
        {tr("Имя"), shown(ui->leName->text(), ui->leName->placeholderText())},
        {tr("Отчество"), shown(ui->lePatronymic->text(), ui->lePatronymic->placeholderText())},
        {tr("Пол"), ui->cbGender->currentText()},
        {tr("Дата рождения"), birthday},
        {tr("Гражданство"), ui->cbCitizenship->currentIndex() == 0 ? mixedText() : ui->cbCitizenship->currentText()},
        {tr("Документ"), document},
        {tr("СНИЛС"), snilsText},
        {tr("ИНН"), ui->leInn->text()},
        {tr("Табельный номер"), m_objects.isEmpty() ? QString() : m_objects.cbegin()->parameter(db::worker::WORKERNUM)},
        {tr("Дополнительные сведения"), ui->teDescription->toPlainText()},
    };
    QString html = QStringLiteral("<html><body><h2>%1</h2><h3>%2</h3><table cellpadding=\"4\">")
                       .arg(escaped(tr("Личные данные сотрудника")), escaped(name));
    if (!photosDenied() && ui->photoWidget->hasPhoto())
        html += QStringLiteral("<tr><td colspan=\"2\"><img src=\"%1\" width=\"120\"></td></tr>").arg(PhotoResource.toString());
    for (const auto &row : rows)
        html += QStringLiteral("<tr><td><b>%1</b></td><td>%2</td></tr>").arg(escaped(row.first), escaped(row.second));
    html += QStringLiteral("</table><p>%1</p></body></html>")
                .arg(escaped(tr("Идентификатор БД: %1").arg(ui->leDbId->text())));
    return html;
}

void WorkerPropertyView::printDocuments()
{
    QTextDocument document;
    if (ui->photoWidget->hasPhoto())
        document.addResource(QTextDocument::ImageResource, PhotoResource, ui->photoWidget->photo().toImage());
    document.setHtml(personalDataSheet());
    openPrintPreview(&document);
}

void WorkerPropertyView::openPrintPreview(QTextDocument *document)
{
    QPrinter printer(QPrinter::HighResolution);
    QPrintPreviewDialog preview(&printer, this);
    preview.setWindowTitle(tr("Печать документов"));
    connect(&preview, &QPrintPreviewDialog::paintRequested, document, [document](QPrinter *p) { document->print(p); });
    preview.exec();
}
