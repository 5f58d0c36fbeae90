#include "updateobjectwizard.h"

#include "bufferedlog.h"
#include "deletelistwizardpage.h"

#include <localstorage.h>
#include <nvglobals.h>
#include <nvprogressbar.h>

#include <QDebug>
#include <QLabel>
#include <QTextBrowser>
#include <QVBoxLayout>

UpdateProgressWizardPage::UpdateProgressWizardPage(QWidget *parent)
    : NVWizardPage(parent)
    , m_status(new QLabel(this))
    , m_bar(new NVProgressBar(this))
    , m_log(new QTextBrowser(this))
{
    setTitle(tr("Обновление объектов"));
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
}

void UpdateProgressWizardPage::setUids(const QList<unsigned int> &uids)
{
    m_objects = nivaro::LocalStorage::instance()->objects(uids);
}

void UpdateProgressWizardPage::addUpdateParameter(const QString &name, const QVariant &value)
{
    m_parameters.insert(name, value);
}

void UpdateProgressWizardPage::initializePage()
{
    m_bar->resetState();
    m_bar->setMaximum(m_objects.size());
    m_bar->setValue(0);
    updateNext();
}

void UpdateProgressWizardPage::updateNext()
{
    m_loop.run([this] { sendNext(); });
}

void UpdateProgressWizardPage::sendNext()
{
    if (m_objects.isEmpty()) {
        m_current = 0;
        m_status->setText(tr("Успешно завершено"));
        m_bar->successed();
        setComplete(true);
        return;
    }
    setComplete(false);
    const nivaro::ObjectInfo object = m_objects.cbegin().value();
    m_current = object.uid();
    const QString name = NVGlobals::objectName(object);

    nivaro::TaskInfo task;
    task.id = nivaro::TaskInfo::newId();
    task.uid = object.uid();
    task.command = QStringLiteral("save_object");
    task.params.insert(QStringLiteral("object_type"), object.typeName());
    for (auto it = m_parameters.cbegin(); it != m_parameters.cend(); ++it)
        task.params.insert(QLatin1String("property-") + it.key(), it.value());
    task.widget = this;
    task.slot = QStringLiteral("updated");
    task.startMessage = tr("Обработка %1").arg(name);
    task.errorMessage = tr("Ошибка обработки %1").arg(name);
    appendLog(task.startMessage);
    emit appendTask(task);
}

void UpdateProgressWizardPage::updated(unsigned int uid)
{
    if (m_current == 0) {
        qDebug() << "update wizard: reply" << uid << "with no task out; ignored";
        return;
    }
    const QString name = NVGlobals::objectName(m_objects.value(m_current));
    if (uid == 0) {
        appendLog(tr("Ошибка обработки %1").arg(name));
        m_status->setText(tr("Ошибка"));
        m_bar->failed();
        m_objects.clear();
        m_current = 0;
        setComplete(true);
        return;
    }
    appendLog(tr("%1 обработан").arg(name));
    m_objects.remove(m_current);
    m_bar->setValue(m_bar->value() + 1);
    updateNext();
}

QString UpdateProgressWizardPage::statusText() const
{
    return m_status->text();
}

QString UpdateProgressWizardPage::logText() const
{
    return m_buffer->text();
}

void UpdateProgressWizardPage::appendLog(const QString &text)
{
    m_buffer->append(text);
}

UpdateObjectWizard::UpdateObjectWizard(QWidget *parent)
    : PageListWizard(parent)
    , m_listPage(new DeleteListWizardPage)
    , m_progressPage(new UpdateProgressWizardPage)
{
    setObjectName(QStringLiteral("UpdateObjectWizard"));
    setWindowTitle(tr("Мастер обновления объектов"));
    setPageListVisible(false);
    setAttribute(Qt::WA_DeleteOnClose);
    setPage(0, m_listPage);
    setPage(1, m_progressPage);
    m_progressPage->setFinalPage(true);
    connect(m_progressPage, &UpdateProgressWizardPage::appendTask, this, &UpdateObjectWizard::appendTask);
}

void UpdateObjectWizard::setUids(const QList<unsigned int> &uids)
{
    m_listPage->setUids(uids);
    m_progressPage->setUids(uids);
}

void UpdateObjectWizard::addUpdateParameter(const QString &name, const QVariant &value)
{
    m_progressPage->addUpdateParameter(name, value);
}

QAbstractItemModel *UpdateObjectWizard::model() const
{
    return m_listPage->model();
}

nivaro::ObjectTreeProxy *UpdateObjectWizard::proxy() const
{
    return m_listPage->proxy();
}

void UpdateObjectWizard::setItemDelegate(StyledItemDelegate *delegate, QAbstractItemView *view)
{
    m_listPage->setItemDelegate(delegate, view);
}
