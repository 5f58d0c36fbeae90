#include "objecttreemodel.h"

#include <dbparams.h>
#include <nvglobals.h>
#include <objecttypes.h>

#include <QBrush>
#include <QDebug>

#include <vector>

namespace nivaro {

struct ObjectTreeModel::Node
{
    TYPE_ID uid = 0;
    Node *parent = nullptr;
    int row = 0;
    TYPE_ID parentUid = 0;
    QString type;
    QString name;
    QString state;
    QString sortKey;
    std::vector<std::unique_ptr<Node>> children;
};

namespace {

int typeRank(const QString &type)
{
    if (type == OT_SUBJECT_ROOT)
        return 0;
    if (type == OT_FIRM)
        return 1;
    if (type == OT_DEPARTMENT)
        return 2;
    return 3;
}

bool isFired(const QString &state)
{
    return state.compare(db::common::STATE_FIRED, Qt::CaseInsensitive) == 0;
}

} // namespace

ObjectTreeModel::ObjectTreeModel(QObject *parent)
    : QAbstractItemModel(parent)
    , m_top(new Node)
{
}

ObjectTreeModel::~ObjectTreeModel() = default;

bool ObjectTreeModel::isTreeType(const QString &typeName)
{
    return typeName == OT_SUBJECT_ROOT || typeName == OT_FIRM || typeName == OT_DEPARTMENT || typeName == OT_WORKER;
}

ObjectTreeModel::Node *ObjectTreeModel::nodeOf(const QModelIndex &index) const
{
    return index.isValid() ? static_cast<Node *>(index.internalPointer()) : m_top.get();
}

QModelIndex ObjectTreeModel::indexOfNode(const Node *node) const
{
    if (!node || node == m_top.get())
        return {};
    return createIndex(node->row, 0, const_cast<Node *>(node));
}

QModelIndex ObjectTreeModel::index(int row, int column, const QModelIndex &parent) const
{
    const Node *p = nodeOf(parent);
    if (column != 0 || row < 0 || row >= int(p->children.size()))
        return {};
    return createIndex(row, 0, p->children[size_t(row)].get());
}

QModelIndex ObjectTreeModel::parent(const QModelIndex &child) const
{
    if (!child.isValid())
        return {};
    return indexOfNode(nodeOf(child)->parent);
}

int ObjectTreeModel::rowCount(const QModelIndex &parent) const
{
    if (parent.isValid() && parent.column() != 0)
        return 0;
    return int(nodeOf(parent)->children.size());
}

int ObjectTreeModel::columnCount(const QModelIndex &parent) const
{
    if (parent.isValid() && parent.column() != 0)
        return 0;
    return 1;
}

QVariant ObjectTreeModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Node *n = nodeOf(index);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return n->name;
    case Qt::ForegroundRole:
        return isFired(n->state) ? QVariant(QBrush(Qt::gray)) : QVariant();
    case UidRole:
        return n->uid;
    case TypeRole:
        return n->type;
    case ParentRole:
        return n->parentUid;
    case StateRole:
        return n->state;
    case SortRole:
        return n->sortKey;
    default:
        return {};
    }
}

QHash<int, QByteArray> ObjectTreeModel::roleNames() const
{
    QHash<int, QByteArray> names = QAbstractItemModel::roleNames();
    names.insert(UidRole, "uid");
    names.insert(TypeRole, "type");
    names.insert(ParentRole, "parentUid");
    names.insert(StateRole, "state");
    names.insert(SortRole, "sortKey");
    return names;
}

QModelIndex ObjectTreeModel::indexOf(TYPE_ID uid) const
{
    return indexOfNode(m_nodes.value(uid));
}

TYPE_ID ObjectTreeModel::uid(const QModelIndex &index) const
{
    return index.isValid() ? nodeOf(index)->uid : 0;
}

QString ObjectTreeModel::sortKey(const QModelIndex &index) const
{
    return index.isValid() ? nodeOf(index)->sortKey : QString();
}

bool ObjectTreeModel::contains(TYPE_ID uid) const
{
    return m_nodes.contains(uid);
}

QSet<TYPE_ID> ObjectTreeModel::parentKeys(TYPE_ID uid) const
{
    QSet<TYPE_ID> keys;
    const Node *n = m_nodes.value(uid);
    for (n = n ? n->parent : nullptr; n && n != m_top.get(); n = n->parent)
        keys.insert(n->uid);
    return keys;
}

QList<TYPE_ID> ObjectTreeModel::uids() const
{
    return m_nodes.keys();
}

void ObjectTreeModel::fill(Node *node, const ObjectInfo &object) const
{
    node->uid = object.uid();
    node->parentUid = object.parent();
    node->type = object.typeName();
    node->name = NVGlobals::objectName(object);
    node->state = object.parameter(db::common::OBJECTSTATE);
    // Lower-cased with ё as е, a plain comparison sorts Russian names as a
    // person expects, at a fraction of a locale-aware compare's cost.
    QString key = node->name.toLower();
    key.replace(QChar(0x0451), QChar(0x0435));
    node->sortKey = QString::number(typeRank(node->type)) + key;
}

