#ifndef NIVARO_OBJECTTREEMODEL_H
#define NIVARO_OBJECTTREEMODEL_H

#include "localstorage_export.h"

#include <nvtypes.h>
#include <objectinfo.h>

#include <QAbstractItemModel>
#include <QHash>
#include <QSet>

#include <memory>

namespace nivaro {

/**
 * The organisation tree the client shows: the subject root, firms,
 * departments (nested) and employees in service and dismissed, each under
 * its parent. One column. The store owns it and keeps it current; views
 * read it through an ObjectTreeProxy.
 *
 * An object whose parent is not (yet) known hangs under the subject root,
 * and moves below its parent when that arrives.
 */
class LOCALSTORAGE_EXPORT ObjectTreeModel : public QAbstractItemModel
{
    Q_OBJECT
    Q_DISABLE_COPY(ObjectTreeModel)
public:
    enum Roles {
        UidRole = Qt::UserRole + 1,
        TypeRole,    // the object type name
        ParentRole,  // parent uid
        StateRole,   // PT_OBJECTSTATE
        SortRole,    // kind first (firms, departments, employees), then name
    };

    explicit ObjectTreeModel(QObject *parent = nullptr);
    ~ObjectTreeModel() override;

    QModelIndex index(int row, int column, const QModelIndex &parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

    QModelIndex indexOf(TYPE_ID uid) const;
    TYPE_ID uid(const QModelIndex &index) const;
    // What SortRole holds, without a QVariant: proxies sort thousands of
    // rows by it.
    QString sortKey(const QModelIndex &index) const;
    bool contains(TYPE_ID uid) const;
    // Every ancestor of uid up to the top, without uid itself.
    QSet<TYPE_ID> parentKeys(TYPE_ID uid) const;
    QList<TYPE_ID> uids() const;

    // Whether objects of this type belong in the tree.
    static bool isTreeType(const QString &typeName);

    // ---- Kept current by the store --------------------------------------
    void reset(const QList<ObjectInfo> &objects);
    void insertOrUpdate(const ObjectInfo &object);
    void remove(TYPE_ID uid);

private:
    struct Node;
    Node *nodeOf(const QModelIndex &index) const;
    QModelIndex indexOfNode(const Node *node) const;
    Node *attachPoint(TYPE_ID parentUid) const;
    void fill(Node *node, const ObjectInfo &object) const;
    void insertChild(Node *parent, Node *child);
    void detach(Node *node);
    void adoptOrphans(Node *parent);

    std::unique_ptr<Node> m_top; // invisible; holds the subject root and strays
    QHash<TYPE_ID, Node *> m_nodes;
};

} // namespace nivaro

#endif
