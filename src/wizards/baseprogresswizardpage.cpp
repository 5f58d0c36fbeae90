#include "baseprogresswizardpage.h"

#include "bufferedlog.h"
#include "ui_baseprogresswizardpage.h"

#include <nvprogressbar.h>

#include <QDebug>
#include <QPushButton>
#include <QWizard>

BaseProgressWizardPage::BaseProgressWizardPage(QWidget *parent)
    : NVWizardPage(parent)
    , ui(new Ui::BaseProgressWizardPage)
    , m_finishMessage(tr("Создание завершено"))
{
    ui->setupUi(this);
    // Its place is kept while hidden: showing it at the end of a run must
    // not shrink the log under the line the operator is reading.
    QSizePolicy retryPolicy = ui->btnRetry->sizePolicy();
    retryPolicy.setRetainSizeWhenHidden(true);
    ui->btnRetry->setSizePolicy(retryPolicy);
    ui->btnRetry->hide();
    connect(ui->btnRetry, &QPushButton::clicked, this, &BaseProgressWizardPage::retryFailed);
    m_log = new BufferedLog(ui->logView, this);
}

BaseProgressWizardPage::~BaseProgressWizardPage() = default;

void BaseProgressWizardPage::setFinishMessage(const QString &message)
{
    m_finishMessage = message;
}

QString BaseProgressWizardPage::finishMessage() const
{
    return m_finishMessage;
}

void BaseProgressWizardPage::setErrorHandlingPolicy(ErrorHandlingPolicy policy)
{
    m_policy = policy;
}

BaseProgressWizardPage::ErrorHandlingPolicy BaseProgressWizardPage::errorHandlingPolicy() const
{
    return m_policy;
}

nivaro::TaskInfo BaseProgressWizardPage::task(const QString &command) const
{
    for (const nivaro::TaskInfo &t : m_queue) {
        if (t.command == command)
            return t;
    }
    return {};
}

void BaseProgressWizardPage::appendMessage(const QString &text)
{
    if (text.isEmpty())
        return;
    ui->lbCurrentMessage->setText(text);
    m_log->append(ui->lbCurrentMessage->text());
}

void BaseProgressWizardPage::clearMessages()
{
    ui->lbCurrentMessage->clear();
    m_log->clear();
}

void BaseProgressWizardPage::dropTaskQueue(const QString &message)
{
    m_queue.clear();
    appendMessage(message);
    taskFailed();
    emit tasksFinished();
    emit completeChanged();
}

bool BaseProgressWizardPage::isComplete() const
{
    return m_queue.isEmpty();
}

void BaseProgressWizardPage::initializePage()
{
    takeOverWizardButtons();
    m_failedInRun = false;
    m_failedTasks.clear();
    ui->btnRetry->hide();
    ui->progressBar->resetState();
    executeNext();
}

// Every reply ends with completeChanged(), and QWizard answers each one by
// hiding and showing its page area to restate the buttons: a relayout and a
// repaint of the whole wizard per task, which over a long run costs more
// than the tasks. The signal still goes out after every reply for whoever
// follows the run; the wizard's buttons are restated only when the page's
// completeness really changed, which is all they depend on during a run.
void BaseProgressWizardPage::takeOverWizardButtons()
{
    m_relayedComplete = -1;
    QWizard *w = wizard();
    if (!w || w == m_relayWizard)
        return;
    static const char updateSlot[] = "_q_updateButtonStates()";
    if (w->metaObject()->indexOfSlot(updateSlot) < 0)
        return; // a Qt without that slot: leave its own connection alone
    if (!disconnect(this, SIGNAL(completeChanged()), w, SLOT(_q_updateButtonStates())))
        return;
    m_relayWizard = w;
    connect(this, &QWizardPage::completeChanged, this, &BaseProgressWizardPage::relayCompleteness,
            Qt::UniqueConnection);
}

void BaseProgressWizardPage::relayCompleteness()
{
    const int complete = isComplete() ? 1 : 0;
    if (!m_relayWizard || complete == m_relayedComplete)
        return;
    m_relayedComplete = complete;
    QMetaObject::invokeMethod(m_relayWizard, "_q_updateButtonStates");
}

