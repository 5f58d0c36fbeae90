#include "guipassfuncs.h"

#include "authdata.h"

#include <dbparams.h>

QMap<QString, bool> GUIPassFuncs::getPersonalDataRestrictions()
{
    using namespace db::database::json;
    static const QStringList groups = {PERSONAL_GENERAL, PERSONAL_DOCUMENT, PERSONAL_CONTACT, PERSONAL_MESSAGING};
    static const QStringList items = {
        PERSONAL_GENERAL_NAME,     PERSONAL_GENERAL_PATRONYMIC, PERSONAL_GENERAL_SEX,     PERSONAL_GENERAL_BIRTHDATE,
        PERSONAL_GENERAL_CITIZENSHIP, PERSONAL_DOCUMENT_TYPE,   PERSONAL_DOCUMENT_SERIES, PERSONAL_DOCUMENT_NUMBER,
        PERSONAL_DOCUMENT_INN,     PERSONAL_DOCUMENT_SNILS,     PERSONAL_CONTACT_PHONE,   PERSONAL_CONTACT_EMAIL,
        PERSONAL_CONTACT_ADDRESS,  PERSONAL_MESSAGING_PHONE,    PERSONAL_MESSAGING_EMAIL,
    };

    QMap<QString, bool> result;
    const AuthData auth = AuthData::current();
    const QMap<QString, bool> own = auth.restrictions();
    for (const QString &item : items) {
        bool barred = false;
        if (!auth.isAdministrator()) {
            barred = own.value(item, false);
            // An item belongs to the group whose name starts it.
            for (const QString &group : groups) {
                if (item.startsWith(group + QLatin1Char('_')) && own.value(group, false))
                    barred = true;
            }
        }
        result.insert(item, barred);
    }
    return result;
}
