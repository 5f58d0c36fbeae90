#ifndef NVCOMBOBOX_H
#define NVCOMBOBOX_H

#include "nvwidgets_export.h"

#include <QComboBox>

/**
 * The combo box of the property views. Rows can be hidden (the
 * "(разные значения)" row of a mixed selection stays in the model at row 0
 * but is not offered in the popup), items are found by their data, and
 * read-only mode keeps the text readable while refusing changes.
 */
class NVWIDGETS_EXPORT NVComboBox : public QComboBox
{
    Q_OBJECT
public:
    explicit NVComboBox(QWidget *parent = nullptr);

    void setRowHidden(int row, bool hidden);
    bool isRowHidden(int row) const;
    // Selects the first item whose Qt::UserRole data equals `data`
    // (compared as text); returns false and leaves the selection when none.
    bool setCurrentData(const QVariant &value);

    void setReadOnly(bool readOnly);
    bool isReadOnly() const;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    bool m_readOnly = false;
};

#endif
