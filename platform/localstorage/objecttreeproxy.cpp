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

namespace {
std::size_t slotOf(const void *node, std::size_t mask)
{
    const auto bits = quint64(reinterpret_cast<quintptr>(node));
    return std::size_t((bits * 0x9E3779B97F4A7C15ull) >> 32) & mask;
}
} // namespace

bool ObjectTreeProxy::hasNode(const void *node) const
{
    if (m_nodes.empty())
        return false;
    const std::size_t mask = m_nodes.size() - 1;
    for (std::size_t i = slotOf(node, mask);; i = (i + 1) & mask) {
        if (m_nodes[i] == node)
            return true;
        if (!m_nodes[i])
            return false;
    }
}

void ObjectTreeProxy::addNode(const void *node)
{
    if (++m_nodeCount * 2 > m_nodes.size()) {
        std::vector<const void *> old(m_nodes.size() * 2, nullptr);
        old.swap(m_nodes);
        m_nodeCount = 1;
        for (const void *n : old) {
            if (n)
                addNode(n);
        }
    }
    const std::size_t mask = m_nodes.size() - 1;
    std::size_t i = slotOf(node, mask);
    while (m_nodes[i] && m_nodes[i] != node)
        i = (i + 1) & mask;
    m_nodes[i] = node;
}

void ObjectTreeProxy::updateFastPath()
{
    const auto *tree = qobject_cast<const ObjectTreeModel *>(sourceModel());
    m_fastPath = tree && m_uidFilter && m_text.isEmpty() && m_allTypes && !filtersBeyondUids();
    m_nodes.clear();
    m_nodeCount = 0;
    if (m_fastPath) {
        // Room for every uid and each one's ancestors at most half full.
        std::size_t size = 64;
        while (size < std::size_t(m_uids.size()) * 4 + 64)
            size *= 2;
        m_nodes.assign(size, nullptr);
        // Each uid with its ancestors; a walk up stops at an ancestor whose
        // own walk was made, so a result of many people in few departments
        // costs one step per person.
        QSet<const void *> walked;
        const QList<TYPE_ID> found(m_uids.cbegin(), m_uids.cend());
        for (TYPE_ID uid : found) {
            const QModelIndex index = tree->indexOf(uid);
            if (!index.isValid())
                continue;
            addNode(index.internalPointer());
            for (QModelIndex up = index.parent(); up.isValid(); up = up.parent()) {
                if (walked.contains(up.internalPointer()))
                    break;
                walked.insert(up.internalPointer());
                m_uids.insert(tree->uid(up));
                addNode(up.internalPointer());
            }
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

bool ObjectTreeProxy::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    const auto *tree = qobject_cast<const ObjectTreeModel *>(sourceModel());
    if (!tree || sortRole() != ObjectTreeModel::SortRole || isSortLocaleAware())
        return QSortFilterProxyModel::lessThan(left, right);
    // The same order as the base class gives text, without a QVariant and
    // an index check per comparison.
    return QString::compare(tree->sortKey(left), tree->sortKey(right), sortCaseSensitivity()) < 0;
}

bool ObjectTreeProxy::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    if (m_fastPath) {
        // The node pointer rules most rows out without touching the node;
        // the uid guards against a node freed and its memory reused.
        const auto *tree = static_cast<const ObjectTreeModel *>(sourceModel());
        const QModelIndex index = tree->ObjectTreeModel::index(sourceRow, 0, sourceParent);
        return hasNode(index.internalPointer()) && m_uids.contains(tree->uid(index));
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
