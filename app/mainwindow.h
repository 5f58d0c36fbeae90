#ifndef MAINWINDOW_H
#define MAINWINDOW_H

#include <nvtypes.h>

#include <QMainWindow>

class AbsencePage;
class CardReadersMenu;
class CardsPage;
class DepartmentPropertyView;
class FirmPropertyView;
class OrganisationActions;
class BulkUpdateRuns;
class UpdateObjectWizard;
class PropertyFrame;
class QLabel;
class QTabWidget;
class SchedulePage;
class QLineEdit;
class QStackedWidget;
class QTimer;
class QTreeView;
class WorkerPropertyView;

namespace nivaro {
class LocalStorage;
class ObjectTreeProxy;
class TaskExecutor;
}

/**
 * nvstudio's main window: the organisation tree with a filter line on the
 * left, the property frame of the selected employees on the right (with
 * the schedule calendar and absences of a single one), the store's
 * figures in the status bar. Saves go through the task executor,
 * which stands in for the server.
 */
class MainWindow : public QMainWindow
{
    Q_OBJECT
    Q_DISABLE_COPY(MainWindow)
public:
    enum UnsavedChoice { SaveChanges, DiscardChanges, KeepEditing };
    enum InterruptedChoice { RunRemaining, LeaveAsIs };

    explicit MainWindow(nivaro::LocalStorage *storage, QWidget *parent = nullptr);
    ~MainWindow() override;

    QTreeView *tree() const { return m_tree; }
    PropertyFrame *frame() const { return m_frame; }
    WorkerPropertyView *workerView() const { return m_workerView; }
    // The pages beside the properties; they follow a single selected employee.
    QTabWidget *employeeTabs() const { return m_tabs; }
    SchedulePage *schedulePage() const { return m_schedulePage; }
    AbsencePage *absencePage() const { return m_absencePage; }
    CardsPage *cardsPage() const { return m_cardsPage; }
    // The property frames of selected departments and of selected firms.
    PropertyFrame *departmentFrame() const { return m_departmentFrame; }
    PropertyFrame *firmFrame() const { return m_firmFrame; }
    DepartmentPropertyView *departmentView() const { return m_departmentView; }
    FirmPropertyView *firmView() const { return m_firmView; }
    // The frame the right side shows, null for the placeholder.
    PropertyFrame *currentFrame() const;
    // New employee, department and firm, transfer, dismissal and delete.
    OrganisationActions *organisationActions() const { return m_orgActions; }
    // Null unless the readers are the simulated ones.
    CardReadersMenu *readersMenu() const { return m_readersMenu; }
    nivaro::TaskExecutor *executor() const { return m_executor; }

    // Selects these objects in the tree (expanding their branches), as a
    // person clicking them would.
    void selectUids(const QList<nivaro::TYPE_ID> &uids);
    // The first employee in tree order, for a screenshot that shows data.
    nivaro::TYPE_ID firstEmployee() const;

    // What to do with unsaved edits when the selection changes or the window
    // closes. A question box; tests replace it.
    std::function<UnsavedChoice()> askUnsaved;

    QAction *bulkUpdateAction() const { return m_bulkUpdate; }
    // Employees and departments selected in the tree, in tree order.
    QList<nivaro::TYPE_ID> selectedObjects() const;
    // Opens the update wizard writing key = value to these objects through
    // the executor; null when unsaved edits kept the operator from it.
    UpdateObjectWizard *startBulkUpdate(const QList<nivaro::TYPE_ID> &uids, const QString &key, const QVariant &value);

    // What to do with a bulk update a previous session left unfinished,
    // given the sentence that tells how far it got. A question box; tests
    // replace it.
    std::function<InterruptedChoice(const QString &question)> askInterrupted;
    // Asks about each run cut short by a client that is gone; once the
    // window is shown, and never on a store that cannot be written.
    void offerInterruptedRuns();

    // Nothing may be written: the views show and do not edit, and the
    // status bar tells why. Called at start for a read-only store.
    void setStoreReadOnly(const QString &reason);
    bool isStoreReadOnly() const { return m_readOnly; }

protected:
    void closeEvent(QCloseEvent *event) override;

private Q_SLOTS:
    void selectionChanged();
    void applyFilter();
    void updateStatus();
    void bulkUpdate();

private:
    bool settleUnsaved();
    void showSelection(const QList<nivaro::TYPE_ID> &uids);
    void showOrgSelection(const QString &type, const QList<nivaro::TYPE_ID> &uids);
    void showPlaceholder(const QString &text);
    void selectCreated(nivaro::TYPE_ID uid);
    void showTreeMenu(const QPoint &pos);
    void refreshTitle();
    void storeChanged(const QString &dataname, const QList<nivaro::TYPE_ID> &uids);

    nivaro::LocalStorage *m_storage;
    nivaro::TaskExecutor *m_executor;
    nivaro::ObjectTreeProxy *m_proxy;
    QLineEdit *m_filter;
    QTimer *m_filterTimer;
    QTreeView *m_tree;
    QStackedWidget *m_stack;
    QLabel *m_placeholder;
    PropertyFrame *m_frame;
    WorkerPropertyView *m_workerView;
    QTabWidget *m_tabs;
    SchedulePage *m_schedulePage;
    AbsencePage *m_absencePage;
    CardsPage *m_cardsPage;
    CardReadersMenu *m_readersMenu = nullptr;
    QLabel *m_statusCounts;
    QLabel *m_statusAccess;
    BulkUpdateRuns *m_runs;
    QAction *m_bulkUpdate = nullptr;
    PropertyFrame *m_departmentFrame;
    PropertyFrame *m_firmFrame;
    DepartmentPropertyView *m_departmentView;
    FirmPropertyView *m_firmView;
    OrganisationActions *m_orgActions;
    QList<nivaro::TYPE_ID> m_shown;
    QString m_shownType; // what m_shown holds: employees, departments or firms
    bool m_restoringSelection = false;
    bool m_readOnly = false;
    QString m_readOnlyReason;
};

#endif
