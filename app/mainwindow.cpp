#include "mainwindow.h"

#include "absencepage.h"
#include "bulkupdatedialog.h"
#include "bulkupdateruns.h"
#include "cardreadersmenu.h"
#include "cardspage.h"
#include "organisationactions.h"
#include "propertyframe.h"
#include "schedulepage.h"
#include "studiostartup.h"

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <nvglobals.h>
#include <objecttreemodel.h>
#include <objecttreeproxy.h>
#include <objecttypes.h>
#include <taskexecutor.h>
#include <cardwidget.h>
#include <departmentpropertyview.h>
#include <firmpropertyview.h>
#include <usbcardreadermanager.h>
#include <simulatedbackend.h>
#include <updateobjectwizard.h>
#include <workerpropertyview.h>

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDebug>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <QMessageBox>
#include <QPushButton>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTabWidget>
#include <QTimer>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>

using nivaro::TYPE_ID;

namespace {

// Expanding is per row; past this many matches the tree would spend seconds
// opening branches nobody reads, so the operator narrows the filter instead.
constexpr int MaxRowsToExpand = 2000;

// What the bulk update writes to: employees and departments.
bool isBulkUpdatable(const QString &type)
{
    return type == nivaro::OT_WORKER || type == nivaro::OT_DEPARTMENT;
}

} // namespace

