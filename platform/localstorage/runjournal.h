#ifndef NIVARO_RUNJOURNAL_H
#define NIVARO_RUNJOURNAL_H

#include "localstorage_export.h"

#include <nvtypes.h>

#include <QDateTime>
#include <QList>
#include <QSet>
#include <QString>
#include <QVariantMap>

#include <map>
#include <memory>

class QLockFile;

namespace nivaro {

/**
 * What a client is doing to many objects at once, kept in the store file
 * beside the objects, so that a run cut short by a crash, a power cut or
 * an impatient operator is found again at the next start.
 *
 * A client begins a run with everything needed to repeat it, marks each
 * object once the server confirmed it, and ends the run when it is over.
 * While a run is open its client holds a lock file next to the store; a
 * run whose lock nobody holds was left by a client that no longer runs.
 * The journal has its own connection to the file and writes each step in
 * one transaction that reaches the disk before the call returns.
 *
 * One journal per client and store, on the GUI thread.
 */
class LOCALSTORAGE_EXPORT RunJournal
{
    Q_DISABLE_COPY(RunJournal)
public:
    struct Run
    {
        qint64 id = 0;
        QString kind;
        QVariantMap parameters;
        QList<TYPE_ID> uids; // in the order they were to be done
        QSet<TYPE_ID> done;
        QDateTime started;

        QList<TYPE_ID> remaining() const;
    };

    RunJournal();
    ~RunJournal();

    // The store file must exist; error is a sentence for the operator.
    bool open(const QString &storeFile, QString *error = nullptr);
    void close();
    bool isOpen() const;

    // The new run's number, or 0 when it could not be written.
    qint64 beginRun(const QString &kind, const QVariantMap &parameters, const QList<TYPE_ID> &uids,
                    QString *error = nullptr);
    bool markDone(qint64 run, TYPE_ID uid);
    bool endRun(qint64 run);
    // Runs of this kind left open by clients that no longer run, oldest
    // first. This journal takes them over: another client will not offer
    // them again while this one decides their fate with endRun().
    QList<Run> interruptedRuns(const QString &kind);

    QString lockFileName(qint64 run) const;

private:
    bool holds(qint64 run) const;
    bool lock(qint64 run);
    bool write(const QString &sql, const QVariantList &values);
    bool readRun(Run *run);

    QString m_connection;
    QString m_storeFile;
    std::map<qint64, std::unique_ptr<QLockFile>> m_locks;
};

} // namespace nivaro

#endif
