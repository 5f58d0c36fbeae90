#ifndef USERPROXYMODEL_H
#define USERPROXYMODEL_H

#include "nvdialogs_export.h"

#include <objecttreeproxy.h>

#include <QStringList>

/**
 * The organisation tree of the selection views, limited on demand to the
 * objects whose role template (PT_ROLETEMPLATE) is one of a list;
 * departments and firms show as the path to the objects that pass. The
 * current user always passes, so that an operator never filters himself
 * out of his own list. Reads the process-wide LocalStorage.
 */
class NVDIALOGS_EXPORT UserProxyModel : public nivaro::ObjectTreeProxy
{
    Q_OBJECT
    Q_DISABLE_COPY(UserProxyModel)
public:
    explicit UserProxyModel(QObject *parent = nullptr);

    void setRoletemplateFilterEnabled(bool enabled);
    bool isRoletemplateFilterEnabled() const { return m_enabled; }
    void setRoletemplateFilter(const QStringList &templates);
    QStringList roletemplateFilter() const { return m_templates; }
    void setCurrentUserUid(unsigned int uid);
    unsigned int currentUserUid() const { return m_currentUser; }

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;
    bool filtersBeyondUids() const override { return m_enabled; }

private:
    bool m_enabled = false;
    QStringList m_templates;
    unsigned int m_currentUser = 0;
};

#endif
