#ifndef FIRMPROPERTYVIEW_H
#define FIRMPROPERTYVIEW_H

#include "nvdialogs_export.h"
#include "orgpropertyview.h"

/**
 * A firm's names, registration numbers (INN, KPP, OGRN), address and
 * description, for one firm or many at once. The short name must not be
 * emptied; a number that is given must be a complete, correct one.
 */
class NVDIALOGS_EXPORT FirmPropertyView : public OrgPropertyView
{
    Q_OBJECT
    Q_DISABLE_COPY(FirmPropertyView)
public:
    explicit FirmPropertyView(QWidget *parent = nullptr);
    ~FirmPropertyView() override;

    QString widgetUid() const override;

    // A legal entity's registration number: 13 digits, the last being the
    // first twelve's remainder by 11, taken by 10.
    static bool isValidOgrn(const QString &digits);

protected:
    QString startText() const override;
    QString errorText() const override;
};

#endif
