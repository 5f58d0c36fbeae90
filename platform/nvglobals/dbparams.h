#ifndef DB_DBPARAMS_H
#define DB_DBPARAMS_H

#include <QString>

// Parameter keys of the objects, by area. Views use these constants, never
// the literal text: the texts are the server's column names and must match it.

namespace db {

namespace common {
inline const QString NAME = QStringLiteral("PT_NAME");
inline const QString OBJECTSTATE = QStringLiteral("PT_OBJECTSTATE");
inline const QString EXT_GUID = QStringLiteral("PT_1CGUID");
inline const QString DESCRIPTION = QStringLiteral("PT_DESCRIPTION");
inline const QString ROLETEMPLATE = QStringLiteral("PT_ROLETEMPLATE");
// Value of OBJECTSTATE for a dismissed employee (compared case-insensitively).
inline const QString STATE_FIRED = QStringLiteral("d");
} // namespace common

namespace worker {
inline const QString LAST_NAME = QStringLiteral("PT_SURNAME");
inline const QString FIRST_NAME = QStringLiteral("PT_NAME");
inline const QString MIDDLE_NAME = QStringLiteral("PT_PATRONYMIC");
inline const QString WORKERNUM = QStringLiteral("PT_WORKERNUM");
inline const QString BIRTHDAY = QStringLiteral("PT_BIRTHDAY");
inline const QString GENDER = QStringLiteral("PT_GENDER");
inline const QString CITIZENSHIP_CODE = QStringLiteral("PT_CITIZENSHIP_CODE");
inline const QString DOC_TYPE = QStringLiteral("PT_DOC_TYPE");
inline const QString DOC_SERIES = QStringLiteral("PT_DOC_SERIES");
inline const QString DOC_NUMBER = QStringLiteral("PT_DOC_NUMBER");
inline const QString SNILS = QStringLiteral("PT_SNILS");
inline const QString DESCRIPTION = QStringLiteral("PT_DESCRIPTION");
inline const QString PHOTO = QStringLiteral("PT_PHOTO");
inline const QString PHOTO_PREVIEW = QStringLiteral("PT_PHOTO_PREVIEW");
inline const QString PHONE_NUMBER = QStringLiteral("PT_PHONE");
inline const QString EMAIL = QStringLiteral("PT_EMAIL");
inline const QString JOBLINK = QStringLiteral("PT_JOBLINK");
inline const QString FIRMLINK = QStringLiteral("PT_FIRMLINK");
inline const QString DATE_BEGIN = QStringLiteral("PT_DATE_BEGIN");
inline const QString DATE_END = QStringLiteral("PT_DATE_END");
inline const QString SCHEDULE = QStringLiteral("PT_SCHEDULE");
inline const QString CALC_PLAN = QStringLiteral("PT_CALC_PLAN");
inline const QString PIN = QStringLiteral("PT_PIN");
inline const QString LOCKED = QStringLiteral("PT_LOCKED");
inline const QString DISABLE_PLANNING = QStringLiteral("PT_DISABLE_PLANNING");
inline const QString DISABLE_CBS = QStringLiteral("PT_DISABLE_CBS");
inline const QString CBS_ID = QStringLiteral("PT_CBS_ID");
inline const QString CBS_STATUS = QStringLiteral("PT_CBS_STATUS");
inline const QString ALCOHOL_CHECK_REQUIRED = QStringLiteral("PT_ALCOHOL_CHECK_REQUIRED");
inline const QString DEVICE_MESSAGE = QStringLiteral("PT_DEVICE_MESSAGE");
inline const QString DEVICE_IDENT_TYPE = QStringLiteral("PT_DEVICE_IDENT_TYPE");
// Set by the server when it dismisses an employee.
inline const QString DISMISS_DATE = QStringLiteral("PT_DISMISS_DATE");
inline const QString DISMISS_REASON = QStringLiteral("PT_DISMISS_REASON");
} // namespace worker

namespace orgstructure {
inline const QString NAME = QStringLiteral("PT_NAME");
inline const QString DEPARTNUM = QStringLiteral("PT_DEPARTNUM");
namespace common {
inline const QString INN = QStringLiteral("PT_INN");
} // namespace common
} // namespace orgstructure

namespace firm {
inline const QString NAME = QStringLiteral("PT_NAME");
inline const QString FULL_NAME = QStringLiteral("PT_FULL_NAME");
inline const QString KPP = QStringLiteral("PT_KPP");
inline const QString OGRN = QStringLiteral("PT_OGRN");
inline const QString ADDRESS = QStringLiteral("PT_ADDRESS");
} // namespace firm

namespace card {
// The full card number as decimal text, as the readers report it.
inline const QString NUMBER = QStringLiteral("PT_CARD_NUMBER");
inline const QString OWNER = QStringLiteral("PT_OWNER");
inline const QString TYPE = QStringLiteral("PT_TYPE");
inline const QString DATE_BEGIN = QStringLiteral("PT_DATE_BEGIN");
inline const QString DATE_END = QStringLiteral("PT_DATE_END");
// Of a smart card: its UID as the reader reads it (hex), its type name, and
// the uid of the smart-card profile whose keys it carries ("-1": defaults).
inline const QString UID = QStringLiteral("PT_UID");
inline const QString CARD_NAME = QStringLiteral("PT_CARD_NAME");
inline const QString SMARTCARD_PROFILE = QStringLiteral("PT_SMARTCARD_PROFILE");
} // namespace card

namespace reason {
inline const QString NAME = QStringLiteral("PT_NAME");
inline const QString MARK = QStringLiteral("PT_MARK");
} // namespace reason

namespace database {
inline const QString PD_DENY_STORE_USER_PHOTOS = QStringLiteral("PT_PD_DENY_STORE_USER_PHOTOS");
inline const QString PD_DENY_STORE_USER_BIOMETRICS = QStringLiteral("PT_PD_DENY_STORE_USER_BIOMETRICS");
inline const QString PD_DENY_STORE_BIOMETRIC_IMAGES = QStringLiteral("PT_PD_DENY_STORE_BIOMETRIC_IMAGES");
inline const QString PD_DENY_TRANSFER_USER_NAMES = QStringLiteral("PT_PD_DENY_TRANSFER_USER_NAMES");
// How card numbers are shown and typed (NVGlobals::CardViewFormat, decimal).
inline const QString CARD_VIEW_FORMAT = QStringLiteral("PT_CARD_VIEW_FORMAT");

// Names of the personal-data items an operator may be barred from.
namespace json {
inline const QString PERSONAL_GENERAL = QStringLiteral("personal_general");
inline const QString PERSONAL_DOCUMENT = QStringLiteral("personal_document");
inline const QString PERSONAL_CONTACT = QStringLiteral("personal_contact");
inline const QString PERSONAL_MESSAGING = QStringLiteral("personal_messaging");
inline const QString PERSONAL_GENERAL_NAME = QStringLiteral("personal_general_name");
inline const QString PERSONAL_GENERAL_PATRONYMIC = QStringLiteral("personal_general_patronymic");
inline const QString PERSONAL_GENERAL_SEX = QStringLiteral("personal_general_sex");
inline const QString PERSONAL_GENERAL_BIRTHDATE = QStringLiteral("personal_general_birthdate");
inline const QString PERSONAL_GENERAL_CITIZENSHIP = QStringLiteral("personal_general_citizenship");
inline const QString PERSONAL_DOCUMENT_TYPE = QStringLiteral("personal_document_type");
inline const QString PERSONAL_DOCUMENT_SERIES = QStringLiteral("personal_document_series");
inline const QString PERSONAL_DOCUMENT_NUMBER = QStringLiteral("personal_document_number");
inline const QString PERSONAL_DOCUMENT_INN = QStringLiteral("personal_document_inn");
inline const QString PERSONAL_DOCUMENT_SNILS = QStringLiteral("personal_document_snils");
inline const QString PERSONAL_CONTACT_PHONE = QStringLiteral("personal_contact_phone");
inline const QString PERSONAL_CONTACT_EMAIL = QStringLiteral("personal_contact_email");
inline const QString PERSONAL_CONTACT_ADDRESS = QStringLiteral("personal_contact_address");
inline const QString PERSONAL_MESSAGING_PHONE = QStringLiteral("personal_messaging_phone");
inline const QString PERSONAL_MESSAGING_EMAIL = QStringLiteral("personal_messaging_email");
} // namespace json
} // namespace database

namespace devices {
inline const QString TYPE = QStringLiteral("PT_DEVICE_TYPE");
namespace cardreader {
// Device type of a USB smart-card reader (the value of devices::TYPE).
inline const QString SMARTCARD = QStringLiteral("OT_CARDREADER_SMARTCARD");
inline const QString HID = QStringLiteral("OT_CARDREADER_HID");
} // namespace cardreader
} // namespace devices

namespace scardprofile {
// Parameters of a smart-card profile (OT_SMARTCARD_PROFILE). Keys are hex
// text, block access strings one decimal digit per value.
namespace common {
inline const QString NAME = QStringLiteral("PT_NAME");
inline const QString DATA_FORMAT = QStringLiteral("PT_DATA_FORMAT");
inline const QString MIFARE_PLUS_MODE = QStringLiteral("PT_MIFARE_PLUS_MODE");
} // namespace common
namespace legacy {
inline const QString USE_LEGACY_MODE = QStringLiteral("PT_USE_LEGACY_MODE");
inline const QString KEY = QStringLiteral("PT_MIFARE_LEGACY_KEY");
} // namespace legacy
namespace mfclassic {
inline const QString KEY_A = QStringLiteral("PT_MIFARE_CLASSIC_KEY_A");
inline const QString KEY_B = QStringLiteral("PT_MIFARE_CLASSIC_KEY_B");
inline const QString FIRST_BLOCK = QStringLiteral("PT_MIFARE_CLASSIC_FIRST_BLOCK");
inline const QString LAST_BLOCK = QStringLiteral("PT_MIFARE_CLASSIC_LAST_BLOCK");
inline const QString BLOCK_ACCESS = QStringLiteral("PT_MIFARE_CLASSIC_BLOCK_ACCESS");
} // namespace mfclassic
namespace mfplussl1 {
inline const QString KEY_A = QStringLiteral("PT_MIFARE_PLUS_SL1_KEY_A");
inline const QString KEY_B = QStringLiteral("PT_MIFARE_PLUS_SL1_KEY_B");
inline const QString FIRST_BLOCK = QStringLiteral("PT_MIFARE_PLUS_SL1_FIRST_BLOCK");
inline const QString LAST_BLOCK = QStringLiteral("PT_MIFARE_PLUS_SL1_LAST_BLOCK");
inline const QString BLOCK_ACCESS = QStringLiteral("PT_MIFARE_PLUS_SL1_BLOCK_ACCESS");
} // namespace mfplussl1
namespace mfplussl3 {
inline const QString KEY_MASTER = QStringLiteral("PT_MIFARE_PLUS_SL3_KEY_MASTER");
inline const QString KEY_CONF = QStringLiteral("PT_MIFARE_PLUS_SL3_KEY_CONF");
inline const QString KEY_L1AUTH = QStringLiteral("PT_MIFARE_PLUS_SL3_KEY_L1AUTH");
inline const QString KEY_L3SWITCH = QStringLiteral("PT_MIFARE_PLUS_SL3_KEY_L3SWITCH");
inline const QString KEY_L3SECTOR_SWITCH = QStringLiteral("PT_MIFARE_PLUS_SL3_KEY_L3SECTOR_SWITCH");
inline const QString KEY_A = QStringLiteral("PT_MIFARE_PLUS_SL3_KEY_A");
inline const QString KEY_B = QStringLiteral("PT_MIFARE_PLUS_SL3_KEY_B");
inline const QString BLOCK_ACCESS = QStringLiteral("PT_MIFARE_PLUS_SL3_BLOCK_ACCESS");
inline const QString FIRST_BLOCK = QStringLiteral("PT_MIFARE_PLUS_SL3_FIRST_BLOCK");
inline const QString LAST_BLOCK = QStringLiteral("PT_MIFARE_PLUS_SL3_LAST_BLOCK");
} // namespace mfplussl3
namespace mfdesfire {
inline const QString KEY_MASTER = QStringLiteral("PT_MIFARE_DESFIRE_KEY_MASTER");
inline const QString KEY_APP = QStringLiteral("PT_MIFARE_DESFIRE_KEY_APP");
inline const QString KEY_APP_NR = QStringLiteral("PT_MIFARE_DESFIRE_KEY_APP_NR");
inline const QString APP_ID = QStringLiteral("PT_MIFARE_DESFIRE_APP_ID");
inline const QString FILE_ID = QStringLiteral("PT_MIFARE_DESFIRE_FILE_ID");
inline const QString FILE_SIZE = QStringLiteral("PT_MIFARE_DESFIRE_FILE_SIZE");
inline const QString FILE_OFFSET = QStringLiteral("PT_MIFARE_DESFIRE_FILE_OFFSET");
} // namespace mfdesfire
namespace nivaroid {
inline const QString KEY = QStringLiteral("PT_NIVARO_ID_KEY");
} // namespace nivaroid
} // namespace scardprofile

} // namespace db

#endif
