#ifndef NEWWORKERJOBPAGE_H
#define NEWWORKERJOBPAGE_H

#include "validatedwizardpage.h"

#include <nvtypes.h>

#include <functional>

class NVComboBox;
class NVDateEdit;
class QLabel;
class QLineEdit;
class QPushButton;

/**
 * Where the new employee works: the department (or firm) that will hold
 * the record, the position, the personnel number (unique among employees
 * in service), the work schedule and the dates the employee's record is
 * valid between.
 */
class NVDIALOGS_EXPORT NewWorkerJobPage : public ValidatedWizardPage
{
    Q_OBJECT
public:
    explicit NewWorkerJobPage(QWidget *parent = nullptr);

    void setDepartment(nivaro::TYPE_ID uid);
    nivaro::TYPE_ID department() const { return m_department; }

    QString refusal() const override;
    QList<Field> fields() const override;

    // How the department is asked for: the chosen uid, 0 when the operator
    // cancels. The department chooser by default; tests replace it.
    std::function<nivaro::TYPE_ID(QWidget *parent, nivaro::TYPE_ID current)> chooseDepartment;

private:
    void fillJobs();
    void fillSchedules();

    nivaro::TYPE_ID m_department = 0;
    QPushButton *m_chooseDepartment;
    QLabel *m_departmentName;
    NVComboBox *m_job;
    QLineEdit *m_workerNumber;
    NVComboBox *m_schedule;
    NVDateEdit *m_dateBegin;
    NVDateEdit *m_dateEnd;
};

#endif
