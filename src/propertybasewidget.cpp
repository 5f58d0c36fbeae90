#include "propertybasewidget.h"

#include <nvglobals.h>

PropertyBaseWidget::PropertyBaseWidget(QWidget *parent)
    : QWidget(parent)
{
}

PropertyBaseWidget::~PropertyBaseWidget() = default;

QStringList PropertyBaseWidget::subPages() const
{
    return {};
}

void PropertyBaseWidget::showSubPage(int)
{
}

QSet<QString> PropertyBaseWidget::paramsToSet(const QMap<QString, QStringList> &values, const QString &key,
                                              const QString &defaultValue)
{
    const auto it = values.constFind(key);
    if (it == values.cend())
        return {defaultValue};
    QSet<QString> set;
    for (const QString &value : *it)
        set.insert(value.isNull() ? defaultValue : value);
    if (set.isEmpty())
        set.insert(defaultValue);
    return set;
}

nivaro::TaskInfo PropertyBaseWidget::makeSaveTask(const nivaro::ObjectInfo &object,
                                                  const QHash<QString, QString> &changed,
                                                  const QString &startText, const QString &errorText)
{
    nivaro::TaskInfo task;
    task.id = nivaro::TaskInfo::newId();
    task.uid = object.uid();
    task.command = QStringLiteral("save_object");
    task.params.insert(QStringLiteral("object_type"), object.typeName());
    task.params.insert(QStringLiteral("parent"), object.parent());
    for (auto it = changed.cbegin(); it != changed.cend(); ++it)
        task.params.insert(QStringLiteral("property-%1").arg(it.key()), it.value());
    task.widget = this;
    task.slot = QStringLiteral("saved");
    const QString name = NVGlobals::objectName(object);
    task.startMessage = startText.arg(name);
    task.errorMessage = errorText.arg(name);
    return task;
}