MainWindow::MainWindow(nivaro::LocalStorage *storage, QWidget *parent)
    : QMainWindow(parent)
    , m_storage(storage)
    , m_executor(new nivaro::TaskExecutor(storage, this))
    , m_proxy(new nivaro::ObjectTreeProxy(this))
    , m_filter(new QLineEdit)
    , m_filterTimer(new QTimer(this))
    , m_tree(new QTreeView)
    , m_stack(new QStackedWidget)
    , m_placeholder(new QLabel)
    , m_frame(new PropertyFrame)
    , m_workerView(new WorkerPropertyView)
    , m_tabs(new QTabWidget)
    , m_schedulePage(new SchedulePage(storage))
    , m_absencePage(new AbsencePage(storage))
    , m_cardsPage(new CardsPage)
    , m_statusCounts(new QLabel)
    , m_statusAccess(new QLabel)
    , m_runs(new BulkUpdateRuns(m_executor, this))
    , m_departmentFrame(new PropertyFrame)
    , m_firmFrame(new PropertyFrame)
    , m_departmentView(new DepartmentPropertyView)
    , m_firmView(new FirmPropertyView)
    , m_orgActions(new OrganisationActions(storage, m_executor, this))
{
    setObjectName(QStringLiteral("MainWindow"));
    setWindowTitle(tr("Nivaro-Studio — %1").arg(QFileInfo(storage->fileName()).fileName()));
    resize(1200, 800);

    askUnsaved = [this] {
        const auto answer = QMessageBox::question(
            this, tr("Несохраненные изменения"), tr("Сохранить изменения?"),
            QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
        if (answer == QMessageBox::Save)
            return SaveChanges;
        return answer == QMessageBox::Discard ? DiscardChanges : KeepEditing;
    };
    askInterrupted = [this](const QString &question) {
        QMessageBox box(QMessageBox::Question, tr("Массовое изменение"), question, QMessageBox::NoButton, this);
        QPushButton *rest = box.addButton(tr("Выполнить оставшиеся"), QMessageBox::AcceptRole);
        box.addButton(tr("Оставить как есть"), QMessageBox::RejectRole);
        box.setDefaultButton(rest);
        box.exec();
        return box.clickedButton() == rest ? RunRemaining : LeaveAsIs;
    };

    QMenu *file = menuBar()->addMenu(tr("&Файл"));
    QAction *quit = file->addAction(tr("Выход"), this, &QWidget::close);
    quit->setShortcut(QKeySequence::Quit);
    QMenu *edit = menuBar()->addMenu(tr("&Правка"));
    edit->setToolTipsVisible(true); // a disabled action says why
    m_bulkUpdate = edit->addAction(tr("Массовое изменение…"), this, &MainWindow::bulkUpdate);
    m_bulkUpdate->setObjectName(QStringLiteral("bulkUpdateAction"));
    m_bulkUpdate->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_U));
    m_bulkUpdate->setEnabled(false);
    QMenu *organisation = menuBar()->addMenu(tr("&Организация"));
    organisation->setToolTipsVisible(true);
    QToolBar *tools = addToolBar(tr("Организация"));
    tools->setObjectName(QStringLiteral("organisationToolBar"));
    tools->setToolButtonStyle(Qt::ToolButtonTextOnly);
    tools->setMovable(false);
    for (QAction *action : m_orgActions->actions()) {
        organisation->addAction(action);
        tools->addAction(action);
        // Creating and changing are two groups, in the menu and the bar.
        if (action == m_orgActions->newFirmAction()) {
            organisation->addSeparator();
            tools->addSeparator();
        }
    }
    m_orgActions->mayStart = [this] { return settleUnsaved(); };
    connect(m_orgActions, &OrganisationActions::objectCreated, this, &MainWindow::selectCreated);
    connect(m_orgActions, &OrganisationActions::objectsMoved, this, &MainWindow::selectUids);
    // Virtual cards are put on virtual readers from here; real readers
    // need a real hand.
    if (auto simulated = std::dynamic_pointer_cast<nvsmartcard::SimulatedBackend>(nvsmartcard::defaultBackend())) {
        m_readersMenu = new CardReadersMenu(simulated, StudioStartup::cardStatePath(storage->fileName()), this);
        menuBar()->addMenu(m_readersMenu);
        connect(m_readersMenu, &CardReadersMenu::status, this, [this](const QString &line) { statusBar()->showMessage(line, 10000); });
    }

    m_proxy->setSourceModel(storage->model(nivaro::ORGSTRUCTURE_DATANAME));
    m_proxy->setTypeFilter({nivaro::OT_SUBJECT_ROOT, nivaro::OT_FIRM, nivaro::OT_DEPARTMENT, nivaro::OT_WORKER});

    m_filter->setObjectName(QStringLiteral("treeFilter"));
    m_filter->setPlaceholderText(tr("Фильтр по имени"));
    m_filter->setClearButtonEnabled(true);
    m_filterTimer->setSingleShot(true);
    m_filterTimer->setInterval(250);
    connect(m_filter, &QLineEdit::textChanged, m_filterTimer, qOverload<>(&QTimer::start));
    connect(m_filterTimer, &QTimer::timeout, this, &MainWindow::applyFilter);

    m_tree->setObjectName(QStringLiteral("organisationTree"));
    m_tree->setModel(m_proxy);
    m_tree->setHeaderHidden(true);
    m_tree->setUniformRowHeights(true);
    m_tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_tree->setSortingEnabled(true);
    m_tree->sortByColumn(0, Qt::AscendingOrder);
    m_tree->expandToDepth(1);
    connect(m_tree->selectionModel(), &QItemSelectionModel::selectionChanged, this, &MainWindow::selectionChanged);
    m_tree->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_tree, &QWidget::customContextMenuRequested, this, &MainWindow::showTreeMenu);

    auto *left = new QWidget;
    auto *leftLayout = new QVBoxLayout(left);
    leftLayout->setContentsMargins(0, 0, 0, 0);
    leftLayout->addWidget(m_filter);
    leftLayout->addWidget(m_tree);

    m_placeholder->setObjectName(QStringLiteral("placeholder"));
    m_placeholder->setAlignment(Qt::AlignCenter);
    m_placeholder->setWordWrap(true);
    m_placeholder->setText(tr("Выберите одного или нескольких сотрудников в дереве организации"));
    m_frame->setView(m_workerView);
    m_stack->addWidget(m_placeholder);
    m_tabs->setObjectName(QStringLiteral("employeeTabs"));
    m_tabs->addTab(m_frame, tr("Личные данные"));
    m_tabs->addTab(m_schedulePage, tr("График работ"));
    m_tabs->addTab(m_absencePage, tr("Отсутствия"));
    m_tabs->addTab(m_cardsPage, tr("Карты"));
    m_stack->addWidget(m_tabs);
    m_departmentFrame->setObjectName(QStringLiteral("departmentFrame"));
    m_departmentFrame->setView(m_departmentView);
    m_stack->addWidget(m_departmentFrame);
    m_firmFrame->setObjectName(QStringLiteral("firmFrame"));
    m_firmFrame->setView(m_firmView);
    m_stack->addWidget(m_firmFrame);

    auto *splitter = new QSplitter;
    splitter->addWidget(left);
    splitter->addWidget(m_stack);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({380, 820});
    setCentralWidget(splitter);

    // The executor answers the view itself (the task names it); the frame
    // only counts what is out and reports failures, of its own tasks: a bulk
    // run's answers would otherwise end its wait while its save is still out.
    for (PropertyFrame *frame : {m_frame, m_departmentFrame, m_firmFrame}) {
        connect(frame, &PropertyFrame::appendTask, m_executor, &nivaro::TaskExecutor::execute);
        connect(m_executor, &nivaro::TaskExecutor::taskFinished, frame,
                [frame](const nivaro::TaskInfo &task, bool ok, const QString &error) {
                    if (task.widget == frame->view())
                        frame->taskFinished(task, ok, error);
                });
    }
    connect(storage, &nivaro::LocalStorage::dataChanged, m_departmentView, &DepartmentPropertyView::dataChanged);
    connect(storage, &nivaro::LocalStorage::dataChanged, m_firmView, &FirmPropertyView::dataChanged);
    CardWidget *cardWidget = m_cardsPage->cardWidget();
    connect(cardWidget, &CardWidget::appendTask, m_executor, &nivaro::TaskExecutor::execute);
    // A card written or formatted keeps its new keys and data even if the
    // client is killed before it exits normally.
    if (m_readersMenu)
        connect(cardWidget->manager(), &USBCardReaderManager::finished, m_readersMenu, &CardReadersMenu::saveState);
    // The server's reason for refusing a card is what the operator must read.
    connect(m_executor, &nivaro::TaskExecutor::taskFinished, cardWidget,
            [cardWidget](const nivaro::TaskInfo &task, bool ok, const QString &error) {
                if (!ok && task.widget == cardWidget)
                    cardWidget->showResult(error, true);
            });

    statusBar()->addWidget(new QLabel(tr("Хранилище: %1").arg(QDir::toNativeSeparators(storage->fileName()))), 1);
    m_statusAccess->setObjectName(QStringLiteral("storeAccess"));
    statusBar()->addPermanentWidget(m_statusAccess);
    statusBar()->addPermanentWidget(m_statusCounts);
    // The operator must know whether a card put on a reader is a real one.
    const bool realReaders = nvsmartcard::defaultBackend()->backendName() == QLatin1String("pcsc");
    auto *readers = new QLabel(realReaders ? tr("Считыватели: PC/SC") : tr("Считыватели: виртуальные"), this);
    readers->setObjectName(QStringLiteral("readerBackend"));
    readers->setContentsMargins(12, 0, 4, 0);
    statusBar()->addPermanentWidget(readers);
    connect(storage, &nivaro::LocalStorage::dataChanged, this, &MainWindow::updateStatus);
    connect(storage, &nivaro::LocalStorage::dataRemoved, this, &MainWindow::updateStatus);
    connect(storage, &nivaro::LocalStorage::dataChanged, this, &MainWindow::storeChanged);
    updateStatus();

    QString error;
    if (storage->isReadOnly())
        setStoreReadOnly(storage->readOnlyReason());
    else if (!m_runs->open(storage->fileName(), &error))
        statusBar()->showMessage(error, 10000);
}

