#include "authdata.h"

namespace {
AuthData &signedIn()
{
    static AuthData auth;
    return auth;
}
} // namespace

AuthData::AuthData(unsigned int userUid, const QString &login, bool administrator)
    : m_userUid(userUid)
    , m_login(login)
    , m_administrator(administrator)
{
}

void AuthData::setRestriction(const QString &name, bool barred)
{
    m_restrictions.insert(name, barred);
}

AuthData AuthData::current()
{
    return signedIn();
}

void AuthData::setCurrent(const AuthData &auth)
{
    signedIn() = auth;
}
