#ifndef NIVARO_DATANAMES_H
#define NIVARO_DATANAMES_H

#include <QString>

// Names of the collections of the local store. A data name says in which
// collection an object lives (ObjectInfo::datatype maps a type name to it).

namespace nivaro {

inline const QString SUBJECT_DATANAME = QStringLiteral("subject"); // employees in service
inline const QString SUBJECT_FIRED_DATANAME = QStringLiteral("subject_fired"); // dismissed employees
inline const QString ORGSTRUCTURE_DATANAME = QStringLiteral("orgstructure"); // firms and departments
inline const QString JOB_DATANAME = QStringLiteral("job");
inline const QString CARD_DATANAME = QStringLiteral("card");
inline const QString SCHEDULE_DATANAME = QStringLiteral("schedule");
inline const QString SCHEDULE_SHIFT_DATANAME = QStringLiteral("schedule_shift");
inline const QString SHIFT_INTERVAL_DATANAME = QStringLiteral("shift_interval");
inline const QString BREAK_RULE_DATANAME = QStringLiteral("break_rule");
inline const QString CALCPLAN_DATANAME = QStringLiteral("calcplan");
inline const QString POLICY_DATANAME = QStringLiteral("policy"); // access policies
inline const QString ACCESS_ZONE_DATANAME = QStringLiteral("access_zone");
inline const QString REASON_DATANAME = QStringLiteral("reason"); // absence reasons
inline const QString DEVICE_DATANAME = QStringLiteral("device");
inline const QString USER_DATANAME = QStringLiteral("user");
inline const QString ROLES_DATANAME = QStringLiteral("roles");
inline const QString VEHICLE_DATANAME = QStringLiteral("vehicle");
inline const QString LOCKER_DATANAME = QStringLiteral("locker_dataname");
inline const QString LOCKER_PLAN_DATANAME = QStringLiteral("locker_plan");
inline const QString SMARTCARD_PROFILE_DATANAME = QStringLiteral("smartcard_profile_dataname");
inline const QString LDAP_DATANAME = QStringLiteral("ldap_settings_dataname");
inline const QString WORKER_HISTORY_DATANAME = QStringLiteral("worker_history");
inline const QString WORKER_TRANSFER_DATANAME = QStringLiteral("worker_transfer");
inline const QString CHECK_INTERVAL_DATANAME = QStringLiteral("check_interval");
inline const QString OBJECT_TYPE_DATANAME = QStringLiteral("object_type");
inline const QString DB_DATANAME = QStringLiteral("db"); // the database-settings record
// Employees' biometric templates; the uids announced with it are employees'.
inline const QString TEMPLATE_DATANAME = QStringLiteral("template");
inline const QString SUBJECT_SURNAME_INDEX = QStringLiteral("subject_surname_index"); // search index of employees by surname
inline const QString SUBJECT_WORKERNUM_INDEX = QStringLiteral("subject_workernum_index"); // search index of employees by personnel number
inline const QString SUBJECT_FIRED_SURNAME_INDEX = QStringLiteral("subject_fired_surname_index");
inline const QString SUBJECT_FIRED_WORKERNUM_INDEX = QStringLiteral("subject_fired_workernum_index");

// Carried for the rest of the client; the views here do not read them.
inline const QString PLACING_DATANAME = QStringLiteral("placing");
inline const QString REPORT_DATANAME = QStringLiteral("report");
inline const QString REPORT_DS_DATANAME = QStringLiteral("report_ds");
inline const QString REPORT_DS_FIELD_DATANAME = QStringLiteral("report_ds_field");
inline const QString ACTIVE_PASS_REQUEST_DATANAME = QStringLiteral("active_pass_request");
inline const QString PASS_DATANAME = QStringLiteral("pass");
inline const QString PASS_REQUEST_DATANAME = QStringLiteral("pass_request");
inline const QString JOB_SCHEDULER_DATANAME = QStringLiteral("job_scheduler");
inline const QString EVENT_SCHEDULER_DATANAME = QStringLiteral("event_scheduler");
inline const QString ACTION_SCHEDULER_DATANAME = QStringLiteral("action_scheduler");
inline const QString SAFE_DATANAME = QStringLiteral("safe");
inline const QString QUESTION_DATANAME = QStringLiteral("question");
inline const QString CONFIRM_LIST_DATANAME = QStringLiteral("confirm_list");
inline const QString DEVICE_USER_ROLE_DATANAME = QStringLiteral("device_user_role");
inline const QString DEVICE_ACCOUNT_DATANAME = QStringLiteral("device_account");
inline const QString MNEMONIC_DIAGRAM_DATANAME = QStringLiteral("mnemonic_diagram");
inline const QString DEVICE_SETTINGS_PROFILE_DATANAME = QStringLiteral("device_settings_profile");
inline const QString DEVICE_FIRMWARE_DATANAME = QStringLiteral("device_firmware");
inline const QString DEVICE_ACTION_DATANAME = QStringLiteral("device_action");
inline const QString DEVICE_GROUP_DATANAME = QStringLiteral("device_group");
inline const QString DEVICE_DELETED_DATANAME = QStringLiteral("device_deleted");
inline const QString CHECK_CONFIG_DATANAME = QStringLiteral("check_config");
inline const QString EVENT_PRIORITY_DATANAME = QStringLiteral("event_priority");
inline const QString EVENT_GROUP_DATANAME = QStringLiteral("event_group");
inline const QString WORKER_CHAT_DATANAME = QStringLiteral("worker_chat");
inline const QString PLACING_RULE_DATANAME = QStringLiteral("placing_rule");
inline const QString ATTACHED_WORKER_DATANAME = QStringLiteral("attached_worker");
inline const QString MONITORING_SETTINGS_DATANAME = QStringLiteral("monitoring_settings");
inline const QString RB_SETTINGS_DATANAME = QStringLiteral("rb_settings");
inline const QString CONSTRUCTION_OBJECT_DATANAME = QStringLiteral("construction_object");
inline const QString CBS_PROFILE_DATANAME = QStringLiteral("cbs_profile");
inline const QString MOBILE_SETTINGS_DATANAME = QStringLiteral("mobile_settings");
inline const QString ROLETEMPLATES_DATANAME = QStringLiteral("roletemplates");
inline const QString WORKDAY_CALENDAR_DATANAME = QStringLiteral("workday_calendar");

// Directions of links between objects.
inline const QString INHERIT_PARENT = QStringLiteral("parent");
inline const QString INHERIT_CHILD = QStringLiteral("child");

} // namespace nivaro

#endif