MainWindow::~MainWindow() = default;

void MainWindow::selectUids(const QList<TYPE_ID> &uids)
{
    auto *model = m_storage->model(nivaro::ORGSTRUCTURE_DATANAME);
    QItemSelection selection;
    for (TYPE_ID uid : uids) {
        const QModelIndex index = m_proxy->mapFromSource(model->indexOf(uid));
        if (!index.isValid())
            continue;
        for (QModelIndex p = index.parent(); p.isValid(); p = p.parent())
            m_tree->expand(p);
        selection.select(index, index);
    }
    m_tree->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    if (!selection.isEmpty())
        m_tree->scrollTo(selection.indexes().constFirst());
}

TYPE_ID MainWindow::firstEmployee() const
{
    // Depth-first in the order the tree shows.
    QList<QModelIndex> pending{QModelIndex()};
    while (!pending.isEmpty()) {
        const QModelIndex parent = pending.takeFirst();
        QList<QModelIndex> children;
        for (int row = 0; row < m_proxy->rowCount(parent); ++row) {
            const QModelIndex index = m_proxy->index(row, 0, parent);
            if (index.data(nivaro::ObjectTreeModel::TypeRole).toString() == nivaro::OT_WORKER)
                return index.data(nivaro::ObjectTreeModel::UidRole).toUInt();
            children.append(index);
        }
        pending = children + pending;
    }
    return 0;
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (settleUnsaved())
        event->accept();
    else
        event->ignore();
}

