#include "newworkerwizardparameterspage.h"

#include "nvdialogsutils.h"

#include <dbparams.h>
#include <innvalidator.h>
#include <nvcombobox.h>
#include <nvdateedit.h>
#include <nvfiltercombobox.h>
#include <snilsedit.h>

#include <QDate>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QStandardItemModel>
#include <QVBoxLayout>
#include <QWizard>

#include <algorithm>

namespace {

// The same limits as the property view: what one view accepts the other
// must be able to show and save again.
constexpr int MaxNameLength = 100;
constexpr int MaxDocumentFieldLength = 50;

QLineEdit *lineEdit(QWidget *parent, const char *name, int maxLength)
{
    auto *edit = new QLineEdit(parent);
    edit->setObjectName(QLatin1String(name));
    edit->setMaxLength(maxLength);
    return edit;
}

} // namespace

NewWorkerWizardParametersPage::NewWorkerWizardParametersPage(QWidget *parent)
    : ValidatedWizardPage(parent)
    , m_surname(lineEdit(this, "leSurname", MaxNameLength))
    , m_name(lineEdit(this, "leName", MaxNameLength))
    , m_patronymic(lineEdit(this, "lePatronymic", MaxNameLength))
    , m_gender(new NVComboBox(this))
    , m_birthday(new NVDateEdit(this))
    , m_citizenship(new NVFilterComboBox(this))
    , m_docType(lineEdit(this, "leDocType", MaxDocumentFieldLength))
    , m_docSeries(lineEdit(this, "leDocSeries", MaxDocumentFieldLength))
    , m_docNumber(lineEdit(this, "leDocNumber", MaxDocumentFieldLength))
    , m_snils(new SnilsEdit(this))
    , m_inn(lineEdit(this, "leInn", 12))
    , m_innValidator(new INNValidator(INNValidator::Personal, this))
{
    setObjectName(QStringLiteral("NewWorkerWizardParametersPage"));
    setTitle(tr("Личные данные"));
    setSubTitle(tr("Фамилия обязательна, остальное можно заполнить позже."));

    m_gender->setObjectName(QStringLiteral("cbGender"));
    m_gender->addItem(tr("Не задан"), 0);
    m_gender->addItem(tr("Мужской"), 1);
    m_gender->addItem(tr("Женский"), 2);
    m_birthday->setObjectName(QStringLiteral("deBirthday"));
    m_birthday->setDisplayFormat(QStringLiteral("dd.MM.yyyy"));
    m_birthday->setAllowedRange(QDate(1900, 1, 1), QDate::currentDate());
    m_citizenship->setObjectName(QStringLiteral("cbCitizenship"));
    fillCitizenship();
    m_snils->setObjectName(QStringLiteral("leSnils"));
    m_inn->setPlaceholderText(tr("12 цифр"));
    m_inn->setValidator(m_innValidator);

    auto *personal = new QGroupBox(tr("Личные данные"), this);
    auto *personalForm = new QFormLayout(personal);
    personalForm->addRow(tr("Фамилия"), m_surname);
    personalForm->addRow(tr("Имя"), m_name);
    personalForm->addRow(tr("Отчество"), m_patronymic);
    personalForm->addRow(tr("Пол"), m_gender);
    personalForm->addRow(tr("Дата рождения"), m_birthday);
    personalForm->addRow(tr("Гражданство"), m_citizenship);
    auto *document = new QGroupBox(tr("Документ"), this);
    auto *documentForm = new QFormLayout(document);
    documentForm->addRow(tr("Вид"), m_docType);
    documentForm->addRow(tr("Серия"), m_docSeries);
    documentForm->addRow(tr("Номер"), m_docNumber);
    documentForm->addRow(tr("СНИЛС"), m_snils);
    documentForm->addRow(tr("ИНН"), m_inn);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(personal);
    layout->addWidget(document);
    layout->addWidget(reasonLabel());
    layout->addStretch();

    for (QLineEdit *edit : {m_surname, m_inn, static_cast<QLineEdit *>(m_snils)})
        connect(edit, &QLineEdit::textChanged, this, &ValidatedWizardPage::revalidate);
    revalidate();
}

