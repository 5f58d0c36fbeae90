#include "objecttreeproxy.h"

#include "objecttreemodel.h"

#include <objecttypes.h>

namespace nivaro {

ObjectTreeProxy::ObjectTreeProxy(QObject *parent)
    : QSortFilterProxyModel(parent)
{
    setRecursiveFilteringEnabled(true);
    setSortRole(ObjectTreeModel::SortRole);
    setDynamicSortFilter(true);
    sort(0);
}

void ObjectTreeProxy::setFilterUids(const QSet<TYPE_ID> &uids)
{
    m_uids = uids;
    m_uidFilter = true;
    updateFastPath();
}

void ObjectTreeProxy::clearFilterUids()
{
    m_uids.clear();
    m_uidFilter = false;
    updateFastPath();
}

void ObjectTreeProxy::setTypeFilter(const QStringList &types)
{
    m_types = types;
    m_allTypes = true;
    for (const QString &type : {OT_SUBJECT_ROOT, OT_FIRM, OT_DEPARTMENT, OT_WORKER})
        m_allTypes = m_allTypes && (types.isEmpty() || types.contains(type));
    updateFastPath();
}

void ObjectTreeProxy::setFilterText(const QString &text)
{
    m_text = text;
    updateFastPath();
}

void ObjectTreeProxy::updateFastPath()
{
    const auto *tree = qobject_cast<const ObjectTreeModel *>(sourceModel());
    m_fastPath = tree && m_uidFilter && m_text.isEmpty() && m_allTypes && !filtersBeyondUids();
    m_nodes.clear();
    if (m_fastPath) {
        const QList<TYPE_ID> found(m_uids.cbegin(), m_uids.cend());
        for (TYPE_ID uid : found) {
            const QSet<TYPE_ID> parents = tree->parentKeys(uid);
            m_uids.unite(parents);
        }
        m_nodes.reserve(m_uids.size());
        for (TYPE_ID uid : qAsConst(m_uids)) {
            const QModelIndex index = tree->indexOf(uid);
            if (index.isValid())
                m_nodes.insert(index.internalPointer());
        }
    }
    if (isRecursiveFilteringEnabled() == m_fastPath) {
        // Changing the recursion refilters by itself.
        setRecursiveFilteringEnabled(!m_fastPath);
    } else if (m_fastPath) {
        // A new result: mapping afresh the rows a view asks for is far
        // cheaper than telling it of every row that came and went.
        invalidate();
    } else {
        invalidateFilter();
    }
}

bool ObjectTreeProxy::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    if (m_fastPath) {
        // The node pointer rules most rows out without touching the node;
        // the uid guards against a node freed and its memory reused.
        const auto *tree = static_cast<const ObjectTreeModel *>(sourceModel());
        const QModelIndex index = tree->index(sourceRow, 0, sourceParent);
        return m_nodes.contains(index.internalPointer()) && m_uids.contains(tree->uid(index));
    }
    const QModelIndex index = sourceModel()->index(sourceRow, 0, sourceParent);
    if (!m_types.isEmpty() && !m_types.contains(index.data(ObjectTreeModel::TypeRole).toString()))
        return false;
    if (m_uidFilter && !m_uids.contains(index.data(ObjectTreeModel::UidRole).toUInt()))
        return false;
    if (!m_text.isEmpty() && !index.data(Qt::DisplayRole).toString().contains(m_text, Qt::CaseInsensitive))
        return false;
    return true;
}

} // namespace nivaro