bool MainWindow::settleUnsaved()
{
    PropertyFrame *frame = currentFrame();
    if (!frame || !frame->isModified())
        return true;
    switch (askUnsaved()) {
    case SaveChanges:
        // Edits that cannot be saved (an empty name, say) stay on screen
        // with the reason in the message line, rather than being dropped
        // by a save that sends nothing.
        if (!frame->canSave())
            return false;
        frame->save();
        return true;
    case DiscardChanges:
        frame->cancel();
        return true;
    case KeepEditing:
        break;
    }
    return false;
}

void MainWindow::selectionChanged()
{
    QList<TYPE_ID> workers, departments, firms;
    QList<OrganisationActions::Row> selected;
    QString otherName;
    bool updatable = false;
    const QModelIndexList rows = m_tree->selectionModel()->selectedRows();
    for (const QModelIndex &index : rows) {
        const TYPE_ID uid = index.data(nivaro::ObjectTreeModel::UidRole).toUInt();
        const QString type = index.data(nivaro::ObjectTreeModel::TypeRole).toString();
        const bool dismissed = index.data(nivaro::ObjectTreeModel::StateRole).toString().toLower() == db::common::STATE_FIRED;
        selected.append({uid, type, dismissed});
        updatable = updatable || isBulkUpdatable(type);
        if (type == nivaro::OT_WORKER)
            workers.append(uid);
        else if (type == nivaro::OT_DEPARTMENT)
            departments.append(uid);
        else if (type == nivaro::OT_FIRM)
            firms.append(uid);
        else if (otherName.isEmpty())
            otherName = index.data(Qt::DisplayRole).toString();
    }
    m_bulkUpdate->setEnabled(updatable && !m_readOnly);
    m_orgActions->setSelection(selected);
    if (m_restoringSelection)
        return;
    // Employees win over the departments selected with them, as before
    // departments had views of their own; departments and firms together
    // have no view in common.
    QString type;
    QList<TYPE_ID> shown;
    if (!workers.isEmpty()) {
        type = nivaro::OT_WORKER;
        shown = workers;
    } else if (!departments.isEmpty() && firms.isEmpty()) {
        type = nivaro::OT_DEPARTMENT;
        shown = departments;
    } else if (!firms.isEmpty() && departments.isEmpty()) {
        type = nivaro::OT_FIRM;
        shown = firms;
    }
    if (shown == m_shown && type == m_shownType)
        return;
    if (!settleUnsaved()) {
        // Keep editing: put the selection back to what the frame shows.
        m_restoringSelection = true;
        selectUids(m_shown);
        m_restoringSelection = false;
        return;
    }
    if (type == nivaro::OT_WORKER)
        showSelection(workers);
    else if (!type.isEmpty())
        showOrgSelection(type, shown);
    else if (!departments.isEmpty())
        showPlaceholder(tr("Выбраны и организации, и подразделения: выберите что-то одно, чтобы изменить свойства"));
    else
        showPlaceholder(otherName.isEmpty() ? tr("Выберите одного или нескольких сотрудников в дереве организации")
                                            : tr("«%1»: выберите сотрудников, подразделения или организации").arg(otherName));
}

