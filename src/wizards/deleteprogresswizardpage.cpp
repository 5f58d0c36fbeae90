#include "deleteprogresswizardpage.h"

#include <datanames.h>
#include <localstorage.h>
#include <objecttreemodel.h>

#include <algorithm>

DeleteProgressWizardPage::DeleteProgressWizardPage(QWidget *parent)
    : ObjectsProgressWizardPage({QStringLiteral("delete_object"), QStringLiteral("deleted"), tr("Удаление %1"),
                                 tr("%1 удален"), tr("Ошибка удаления %1")},
                                parent)
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
