#include "workerabsencereasonproxy.h"

#include "workerabsencereasonmodel.h"

#include <QDateTime>
#include <QLoggingCategory>

namespace {
// One line per row and filter pass: quiet unless asked for
// (QT_LOGGING_RULES="nvdialogs.absence.debug=true").
Q_LOGGING_CATEGORY(lcAbsenceFilter, "nvdialogs.absence", QtInfoMsg)
} // namespace

WorkerAbsenceReasonProxy::WorkerAbsenceReasonProxy(QObject *parent)
    : QSortFilterProxyModel(parent)
{
}

void WorkerAbsenceReasonProxy::setMinDate(const QDate &date)
{
    setDateRange(date, m_maxDate);
}

void WorkerAbsenceReasonProxy::setMaxDate(const QDate &date)
{
    setDateRange(m_minDate, date);
}

void WorkerAbsenceReasonProxy::setDateRange(const QDate &min, const QDate &max)
{
    m_minDate = min;
    m_maxDate = max;
    invalidateFilter();
}

bool WorkerAbsenceReasonProxy::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    if (!QSortFilterProxyModel::filterAcceptsRow(sourceRow, sourceParent))
        return false;
    const auto *model = qobject_cast<const WorkerAbsenceReasonModel *>(sourceModel());
    if (!model || (!m_minDate.isValid() && !m_maxDate.isValid()))
        return true;
    const QDate start = model->index(sourceRow, WorkerAbsenceReasonModel::StartColumn, sourceParent).data().toDateTime().date();
    const QDate end = model->index(sourceRow, WorkerAbsenceReasonModel::EndColumn, sourceParent).data().toDateTime().date();
    // QDate orders an invalid date below every valid one.
    const bool accepted = !(start > m_maxDate) && !(m_minDate > end);
    qCDebug(lcAbsenceFilter) << m_minDate << m_maxDate << start << end << accepted;
    return accepted;
}
