#include "workerabsencereasonmodel.h"

#include <dbparams.h>

using nivaro::_WORKER_ABSENCE_REASON_RECORD;

WorkerAbsenceReasonModel::WorkerAbsenceReasonModel(QObject *parent)
    : QAbstractItemModel(parent)
{
}

void WorkerAbsenceReasonModel::setWorkerReasons(const nivaro::_WORKER_ABSENCE_REASON &reasons)
{
    beginResetModel();
    m_reasons = reasons;
    endResetModel();
}

void WorkerAbsenceReasonModel::setAbsenceReasons(const nivaro::NVHash<unsigned int, nivaro::ObjectInfo> &reasons)
{
    m_reasonObjects = reasons;
    if (!m_reasons.records.isEmpty())
        emit dataChanged(index(0, 0), index(m_reasons.records.size() - 1, ColumnCount - 1));
}

_WORKER_ABSENCE_REASON_RECORD WorkerAbsenceReasonModel::workerReason(int row) const
{
    return row >= 0 && row < m_reasons.records.size() ? m_reasons.records.at(row) : _WORKER_ABSENCE_REASON_RECORD();
}

unsigned int WorkerAbsenceReasonModel::row(unsigned int id) const
{
    for (int i = 0; i < m_reasons.records.size(); ++i) {
        if (m_reasons.records.at(i).id == id)
            return unsigned(i);
    }
    return NoRow;
}

void WorkerAbsenceReasonModel::addReason(const _WORKER_ABSENCE_REASON_RECORD &record)
{
    const int row = m_reasons.records.size();
    beginInsertRows(QModelIndex(), row, row);
    m_reasons.records.append(record);
    endInsertRows();
}

void WorkerAbsenceReasonModel::setWorkerReason(int row, const _WORKER_ABSENCE_REASON_RECORD &record)
{
    if (row < 0 || row >= m_reasons.records.size())
        return;
    m_reasons.records[row] = record;
    emit dataChanged(index(row, 0), index(row, ColumnCount - 1));
}

bool WorkerAbsenceReasonModel::removeRow(int row, const QModelIndex &parent)
{
    return removeRows(row, 1, parent);
}

void WorkerAbsenceReasonModel::removeReason(int row)
{
    removeRow(row, QModelIndex());
}

bool WorkerAbsenceReasonModel::removeRows(int row, int count, const QModelIndex &parent)
{
    if (row < 0 || count < 1 || parent.isValid() || row + count > m_reasons.records.size())
        return false;
    beginRemoveRows(QModelIndex(), row, row + count - 1);
    m_reasons.records.erase(m_reasons.records.begin() + row, m_reasons.records.begin() + row + count);
    endRemoveRows();
    return true;
}

QModelIndex WorkerAbsenceReasonModel::index(int row, int column, const QModelIndex &parent) const
{
    return hasIndex(row, column, parent) ? createIndex(row, column) : QModelIndex();
}

QModelIndex WorkerAbsenceReasonModel::parent(const QModelIndex &) const
{
    return QModelIndex();
}

int WorkerAbsenceReasonModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_reasons.records.size();
}

int WorkerAbsenceReasonModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

bool WorkerAbsenceReasonModel::isCell(const QModelIndex &index) const
{
    return index.isValid() && index.model() == this && index.row() < m_reasons.records.size() && index.column() < ColumnCount;
}

QString WorkerAbsenceReasonModel::reasonText(quint32 reason, const QString &key) const
{
    const auto it = m_reasonObjects.constFind(reason);
    if (it == m_reasonObjects.cend())
        return tr("??? %1").arg(reason);
    return it->parameter(key);
}

QVariant WorkerAbsenceReasonModel::data(const QModelIndex &index, int role) const
{
    if (role != Qt::DisplayRole || !isCell(index))
        return QVariant();
    const _WORKER_ABSENCE_REASON_RECORD &r = m_reasons.records.at(index.row());
    switch (index.column()) {
    case MarkColumn:
        return reasonText(r.reason, db::reason::MARK);
    case ReasonColumn:
        return reasonText(r.reason, db::reason::NAME);
    case StartColumn:
        return r.withTime ? QVariant(r.start) : QVariant(r.start.date());
    case EndColumn:
        return r.withTime ? QVariant(r.end) : QVariant(r.end.date());
    case CreatedColumn:
        return r.created;
    case CommentColumn:
        return r.comment;
    default:
        return QVariant();
    }
}

QVariant WorkerAbsenceReasonModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    switch (section) {
    case MarkColumn:
        return tr("Метка");
    case ReasonColumn:
        return tr("Причина");
    case StartColumn:
        return tr("с");
    case EndColumn:
        return tr("по");
    case CreatedColumn:
        return tr("Дата создания");
    case CommentColumn:
        return tr("Примечание");
    default:
        return QVariant();
    }
}

Qt::ItemFlags WorkerAbsenceReasonModel::flags(const QModelIndex &index) const
{
    // Read-only: periods are edited through their dialog, a record at a time.
    if (!isCell(index))
        return Qt::NoItemFlags;
    return Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
}
