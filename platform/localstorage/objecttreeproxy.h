#ifndef NIVARO_OBJECTTREEPROXY_H
#define NIVARO_OBJECTTREEPROXY_H

#include "localstorage_export.h"

#include <nvtypes.h>

#include <QSet>
#include <QSortFilterProxyModel>
#include <QStringList>

#include <vector>

namespace nivaro {

/**
 * A filtered, sorted view of an ObjectTreeModel: by object type, by a set
 * of uids (a search result, a wizard's object list) and by a name text.
 * A row passes when it passes every filter that is set; ancestors of a row
 * that passes stay visible so that the path from the root can be read.
 */
class LOCALSTORAGE_EXPORT ObjectTreeProxy : public QSortFilterProxyModel
{
    Q_OBJECT
    Q_DISABLE_COPY(ObjectTreeProxy)
public:
    explicit ObjectTreeProxy(QObject *parent = nullptr);

    void setFilterUids(const QSet<TYPE_ID> &uids);
    void clearFilterUids();
    QSet<TYPE_ID> filterUids() const { return m_uids; }
    bool hasUidFilter() const { return m_uidFilter; }

    // Type names shown; empty shows every type.
    void setTypeFilter(const QStringList &types);
    QStringList typeFilter() const { return m_types; }

    // Case-insensitive part of the display name; empty shows all.
    void setFilterText(const QString &text);
    QString filterText() const { return m_text; }

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;
    // Whether a subclass rejects rows on grounds of its own, so that the
    // ancestors of what passes must be found by searching subtrees.
    virtual bool filtersBeyondUids() const { return false; }
    // With only a uid filter set, the filter itself keeps the ancestors of
    // every uid, so no row needs its subtree searched for a match: a search
    // result over a million employees filters in one pass over the rows
    // that are mapped, not a walk of every subtree. Refilters; subclasses
    // call it when filtersBeyondUids() changes.
    void updateFastPath();

private:
    bool m_fastPath = false;
    // The tree's nodes of the uids, so that the fast path tells rows apart
    // without reading a million nodes scattered over the heap: an open
    // addressing table of node pointers, a power of two in size, that
    // stays in cache while the filter runs over every row.
    std::vector<const void *> m_nodes;
    std::size_t m_nodeCount = 0;
    bool hasNode(const void *node) const;
    void addNode(const void *node);
    bool m_allTypes = true;
    QSet<TYPE_ID> m_uids;
    bool m_uidFilter = false;
    QStringList m_types;
    QString m_text;
};

} // namespace nivaro

#endif
