#ifndef DEPARTMENTPROPERTYVIEW_H
#define DEPARTMENTPROPERTYVIEW_H

#include "nvdialogs_export.h"
#include "orgpropertyview.h"

/**
 * A department's name, number and description, for one department or
 * many at once. The name must not be emptied.
 */
class NVDIALOGS_EXPORT DepartmentPropertyView : public OrgPropertyView
{
    Q_OBJECT
    Q_DISABLE_COPY(DepartmentPropertyView)
public:
    explicit DepartmentPropertyView(QWidget *parent = nullptr);
    ~DepartmentPropertyView() override;

    QString widgetUid() const override;

protected:
    QString startText() const override;
    QString errorText() const override;
};

#endif
