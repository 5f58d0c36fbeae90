#ifndef NIVARO_STORERECORDCODEC_H
#define NIVARO_STORERECORDCODEC_H

#include "localstorage_export.h"

#include <objectinfo.h>
#include <scheduledata.h>
#include <templatedata.h>
#include <workerabsencereason.h>
#include <workerschedulehistoryrecord.h>

#include <QByteArray>
#include <QList>

namespace nivaro {

class StringPool;

/**
 * The byte form of each kind of row in the store file. Decoding never
 * trusts the bytes: a row that does not decode completely, or leaves bytes
 * over, is refused with a reason, so that a damaged file is reported rather
 * than half loaded.
 */
class LOCALSTORAGE_EXPORT StoreRecordCodec
{
public:
    static bool decodeObject(const QByteArray &bytes, StringPool *pool, ObjectInfo *object, QString *error);

    static QByteArray encodeSchedule(const SCHEDULE_DATA &schedule);
    static bool decodeSchedule(const QByteArray &bytes, SCHEDULE_DATA *schedule, QString *error);

    static QByteArray encodeScheduleHistory(const QList<_WORKER_SCHEDULE_HISTORY_RECORD_V2> &records);
    static bool decodeScheduleHistory(const QByteArray &bytes, QList<_WORKER_SCHEDULE_HISTORY_RECORD_V2> *records,
                                      QString *error);

    static QByteArray encodeAbsences(const _WORKER_ABSENCE_REASON &absences);
    static bool decodeAbsences(const QByteArray &bytes, _WORKER_ABSENCE_REASON *absences, QString *error);

    static QByteArray encodeTemplates(const QList<_TEMPLATE_DATA> &templates);
    static bool decodeTemplates(const QByteArray &bytes, QList<_TEMPLATE_DATA> *templates, QString *error);
};

} // namespace nivaro

#endif
