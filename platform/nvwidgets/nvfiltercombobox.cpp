#include "nvfiltercombobox.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QLineEdit>
#include <QSortFilterProxyModel>

NVFilterComboBox::NVFilterComboBox(QWidget *parent)
    : NVComboBox(parent)
    , m_filter(new QSortFilterProxyModel(this))
    , m_completer(new QCompleter(this))
{
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    m_filter->setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_filter->setSourceModel(model());
    m_completer->setModel(m_filter);
    m_completer->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
    m_completer->setCaseSensitivity(Qt::CaseInsensitive);
    setCompleter(m_completer);

    connect(lineEdit(), &QLineEdit::textEdited, this, &NVFilterComboBox::setFilterText);
    // QComboBox maps a choice from the completer's popup back through our
    // filter to its own row and emits activated(row) itself.
    // Leaving the field with a half-typed text puts the chosen item back.
    connect(lineEdit(), &QLineEdit::editingFinished, this, [this] {
        const int row = findText(lineEdit()->text(), Qt::MatchFixedString);
        if (row >= 0 && row != currentIndex()) {
            setCurrentIndex(row);
            emit activated(row);
        } else {
            lineEdit()->setText(itemText(currentIndex()));
        }
        m_filter->setFilterFixedString(QString());
    });
}

QSortFilterProxyModel *NVFilterComboBox::filterModel() const
{
    return m_filter;
}

void NVFilterComboBox::setFilterText(const QString &text)
{
    if (m_filter->sourceModel() != model())
        m_filter->setSourceModel(model());
    m_filter->setFilterFixedString(text);
    if (!text.isEmpty() && isVisible())
        m_completer->complete();
}
