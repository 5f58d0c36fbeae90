#ifndef SCHEDULEPAGE_H
#define SCHEDULEPAGE_H

#include <nvtypes.h>

#include <QWidget>

class QLabel;
class QSpinBox;
class QTableView;
class WorkerScheduleModel;
class WorkerScheduleProxyModel;
namespace nivaro {
class LocalStorage;
}

/**
 * An employee's schedule calendar: which schedule applies on each day,
 * days off of its cycle, absences, over a chosen range of years.
 */
class SchedulePage : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(SchedulePage)
public:
    explicit SchedulePage(nivaro::LocalStorage *storage, QWidget *parent = nullptr);

    void setWorker(nivaro::TYPE_ID uid);
    nivaro::TYPE_ID worker() const { return m_worker; }
    // Reads the employee's records from the store again.
    void reload();
    void setYears(int from, int to);

    WorkerScheduleModel *model() const { return m_model; }
    WorkerScheduleProxyModel *proxy() const { return m_proxy; }
    QTableView *table() const { return m_table; }

private:
    void yearsChanged();
    void updateLegend();

    nivaro::LocalStorage *m_storage;
    nivaro::TYPE_ID m_worker = 0;
    WorkerScheduleModel *m_model;
    WorkerScheduleProxyModel *m_proxy;
    QSpinBox *m_fromYear;
    QSpinBox *m_toYear;
    QTableView *m_table;
    QLabel *m_legend;
};

#endif
