#include "custodyregimes.h"

#include <QCoreApplication>

QHash<int, QString> NVSpec::regimeNames()
{
    static const QHash<int, QString> names = {
        {0, QCoreApplication::translate("NVSpec", "Общий")},
        {1, QCoreApplication::translate("NVSpec", "Строгий")},
        {2, QCoreApplication::translate("NVSpec", "Особый")},
        {3, QCoreApplication::translate("NVSpec", "Колония поселения")},
    };
    return names;
}
