#ifndef NVDIALOGSUTILS_H
#define NVDIALOGSUTILS_H

#include "nvdialogs_export.h"

#include <nvhash.h>
#include <objectinfo.h>

#include <QList>
#include <QString>
#include <QStringList>

class QLineEdit;
class QWidget;

/** One country of the registry used by the citizenship lists. */
struct NVDIALOGS_EXPORT StateRegistryInfo
{
    QString code;  // three digits with leading zeros, e.g. "004"
    QString name;  // upper-case Russian short name; a translation source
};

/** Stateless helpers shared by the property views and wizards. */
class NVDIALOGS_EXPORT NVDialogsUtils
{
public:
    // Disables the editing controls below parent when any of the objects is
    // a dismissed employee. Never enables anything.
    static void DisableChildrenIfFired(const nivaro::NVHash<unsigned int, nivaro::ObjectInfo> &objects,
                                       QWidget *parent);
    // Enables again exactly what DisableChildrenIfFired turned off below
    // parent, inner widgets included; what a view had disabled itself
    // stays as it was. A view calls it before showing a new selection.
    static void EnableChildrenDisabledIfFired(QWidget *parent);
    // Makes a line edit take at most maxLength characters, says so in its
    // tooltip, and strips control and bidirectional formatting characters
    // from what the user types or pastes.
    static void limitTextInput(QLineEdit *edit, int maxLength);
    // All countries in ascending order of code; a new list on every call.
    static QList<StateRegistryInfo> getStatesRegistry();
    // Codes of the near-abroad countries, listed first in citizenship lists.
    static QStringList getNearAbroadCodes();
    // The name translated in context "NVDialogsUtils"; unchanged when untranslated.
    static QString translateState(const QString &name);

    // The library's debug switch: the card reader manager logs its steps
    // only while it is on (off by default, card work is chatty).
    static void setDebugEnabled(bool enabled);
    static bool debugEnabled();
};

#endif
