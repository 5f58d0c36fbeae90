#ifndef NEWDEPARTMENTPARAMETERSPAGE_H
#define NEWDEPARTMENTPARAMETERSPAGE_H

#include "validatedwizardpage.h"

#include <nvtypes.h>

#include <functional>

class QLabel;
class QLineEdit;
class QPushButton;

/** A new department's name (required), number and the firm or department above it. */
class NVDIALOGS_EXPORT NewDepartmentParametersPage : public ValidatedWizardPage
{
    Q_OBJECT
public:
    explicit NewDepartmentParametersPage(QWidget *parent = nullptr);

    // Only a firm or a department is taken; anything else clears the choice.
    void setParentDepartment(nivaro::TYPE_ID uid);
    nivaro::TYPE_ID parentDepartment() const { return m_parent; }
    QString departmentName() const;

    QString refusal() const override;
    QList<Field> fields() const override;

    // How the parent is asked for: the chosen uid, 0 when the operator
    // cancels. The department chooser by default; tests replace it.
    std::function<nivaro::TYPE_ID(QWidget *parent, nivaro::TYPE_ID current)> chooseDepartment;

private:
    nivaro::TYPE_ID m_parent = 0;
    QLineEdit *m_name;
    QLineEdit *m_number;
    QLabel *m_parentName;
    QPushButton *m_chooseParent;
};

#endif