void MainWindow::showPlaceholder(const QString &text)
{
    m_shown.clear();
    m_shownType.clear();
    m_placeholder->setText(text);
    m_stack->setCurrentWidget(m_placeholder);
}

PropertyFrame *MainWindow::currentFrame() const
{
    QWidget *current = m_stack->currentWidget();
    if (current == m_tabs)
        return m_frame;
    if (current == m_departmentFrame || current == m_firmFrame)
        return static_cast<PropertyFrame *>(current);
    return nullptr;
}

void MainWindow::showOrgSelection(const QString &type, const QList<TYPE_ID> &uids)
{
    nivaro::NVHash<unsigned int, nivaro::ObjectInfo> selection;
    for (TYPE_ID uid : uids) {
        if (const nivaro::ObjectInfo *object = m_storage->constObject(uid, nivaro::ORGSTRUCTURE_DATANAME))
            selection.insert(uid, *object);
        else
            qDebug() << "main window: selected uid not in store" << uid;
    }
    const bool departments = type == nivaro::OT_DEPARTMENT;
    PropertyFrame *frame = departments ? m_departmentFrame : m_firmFrame;
    m_shown = uids;
    m_shownType = type;
    frame->resetState();
    if (departments)
        m_departmentView->setCurrent(selection);
    else
        m_firmView->setCurrent(selection);
    refreshTitle();
    frame->showMessage(m_readOnly ? tr("Только чтение: %1").arg(m_readOnlyReason) : QString());
    m_stack->setCurrentWidget(frame);
}

void MainWindow::selectCreated(TYPE_ID uid)
{
    // A filter that hides the new object would make it look as if nothing
    // had been created.
    auto *model = m_storage->model(nivaro::ORGSTRUCTURE_DATANAME);
    if (!m_proxy->mapFromSource(model->indexOf(uid)).isValid() && !m_filter->text().isEmpty()) {
        m_filter->clear();
        m_filterTimer->stop();
        applyFilter();
    }
    selectUids({uid});
}

void MainWindow::showTreeMenu(const QPoint &pos)
{
    QMenu menu(this);
    menu.setToolTipsVisible(true);
    for (QAction *action : m_orgActions->actions()) {
        menu.addAction(action);
        if (action == m_orgActions->newFirmAction())
            menu.addSeparator();
    }
    menu.addSeparator();
    menu.addAction(m_bulkUpdate);
    menu.exec(m_tree->viewport()->mapToGlobal(pos));
}

QList<TYPE_ID> MainWindow::selectedObjects() const
{
    QList<TYPE_ID> uids;
    for (const QModelIndex &index : m_tree->selectionModel()->selectedRows()) {
        if (isBulkUpdatable(index.data(nivaro::ObjectTreeModel::TypeRole).toString()))
            uids.append(index.data(nivaro::ObjectTreeModel::UidRole).toUInt());
    }
    return uids;
}

void MainWindow::bulkUpdate()
{
    const QList<TYPE_ID> uids = selectedObjects();
    if (uids.isEmpty())
        return;
    BulkUpdateDialog dialog(m_storage, uids.size(), this);
    if (dialog.exec() == QDialog::Accepted)
        startBulkUpdate(uids, dialog.parameter(), dialog.value());
}

