#include "objectsprogresswizardpage.h"

#include "bufferedlog.h"

#include <localstorage.h>
#include <nvglobals.h>
#include <nvprogressbar.h>

#include <QDebug>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

ObjectsProgressWizardPage::ObjectsProgressWizardPage(const Run &run, QWidget *parent)
    : NVWizardPage(parent)
    , m_run(run)
    , m_status(new QLabel(this))
    , m_bar(new NVProgressBar(this))
    , m_log(new QTextBrowser(this))
    , m_retry(new QPushButton(tr("Повторить неудачные"), this))
{
    m_status->setObjectName(QStringLiteral("lbStatus"));
    m_bar->setObjectName(QStringLiteral("progressBar"));
    m_bar->setRange(0, 0);
    m_bar->setFormat(QStringLiteral("%p%"));
    m_log->setObjectName(QStringLiteral("logView"));
    m_log->setReadOnly(true);
    m_buffer = new BufferedLog(m_log, this);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_status);
    layout->addWidget(m_bar);
    layout->addWidget(m_log);
    m_retry->setObjectName(QStringLiteral("btnRetry"));
    // Its place is kept while hidden: showing it at the end of a run must
    // not shrink the log under the line the operator is reading.
    QSizePolicy retryPolicy = m_retry->sizePolicy();
    retryPolicy.setRetainSizeWhenHidden(true);
    m_retry->setSizePolicy(retryPolicy);
    m_retry->hide();
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_retry);
    layout->addLayout(buttons);
    connect(m_retry, &QPushButton::clicked, this, &ObjectsProgressWizardPage::retryFailed);
}

void ObjectsProgressWizardPage::setUids(const QList<unsigned int> &uids)
{
    const nivaro::LocalStorage *storage = nivaro::LocalStorage::instance();
    m_objects.clear();
    m_objects.reserve(uids.size());
    QSet<unsigned int> seen;
    for (unsigned int uid : uids) {
        if (seen.contains(uid))
            continue;
        seen.insert(uid);
        const nivaro::ObjectInfo *object = storage->constObject(uid);
        if (object)
            m_objects.append(*object);
        else
            qDebug() << "bulk wizard: object" << uid << "is not in the store; left out";
    }
}

QList<unsigned int> ObjectsProgressWizardPage::uids() const
{
    QList<unsigned int> uids;
    uids.reserve(m_objects.size());
    for (const nivaro::ObjectInfo &object : m_objects)
        uids.append(object.uid());
    return uids;
}

void ObjectsProgressWizardPage::setTaskParameter(const QString &key, const QVariant &value)
{
    m_taskParameters.insert(key, value);
}

void ObjectsProgressWizardPage::initializePage()
{
    m_failed.clear();
    m_retry->hide();
    m_bar->resetState();
    m_bar->setMaximum(m_objects.size());
    m_bar->setValue(0);
    sendNextObject();
}

void ObjectsProgressWizardPage::sendNextObject()
{
    m_loop.run([this] { sendHead(); });
}

void ObjectsProgressWizardPage::sendHead()
{
    if (m_objects.isEmpty()) {
        m_out = false;
        m_status->setText(tr("Успешно завершено"));
        m_bar->successed();
        setComplete(true);
        return;
    }
    setComplete(false);
    const nivaro::ObjectInfo &object = m_objects.constFirst();
    const QString name = NVGlobals::objectName(object);
    nivaro::TaskInfo task;
    task.id = nivaro::TaskInfo::newId();
    task.uid = object.uid();
    task.command = m_run.command;
    task.params.insert(QStringLiteral("object_type"), object.typeName());
    for (auto it = m_taskParameters.cbegin(); it != m_taskParameters.cend(); ++it)
        task.params.insert(it.key(), it.value());
    task.widget = this;
    task.slot = m_run.replySlot;
    task.startMessage = m_run.startText.arg(name);
    task.errorMessage = m_run.errorText.arg(name);
    m_out = true;
    m_buffer->append(task.startMessage);
    emit appendTask(task);
}

void ObjectsProgressWizardPage::reply(unsigned int uid)
{
    if (!m_out) {
        qDebug() << "bulk wizard: reply" << uid << "with no task out; ignored";
        return;
    }
    const QString name = NVGlobals::objectName(m_objects.constFirst());
    if (uid == 0) {
        m_buffer->append(m_run.errorText.arg(name));
        m_status->setText(tr("Ошибка"));
        m_bar->failed();
        m_failed = m_objects;
        m_retry->show();
        m_objects.clear();
        m_out = false;
        setComplete(true);
        return;
    }
    m_buffer->append(m_run.doneText.arg(name));
    m_objects.removeFirst();
    sendNextObject();
    m_bar->setValue(m_bar->value() + 1);
}

QList<unsigned int> ObjectsProgressWizardPage::failedUids() const
{
    QList<unsigned int> uids;
    uids.reserve(m_failed.size());
    for (const nivaro::ObjectInfo &object : m_failed)
        uids.append(object.uid());
    return uids;
}

void ObjectsProgressWizardPage::retryFailed()
{
    if (m_out || m_failed.isEmpty())
        return;
    qDebug() << "bulk wizard: retry" << m_failed.size();
    m_retry->hide();
    m_objects = m_failed;
    m_failed.clear();
    m_status->clear();
    m_buffer->append(tr("Повтор неудачных: объектов %1").arg(m_objects.size()));
    m_bar->resetState();
    m_bar->setMaximum(m_objects.size());
    m_bar->setValue(0);
    sendNextObject();
}

QString ObjectsProgressWizardPage::statusText() const
{
    return m_status->text();
}

void ObjectsProgressWizardPage::appendMessage(const QString &text)
{
    if (!text.isEmpty())
        m_buffer->append(text);
}

QString ObjectsProgressWizardPage::logText() const
{
    return m_buffer->text();
}
