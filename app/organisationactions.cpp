#include "organisationactions.h"

#include <datanames.h>
#include <deleteobjectwizard.h>
#include <dismissalwizard.h>
#include <localstorage.h>
#include <newdepartmentwizard.h>
#include <newfirmwizard.h>
#include <newworkerwizard.h>
#include <objectinfo.h>
#include <objecttypes.h>
#include <taskexecutor.h>
#include <transferwizard.h>

#include <QAction>
#include <QDebug>
#include <QKeySequence>
#include <QWizard>

using nivaro::TYPE_ID;

OrganisationActions::OrganisationActions(nivaro::LocalStorage *storage, nivaro::TaskExecutor *executor, QWidget *window)
    : QObject(window)
    , m_storage(storage)
    , m_executor(executor)
    , m_window(window)
{
    m_newWorker = addAction(tr("Новый сотрудник…"), QStringLiteral("newWorkerAction"), QKeySequence(Qt::CTRL | Qt::Key_N),
                            &OrganisationActions::newWorker);
    m_newDepartment = addAction(tr("Новое подразделение…"), QStringLiteral("newDepartmentAction"),
                                QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_N), &OrganisationActions::newDepartment);
    m_newFirm = addAction(tr("Новая организация…"), QStringLiteral("newFirmAction"),
                          QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_N), &OrganisationActions::newFirm);
    m_transfer = addAction(tr("Перевести…"), QStringLiteral("transferAction"), QKeySequence(Qt::CTRL | Qt::Key_T),
                           &OrganisationActions::transfer);
    m_dismiss = addAction(tr("Уволить…"), QStringLiteral("dismissAction"), QKeySequence(Qt::CTRL | Qt::Key_D),
                          &OrganisationActions::dismiss);
    m_delete = addAction(tr("Удалить…"), QStringLiteral("deleteAction"), QKeySequence(QKeySequence::Delete),
                         &OrganisationActions::remove);
    updateActions();
}

QAction *OrganisationActions::addAction(const QString &text, const QString &name, const QKeySequence &shortcut,
                                        void (OrganisationActions::*slot)())
{
    auto *action = new QAction(text, this);
    action->setObjectName(name);
    action->setShortcut(shortcut);
    // The tree's context menu shows the same actions; their shortcuts work
    // wherever the window has the focus.
    action->setShortcutContext(Qt::WindowShortcut);
    connect(action, &QAction::triggered, this, slot);
    m_window->addAction(action);
    m_actions.append(action);
    return action;
}

void OrganisationActions::setSelection(const QList<Row> &rows)
{
    m_rows = rows;
    updateActions();
}

void OrganisationActions::setReadOnly(const QString &reason)
{
    m_readOnlyReason = reason;
    updateActions();
}

void OrganisationActions::updateActions()
{
    int workers = 0, inService = 0, departments = 0, firms = 0, others = 0;
    for (const Row &row : qAsConst(m_rows)) {
        if (row.type == nivaro::OT_WORKER) {
            ++workers;
            inService += row.dismissed ? 0 : 1;
        } else if (row.type == nivaro::OT_DEPARTMENT) {
            ++departments;
        } else if (row.type == nivaro::OT_FIRM) {
            ++firms;
        } else {
            ++others;
        }
    }
    const bool writable = m_readOnlyReason.isEmpty();
    // A disabled action says why in its tool tip, so an operator looking at
    // a grey entry is never left guessing.
    auto set = [&](QAction *action, bool enabled, const QString &why) {
        action->setEnabled(writable && enabled);
        action->setToolTip(!writable ? m_readOnlyReason : enabled ? action->text().remove(QStringLiteral("…")) : why);
    };
    set(m_newWorker, true, QString());
    set(m_newDepartment, true, QString());
    set(m_newFirm, true, QString());
    set(m_transfer, others == 0 && firms == 0 && ((workers > 0) != (departments > 0)),
        tr("Выберите сотрудников или подразделения (не вместе)"));
    set(m_dismiss, inService > 0 && departments + firms + others == 0, tr("Выберите работающих сотрудников"));
    set(m_delete, others == 0 && workers + departments + firms > 0, tr("Выберите сотрудников, подразделения или организации"));
}

TYPE_ID OrganisationActions::placeForNew() const
{
    for (const Row &row : qAsConst(m_rows)) {
        if (row.type == nivaro::OT_DEPARTMENT || row.type == nivaro::OT_FIRM)
            return row.uid;
        if (row.type == nivaro::OT_WORKER) {
            const nivaro::ObjectInfo *worker = m_storage->constObject(row.uid, {nivaro::SUBJECT_DATANAME, nivaro::SUBJECT_FIRED_DATANAME});
            if (worker)
                return worker->parent();
        }
    }
    return 0;
}

void OrganisationActions::open(QWizard *wizard)
{
    m_lastWizard = wizard;
    wizard->setAttribute(Qt::WA_DeleteOnClose);
    wizard->setWindowModality(Qt::WindowModal);
    // Room for a summary of several objects without scrolling sideways.
    wizard->resize(wizard->sizeHint().expandedTo(QSize(760, 540)));
    wizard->show();
}

void OrganisationActions::openNew(NewObjectWizard *wizard)
{
    connect(wizard, &NewObjectWizard::appendTask, m_executor, &nivaro::TaskExecutor::execute);
    // The server's reason for a refusal belongs in the run's log.
    connect(m_executor, &nivaro::TaskExecutor::taskFinished, wizard, &NewObjectWizard::taskFinished);
    connect(wizard, &NewObjectWizard::objectCreated, this, &OrganisationActions::objectCreated);
    open(wizard);
}

void OrganisationActions::newWorker()
{
    if (!mayStart())
        return;
    auto *wizard = new NewWorkerWizard(m_window);
    wizard->setDepartment(placeForNew());
    openNew(wizard);
}

void OrganisationActions::newDepartment()
{
    if (!mayStart())
        return;
    auto *wizard = new NewDepartmentWizard(m_window);
    wizard->setParentDepartment(placeForNew());
    openNew(wizard);
}

void OrganisationActions::newFirm()
{
    if (!mayStart())
        return;
    auto *wizard = new NewFirmWizard(m_window);
    openNew(wizard);
}

// The wizards below take the selection as it is and say on their first
// page what they leave out and why (a dismissed employee, a department
// that still holds people), so the operator sees it before anything runs.
template<class Wizard>
Wizard *OrganisationActions::openForSelection(const QStringList &types)
{
    if (!mayStart())
        return nullptr;
    QList<TYPE_ID> uids;
    for (const Row &row : qAsConst(m_rows)) {
        if (types.contains(row.type))
            uids.append(row.uid);
    }
    auto *wizard = new Wizard(m_window);
    wizard->setUids(uids);
    connect(wizard, &Wizard::appendTask, m_executor, &nivaro::TaskExecutor::execute);
    open(wizard);
    return wizard;
}

void OrganisationActions::transfer()
{
    TransferWizard *wizard = openForSelection<TransferWizard>({nivaro::OT_WORKER, nivaro::OT_DEPARTMENT});
    // Moved rows leave the tree where they were; the operator finds them
    // selected in their new place.
    if (wizard)
        connect(wizard, &QWizard::accepted, this, [this, wizard] { emit objectsMoved(wizard->uids()); });
}

void OrganisationActions::dismiss()
{
    openForSelection<DismissalWizard>({nivaro::OT_WORKER});
}

void OrganisationActions::remove()
{
    openForSelection<DeleteObjectWizard>({nivaro::OT_WORKER, nivaro::OT_DEPARTMENT, nivaro::OT_FIRM});
}
