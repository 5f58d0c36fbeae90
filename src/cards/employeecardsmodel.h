#ifndef EMPLOYEECARDSMODEL_H
#define EMPLOYEECARDSMODEL_H

#include "nvdialogs_export.h"

#include <nvtypes.h>
#include <objectinfo.h>

#include <QAbstractTableModel>

/**
 * One employee's cards, one row each in uid order: the number in the
 * site's card view format, the card type, its state, the validity dates and
 * the smart-card profile whose keys it carries. Reads the process-wide store
 * and follows its changes.
 */
class NVDIALOGS_EXPORT EmployeeCardsModel : public QAbstractTableModel
{
    Q_OBJECT
    Q_DISABLE_COPY(EmployeeCardsModel)
public:
    enum Column { NumberColumn, TypeColumn, StateColumn, BeginColumn, EndColumn, ProfileColumn, ColumnCount };
    enum Role { UidRole = Qt::UserRole + 1 };

    explicit EmployeeCardsModel(QObject *parent = nullptr);

    void setWorker(nivaro::TYPE_ID uid);
    nivaro::TYPE_ID worker() const { return m_worker; }
    void reload();

    nivaro::ObjectInfo card(int row) const;
    int rowOf(nivaro::TYPE_ID card) const;

    // The card's state on `day`, for people: in force, not yet, expired.
    static QString stateText(const nivaro::ObjectInfo &card, const QDate &day);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    void storeChanged(const QString &dataname, const QList<unsigned int> &uids);
    QString text(const nivaro::ObjectInfo &card, int column) const;

    nivaro::TYPE_ID m_worker = 0;
    QList<nivaro::ObjectInfo> m_cards;
    int m_viewFormat = 0;
};

#endif
