#ifndef OBJECTSPROGRESSWIZARDPAGE_H
#define OBJECTSPROGRESSWIZARDPAGE_H

#include "nvdialogs_export.h"
#include "steppedloop.h"

#include <nvwizardpage.h>
#include <objectinfo.h>
#include <taskinfo.h>

#include <QList>

class BufferedLog;
class NVProgressBar;
class QLabel;
class QTextBrowser;

/**
 * The progress page of a bulk wizard: one task per object, sent one at a
 * time, each outcome logged by the object's name. The first failure ends
 * the run: objects not yet sent stay as they were, and the log tells
 * which ones were done.
 *
 * A derived page builds the task for an object and names its texts; its
 * reply slot forwards to reply().
 */
class NVDIALOGS_EXPORT ObjectsProgressWizardPage : public NVWizardPage
{
    Q_OBJECT
public:
    // Takes the objects from the store, in the order given; unknown uids
    // are left out.
    virtual void setUids(const QList<unsigned int> &uids);
    int objectCount() const { return m_objects.size(); }

    void initializePage() override;
    void sendNextObject();

    QString statusText() const;
    QString logText() const;

Q_SIGNALS:
    void appendTask(nivaro::TaskInfo task);

protected:
    explicit ObjectsProgressWizardPage(QWidget *parent = nullptr);

    // The task for object, without its receiver, start and error texts.
    virtual nivaro::TaskInfo makeTask(const nivaro::ObjectInfo &object) const = 0;
    virtual QString startText(const QString &name) const = 0;
    virtual QString doneText(const QString &name) const = 0;
    virtual QString errorText(const QString &name) const = 0;

    void reply(unsigned int uid);
    QList<nivaro::ObjectInfo> &objects() { return m_objects; }

private:
    void sendHead();

    QList<nivaro::ObjectInfo> m_objects; // still to be done, the head is out
    bool m_out = false;
    QLabel *m_status = nullptr;
    NVProgressBar *m_bar = nullptr;
    QTextBrowser *m_log = nullptr;
    BufferedLog *m_buffer = nullptr;
    SteppedLoop m_loop;
};

#endif
