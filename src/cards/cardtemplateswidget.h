#ifndef CARDTEMPLATESWIDGET_H
#define CARDTEMPLATESWIDGET_H

#include "nvdialogs_export.h"

#include <templatedata.h>

#include <QScopedPointer>
#include <QWidget>

namespace Ui {
class CardTemplatesWidget;
}

/**
 * Lets the operator choose which of an employee's biometric templates go
 * onto a smart card, never more than the card's user memory holds: a
 * template that would no longer fit cannot be checked.
 */
class NVDIALOGS_EXPORT CardTemplatesWidget : public QWidget
{
    Q_OBJECT
public:
    explicit CardTemplatesWidget(QWidget *parent = nullptr);
    ~CardTemplatesWidget() override;

    void setTemplates(const QList<nivaro::_TEMPLATE_DATA> &templates);
    void setMaxUserDataSize(int bytes);
    int maxUserDataSize() const { return m_maxUserDataSize; }
    // The checked templates, in table order.
    QList<nivaro::_TEMPLATE_DATA> templates() const;

public Q_SLOTS:
    void calculateTemplatesSize();

private:
    QScopedPointer<Ui::CardTemplatesWidget> ui;
    int m_maxUserDataSize = 0;
};

#endif
