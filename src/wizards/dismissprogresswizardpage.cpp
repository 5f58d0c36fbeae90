#include "dismissprogresswizardpage.h"

DismissProgressWizardPage::DismissProgressWizardPage(QWidget *parent)
    : ObjectsProgressWizardPage({QStringLiteral("dismiss_object"), QStringLiteral("dismissed"), tr("Увольнение %1"),
                                 tr("%1 уволен"), tr("Ошибка увольнения %1")},
                                parent)
{
    setTitle(tr("Идет увольнение"));
}

void DismissProgressWizardPage::setDismissal(const QDate &date, const QString &reason)
{
    setTaskParameter(QStringLiteral("date"), date.toString(Qt::ISODate));
    setTaskParameter(QStringLiteral("reason"), reason);
}
