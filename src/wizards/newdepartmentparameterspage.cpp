#include "newdepartmentparameterspage.h"

#include "departmentselectiondialog.h"

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <nvglobals.h>
#include <objecttypes.h>

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using nivaro::LocalStorage;
using nivaro::ObjectInfo;
using nivaro::TYPE_ID;

namespace {

const ObjectInfo *department(TYPE_ID uid)
{
    const ObjectInfo *object = uid ? LocalStorage::instance()->constObject(uid, nivaro::ORGSTRUCTURE_DATANAME) : nullptr;
    if (object && (object->typeName() == nivaro::OT_FIRM || object->typeName() == nivaro::OT_DEPARTMENT))
        return object;
    return nullptr;
}

} // namespace

NewDepartmentParametersPage::NewDepartmentParametersPage(QWidget *parent)
    : ValidatedWizardPage(parent)
    , m_name(new QLineEdit(this))
    , m_number(new QLineEdit(this))
    , m_parentName(new QLabel(this))
    , m_chooseParent(new QPushButton(tr("Выбрать..."), this))
{
    setObjectName(QStringLiteral("NewDepartmentParametersPage"));
    setTitle(tr("Подразделение"));
    setSubTitle(tr("Название и место в структуре обязательны, номер можно задать позже."));
    chooseDepartment = [](QWidget *owner, TYPE_ID current) {
        return DepartmentSelectionDialog::getDepartment(owner, tr("Выбор вышестоящего подразделения"), current);
    };
    m_name->setObjectName(QStringLiteral("leName"));
    m_name->setMaxLength(200);
    m_number->setObjectName(QStringLiteral("leNumber"));
    m_number->setMaxLength(50);
    m_parentName->setObjectName(QStringLiteral("lbParent"));
    m_chooseParent->setObjectName(QStringLiteral("pbParent"));

    auto *parentRow = new QHBoxLayout;
    parentRow->addWidget(m_parentName, 1);
    parentRow->addWidget(m_chooseParent);
    auto *form = new QFormLayout;
    form->addRow(tr("Название"), m_name);
    form->addRow(tr("Номер"), m_number);
    form->addRow(tr("Входит в"), parentRow);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(reasonLabel());
    layout->addStretch();

    connect(m_name, &QLineEdit::textChanged, this, &ValidatedWizardPage::revalidate);
    connect(m_chooseParent, &QPushButton::clicked, this, [this] {
        const TYPE_ID chosen = chooseDepartment ? chooseDepartment(this, m_parent) : 0;
        if (chosen)
            setParentDepartment(chosen);
    });
    setParentDepartment(0);
}

void NewDepartmentParametersPage::setParentDepartment(TYPE_ID uid)
{
    const ObjectInfo *object = department(uid);
    m_parent = object ? uid : 0;
    m_parentName->setText(object ? NVGlobals::objectName(*object) : tr("(не выбрано)"));
    revalidate();
}

QString NewDepartmentParametersPage::departmentName() const
{
    return m_name->text().trimmed();
}

QString NewDepartmentParametersPage::refusal() const
{
    if (departmentName().isEmpty())
        return tr("Укажите название подразделения");
    if (!department(m_parent))
        return tr("Выберите организацию или подразделение, в которое входит новое");
    return QString();
}

QList<ValidatedWizardPage::Field> NewDepartmentParametersPage::fields() const
{
    QList<Field> list;
    addField(list, db::orgstructure::NAME, tr("Название"), departmentName());
    addField(list, db::orgstructure::DEPARTNUM, tr("Номер"), m_number->text().trimmed());
    if (m_parent)
        addField(list, QString(), tr("Входит в"), QString::number(m_parent), m_parentName->text());
    return list;
}
