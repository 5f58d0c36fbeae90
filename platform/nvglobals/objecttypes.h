#ifndef NIVARO_OBJECTTYPES_H
#define NIVARO_OBJECTTYPES_H

#include <QString>

// Object type names. ObjectInfo::datatype() maps each to its collection.

namespace nivaro {

inline const QString OT_SUBJECT_ROOT = QStringLiteral("OT_SUBJECT_ROOT");
inline const QString OT_FIRM = QStringLiteral("OT_FIRM");
inline const QString OT_DEPARTMENT = QStringLiteral("OT_DEPARTMENT");
inline const QString OT_WORKER = QStringLiteral("OT_WORKER");
inline const QString OT_JOB = QStringLiteral("OT_JOB");
inline const QString OT_CARD = QStringLiteral("OT_CARD");
inline const QString OT_SCHEDULE = QStringLiteral("OT_SCHEDULE");
inline const QString OT_REASON = QStringLiteral("OT_REASON");
inline const QString OT_POLICY = QStringLiteral("OT_POLICY");
inline const QString OT_ACCESS_ZONE = QStringLiteral("OT_ACCESS_ZONE");
inline const QString OT_DEVICE = QStringLiteral("OT_DEVICE");
inline const QString OT_USER = QStringLiteral("OT_USER");
inline const QString OT_VEHICLE = QStringLiteral("OT_VEHICLE");
inline const QString OT_SMARTCARD_PROFILE = QStringLiteral("OT_SMARTCARD_PROFILE");
inline const QString OT_DB_SETTINGS = QStringLiteral("OT_DB_SETTINGS");

// The uid of the subject root, the top of the organisation tree. The server
// reserves it; firms hang below it.
constexpr quint32 SUBJECT_ROOT_UID = 1;

} // namespace nivaro

#endif
