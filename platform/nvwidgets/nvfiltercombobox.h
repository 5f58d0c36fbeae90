#ifndef NVFILTERCOMBOBOX_H
#define NVFILTERCOMBOBOX_H

#include "nvwidgets_export.h"
#include "nvcombobox.h"

class QSortFilterProxyModel;
class QCompleter;

/**
 * A combo box for long lists (countries, jobs): typing into it filters the
 * items to those containing the text, case-insensitively; choosing one from
 * the filtered popup selects it and emits activated(int) with its row in
 * the full list.
 */
class NVWIDGETS_EXPORT NVFilterComboBox : public NVComboBox
{
    Q_OBJECT
public:
    explicit NVFilterComboBox(QWidget *parent = nullptr);

    // The filter over the items, for tests and callers that want to look.
    QSortFilterProxyModel *filterModel() const;
    void setFilterText(const QString &text);

private:
    QSortFilterProxyModel *m_filter = nullptr;
    QCompleter *m_completer = nullptr;
};

#endif
