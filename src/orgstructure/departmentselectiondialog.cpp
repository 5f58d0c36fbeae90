#include "departmentselectiondialog.h"

#include "subjectviewdelegate.h"

#include <datanames.h>
#include <localstorage.h>
#include <objectinfo.h>
#include <objecttreemodel.h>
#include <objecttreeproxy.h>
#include <objecttypes.h>

#include <QDebug>
#include <QDialogButtonBox>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

using namespace nivaro;

DepartmentSelectionDialog::DepartmentSelectionDialog(QWidget *parent)
    : QDialog(parent)
    , m_proxy(new ObjectTreeProxy(this))
    , m_view(new QTreeView(this))
    , m_filter(new QLineEdit(this))
    , m_reason(new QLabel(this))
    , m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this))
    , m_selectable{OT_FIRM, OT_DEPARTMENT}
{
    setObjectName(QStringLiteral("DepartmentSelectionDialog"));
    setWindowTitle(tr("Выбор подразделения"));
    resize(420, 520);

    m_filter->setObjectName(QStringLiteral("leFilter"));
    m_filter->setPlaceholderText(tr("Название подразделения"));
    m_filter->setClearButtonEnabled(true);
    m_reason->setObjectName(QStringLiteral("lbReason"));
    m_reason->setWordWrap(true);
    m_reason->setStyleSheet(QStringLiteral("color: #b00020"));
    m_view->setObjectName(QStringLiteral("tvDepartments"));
    m_view->setHeaderHidden(true);
    m_view->setUniformRowHeights(true);
    m_view->setItemDelegate(new SubjectViewDelegate(m_view));

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_filter);
    layout->addWidget(m_view, 1);
    layout->addWidget(m_reason);
    layout->addWidget(m_buttons);

    m_proxy->setTypeFilter({OT_SUBJECT_ROOT, OT_FIRM, OT_DEPARTMENT});
    m_proxy->setSortRole(ObjectTreeModel::SortRole);
    if (ObjectTreeModel *tree = LocalStorage::instance()->model(ORGSTRUCTURE_DATANAME))
        m_proxy->setSourceModel(tree);
    else
        qDebug() << "department chooser: no organisation tree in the store";
    m_proxy->sort(0);
    m_view->setModel(m_proxy);
    m_view->expandToDepth(1);

    // In a large organisation the operator types part of the name first.
    m_filter->setFocus();
    connect(m_filter, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_proxy->setFilterText(text.trimmed());
        // A filtered tree is only useful with its matches in view.
        if (!text.trimmed().isEmpty())
            m_view->expandAll();
        updateState();
    });
    connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        updateState();
        emit selectionChanged();
    });
    connect(m_view, &QTreeView::doubleClicked, this, &DepartmentSelectionDialog::activated);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    updateState();
}

DepartmentSelectionDialog::~DepartmentSelectionDialog() = default;

