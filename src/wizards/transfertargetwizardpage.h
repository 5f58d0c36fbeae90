#ifndef TRANSFERTARGETWIZARDPAGE_H
#define TRANSFERTARGETWIZARDPAGE_H

#include "nvdialogs_export.h"

#include <nvtypes.h>
#include <nvwizardpage.h>

#include <QList>

class QLabel;
class QPushButton;

/**
 * The target of a transfer, chosen in the department chooser. What the
 * transfer cannot take is refused here, before anything runs, with the
 * reason shown: a department into itself or below itself, or a target that
 * already holds every object (nothing would change).
 */
class NVDIALOGS_EXPORT TransferTargetWizardPage : public NVWizardPage
{
    Q_OBJECT
public:
    explicit TransferTargetWizardPage(QWidget *parent = nullptr);

    // The objects that move; departments among them cannot be chosen, nor
    // anything below them.
    void setMoved(const QList<nivaro::TYPE_ID> &uids, bool departments);

    void setTarget(nivaro::TYPE_ID target);
    nivaro::TYPE_ID target() const { return m_target; }
    QString refusal() const { return m_refusal; }

    // Opens the department chooser; the chosen department becomes the target.
    void chooseTarget();

private:
    void update();

    QList<nivaro::TYPE_ID> m_moved;
    bool m_departments = false;
    nivaro::TYPE_ID m_target = 0;
    QString m_refusal;
    QLabel *m_name;
    QPushButton *m_choose;
    QLabel *m_reason;
};

#endif
