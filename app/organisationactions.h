#ifndef ORGANISATIONACTIONS_H
#define ORGANISATIONACTIONS_H

#include <nvtypes.h>
#include <taskinfo.h>

#include <QList>
#include <QObject>
#include <QString>

#include <functional>

class NewObjectWizard;
class QAction;
class QWidget;
class QWizard;
namespace nivaro {
class LocalStorage;
class TaskExecutor;
}

/**
 * What an HR operator does to the organisation from nvstudio: create
 * employees, departments and firms, transfer, dismiss and delete. Each
 * action opens its wizard with the tree's selection, hands the wizard's
 * tasks to the executor and, when a new object exists, says so for the
 * window to select it. The window puts the actions in its menu, tool bar
 * and the tree's context menu, and tells them what is selected.
 */
class OrganisationActions : public QObject
{
    Q_OBJECT
public:
    struct Row
    {
        nivaro::TYPE_ID uid = 0;
        QString type;
        bool dismissed = false;
    };

    OrganisationActions(nivaro::LocalStorage *storage, nivaro::TaskExecutor *executor, QWidget *window);

    QList<QAction *> actions() const { return m_actions; }
    QAction *newWorkerAction() const { return m_newWorker; }
    QAction *newDepartmentAction() const { return m_newDepartment; }
    QAction *newFirmAction() const { return m_newFirm; }
    QAction *transferAction() const { return m_transfer; }
    QAction *dismissAction() const { return m_dismiss; }
    QAction *deleteAction() const { return m_delete; }

    void setSelection(const QList<Row> &rows);
    // Nothing may be written: every action stays off and says why.
    void setReadOnly(const QString &reason);

    // Asked before a wizard opens, so that unsaved edits in the property
    // panel are settled first; false keeps the wizard closed.
    std::function<bool()> mayStart = [] { return true; };

    // The wizard opened last, for tests and screenshots.
    QWizard *lastWizard() const { return m_lastWizard; }

Q_SIGNALS:
    void objectCreated(nivaro::TYPE_ID uid);
    void objectsMoved(const QList<nivaro::TYPE_ID> &uids);

private:
    void newWorker();
    void newDepartment();
    void newFirm();
    void transfer();
    void dismiss();
    void remove();
    void updateActions();
    // Where a new employee or department goes: the selected department or
    // firm, or the one the selected employee works in.
    nivaro::TYPE_ID placeForNew() const;
    void open(QWizard *wizard);
    void openNew(NewObjectWizard *wizard);
    template<class Wizard>
    Wizard *openForSelection(const QStringList &types);
    QAction *addAction(const QString &text, const QString &name, const QKeySequence &shortcut, void (OrganisationActions::*slot)());

    nivaro::LocalStorage *m_storage;
    nivaro::TaskExecutor *m_executor;
    QWidget *m_window;
    QList<QAction *> m_actions;
    QAction *m_newWorker = nullptr;
    QAction *m_newDepartment = nullptr;
    QAction *m_newFirm = nullptr;
    QAction *m_transfer = nullptr;
    QAction *m_dismiss = nullptr;
    QAction *m_delete = nullptr;
    QList<Row> m_rows;
    QString m_readOnlyReason;
    QWizard *m_lastWizard = nullptr;
};

#endif
