#ifndef OBJECTSPROGRESSWIZARDPAGE_H
#define OBJECTSPROGRESSWIZARDPAGE_H

#include "nvdialogs_export.h"
#include "steppedloop.h"

#include <nvwizardpage.h>
#include <objectinfo.h>
#include <taskinfo.h>

#include <QHash>
#include <QList>
#include <QVariant>

class BufferedLog;
class NVProgressBar;
class QLabel;
class QPushButton;
class QTextBrowser;

/**
 * The progress page of a bulk wizard: one task per object, sent one at a
 * time, each outcome logged by the object's name. The first failure ends
 * the run: objects not yet sent stay as they were, and the log tells
 * which ones were done.
 *
 * A derived page names the command, its reply slot (which forwards to
 * reply()) and the log texts, and may add parameters every task carries.
 */
class NVDIALOGS_EXPORT ObjectsProgressWizardPage : public NVWizardPage
{
    Q_OBJECT
public:
    // Takes the objects from the store, in the order given; unknown uids
    // are left out.
    virtual void setUids(const QList<unsigned int> &uids);
    // The objects still to be done (the one out included), in the order
    // they go; empty once the run has ended, whichever way.
    int objectCount() const { return m_objects.size(); }
    QList<unsigned int> uids() const;

    void initializePage() override;
    void sendNextObject();

    // The objects "Повторить неудачные" sends again once a run has failed:
    // the one that failed and those the failure kept from going out, since
    // the operator pressing it wants the whole job done.
    QList<unsigned int> failedUids() const;
    void retryFailed();

    QString statusText() const;
    QString logText() const;
    // A line of the host's own after the page's lines, such as why the
    // server refused a task; an empty text adds nothing.
    void appendMessage(const QString &text);

Q_SIGNALS:
    void appendTask(nivaro::TaskInfo task);

protected:
    // What the page sends and logs; each text takes the object's name as %1.
    struct Run
    {
        QString command;
        QString replySlot;
        QString startText;
        QString doneText;
        QString errorText;
    };

    ObjectsProgressWizardPage(const Run &run, QWidget *parent);

    // A parameter every task carries (a later value for key replaces it).
    void setTaskParameter(const QString &key, const QVariant &value);
    void reply(unsigned int uid);
    QList<nivaro::ObjectInfo> &objects() { return m_objects; }

private:
    void sendHead();

    const Run m_run;
    QHash<QString, QVariant> m_taskParameters;
    QList<nivaro::ObjectInfo> m_objects; // still to be done, the head is out
    QList<nivaro::ObjectInfo> m_failed;  // what a retry sends
    bool m_out = false;
    QLabel *m_status = nullptr;
    NVProgressBar *m_bar = nullptr;
    QTextBrowser *m_log = nullptr;
    QPushButton *m_retry = nullptr;
    BufferedLog *m_buffer = nullptr;
    SteppedLoop m_loop;
};

#endif
