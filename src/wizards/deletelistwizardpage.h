#ifndef DELETELISTWIZARDPAGE_H
#define DELETELISTWIZARDPAGE_H

#include "nvdialogs_export.h"

#include <nvwizardpage.h>

class QAbstractItemModel;
class QAbstractItemView;
class QLabel;
class QTreeView;
class StyledItemDelegate;
namespace nivaro {
class ObjectTreeProxy;
}

/**
 * The objects a bulk wizard (delete, update) will act on, shown where they
 * sit in the organisation tree: the store's tree through a proxy filtered
 * to the given uids, their ancestors kept for the path.
 */
class NVDIALOGS_EXPORT DeleteListWizardPage : public NVWizardPage
{
    Q_OBJECT
public:
    explicit DeleteListWizardPage(QWidget *parent = nullptr);

    void setUids(const QList<unsigned int> &uids);

    QAbstractItemModel *model() const;
    nivaro::ObjectTreeProxy *proxy() const;
    // Installs the delegate on view, or on this page's list when view is null.
    void setItemDelegate(StyledItemDelegate *delegate, QAbstractItemView *view = nullptr);

    // Stops following the store, for a wizard whose run has started (there
    // is no way back to this page then): each row the run moves or removes
    // would otherwise be mapped through this list's proxy and view, which
    // over thousands of rows costs more than the run itself.
    void detachFromStore();

    // A note under the list, such as which objects are left out and why;
    // hidden while empty.
    void setNotice(const QString &text);
    QString notice() const;

private:
    QTreeView *m_view = nullptr;
    QLabel *m_notice = nullptr;
    nivaro::ObjectTreeProxy *m_proxy = nullptr;
};

#endif
