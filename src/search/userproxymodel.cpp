#include "userproxymodel.h"

#include <dbparams.h>
#include <localstorage.h>
#include <objecttreemodel.h>

UserProxyModel::UserProxyModel(QObject *parent)
    : nivaro::ObjectTreeProxy(parent)
{
}

void UserProxyModel::setRoletemplateFilterEnabled(bool enabled)
{
    if (m_enabled == enabled)
        return;
    m_enabled = enabled;
    updateFastPath();
}

void UserProxyModel::setRoletemplateFilter(const QStringList &templates)
{
    m_templates = templates;
    if (m_enabled)
        invalidateFilter();
}

void UserProxyModel::setCurrentUserUid(unsigned int uid)
{
    m_currentUser = uid;
    if (m_enabled)
        invalidateFilter();
}

bool UserProxyModel::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    if (!nivaro::ObjectTreeProxy::filterAcceptsRow(sourceRow, sourceParent))
        return false;
    if (!m_enabled)
        return true;
    const QModelIndex index = sourceModel()->index(sourceRow, 0, sourceParent);
    const unsigned int uid = index.data(nivaro::ObjectTreeModel::UidRole).toUInt();
    if (uid != 0 && uid == m_currentUser)
        return true;
    const nivaro::ObjectInfo *object = nivaro::LocalStorage::instance()->constObject(uid);
    return object && m_templates.contains(object->parameter(db::common::ROLETEMPLATE));
}
