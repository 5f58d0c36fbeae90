#include "transferprogresswizardpages.h"

#include "bufferedlog.h"
#include "ui_baseprogresswizardpage.h"

#include <datanames.h>
#include <localstorage.h>
#include <nvglobals.h>
#include <nvprogressbar.h>
#include <objectinfo.h>
#include <objecttreemodel.h>
#include <objecttypes.h>

#include <QDebug>
#include <QPushButton>

using nivaro::ObjectInfo;
using nivaro::TYPE_ID;

TransferProgressWizardPage::TransferProgressWizardPage(QWidget *parent)
    : NVWizardPage(parent)
    , ui(new Ui::BaseProgressWizardPage)
{
    ui->setupUi(this);
    // Its place is kept while hidden: showing it at the end of a run must
    // not shrink the log under the line the operator is reading.
    QSizePolicy retryPolicy = ui->btnRetry->sizePolicy();
    retryPolicy.setRetainSizeWhenHidden(true);
    ui->btnRetry->setSizePolicy(retryPolicy);
    ui->btnRetry->hide();
    connect(ui->btnRetry, &QPushButton::clicked, this, &TransferProgressWizardPage::retryFailed);
    m_log = new BufferedLog(ui->logView, this);
}

TransferProgressWizardPage::~TransferProgressWizardPage() = default;

void TransferProgressWizardPage::setTransfer(const QList<TYPE_ID> &uids, TYPE_ID target)
{
    m_uids = uids;
    m_target = target;
}

QString TransferProgressWizardPage::logText() const
{
    return m_log->text();
}

bool TransferProgressWizardPage::isComplete() const
{
    return m_queue.isEmpty();
}

void TransferProgressWizardPage::initializePage()
{
    ui->lbCurrentMessage->clear();
    m_log->clear();
    m_queue.clear();
    m_retry.clear();
    ui->btnRetry->hide();
    m_failed = false;
    ui->progressBar->resetState();
    ui->progressBar->setRange(0, 0);
    if (!verifyTransfer()) {
        appendMessage(tr("Операция отменена"));
        ui->progressBar->failed();
        m_failed = true;
        emit completeChanged();
        return;
    }
    buildTransferQueue();
    ui->progressBar->setRange(0, m_queue.size());
    m_loop.run([this] { runHead(); });
}

bool TransferProgressWizardPage::verifyTransfer()
{
    nivaro::LocalStorage *storage = nivaro::LocalStorage::instance();
    if (m_uids.isEmpty()) {
        appendMessage(tr("Не выбраны объекты для перевода"));
        return false;
    }
    const ObjectInfo *target = storage->constObject(m_target);
    if (!target || (target->typeName() != nivaro::OT_DEPARTMENT && target->typeName() != nivaro::OT_FIRM)) {
        qDebug() << "transfer: target" << m_target << "is not a department or firm";
        appendMessage(tr("Не выбрано подразделение, в которое выполняется перевод"));
        return false;
    }
    // A department cannot go below itself: the tree would lose it.
    const QSet<TYPE_ID> aboveTarget = storage->model(nivaro::ORGSTRUCTURE_DATANAME)->parentKeys(m_target);
    for (TYPE_ID uid : qAsConst(m_uids)) {
        const ObjectInfo *object = storage->constObject(uid);
        QString expected;
        if (!object) {
            appendMessage(tr("Объект %1 не найден").arg(uid));
            return false;
        }
        if (!accepts(*object, &expected)) {
            appendMessage(tr("%1 не является объектом вида «%2»").arg(NVGlobals::objectName(*object), expected));
            return false;
        }
        if (uid == m_target || aboveTarget.contains(uid)) {
            appendMessage(tr("Нельзя перевести %1 в %2").arg(NVGlobals::objectName(*object), NVGlobals::objectName(*target)));
            return false;
        }
    }
    return true;
}

