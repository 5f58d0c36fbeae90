#ifndef TRANSFERPROGRESSWIZARDPAGES_H
#define TRANSFERPROGRESSWIZARDPAGES_H

#include "nvdialogs_export.h"
#include "steppedloop.h"

#include <nvtypes.h>
#include <nvwizardpage.h>
#include <taskinfo.h>

#include <QList>
#include <QScopedPointer>

class BufferedLog;
class NVProgressBar;
namespace nivaro {
class ObjectInfo;
}
namespace Ui {
class BaseProgressWizardPage;
}

/**
 * The last page of a transfer wizard: moves the chosen objects under the
 * target one save task at a time. A transfer is all or nothing for the
 * operator's purposes, so the first failure ends the run and the log says
 * which objects were moved before it.
 *
 * The pages of the wizard hand over what to move with setTransfer(); the
 * derived pages say which objects they move.
 */
class NVDIALOGS_EXPORT TransferProgressWizardPage : public NVWizardPage
{
    Q_OBJECT
public:
    ~TransferProgressWizardPage() override;

    void setTransfer(const QList<nivaro::TYPE_ID> &uids, nivaro::TYPE_ID target);
    QList<nivaro::TYPE_ID> transferUids() const { return m_uids; }
    nivaro::TYPE_ID target() const { return m_target; }

    // True once a task of the run failed (or the run was refused).
    bool isFailed() const { return m_failed; }
    int queuedTaskCount() const { return m_queue.size(); }
    QString logText() const;

    // What "Повторить неудачные" sends again: the object that failed and
    // those its failure kept back, since the operator wants the transfer
    // finished, not a part of it.
    QList<nivaro::TYPE_ID> failedUids() const;
    void retryFailed();

    bool isComplete() const override;
    void initializePage() override;

Q_SIGNALS:
    void executeTask(nivaro::TaskInfo task);
    void tasksFinished();

public Q_SLOTS:
    void save(nivaro::TYPE_ID uid);

protected:
    explicit TransferProgressWizardPage(QWidget *parent = nullptr);

    // Whether the transfer can run; logs why not.
    bool verifyTransfer();
    // Queues one task per object.
    void buildTransferQueue();

    // Whether this page moves object; otherwise names what it expected.
    virtual bool accepts(const nivaro::ObjectInfo &object, QString *expected) const = 0;

private:
    void appendMessage(const QString &text);
    void addTask(const nivaro::TaskInfo &task);
    void runHead();
    void fail(const QString &text);

    QScopedPointer<Ui::BaseProgressWizardPage> ui;
    BufferedLog *m_log = nullptr;
    QList<nivaro::TYPE_ID> m_uids;
    nivaro::TYPE_ID m_target = 0;
    QList<nivaro::TaskInfo> m_queue;
    QList<nivaro::TaskInfo> m_retry;
    bool m_failed = false;
    SteppedLoop m_loop;
};

/** Moves employees to another department. */
class NVDIALOGS_EXPORT TransferWorkerWizardProgressPage : public TransferProgressWizardPage
{
    Q_OBJECT
public:
    explicit TransferWorkerWizardProgressPage(QWidget *parent = nullptr);

    bool verifyTransferWorker() { return verifyTransfer(); }
    void transferWorker() { buildTransferQueue(); }

protected:
    bool accepts(const nivaro::ObjectInfo &object, QString *expected) const override;
};

/** Moves departments, with everyone in them, under another department or firm. */
class NVDIALOGS_EXPORT TransferDepartmentWizardProgressPage : public TransferProgressWizardPage
{
    Q_OBJECT
public:
    explicit TransferDepartmentWizardProgressPage(QWidget *parent = nullptr);

    bool verifyTransferDepartment() { return verifyTransfer(); }
    void transferDepartment() { buildTransferQueue(); }

protected:
    bool accepts(const nivaro::ObjectInfo &object, QString *expected) const override;
};

#endif
