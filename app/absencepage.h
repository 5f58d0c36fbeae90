#ifndef ABSENCEPAGE_H
#define ABSENCEPAGE_H

#include <nvtypes.h>

#include <QWidget>

class QCheckBox;
class QDateEdit;
class QTableView;
class WorkerAbsenceReasonModel;
class WorkerAbsenceReasonProxy;
namespace nivaro {
class LocalStorage;
}

/** An employee's absence periods, all of them or those in a date window. */
class AbsencePage : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(AbsencePage)
public:
    explicit AbsencePage(nivaro::LocalStorage *storage, QWidget *parent = nullptr);

    void setWorker(nivaro::TYPE_ID uid);
    nivaro::TYPE_ID worker() const { return m_worker; }
    void reload();
    // Shows the periods that touch from..to; with an invalid date, all.
    void setWindow(const QDate &from, const QDate &to);

    WorkerAbsenceReasonModel *model() const { return m_model; }
    WorkerAbsenceReasonProxy *proxy() const { return m_proxy; }
    QTableView *table() const { return m_table; }

private:
    void windowChanged();

    nivaro::LocalStorage *m_storage;
    nivaro::TYPE_ID m_worker = 0;
    WorkerAbsenceReasonModel *m_model;
    WorkerAbsenceReasonProxy *m_proxy;
    QCheckBox *m_useWindow;
    QDateEdit *m_from;
    QDateEdit *m_to;
    QTableView *m_table;
};

#endif
