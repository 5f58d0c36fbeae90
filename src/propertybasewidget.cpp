#include "propertybasewidget.h"

#include "nvdialogsutils.h"

#include <localstorage.h>
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

void PropertyBaseWidget::refreshControlStates(const nivaro::NVHash<unsigned int, nivaro::ObjectInfo> &selection)
{
    NVDialogsUtils::EnableChildrenDisabledIfFired(this);
    enableControls();
    NVDialogsUtils::DisableChildrenIfFired(selection, this);
}

void PropertyBaseWidget::enableControls()
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

namespace {

// text.arg(name), without arg()'s general parsing for the common text with
// one "%1" and no other marker: a save of ten thousand employees fills two
// texts per object.
QString withName(const QString &text, const QString &name)
{
    const int at = text.indexOf(QLatin1String("%1"));
    if (at < 0 || text.indexOf(QLatin1Char('%')) != at || text.indexOf(QLatin1Char('%'), at + 2) >= 0)
        return text.arg(name);
    return text.leftRef(at) + name + text.midRef(at + 2);
}

} // namespace

nivaro::TaskInfo PropertyBaseWidget::makeSaveTask(const nivaro::ObjectInfo &object,
                                                  const QHash<QString, QString> &changed,
                                                  const QString &startText, const QString &errorText)
{
    nivaro::TaskInfo task;
    task.id = nivaro::TaskInfo::newId();
    task.uid = object.uid();
    task.command = QStringLiteral("save_object");
    task.params.insert(QStringLiteral("object_type"), object.typeName());
    // A view never moves what it edits, and the executor takes a parent
    // that differs from the store's for a move: a record the host read
    // before another client moved the object would carry it back.
    const nivaro::ObjectInfo *stored = nivaro::LocalStorage::instance()->constObject(object.uid());
    task.params.insert(QStringLiteral("parent"), stored ? stored->parent() : object.parent());
    for (auto it = changed.cbegin(); it != changed.cend(); ++it)
        task.params.insert(QLatin1String("property-") + it.key(), it.value());
    task.widget = this;
    task.slot = QStringLiteral("saved");
    const QString name = NVGlobals::objectName(object);
    task.startMessage = withName(startText, name);
    task.errorMessage = withName(errorText, name);
    return task;
}

nivaro::NVHash<unsigned int, nivaro::ObjectInfo> PropertyBaseWidget::storedObjects(const QList<unsigned int> &uids,
                                                                                   const QStringList &datanames)
{
    const nivaro::LocalStorage *storage = nivaro::LocalStorage::instance();
    nivaro::NVHash<unsigned int, nivaro::ObjectInfo> stored;
    stored.reserve(uids.size());
    for (unsigned int uid : uids) {
        if (const nivaro::ObjectInfo *object = storage->constObject(uid, datanames))
            stored.insert(uid, *object);
    }
    return stored;
}

nivaro::NVHash<unsigned int, nivaro::ObjectInfo>
PropertyBaseWidget::storedOrShown(const nivaro::NVHash<unsigned int, nivaro::ObjectInfo> &shown,
                                  const QStringList &datanames)
{
    nivaro::NVHash<unsigned int, nivaro::ObjectInfo> stored = storedObjects(shown.uniqueKeys(), datanames);
    for (auto it = shown.cbegin(); it != shown.cend(); ++it) {
        if (!stored.contains(it.key()))
            stored.insert(it.key(), it.value());
    }
    return stored;
}
