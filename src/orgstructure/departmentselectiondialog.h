#ifndef DEPARTMENTSELECTIONDIALOG_H
#define DEPARTMENTSELECTIONDIALOG_H

#include "nvdialogs_export.h"

#include <nvtypes.h>

#include <QDialog>
#include <QList>
#include <QSet>
#include <QStringList>

class QDialogButtonBox;
class QLabel;
class QLineEdit;
class QModelIndex;
class QTreeView;
namespace nivaro {
class ObjectTreeProxy;
}

/**
 * Lets the operator pick firms or departments from the organisation tree,
 * with a filter line for large organisations. Employees are not shown: a
 * department is always the thing chosen.
 *
 * Some places must refuse a choice (a department cannot go into itself or
 * below itself): those objects stay visible, so the operator can see the
 * structure, but choosing one, or anything below one, explains why and
 * keeps OK disabled.
 */
class NVDIALOGS_EXPORT DepartmentSelectionDialog : public QDialog
{
    Q_OBJECT
public:
    explicit DepartmentSelectionDialog(QWidget *parent = nullptr);
    ~DepartmentSelectionDialog() override;

    void setMultipleSelection(bool multiple);
    bool isMultipleSelection() const;

    // Object types that may be chosen; firms and departments by default.
    void setSelectableTypes(const QStringList &types);
    QStringList selectableTypes() const { return m_selectable; }

    // These objects and everything below them cannot be chosen; reason is
    // shown when the operator tries.
    void setExcluded(const QList<nivaro::TYPE_ID> &uids, const QString &reason);

    void setFilterText(const QString &text);
    QString filterText() const;

    void setSelectedUids(const QList<nivaro::TYPE_ID> &uids);
    // The chosen objects in uid order; selectedUid() is the first, 0 when
    // nothing is chosen.
    QList<nivaro::TYPE_ID> selectedUids() const;
    nivaro::TYPE_ID selectedUid() const;

    // Why the current choice cannot be accepted; empty when it can.
    QString refusal() const;

    QTreeView *view() const { return m_view; }

    // Asks for one department; 0 when the operator cancels.
    static nivaro::TYPE_ID getDepartment(QWidget *parent, const QString &title, nivaro::TYPE_ID current = 0,
                                         const QList<nivaro::TYPE_ID> &excluded = {},
                                         const QString &excludedReason = QString());

Q_SIGNALS:
    void selectionChanged();

private:
    void updateState();
    bool isExcluded(nivaro::TYPE_ID uid) const;
    void activated(const QModelIndex &index);

    nivaro::ObjectTreeProxy *m_proxy = nullptr;
    QTreeView *m_view = nullptr;
    QLineEdit *m_filter = nullptr;
    QLabel *m_reason = nullptr;
    QDialogButtonBox *m_buttons = nullptr;
    QStringList m_selectable;
    QSet<nivaro::TYPE_ID> m_excluded;
    QString m_excludedReason;
};

#endif
