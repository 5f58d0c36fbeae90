#ifndef NEWOBJECTWIZARD_H
#define NEWOBJECTWIZARD_H

#include "changesummarywizardpage.h"
#include "nvdialogs_export.h"
#include "validatedwizardpage.h"

#include <nvtypes.h>
#include <pagelistwizard.h>
#include <taskinfo.h>

#include <QList>
#include <QPointer>

class BaseProgressWizardPage;

/**
 * What the wizards that create an object share: pages that say why they
 * cannot be left, a summary of every field before anything runs, and a
 * progress page that runs the creating task (and what goes with it).
 *
 * The host connects appendTask to its executor and objectCreated to the
 * selection of its tree. The summary page is the commit page: once the
 * run starts there is no way back, so nothing is ever created twice.
 */
class NVDIALOGS_EXPORT NewObjectWizard : public PageListWizard
{
    Q_OBJECT
public:
    explicit NewObjectWizard(QWidget *parent = nullptr);

    // The tasks the progress page will run, in order, as things stand now.
    virtual QList<nivaro::TaskInfo> tasks() const = 0;
    // What the summary page shows.
    virtual QList<ChangeSummaryWizardPage::Change> changes() const = 0;

    ChangeSummaryWizardPage *summaryPage() const { return m_summary; }
    BaseProgressWizardPage *runPage() const { return m_progress; }
    // The uid of the object created, 0 until the server has created it.
    nivaro::TYPE_ID createdUid() const;

    // The firm or department a host's selected tree row stands for: the
    // row itself, or the department of a selected employee.
    static nivaro::TYPE_ID placeOf(nivaro::TYPE_ID selected);

public Q_SLOTS:
    // For the executor's taskFinished: a refusal of one of this wizard's
    // tasks adds the server's reason to the log, under the task's own text.
    void taskFinished(const nivaro::TaskInfo &task, bool ok, const QString &error);

Q_SIGNALS:
    void appendTask(nivaro::TaskInfo task);
    // The run has ended and the object exists under this uid (a task
    // after the creating one may still have failed: the log says so).
    void objectCreated(uint uid);

protected:
    // Adds the summary and progress pages after the pages already set.
    void addRunPages(ChangeSummaryWizardPage *summary, BaseProgressWizardPage *progress);
    // Whether the run may start; every validated page agrees by default.
    virtual bool mayRun();
    void initializePage(int id) override;

    // One "save_object" task of the fields whose key is set.
    static nivaro::TaskInfo saveTask(const QString &objectType, const QList<ValidatedWizardPage::Field> &fields,
                                     const QString &replySlot, const QString &startMessage, const QString &errorMessage);
    // The summary fields (those with a caption) of the pages' fields.
    static QList<ChangeSummaryWizardPage::Field> summaryFields(const QList<ValidatedWizardPage::Field> &fields);

private:
    ChangeSummaryWizardPage *m_summary = nullptr;
    BaseProgressWizardPage *m_progress = nullptr;
    bool m_announced = false;
};

#endif