UpdateObjectWizard *MainWindow::startBulkUpdate(const QList<TYPE_ID> &uids, const QString &key, const QVariant &value)
{
    // The wizard rewrites what the view shows: settle its edits first.
    if (m_readOnly || !settleUnsaved())
        return nullptr;
    auto *wizard = new UpdateObjectWizard(this);
    wizard->setUids(uids);
    wizard->addUpdateParameter(key, value);
    m_runs->track(wizard, key, value);
    wizard->setOption(QWizard::HaveCustomButton1);
    wizard->setButtonText(QWizard::CustomButton1, tr("Сохранить журнал…"));
    connect(wizard, &QWizard::customButtonClicked, wizard, [this, wizard] {
        const QString path = QFileDialog::getSaveFileName(wizard, tr("Сохранить журнал"), QString(),
                                                          tr("Текстовые файлы (*.txt)"));
        if (path.isEmpty())
            return;
        QString error;
        if (!StudioStartup::writeText(path, wizard->progressPage()->logText(), &error))
            QMessageBox::warning(wizard, tr("Сохранить журнал"), error);
    });
    wizard->show();
    return wizard;
}

void MainWindow::showSelection(const QList<TYPE_ID> &uids)
{
    nivaro::NVHash<unsigned int, nivaro::ObjectInfo> selection;
    for (TYPE_ID uid : uids) {
        const nivaro::ObjectInfo *object = m_storage->constObject(uid, {nivaro::SUBJECT_DATANAME, nivaro::SUBJECT_FIRED_DATANAME});
        if (object)
            selection.insert(uid, *object);
        else
            qDebug() << "main window: selected uid not in store" << uid;
    }
    m_shown = uids;
    m_shownType = nivaro::OT_WORKER;
    m_frame->resetState();
    m_workerView->setCurrent(selection);
    refreshTitle();
    // Save stays off on a read-only store, since nothing can be edited;
    // the message line says why.
    m_frame->showMessage(m_readOnly ? tr("Только чтение: %1").arg(m_readOnlyReason) : QString());
    // A calendar is one person's: several selected show their properties only.
    const bool single = selection.size() == 1;
    const TYPE_ID worker = single ? selection.cbegin().key() : 0;
    m_schedulePage->setWorker(worker);
    m_absencePage->setWorker(worker);
    m_cardsPage->setWorker(worker);
    m_tabs->setTabEnabled(m_tabs->indexOf(m_schedulePage), single);
    m_tabs->setTabEnabled(m_tabs->indexOf(m_absencePage), single);
    m_tabs->setTabEnabled(m_tabs->indexOf(m_cardsPage), single);
    if (!single)
        m_tabs->setCurrentWidget(m_frame);
    m_stack->setCurrentWidget(m_tabs);
}

void MainWindow::refreshTitle()
{
    if (m_shownType == nivaro::OT_DEPARTMENT || m_shownType == nivaro::OT_FIRM) {
        const bool departments = m_shownType == nivaro::OT_DEPARTMENT;
        const nivaro::ObjectInfo *single
            = m_shown.size() == 1 ? m_storage->constObject(m_shown.constFirst(), nivaro::ORGSTRUCTURE_DATANAME) : nullptr;
        (departments ? m_departmentFrame : m_firmFrame)
            ->setTitle(single ? NVGlobals::objectName(*single)
                              : departments ? tr("Выбрано подразделений: %1").arg(m_shown.size())
                                            : tr("Выбрано организаций: %1").arg(m_shown.size()));
        return;
    }
    const nivaro::ObjectInfo *single = m_shown.size() == 1
        ? m_storage->constObject(m_shown.constFirst(), {nivaro::SUBJECT_DATANAME, nivaro::SUBJECT_FIRED_DATANAME})
        : nullptr;
    m_frame->setTitle(single ? NVGlobals::objectName(*single) : tr("Выбрано сотрудников: %1").arg(m_shown.size()));
}

