#ifndef ASNOBODY_H
#define ASNOBODY_H

// Tests run as root, for whom file permissions do not apply. Inside the
// scope of an AsNobody the process acts as the unprivileged user 65534, so
// a read-only file or folder means to it what it means to an operator.
// The files it should read must be readable by that user.

#include <QByteArray>
#include <QFile>
#include <QString>

#include <sys/stat.h>
#include <unistd.h>

class AsNobody
{
public:
    static constexpr uid_t Nobody = 65534;

    AsNobody()
        : m_uid(geteuid())
        , m_gid(getegid())
    {
        // The group first: once the user is dropped it may no longer change it.
        m_active = setegid(Nobody) == 0 && seteuid(Nobody) == 0;
    }
    ~AsNobody()
    {
        if (seteuid(m_uid) != 0 || setegid(m_gid) != 0)
            qFatal("AsNobody: cannot restore the user");
    }
    AsNobody(const AsNobody &) = delete;
    AsNobody &operator=(const AsNobody &) = delete;

    // False when the process may not switch (not root): the test should skip.
    bool isActive() const { return m_active; }

    static void setMode(const QString &path, mode_t mode)
    {
        if (chmod(QFile::encodeName(path).constData(), mode) != 0)
            qFatal("AsNobody: chmod failed");
    }

private:
    uid_t m_uid;
    gid_t m_gid;
    bool m_active = false;
};

#endif
