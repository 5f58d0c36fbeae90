#include "propertyframe.h"

#include <propertybasewidget.h>

#include <QDebug>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

PropertyFrame::PropertyFrame(QWidget *parent)
    : QWidget(parent)
    , m_title(new QLabel(this))
    , m_scroll(new QScrollArea(this))
    , m_message(new QLabel(this))
    , m_save(new QPushButton(tr("Сохранить"), this))
    , m_cancel(new QPushButton(tr("Отменить"), this))
{
    m_title->setObjectName(QStringLiteral("frameTitle"));
    QFont titleFont = m_title->font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.25);
    titleFont.setBold(true);
    m_title->setFont(titleFont);
    m_title->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_scroll->setWidgetResizable(true);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_message->setObjectName(QStringLiteral("messageLine"));
    m_message->setWordWrap(true);
    m_message->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_save->setObjectName(QStringLiteral("saveButton"));
    m_cancel->setObjectName(QStringLiteral("cancelButton"));
    m_save->setShortcut(QKeySequence::Save);

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_message, 1);
    buttons->addWidget(m_save);
    buttons->addWidget(m_cancel);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_title);
    layout->addWidget(m_scroll, 1);
    layout->addLayout(buttons);

    connect(m_save, &QPushButton::clicked, this, &PropertyFrame::save);
    connect(m_cancel, &QPushButton::clicked, this, &PropertyFrame::cancel);
    updateButtons();
}

void PropertyFrame::setView(PropertyBaseWidget *view)
{
    m_view = view;
    m_scroll->setWidget(view);
    connect(view, &PropertyBaseWidget::dataEdited, this, [this] {
        m_modified = true;
        updateButtons();
    });
    connect(view, &PropertyBaseWidget::enableSave, this, [this](const QString &reason, bool enable) {
        m_saveAllowed = enable;
        m_saveReason = reason;
        updateButtons();
    });
    connect(view, &PropertyBaseWidget::enableClose, this, [this](const QString &, bool enable) {
        m_closeAllowed = enable;
        updateButtons();
    });
    connect(view, &PropertyBaseWidget::appendTask, this, [this](const nivaro::TaskInfo &task) {
        ++m_pending;
        emit appendTask(task);
    });
    connect(view, &PropertyBaseWidget::showMessage, this, &PropertyFrame::showMessage);
    connect(view, &PropertyBaseWidget::showCriticalMessage, this, &PropertyFrame::showCriticalMessage);
}

bool PropertyFrame::canSave() const
{
    return m_save->isEnabled();
}

void PropertyFrame::setTitle(const QString &title)
{
    m_title->setText(title);
}

void PropertyFrame::setReadOnlyReason(const QString &reason)
{
    m_readOnlyReason = reason;
    showMessage(QString());
    updateButtons();
}

QString PropertyFrame::message() const
{
    return m_message->text();
}

void PropertyFrame::save()
{
    if (!m_view || !m_modified || m_pending > 0)
        return;
    m_failed = false;
    const int before = m_pending;
    m_view->applyChanges();
    if (m_pending == before) {
        // Edited and edited back: nothing differs from what is stored.
        m_modified = false;
        showMessage(tr("Изменений нет"));
    } else {
        showMessage(tr("Сохранение..."));
    }
    updateButtons();
}

void PropertyFrame::cancel()
{
    if (!m_view)
        return;
    m_view->rejectChanges();
    resetState();
}

void PropertyFrame::taskFinished(const nivaro::TaskInfo &task, bool ok, const QString &error)
{
    if (m_pending == 0)
        return;
    --m_pending;
    if (!ok) {
        // The view keeps its edits, so the operator can fix and save again.
        m_failed = true;
        showCriticalMessage(error.isEmpty() ? task.errorMessage : task.errorMessage + QStringLiteral(": ") + error);
    }
    if (m_pending == 0 && !m_failed)
        m_modified = false;
    updateButtons();
}

void PropertyFrame::showMessage(const QString &message)
{
    m_message->setStyleSheet(QString());
    m_message->setText(message.isEmpty() ? m_readOnlyReason : message);
}

void PropertyFrame::showCriticalMessage(const QString &message)
{
    qWarning() << "frame: critical" << message;
    m_message->setStyleSheet(QStringLiteral("color: #b00020; font-weight: bold;"));
    m_message->setText(message);
}

void PropertyFrame::resetState()
{
    m_modified = false;
    m_saveAllowed = true;
    m_closeAllowed = true;
    m_failed = false;
    m_saveReason.clear();
    updateButtons();
}

void PropertyFrame::updateButtons()
{
    const bool idle = m_pending == 0;
    const bool writable = m_readOnlyReason.isEmpty();
    m_save->setEnabled(m_view && m_modified && m_saveAllowed && idle && writable);
    m_save->setToolTip(!writable ? m_readOnlyReason : m_saveAllowed ? QString() : tr("Проверьте заполнение полей"));
    m_cancel->setEnabled(m_view && m_modified && m_closeAllowed && idle);
}
