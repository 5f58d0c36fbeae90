#ifndef AUTHDATA_H
#define AUTHDATA_H

#include "nvguiglobals_export.h"

#include <QMap>
#include <QString>

/**
 * The operator signed in to the client: who it is and which personal-data
 * items (db::database::json names, items and groups) it is barred from.
 * The host sets it at sign-in; views read it through GUIPassFuncs.
 */
class NVGUIGLOBALS_EXPORT AuthData
{
public:
    AuthData() = default;
    AuthData(unsigned int userUid, const QString &login, bool administrator = false);

    unsigned int userUid() const { return m_userUid; }
    QString login() const { return m_login; }
    bool isAdministrator() const { return m_administrator; }

    // true for a name: the operator may not see or edit that item. Naming a
    // group ("personal_document") bars every item of it.
    void setRestriction(const QString &name, bool barred);
    QMap<QString, bool> restrictions() const { return m_restrictions; }

    static AuthData current();
    static void setCurrent(const AuthData &auth);

private:
    unsigned int m_userUid = 0;
    QString m_login;
    bool m_administrator = false;
    QMap<QString, bool> m_restrictions;
};

#endif