void TransferProgressWizardPage::buildTransferQueue()
{
    nivaro::LocalStorage *storage = nivaro::LocalStorage::instance();
    const QString targetName = NVGlobals::objectName(storage->object(m_target));
    for (TYPE_ID uid : qAsConst(m_uids)) {
        const ObjectInfo object = storage->object(uid);
        const QString name = NVGlobals::objectName(object);
        nivaro::TaskInfo task;
        task.id = nivaro::TaskInfo::newId();
        task.uid = uid;
        task.command = QStringLiteral("save_object");
        task.params.insert(QStringLiteral("object_type"), object.typeName());
        task.params.insert(QStringLiteral("parent"), m_target);
        task.slot = QStringLiteral("save");
        task.startMessage = tr("Перевод %1 в %2").arg(name, targetName);
        task.errorMessage = tr("Ошибка перевода %1").arg(name);
        addTask(task);
    }
}

void TransferProgressWizardPage::save(TYPE_ID uid)
{
    qDebug() << "Save" << uid;
    if (uid == 0) {
        fail(m_queue.isEmpty() ? tr("Неизвестная ошибка") : m_queue.constFirst().errorMessage);
        return;
    }
    if (m_queue.isEmpty()) {
        qDebug() << "transfer: reply" << uid << "with no task out; ignored";
        return;
    }
    ui->progressBar->setValue(ui->progressBar->value() + 1);
    m_queue.removeFirst();
    m_loop.run([this] { runHead(); });
}

void TransferProgressWizardPage::appendMessage(const QString &text)
{
    ui->lbCurrentMessage->setText(text);
    m_log->append(text);
}

void TransferProgressWizardPage::addTask(const nivaro::TaskInfo &task)
{
    qDebug() << "Add task" << task.uid << task.command;
    m_queue.append(task);
}

void TransferProgressWizardPage::runHead()
{
    if (m_queue.isEmpty()) {
        appendMessage(tr("Перевод сотрудников завершен!"));
        ui->progressBar->successed();
        emit tasksFinished();
        emit completeChanged();
        return;
    }
    nivaro::TaskInfo &head = m_queue.first();
    appendMessage(head.startMessage);
    head.widget = this;
    emit executeTask(head);
}

QList<TYPE_ID> TransferProgressWizardPage::failedUids() const
{
    QList<TYPE_ID> uids;
    for (const nivaro::TaskInfo &task : m_retry)
        uids.append(task.uid);
    return uids;
}

void TransferProgressWizardPage::retryFailed()
{
    if (!m_queue.isEmpty() || m_retry.isEmpty())
        return;
    qDebug() << "transfer: retry" << m_retry.size();
    ui->btnRetry->hide();
    m_queue = m_retry;
    m_retry.clear();
    m_failed = false;
    ui->progressBar->resetState();
    ui->progressBar->setRange(0, m_queue.size());
    ui->progressBar->setValue(0);
    appendMessage(tr("Повтор неудачных задач: %1").arg(m_queue.size()));
    emit completeChanged();
    m_loop.run([this] { runHead(); });
}

void TransferProgressWizardPage::fail(const QString &text)
{
    appendMessage(text);
    ui->progressBar->failed();
    m_retry = m_queue;
    ui->btnRetry->setVisible(!m_retry.isEmpty());
    m_queue.clear();
    m_failed = true;
    emit tasksFinished();
    emit completeChanged();
}

TransferWorkerWizardProgressPage::TransferWorkerWizardProgressPage(QWidget *parent)
    : TransferProgressWizardPage(parent)
{
    setTitle(tr("Перевод сотрудников"));
}

bool TransferWorkerWizardProgressPage::accepts(const ObjectInfo &object, QString *expected) const
{
    *expected = tr("сотрудник");
    return object.typeName() == nivaro::OT_WORKER;
}

TransferDepartmentWizardProgressPage::TransferDepartmentWizardProgressPage(QWidget *parent)
    : TransferProgressWizardPage(parent)
{
    setTitle(tr("Перевод подразделений"));
}

bool TransferDepartmentWizardProgressPage::accepts(const ObjectInfo &object, QString *expected) const
{
    *expected = tr("подразделение");
    return object.typeName() == nivaro::OT_DEPARTMENT;
}
