#include "nvcombobox.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>

NVComboBox::NVComboBox(QWidget *parent)
    : QComboBox(parent)
{
    // A QListView (not the style's default delegate view) so rows can hide.
    setView(new QListView(this));
}

void NVComboBox::setRowHidden(int row, bool hidden)
{
    if (auto *list = qobject_cast<QListView *>(view()))
        list->setRowHidden(row, hidden);
}

bool NVComboBox::isRowHidden(int row) const
{
    const auto *list = qobject_cast<const QListView *>(view());
    return list && list->isRowHidden(row);
}

bool NVComboBox::setCurrentData(const QVariant &value)
{
    const QString wanted = value.toString();
    for (int row = 0; row < count(); ++row) {
        if (itemData(row).toString() == wanted) {
            setCurrentIndex(row);
            return true;
        }
    }
    return false;
}

void NVComboBox::setReadOnly(bool readOnly)
{
    m_readOnly = readOnly;
    if (isEditable())
        lineEdit()->setReadOnly(readOnly);
}

bool NVComboBox::isReadOnly() const
{
    return m_readOnly;
}

void NVComboBox::keyPressEvent(QKeyEvent *event)
{
    // Tab and Escape still move focus and close; everything that would pick
    // another row is refused.
    if (m_readOnly && event->key() != Qt::Key_Tab && event->key() != Qt::Key_Backtab && event->key() != Qt::Key_Escape) {
        event->ignore();
        return;
    }
    QComboBox::keyPressEvent(event);
}

void NVComboBox::wheelEvent(QWheelEvent *event)
{
    if (m_readOnly) {
        event->ignore();
        return;
    }
    QComboBox::wheelEvent(event);
}

void NVComboBox::mousePressEvent(QMouseEvent *event)
{
    if (m_readOnly) {
        event->ignore();
        return;
    }
    QComboBox::mousePressEvent(event);
}
