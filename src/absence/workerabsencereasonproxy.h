#ifndef WORKERABSENCEREASONPROXY_H
#define WORKERABSENCEREASONPROXY_H

#include "nvdialogs_export.h"

#include <QDate>
#include <QSortFilterProxyModel>

/**
 * Shows the absence periods that share at least one day with a date
 * window, both ends included. With neither end set every period shows.
 * An unset end compares below every date: with only the first day set no
 * period with a start shows, and with only the last day set the first-day
 * test always passes. The absence views rely on this; keep it.
 */
class NVDIALOGS_EXPORT WorkerAbsenceReasonProxy : public QSortFilterProxyModel
{
    Q_OBJECT
public:
    explicit WorkerAbsenceReasonProxy(QObject *parent = nullptr);

    void setMinDate(const QDate &date);
    QDate minDate() const { return m_minDate; }
    void setMaxDate(const QDate &date);
    QDate maxDate() const { return m_maxDate; }
    void setDateRange(const QDate &min, const QDate &max);

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

private:
    QDate m_minDate;
    QDate m_maxDate;
};

#endif
