#include "styleditemdelegate.h"

StyledItemDelegate::StyledItemDelegate(QObject *parent)
    : QStyledItemDelegate(parent)
{
}

QSize StyledItemDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    size.setHeight(qMax(size.height(), m_minimumRowHeight));
    return size;
}
