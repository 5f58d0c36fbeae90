#include "deleteprogresswizardpage.h"

#include <datanames.h>
#include <localstorage.h>
#include <objecttreemodel.h>

#include <algorithm>

DeleteProgressWizardPage::DeleteProgressWizardPage(QWidget *parent)
    : ObjectsProgressWizardPage(parent)
{
    setTitle(tr("Идет удаление"));
}

void DeleteProgressWizardPage::setUids(const QList<unsigned int> &uids)
{
    ObjectsProgressWizardPage::setUids(uids);
    const nivaro::ObjectTreeModel *tree = nivaro::LocalStorage::instance()->model(nivaro::ORGSTRUCTURE_DATANAME);
    QHash<unsigned int, int> depth;
    for (const nivaro::ObjectInfo &object : qAsConst(objects()))
        depth.insert(object.uid(), tree->parentKeys(object.uid()).size());
    // Deepest first; among equals the operator's order stays.
    std::stable_sort(objects().begin(), objects().end(), [&depth](const nivaro::ObjectInfo &a, const nivaro::ObjectInfo &b) {
        return depth.value(a.uid()) > depth.value(b.uid());
    });
}

nivaro::TaskInfo DeleteProgressWizardPage::makeTask(const nivaro::ObjectInfo &object) const
{
    nivaro::TaskInfo task;
    task.command = QStringLiteral("delete_object");
    task.params.insert(QStringLiteral("object_type"), object.typeName());
    task.slot = QStringLiteral("deleted");
    return task;
}

QString DeleteProgressWizardPage::startText(const QString &name) const
{
    return tr("Удаление %1").arg(name);
}

QString DeleteProgressWizardPage::doneText(const QString &name) const
{
    return tr("%1 удален").arg(name);
}

QString DeleteProgressWizardPage::errorText(const QString &name) const
{
    return tr("Ошибка удаления %1").arg(name);
}
