#ifndef WORKERSCHEDULEPROXYMODEL_H
#define WORKERSCHEDULEPROXYMODEL_H

#include "nvdialogs_export.h"

#include <QSortFilterProxyModel>

/**
 * Shows the rows of a schedule calendar for a range of years, both ends
 * included. A year row and its month rows share their year, so they come
 * and go together.
 */
class NVDIALOGS_EXPORT WorkerScheduleProxyModel : public QSortFilterProxyModel
{
    Q_OBJECT
public:
    explicit WorkerScheduleProxyModel(QObject *parent = nullptr);

    void setMinimumYear(int year);
    int minimumYear() const { return m_minimumYear; }
    void setMaximumYear(int year);
    int maximumYear() const { return m_maximumYear; }

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;
    bool filterAcceptsColumn(int sourceColumn, const QModelIndex &sourceParent) const override;

private:
    int m_minimumYear = -5000;
    int m_maximumYear = 5000;
};

#endif