void DepartmentSelectionDialog::setMultipleSelection(bool multiple)
{
    m_view->setSelectionMode(multiple ? QAbstractItemView::ExtendedSelection : QAbstractItemView::SingleSelection);
    if (!multiple && m_view->selectionModel()->selectedRows().size() > 1)
        m_view->selectionModel()->select(m_view->currentIndex(),
                                         QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    updateState();
}

bool DepartmentSelectionDialog::isMultipleSelection() const
{
    return m_view->selectionMode() == QAbstractItemView::ExtendedSelection;
}

void DepartmentSelectionDialog::setSelectableTypes(const QStringList &types)
{
    m_selectable = types;
    updateState();
}

void DepartmentSelectionDialog::setExcluded(const QList<TYPE_ID> &uids, const QString &reason)
{
    m_excluded = QSet<TYPE_ID>(uids.cbegin(), uids.cend());
    m_excludedReason = reason;
    updateState();
}

void DepartmentSelectionDialog::setFilterText(const QString &text)
{
    m_filter->setText(text);
}

QString DepartmentSelectionDialog::filterText() const
{
    return m_filter->text();
}

void DepartmentSelectionDialog::setSelectedUids(const QList<TYPE_ID> &uids)
{
    auto *tree = qobject_cast<ObjectTreeModel *>(m_proxy->sourceModel());
    QItemSelectionModel *selection = m_view->selectionModel();
    selection->clearSelection();
    if (!tree)
        return;
    for (TYPE_ID uid : uids) {
        const QModelIndex index = m_proxy->mapFromSource(tree->indexOf(uid));
        if (!index.isValid())
            continue;
        m_view->scrollTo(index);
        selection->setCurrentIndex(index, QItemSelectionModel::Select | QItemSelectionModel::Rows);
        if (!isMultipleSelection())
            break;
    }
    updateState();
}

QList<TYPE_ID> DepartmentSelectionDialog::selectedUids() const
{
    QList<TYPE_ID> uids;
    const QModelIndexList rows = m_view->selectionModel()->selectedRows();
    for (const QModelIndex &row : rows)
        uids.append(row.data(ObjectTreeModel::UidRole).toUInt());
    std::sort(uids.begin(), uids.end());
    return uids;
}

TYPE_ID DepartmentSelectionDialog::selectedUid() const
{
    const QList<TYPE_ID> uids = selectedUids();
    return uids.isEmpty() ? 0 : uids.first();
}

bool DepartmentSelectionDialog::isExcluded(TYPE_ID uid) const
{
    if (m_excluded.isEmpty())
        return false;
    const LocalStorage *storage = LocalStorage::instance();
    // Bounded by the depth of the tree; the guard only stops a damaged
    // store whose parents loop from hanging the dialog.
    for (int depth = 0; uid != 0 && depth < 1000; ++depth) {
        if (m_excluded.contains(uid))
            return true;
        const ObjectInfo *object = storage->constObject(uid, ORGSTRUCTURE_DATANAME);
        if (!object || object->parent() == uid)
            return false;
        uid = object->parent();
    }
    return false;
}

QString DepartmentSelectionDialog::refusal() const
{
    const QModelIndexList rows = m_view->selectionModel()->selectedRows();
    if (rows.isEmpty())
        return tr("Выберите подразделение");
    for (const QModelIndex &row : rows) {
        const QString type = row.data(ObjectTreeModel::TypeRole).toString();
        const QString name = row.data(Qt::DisplayRole).toString();
        if (!m_selectable.contains(type))
            return m_selectable == QStringList{OT_FIRM} ? tr("«%1» не организация").arg(name)
                                                        : tr("«%1» нельзя выбрать").arg(name);
        if (isExcluded(row.data(ObjectTreeModel::UidRole).toUInt()))
            return m_excludedReason.isEmpty() ? tr("«%1» нельзя выбрать").arg(name)
                                              : m_excludedReason.arg(name);
    }
    return QString();
}

void DepartmentSelectionDialog::updateState()
{
    const QString why = refusal();
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(why.isEmpty());
    // Nothing chosen yet is not an error; only a refused choice is shown.
    m_reason->setText(m_view->selectionModel()->hasSelection() ? why : QString());
}

void DepartmentSelectionDialog::activated(const QModelIndex &index)
{
    if (index.isValid() && refusal().isEmpty())
        accept();
}

TYPE_ID DepartmentSelectionDialog::getDepartment(QWidget *parent, const QString &title, TYPE_ID current,
                                                 const QList<TYPE_ID> &excluded, const QString &excludedReason)
{
    DepartmentSelectionDialog dialog(parent);
    if (!title.isEmpty())
        dialog.setWindowTitle(title);
    dialog.setExcluded(excluded, excludedReason);
    if (current)
        dialog.setSelectedUids({current});
    return dialog.exec() == QDialog::Accepted ? dialog.selectedUid() : 0;
}
