#ifndef SUBJECTVIEWDELEGATE_H
#define SUBJECTVIEWDELEGATE_H

#include "nvdialogs_export.h"

#include <styleditemdelegate.h>

#include <QIcon>

/**
 * Draws the rows of the organisation tree: an icon by object type and
 * state, and the object's name. Dismissed employees stand apart, in grey
 * italics with their own icon, so that nobody takes them for staff.
 */
class NVDIALOGS_EXPORT SubjectViewDelegate : public StyledItemDelegate
{
    Q_OBJECT
public:
    explicit SubjectViewDelegate(QObject *parent = nullptr);

    // The icon of an object type; `fired` for a dismissed employee.
    static QIcon iconFor(const QString &typeName, bool fired);

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;
};

#endif