void NewWorkerWizardParametersPage::fillCitizenship()
{
    struct Country
    {
        QString code;
        QString name;
    };
    const QStringList nearAbroad = NVDialogsUtils::getNearAbroadCodes();
    const QList<StateRegistryInfo> registry = NVDialogsUtils::getStatesRegistry();
    QVector<Country> countries;
    countries.reserve(registry.size());
    for (const StateRegistryInfo &state : registry)
        countries.append({state.code, NVDialogsUtils::translateState(state.name)});
    // As the property view lists them: near abroad first, then by name.
    std::stable_sort(countries.begin(), countries.end(), [&nearAbroad](const Country &a, const Country &b) {
        const bool nearA = nearAbroad.contains(a.code);
        const bool nearB = nearAbroad.contains(b.code);
        if (nearA != nearB)
            return nearA;
        return a.name < b.name;
    });
    QList<QStandardItem *> items;
    items.reserve(countries.size() + 1);
    auto item = [](const QString &text, const QString &code) {
        auto *i = new QStandardItem(text);
        i->setData(code, Qt::UserRole);
        return i;
    };
    items.append(item(tr("Не задано"), QStringLiteral("0")));
    for (const Country &country : qAsConst(countries))
        items.append(item(country.name, country.code));
    // One insertion: a row at a time would have the combo and its filter
    // look again 254 times.
    auto *model = qobject_cast<QStandardItemModel *>(m_citizenship->model());
    if (model) {
        model->invisibleRootItem()->appendRows(items);
    } else {
        for (QStandardItem *i : qAsConst(items)) {
            m_citizenship->addItem(i->text(), i->data(Qt::UserRole));
            delete i;
        }
    }
}

QString NewWorkerWizardParametersPage::refusal() const
{
    if (m_surname->text().trimmed().isEmpty())
        return tr("Укажите фамилию сотрудника");
    QString inn = m_inn->text();
    int pos = 0;
    if (!inn.isEmpty() && m_innValidator->validate(inn, pos) != QValidator::Acceptable)
        return tr("ИНН сотрудника: 12 цифр с верными контрольными цифрами");
    if (!m_snils->snils().isEmpty() && !m_snils->isAcceptable())
        return tr("СНИЛС неполон или с неверной контрольной суммой");
    return QString();
}

bool NewWorkerWizardParametersPage::verifyCreateWorker()
{
    revalidate();
    if (!refusal().isEmpty())
        return false;
    if (!wizard())
        return true;
    const QList<int> ids = wizard()->pageIds();
    for (int id : ids) {
        auto *page = qobject_cast<ValidatedWizardPage *>(wizard()->page(id));
        if (!page || page == this)
            continue;
        const QString why = page->refusal();
        if (!why.isEmpty()) {
            page->revalidate();
            reasonLabel()->setText(why);
            return false;
        }
    }
    return true;
}

QString NewWorkerWizardParametersPage::workerName() const
{
    QStringList parts;
    for (const QLineEdit *edit : {m_surname, m_name, m_patronymic}) {
        const QString part = edit->text().trimmed();
        if (!part.isEmpty())
            parts.append(part);
    }
    return parts.join(QLatin1Char(' '));
}

QList<ValidatedWizardPage::Field> NewWorkerWizardParametersPage::fields() const
{
    QList<Field> list;
    addField(list, db::worker::LAST_NAME, tr("Фамилия"), m_surname->text().trimmed());
    addField(list, db::worker::FIRST_NAME, tr("Имя"), m_name->text().trimmed());
    addField(list, db::worker::MIDDLE_NAME, tr("Отчество"), m_patronymic->text().trimmed());
    // "Not set" is what an absent value means already: it is not written.
    const int gender = m_gender->currentData().toInt();
    if (gender > 0)
        addField(list, db::worker::GENDER, tr("Пол"), QString::number(gender), m_gender->currentText());
    const QDate birthday = m_birthday->dateOrNull();
    if (birthday.isValid())
        addField(list, db::worker::BIRTHDAY, tr("Дата рождения"), birthday.toString(Qt::ISODate),
                 birthday.toString(QStringLiteral("dd.MM.yyyy")));
    const QString citizenship = m_citizenship->currentData().toString();
    if (!citizenship.isEmpty() && citizenship != QLatin1String("0"))
        addField(list, db::worker::CITIZENSHIP_CODE, tr("Гражданство"), citizenship, m_citizenship->currentText());
    addField(list, db::worker::DOC_TYPE, tr("Вид документа"), m_docType->text().trimmed());
    addField(list, db::worker::DOC_SERIES, tr("Серия"), m_docSeries->text().trimmed());
    addField(list, db::worker::DOC_NUMBER, tr("Номер"), m_docNumber->text().trimmed());
    addField(list, db::worker::SNILS, tr("СНИЛС"), m_snils->snils(), m_snils->text());
    addField(list, db::orgstructure::common::INN, tr("ИНН"), m_inn->text());
    return list;
}