void MainWindow::storeChanged(const QString &dataname, const QList<TYPE_ID> &uids)
{
    if (dataname == nivaro::SUBJECT_DATANAME || dataname == nivaro::SUBJECT_FIRED_DATANAME
        || dataname == nivaro::ORGSTRUCTURE_DATANAME) {
        if (!std::any_of(uids.cbegin(), uids.cend(), [this](TYPE_ID uid) { return m_shown.contains(uid); }))
            return;
        // A saved surname is the title's too.
        refreshTitle();
        // Someone shown was dismissed (here or by another client): the view
        // turns read-only and the actions follow, unless the operator is
        // in the middle of an edit, which the next selection settles.
        if (dataname == nivaro::SUBJECT_FIRED_DATANAME && !m_frame->isModified()) {
            showSelection(m_shown);
            selectionChanged();
        }
        return;
    }
    if (m_schedulePage->worker() == 0)
        return;
    if (dataname == nivaro::WORKER_HISTORY_DATANAME || dataname == nivaro::SCHEDULE_DATANAME || dataname == nivaro::REASON_DATANAME) {
        m_schedulePage->reload();
        m_absencePage->reload();
    }
}

void MainWindow::setStoreReadOnly(const QString &reason)
{
    m_readOnly = true;
    m_readOnlyReason = reason;
    m_runs->close();
    const QString text = tr("Только чтение: %1").arg(reason);
    m_statusAccess->setText(text);
    m_workerView->setReadOnly(true);
    m_frame->setReadOnlyReason(text);
    m_departmentView->setReadOnly(true);
    m_firmView->setReadOnly(true);
    m_departmentFrame->setReadOnlyReason(text);
    m_firmFrame->setReadOnlyReason(text);
    m_orgActions->setReadOnly(text);
    m_bulkUpdate->setEnabled(false);
    m_bulkUpdate->setToolTip(text);
}

void MainWindow::offerInterruptedRuns()
{
    if (m_readOnly)
        return;
    const QList<nivaro::RunJournal::Run> runs = m_runs->interruptedRuns();
    for (const nivaro::RunJournal::Run &run : runs) {
        const QList<TYPE_ID> remaining = run.remaining();
        const QString question = tr("Массовое изменение прервано: обработано %1 из %2 объектов.")
                                     .arg(run.uids.size() - remaining.size())
                                     .arg(run.uids.size());
        // The rest runs as a run of its own; the old one has said all it can.
        if (askInterrupted(question) == RunRemaining
            && !startBulkUpdate(remaining, BulkUpdateRuns::key(run), BulkUpdateRuns::value(run)))
            continue; // not started: offered again next time
        m_runs->endRun(run.id);
    }
}

void MainWindow::applyFilter()
{
    const QString text = m_filter->text().trimmed();
    m_proxy->setFilterText(text);
    if (text.isEmpty()) {
        m_tree->collapseAll();
        m_tree->expandToDepth(1);
        return;
    }
    // Count what the filter left before opening branches.
    int rows = 0;
    QList<QModelIndex> pending{QModelIndex()};
    while (!pending.isEmpty() && rows <= MaxRowsToExpand) {
        const QModelIndex parent = pending.takeLast();
        const int n = m_proxy->rowCount(parent);
        rows += n;
        for (int row = 0; row < n; ++row)
            pending.append(m_proxy->index(row, 0, parent));
    }
    if (rows <= MaxRowsToExpand)
        m_tree->expandAll();
    else
        statusBar()->showMessage(tr("Найдено слишком много: уточните фильтр"), 5000);
}

void MainWindow::updateStatus()
{
    const int working = m_storage->constObjects(nivaro::SUBJECT_DATANAME)->size();
    const int fired = m_storage->constObjects(nivaro::SUBJECT_FIRED_DATANAME)->size();
    m_statusCounts->setText(tr("Сотрудников: %1, уволенных: %2").arg(working).arg(fired));
}
