#include "transfertargetwizardpage.h"

#include <departmentselectiondialog.h>

#include <datanames.h>
#include <localstorage.h>
#include <nvglobals.h>
#include <objecttreemodel.h>
#include <objecttypes.h>

#include <QDebug>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

using nivaro::TYPE_ID;

TransferTargetWizardPage::TransferTargetWizardPage(QWidget *parent)
    : NVWizardPage(parent)
    , m_name(new QLabel(this))
    , m_choose(new QPushButton(tr("Выбрать…"), this))
    , m_reason(new QLabel(this))
{
    setTitle(tr("Куда перевести"));
    setSubTitle(tr("Выберите подразделение, в которое переводятся выбранные объекты."));
    m_name->setObjectName(QStringLiteral("lbTarget"));
    m_choose->setObjectName(QStringLiteral("btnChooseTarget"));
    m_reason->setObjectName(QStringLiteral("lbRefusal"));
    m_reason->setWordWrap(true);
    m_reason->setTextFormat(Qt::PlainText);
    auto *row = new QHBoxLayout;
    row->addWidget(new QLabel(tr("Подразделение:"), this));
    row->addWidget(m_name, 1);
    row->addWidget(m_choose);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(row);
    layout->addWidget(m_reason);
    layout->addStretch();
    connect(m_choose, &QPushButton::clicked, this, &TransferTargetWizardPage::chooseTarget);
    update();
}

void TransferTargetWizardPage::setMoved(const QList<TYPE_ID> &uids, bool departments)
{
    m_moved = uids;
    m_departments = departments;
    update();
}

void TransferTargetWizardPage::setTarget(TYPE_ID target)
{
    m_target = target;
    update();
}


void TransferTargetWizardPage::chooseTarget()
{
    DepartmentSelectionDialog dialog(this);
    dialog.setObjectName(QStringLiteral("TransferTargetDialog"));
    dialog.setWindowTitle(tr("Выбор подразделения"));
    if (m_departments)
        dialog.setExcluded(m_moved, tr("Нельзя выбрать «%1»: подразделение не переводится в само себя или в подразделение внутри него"));
    if (m_target)
        dialog.setSelectedUids({m_target});
    if (dialog.exec() == QDialog::Accepted && dialog.selectedUid())
        setTarget(dialog.selectedUid());
}

void TransferTargetWizardPage::update()
{
    nivaro::LocalStorage *storage = nivaro::LocalStorage::instance();
    const nivaro::ObjectInfo *target = m_target ? storage->constObject(m_target) : nullptr;
    m_name->setText(target ? NVGlobals::objectName(*target) : tr("не выбрано"));
    m_refusal.clear();
    if (!target || (target->typeName() != nivaro::OT_DEPARTMENT && target->typeName() != nivaro::OT_FIRM)) {
        m_refusal = tr("Выберите подразделение или организацию");
    } else {
        if (m_departments) {
            // The target's ancestors from the store's tree: moving any of
            // them below it would cut that branch off the organisation.
            nivaro::ObjectTreeModel *tree = storage->model(nivaro::ORGSTRUCTURE_DATANAME);
            QSet<TYPE_ID> above = tree ? tree->parentKeys(m_target) : QSet<TYPE_ID>();
            above.insert(m_target);
            for (TYPE_ID uid : qAsConst(m_moved)) {
                if (above.contains(uid)) {
                    const nivaro::ObjectInfo *moved = storage->constObject(uid);
                    m_refusal = tr("%1 нельзя перевести в само себя или в подразделение внутри него").arg(moved ? NVGlobals::objectName(*moved) : QString::number(uid));
                    break;
                }
            }
        }
        const bool allThere = !m_moved.isEmpty() && std::all_of(m_moved.cbegin(), m_moved.cend(), [&](TYPE_ID uid) {
            const nivaro::ObjectInfo *moved = storage->constObject(uid);
            return moved && moved->parent() == m_target;
        });
        if (m_refusal.isEmpty() && allThere)
            m_refusal = tr("Все выбранные объекты уже находятся в «%1»: переводить нечего").arg(NVGlobals::objectName(*target));
    }
    if (!m_refusal.isEmpty() && m_target)
        qDebug() << "transfer: target" << m_target << "refused";
    // Before a choice the page only asks; a refusal explains itself.
    m_reason->setText(m_target ? m_refusal : QString());
    setComplete(m_refusal.isEmpty());
}
