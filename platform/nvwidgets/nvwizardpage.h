#ifndef NVWIZARDPAGE_H
#define NVWIZARDPAGE_H

#include "nvwidgets_export.h"

#include <QWizardPage>

/**
 * The base of every wizard page of the library. A page that decides its
 * own completeness calls setComplete(); the others keep QWizardPage's rule
 * (all mandatory fields filled).
 */
class NVWIDGETS_EXPORT NVWizardPage : public QWizardPage
{
    Q_OBJECT
public:
    explicit NVWizardPage(QWidget *parent = nullptr);

    bool isComplete() const override;
    // Overrides the field rule from now on; emits completeChanged() on a change.
    void setComplete(bool complete);

private:
    enum class Completeness { ByFields, Complete, Incomplete };
    Completeness m_completeness = Completeness::ByFields;
};

#endif
