#ifndef STYLEDITEMDELEGATE_H
#define STYLEDITEMDELEGATE_H

#include "nvwidgets_export.h"

#include <QStyledItemDelegate>

/**
 * The item delegate of the library's object lists: the style's own
 * drawing, with a minimum row height that hosts can raise for touch
 * screens and large fonts.
 */
class NVWIDGETS_EXPORT StyledItemDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    explicit StyledItemDelegate(QObject *parent = nullptr);

    void setMinimumRowHeight(int height) { m_minimumRowHeight = height; }
    int minimumRowHeight() const { return m_minimumRowHeight; }

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    int m_minimumRowHeight = 0;
};

#endif
