#include "employeecardsmodel.h"

#include <datanames.h>
#include <dbparams.h>
#include <localstorage.h>
#include <nvglobals.h>

#include <QDate>

using nivaro::LocalStorage;
using nivaro::ObjectInfo;

EmployeeCardsModel::EmployeeCardsModel(QObject *parent)
    : QAbstractTableModel(parent)
{
    connect(LocalStorage::instance(), &LocalStorage::dataChanged, this, &EmployeeCardsModel::storeChanged);
    connect(LocalStorage::instance(), &LocalStorage::dataRemoved, this, &EmployeeCardsModel::storeChanged);
}

void EmployeeCardsModel::setWorker(nivaro::TYPE_ID uid)
{
    m_worker = uid;
    reload();
}

void EmployeeCardsModel::reload()
{
    LocalStorage *store = LocalStorage::instance();
    beginResetModel();
    m_viewFormat = store->dbSettings().parameter(db::database::CARD_VIEW_FORMAT).toInt();
    m_cards.clear();
    if (m_worker) {
        const nivaro::NVHash<nivaro::TYPE_ID, ObjectInfo> cards = store->cards(m_worker, false);
        const QList<nivaro::TYPE_ID> uids = store->cardIds(m_worker, false);
        for (nivaro::TYPE_ID uid : uids)
            m_cards.append(cards.value(uid));
    }
    endResetModel();
}

ObjectInfo EmployeeCardsModel::card(int row) const
{
    return row >= 0 && row < m_cards.size() ? m_cards.at(row) : ObjectInfo();
}

int EmployeeCardsModel::rowOf(nivaro::TYPE_ID card) const
{
    for (int row = 0; row < m_cards.size(); ++row) {
        if (m_cards.at(row).uid() == card)
            return row;
    }
    return -1;
}

QString EmployeeCardsModel::stateText(const ObjectInfo &card, const QDate &day)
{
    const QDate begin = QDate::fromString(card.parameter(db::card::DATE_BEGIN), Qt::ISODate);
    const QDate end = QDate::fromString(card.parameter(db::card::DATE_END), Qt::ISODate);
    if (end.isValid() && end < day)
        return tr("Срок действия истек");
    if (begin.isValid() && begin > day)
        return tr("Еще не действует");
    return tr("Действует");
}

QString EmployeeCardsModel::text(const ObjectInfo &card, int column) const
{
    switch (column) {
    case NumberColumn: {
        bool ok = false;
        const quint64 number = card.parameter(db::card::NUMBER).toULongLong(&ok);
        return ok ? NVGlobals::cardIdText(number, m_viewFormat) : card.parameter(db::card::NUMBER);
    }
    case TypeColumn:
        return card.parameter(db::card::CARD_NAME);
    case StateColumn:
        return stateText(card, QDate::currentDate());
    case BeginColumn:
    case EndColumn: {
        const QDate date = QDate::fromString(card.parameter(column == BeginColumn ? db::card::DATE_BEGIN : db::card::DATE_END),
                                             Qt::ISODate);
        return date.isValid() ? date.toString(QStringLiteral("dd.MM.yyyy")) : QString();
    }
    case ProfileColumn: {
        const QString profile = card.parameter(db::card::SMARTCARD_PROFILE);
        const nivaro::TYPE_ID uid = profile.toUInt();
        if (uid) {
            const ObjectInfo *record = LocalStorage::instance()->constObject(uid, nivaro::SMARTCARD_PROFILE_DATANAME);
            return record ? NVGlobals::objectName(*record) : tr("Профиль %1 удален").arg(uid);
        }
        // A card that never met a smart-card reader carries no keys at all.
        return profile.isEmpty() ? QString() : tr("Ключи по умолчанию");
    }
    default:
        return QString();
    }
}

int EmployeeCardsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_cards.size();
}

int EmployeeCardsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant EmployeeCardsModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return QVariant();
    const ObjectInfo &card = m_cards.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return text(card, index.column());
    case UidRole:
        return card.uid();
    default:
        return QVariant();
    }
}

QVariant EmployeeCardsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= ColumnCount)
        return QAbstractTableModel::headerData(section, orientation, role);
    switch (section) {
    case NumberColumn:
        return tr("Номер карты");
    case TypeColumn:
        return tr("Тип карты");
    case StateColumn:
        return tr("Состояние");
    case BeginColumn:
        return tr("Действует с");
    case EndColumn:
        return tr("Действует по");
    default:
        return tr("Профиль");
    }
}

void EmployeeCardsModel::storeChanged(const QString &dataname, const QList<unsigned int> &uids)
{
    Q_UNUSED(uids)
    // Any card may have come or gone to this employee, and the settings
    // and profiles change how every row reads.
    if (dataname == nivaro::CARD_DATANAME || dataname == nivaro::DB_DATANAME
        || dataname == nivaro::SMARTCARD_PROFILE_DATANAME)
        reload();
}
