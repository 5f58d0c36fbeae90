#ifndef WORKERABSENCEREASONMODEL_H
#define WORKERABSENCEREASONMODEL_H

#include "nvdialogs_export.h"

#include <nvhash.h>
#include <objectinfo.h>
#include <workerabsencereason.h>

#include <QAbstractItemModel>

/**
 * An employee's absence periods, one row each in the order they are kept:
 * the reason's mark and name, the span (dates only, unless the period has
 * times), when it was recorded and the comment. Reasons are objects of the
 * "reason" collection, handed over by the owner; a period whose reason is
 * not among them shows "??? <uid>", so that it is noticed rather than
 * shown blank.
 */
class NVDIALOGS_EXPORT WorkerAbsenceReasonModel : public QAbstractItemModel
{
    Q_OBJECT
public:
    enum Column { MarkColumn, ReasonColumn, StartColumn, EndColumn, CreatedColumn, CommentColumn, ColumnCount };
    // What row() answers for an id no row has.
    static constexpr unsigned int NoRow = 4294967295u;

    explicit WorkerAbsenceReasonModel(QObject *parent = nullptr);

    void setWorkerReasons(const nivaro::_WORKER_ABSENCE_REASON &reasons);
    nivaro::_WORKER_ABSENCE_REASON workerReasons() const { return m_reasons; }
    void setAbsenceReasons(const nivaro::NVHash<unsigned int, nivaro::ObjectInfo> &reasons);

    // The record of row; the invalid record for a row out of range.
    nivaro::_WORKER_ABSENCE_REASON_RECORD workerReason(int row) const;
    // The first row holding the record id; NoRow when none does.
    unsigned int row(unsigned int id) const;

    void addReason(const nivaro::_WORKER_ABSENCE_REASON_RECORD &record);
    void setWorkerReason(int row, const nivaro::_WORKER_ABSENCE_REASON_RECORD &record);
    bool removeRow(int row, const QModelIndex &parent = QModelIndex());
    void removeReason(int row);

    QModelIndex index(int row, int column, const QModelIndex &parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool removeRows(int row, int count, const QModelIndex &parent = QModelIndex()) override;

private:
    bool isCell(const QModelIndex &index) const;
    QString reasonText(quint32 reason, const QString &key) const;

    nivaro::_WORKER_ABSENCE_REASON m_reasons;
    nivaro::NVHash<unsigned int, nivaro::ObjectInfo> m_reasonObjects;
};

#endif
