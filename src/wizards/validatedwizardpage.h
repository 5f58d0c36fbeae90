#ifndef VALIDATEDWIZARDPAGE_H
#define VALIDATEDWIZARDPAGE_H

#include "nvdialogs_export.h"

#include <nvwizardpage.h>

#include <QList>
#include <QString>

class QLabel;

/**
 * A page of the creation wizards that decides by itself whether the
 * operator may go on, and says why not on a label of the page (objectName
 * "lbReason") instead of leaving a disabled Next button to guess at.
 *
 * The page also lists what it will write, field by field: the wizard turns
 * that one list into both the summary the operator confirms and the task
 * the server runs, so the two cannot disagree.
 */
class NVDIALOGS_EXPORT ValidatedWizardPage : public NVWizardPage
{
    Q_OBJECT
public:
    struct Field
    {
        QString key;     // parameter key in the store; empty for what is no parameter
        QString caption; // as the page labels it; empty: written, not listed in the summary
        QString value;   // in the store's encoding
        QString shown;   // as the operator reads it in the summary
    };

    explicit ValidatedWizardPage(QWidget *parent = nullptr);

    // Why the page cannot be left forward; empty when it can.
    virtual QString refusal() const = 0;
    // What the page will write; values left empty are not listed.
    virtual QList<Field> fields() const = 0;

    // As of the last revalidate(): pages revalidate on every edit that
    // matters, and the wizard asks after each, so a refusal that scans the
    // store is not worked out twice per keystroke.
    bool isComplete() const override;
    QLabel *reasonLabel() const { return m_reason; }

public Q_SLOTS:
    // Shows the current refusal and tells the wizard to look again.
    void revalidate();

protected:
    static void addField(QList<Field> &fields, const QString &key, const QString &caption, const QString &value,
                         const QString &shown = QString());

private:
    QLabel *m_reason;
    bool m_complete = false;
};

#endif