// Where an object with this parent hangs: the parent, or else the subject
// root, or else the top when there is no root yet.
ObjectTreeModel::Node *ObjectTreeModel::attachPoint(TYPE_ID parentUid) const
{
    if (Node *p = m_nodes.value(parentUid))
        return p;
    if (Node *root = m_nodes.value(SUBJECT_ROOT_UID))
        return root;
    return m_top.get();
}

void ObjectTreeModel::reset(const QList<ObjectInfo> &objects)
{
    beginResetModel();
    m_top->children.clear();
    m_nodes.clear();
    m_nodes.reserve(objects.size());
    std::vector<std::unique_ptr<Node>> created;
    created.reserve(size_t(objects.size()));
    for (const ObjectInfo &object : objects) {
        if (!isTreeType(object.typeName()) || m_nodes.contains(object.uid()))
            continue;
        auto node = std::make_unique<Node>();
        fill(node.get(), object);
        m_nodes.insert(node->uid, node.get());
        created.push_back(std::move(node));
    }
    // Link once every node exists, so the order of the list does not matter.
    // A parent chain that loops back on itself is cut at the subject root.
    for (auto &owned : created) {
        Node *node = owned.get();
        Node *parent = node->uid == SUBJECT_ROOT_UID ? m_top.get() : attachPoint(node->parentUid);
        int steps = m_nodes.size();
        for (Node *up = parent; up && up != m_top.get() && up->uid != SUBJECT_ROOT_UID;
             up = m_nodes.value(up->parentUid)) {
            if (up == node || --steps < 0) {
                qDebug() << "tree: parent chain of" << node->uid << "loops; placed under the root";
                parent = node->uid == SUBJECT_ROOT_UID ? m_top.get() : attachPoint(SUBJECT_ROOT_UID);
                break;
            }
        }
        node->parent = parent;
        node->row = int(parent->children.size());
        parent->children.push_back(std::move(owned));
    }
    endResetModel();
}

void ObjectTreeModel::insertChild(Node *parent, Node *child)
{
    const int row = int(parent->children.size());
    beginInsertRows(indexOfNode(parent), row, row);
    child->parent = parent;
    child->row = row;
    parent->children.emplace_back(child);
    endInsertRows();
}

void ObjectTreeModel::detach(Node *node)
{
    Node *parent = node->parent;
    const int row = node->row;
    beginRemoveRows(indexOfNode(parent), row, row);
    parent->children[size_t(row)].release();
    parent->children.erase(parent->children.begin() + row);
    for (size_t i = size_t(row); i < parent->children.size(); ++i)
        parent->children[i]->row = int(i);
    node->parent = nullptr;
    endRemoveRows();
}

// Strays under the root (or the top) whose parent has just arrived move to it.
void ObjectTreeModel::adoptOrphans(Node *parent)
{
    Node *root = m_nodes.value(SUBJECT_ROOT_UID);
    for (Node *holder : {root, m_top.get()}) {
        if (!holder || holder == parent)
            continue;
        for (size_t i = 0; i < holder->children.size();) {
            Node *child = holder->children[i].get();
            if (child->parentUid == parent->uid && child != parent) {
                detach(child);
                insertChild(parent, child);
            } else {
                ++i;
            }
        }
    }
}

void ObjectTreeModel::insertOrUpdate(const ObjectInfo &object)
{
    if (!isTreeType(object.typeName()))
        return;
    Node *node = m_nodes.value(object.uid());
    if (!node) {
        node = new Node;
        fill(node, object);
        m_nodes.insert(node->uid, node);
        insertChild(node->uid == SUBJECT_ROOT_UID ? m_top.get() : attachPoint(node->parentUid), node);
        adoptOrphans(node);
        return;
    }
    const TYPE_ID oldParent = node->parentUid;
    fill(node, object);
    Node *target = node->uid == SUBJECT_ROOT_UID ? m_top.get() : attachPoint(node->parentUid);
    // Refuse a move below itself: the object would vanish from the tree.
    for (Node *up = target; up && up != m_top.get(); up = up->parent) {
        if (up == node) {
            qDebug() << "tree: refusing to move" << node->uid << "below its own descendant" << node->parentUid;
            target = node->parent;
            break;
        }
    }
    if (oldParent != node->parentUid && target != node->parent) {
        detach(node);
        insertChild(target, node);
    } else {
        const QModelIndex i = indexOfNode(node);
        emit dataChanged(i, i);
    }
}

void ObjectTreeModel::remove(TYPE_ID uid)
{
    Node *node = m_nodes.value(uid);
    if (!node)
        return;
    // Whatever hung below moves up to the root rather than vanishing.
    while (!node->children.empty()) {
        Node *child = node->children.back().get();
        detach(child);
        Node *target = attachPoint(SUBJECT_ROOT_UID);
        insertChild(target == node ? m_top.get() : target, child);
    }
    m_nodes.remove(uid);
    detach(node);
    delete node;
}

} // namespace nivaro
