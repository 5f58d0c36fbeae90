#include "settings.h"

#include <QSettings>

namespace {
// Where a host pointed the settings; empty for the application's own.
QString &iniFile()
{
    static QString file;
    return file;
}

QSettings *open()
{
    if (iniFile().isEmpty())
        return new QSettings;
    return new QSettings(iniFile(), QSettings::IniFormat);
}
} // namespace

QVariant Settings::value(const QString &key, const QVariant &defaultValue)
{
    const QScopedPointer<QSettings> s(open());
    return s->value(key, defaultValue);
}

void Settings::setValue(const QString &key, const QVariant &value)
{
    const QScopedPointer<QSettings> s(open());
    s->setValue(key, value);
    s->sync();
}

void Settings::setFileName(const QString &fileName)
{
    iniFile() = fileName;
}

QString Settings::fileName()
{
    const QScopedPointer<QSettings> s(open());
    return s->fileName();
}
