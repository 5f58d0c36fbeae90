#ifndef PROPERTYFRAME_H
#define PROPERTYFRAME_H

#include <taskinfo.h>

#include <QWidget>

class PropertyBaseWidget;
class QLabel;
class QPushButton;
class QScrollArea;

/**
 * The frame around a property view: a title, the view, a message line and
 * the Save / Cancel buttons. It turns the view's enableSave / enableClose /
 * dataEdited signals into button states and its messages into the line, and
 * hands the view's tasks on through appendTask. While tasks are out the
 * buttons stay disabled, so one edit is never sent twice.
 */
class PropertyFrame : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(PropertyFrame)
public:
    explicit PropertyFrame(QWidget *parent = nullptr);

    // Takes ownership of the view.
    void setView(PropertyBaseWidget *view);
    PropertyBaseWidget *view() const { return m_view; }
    void setTitle(const QString &title);
    // A store that cannot be written: Save stays off with this reason as
    // its tooltip, and an otherwise empty message line shows it.
    void setReadOnlyReason(const QString &reason);

    bool isModified() const { return m_modified; }
    // Whether Save would send the edits now (they are valid, nothing is out
    // and the store can be written).
    bool canSave() const;
    int pendingTasks() const { return m_pending; }
    QString message() const;

public Q_SLOTS:
    void save();
    void cancel();
    // The executor's word on one of this frame's tasks.
    void taskFinished(const nivaro::TaskInfo &task, bool ok, const QString &error);
    void showMessage(const QString &message);
    void showCriticalMessage(const QString &message);
    // A new selection was handed to the view: nothing is edited any more.
    void resetState();

Q_SIGNALS:
    void appendTask(const nivaro::TaskInfo &task);

private:
    void updateButtons();

    PropertyBaseWidget *m_view = nullptr;
    QLabel *m_title = nullptr;
    QScrollArea *m_scroll = nullptr;
    QLabel *m_message = nullptr;
    QPushButton *m_save = nullptr;
    QPushButton *m_cancel = nullptr;
    bool m_modified = false;
    bool m_saveAllowed = true;
    bool m_closeAllowed = true;
    bool m_failed = false;
    int m_pending = 0;
    QString m_saveReason;
    QString m_readOnlyReason;
};

#endif
