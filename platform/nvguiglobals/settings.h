#ifndef NVSETTINGS_H
#define NVSETTINGS_H

#include "nvguiglobals_export.h"

#include <QString>
#include <QVariant>

/**
 * The client's settings store (keys such as
 * "accessctlview/schedules_show_shifts"), over QSettings: the application's
 * own settings file unless a host points it elsewhere with setFileName.
 */
class NVGUIGLOBALS_EXPORT Settings
{
public:
    static QVariant value(const QString &key, const QVariant &defaultValue = QVariant());
    static void setValue(const QString &key, const QVariant &value);
    // An INI file to use instead of the application's settings; empty to go back.
    static void setFileName(const QString &fileName);
    static QString fileName();
};

#endif
