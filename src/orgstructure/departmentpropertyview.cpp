#include "departmentpropertyview.h"

#include <dbparams.h>

DepartmentPropertyView::DepartmentPropertyView(QWidget *parent)
    : OrgPropertyView(parent)
{
    addLine(QStringLiteral("leName"), tr("Название"), db::orgstructure::NAME, [](const QString &value) {
        return value.trimmed().isEmpty() ? tr("Название подразделения не может быть пустым") : QString();
    });
    addLine(QStringLiteral("leNumber"), tr("Номер"), db::orgstructure::DEPARTNUM);
    addText(QStringLiteral("teDescription"), tr("Описание"), db::common::DESCRIPTION);
    setCurrent({});
}

DepartmentPropertyView::~DepartmentPropertyView() = default;

QString DepartmentPropertyView::widgetUid() const
{
    return QStringLiteral("DepartmentPropertyView");
}

QString DepartmentPropertyView::startText() const
{
    return tr("Сохранение параметров подразделения %1");
}

QString DepartmentPropertyView::errorText() const
{
    return tr("Ошибка сохранения параметров подразделения %1");
}
