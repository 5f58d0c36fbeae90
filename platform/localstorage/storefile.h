#ifndef NIVARO_STOREFILE_H
#define NIVARO_STOREFILE_H

#include <objectinfo.h>
#include <scheduledata.h>
#include <workerabsencereason.h>
#include <workerschedulehistoryrecord.h>

#include <QHash>
#include <QList>
#include <QSqlDatabase>
#include <QString>

#include <functional>

namespace nivaro {

/**
 * The store's SQLite file. open() checks that the file is ours before
 * writing anything to it and loads all of it; every change is one
 * transaction with synchronous=FULL, so what a write confirmed survives a
 * crash, and a write that fails leaves the file as it was.
 */
class StoreFile
{
public:
    struct Contents
    {
        QHash<QString, QList<ObjectInfo>> objects; // by data name
        QHash<TYPE_ID, QHash<QString, QByteArray>> blobs;
        QList<SCHEDULE_DATA> schedules;
        QHash<TYPE_ID, QList<SCHEDULE_DATA>> personalSchedules;
        QHash<TYPE_ID, QList<_WORKER_SCHEDULE_HISTORY_RECORD_V2>> scheduleHistory;
        QHash<TYPE_ID, _WORKER_ABSENCE_REASON> absences;
    };

    // What one transaction does, statement by statement.
    class Batch
    {
    public:
        void putObject(const QString &dataname, const ObjectInfo &object);
        void removeObject(TYPE_ID uid);
        void putBlob(TYPE_ID uid, const QString &key, const QByteArray &bytes);
        void removeBlob(TYPE_ID uid, const QString &key);
        void removeBlobs(TYPE_ID uid);
        void putSchedule(const SCHEDULE_DATA &schedule);
        void setPersonalSchedules(TYPE_ID worker, const QList<SCHEDULE_DATA> &schedules);
        void setScheduleHistory(TYPE_ID worker, const QList<_WORKER_SCHEDULE_HISTORY_RECORD_V2> &records);
        void setAbsences(const _WORKER_ABSENCE_REASON &absences);
        bool isEmpty() const { return m_steps.isEmpty(); }

    private:
        friend class StoreFile;
        QList<std::function<bool(StoreFile &)>> m_steps;
    };

    static constexpr int FormatVersion = 1;
    static const QString Application;

    StoreFile();
    ~StoreFile();
    StoreFile(const StoreFile &) = delete;
    StoreFile &operator=(const StoreFile &) = delete;

    bool open(const QString &fileName, Contents *contents, QString *error);
    void close();
    bool isOpen() const { return m_db.isOpen(); }
    QString fileName() const { return m_fileName; }

    bool write(const Batch &batch, QString *error);

private:
    bool check(const QString &fileName, QString *error);
    bool createSchema(QString *error);
    bool load(Contents *contents, QString *error);
    bool exec(const QString &sql, QString *error);
    bool run(const QString &sql, const QVariantList &values, QString *error);

    QString m_connection;
    QSqlDatabase m_db;
    QString m_fileName;
    QString m_lastError;
};

} // namespace nivaro

#endif