QString BaseProgressWizardPage::logText() const
{
    return m_log->text();
}

void BaseProgressWizardPage::addTask(nivaro::TaskInfo task)
{
    qDebug() << "Add task" << task.uid << task.command;
    m_queue.append(task);
    emit completeChanged();
    taskAdded();
}

void BaseProgressWizardPage::objectAdded(nivaro::TYPE_ID uid)
{
    if (uid != 0) {
        // Later pages and the host find the new object here, and tasks
        // queued before it existed now act on it.
        if (QWizard *w = wizard())
            w->setProperty("uid", uid);
        for (nivaro::TaskInfo &t : m_queue)
            t.uid = uid;
    }
    objectUpdated(uid);
}

void BaseProgressWizardPage::objectUpdated(nivaro::TYPE_ID uid)
{
    if (uid == 0) {
        appendMessage(m_queue.isEmpty() ? tr("Неизвестная ошибка") : m_queue.constFirst().errorMessage);
        ui->progressBar->failed();
        m_failedInRun = true;
        if (m_policy == StopOnFailure) {
            // A retry is meant to finish the job, so it also sends what the
            // failure kept from going out, not only the task that failed.
            m_failedTasks += m_queue;
            taskFailed();
            m_queue.clear();
            offerRetry();
            emit tasksFinished();
            emit completeChanged();
            return;
        }
    } else if (!m_failedInRun) {
        // Once a task of the run has failed the bar keeps saying so.
        ui->progressBar->successed();
    }
    if (uid == 0 && !m_queue.isEmpty())
        m_failedTasks.append(m_queue.constFirst());
    taskCompleted();
    if (!m_queue.isEmpty())
        m_queue.removeFirst();
    // One step: when this reply came inside executeTask() the next send
    // waits for that signal to return, and the change of completeness
    // must wait with it, so that it still follows the send.
    m_loop.run([this] {
        runHead();
        emit completeChanged();
    });
}

void BaseProgressWizardPage::taskAdded()
{
    ui->progressBar->setMaximum(ui->progressBar->maximum() + 1);
}

void BaseProgressWizardPage::taskCompleted()
{
    ui->progressBar->setValue(ui->progressBar->value() + 1);
}

void BaseProgressWizardPage::taskFailed()
{
    ui->progressBar->setValue(ui->progressBar->maximum());
    ui->progressBar->failed();
}

NVProgressBar *BaseProgressWizardPage::progressBar() const
{
    return ui->progressBar;
}

void BaseProgressWizardPage::executeNext()
{
    m_loop.run([this] { runHead(); });
}

void BaseProgressWizardPage::runHead()
{
    if (m_queue.isEmpty()) {
        finishRun();
        return;
    }
    nivaro::TaskInfo &head = m_queue.first();
    appendMessage(head.startMessage);
    head.widget = this;
    emit executeTask(head);
}

void BaseProgressWizardPage::finishRun()
{
    if (!m_finishMessage.isEmpty())
        appendMessage(m_finishMessage);
    ui->progressBar->setValue(ui->progressBar->maximum());
    offerRetry();
    emit tasksFinished();
    emit completeChanged();
}

void BaseProgressWizardPage::offerRetry()
{
    ui->btnRetry->setVisible(!m_failedTasks.isEmpty());
}

void BaseProgressWizardPage::retryFailed()
{
    if (!m_queue.isEmpty() || m_failedTasks.isEmpty())
        return;
    qDebug() << "retry failed tasks" << m_failedTasks.size();
    ui->btnRetry->hide();
    m_queue = m_failedTasks;
    m_failedTasks.clear();
    m_failedInRun = false;
    ui->progressBar->resetState();
    ui->progressBar->setRange(0, m_queue.size());
    ui->progressBar->setValue(0);
    appendMessage(tr("Повтор неудачных задач: %1").arg(m_queue.size()));
    emit completeChanged();
    executeNext();
}
