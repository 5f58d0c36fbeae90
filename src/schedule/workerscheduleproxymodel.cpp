#include "workerscheduleproxymodel.h"

#include <QDate>

WorkerScheduleProxyModel::WorkerScheduleProxyModel(QObject *parent)
    : QSortFilterProxyModel(parent)
{
}

void WorkerScheduleProxyModel::setMinimumYear(int year)
{
    m_minimumYear = year;
    invalidate();
}

void WorkerScheduleProxyModel::setMaximumYear(int year)
{
    m_maximumYear = year;
    invalidate();
}

bool WorkerScheduleProxyModel::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    if (!sourceModel() || sourceParent.isValid())
        return false;
    const int year = sourceModel()->index(sourceRow, 0).data(Qt::UserRole).toDate().year();
    return m_minimumYear <= year && year <= m_maximumYear;
}

bool WorkerScheduleProxyModel::filterAcceptsColumn(int, const QModelIndex &) const
{
    return true;
}
