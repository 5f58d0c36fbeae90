#include "objecttreeproxy.h"

#include "objecttreemodel.h"

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
    invalidateFilter();
}

void ObjectTreeProxy::clearFilterUids()
{
    m_uids.clear();
    m_uidFilter = false;
    invalidateFilter();
}

void ObjectTreeProxy::setTypeFilter(const QStringList &types)
{
    m_types = types;
    invalidateFilter();
}

void ObjectTreeProxy::setFilterText(const QString &text)
{
    m_text = text;
    invalidateFilter();
}

bool ObjectTreeProxy::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
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
