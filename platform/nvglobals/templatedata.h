#ifndef NIVARO_TEMPLATEDATA_H
#define NIVARO_TEMPLATEDATA_H

#include "nvglobals_export.h"
#include "nvtypes.h"

#include <QByteArray>
#include <QDataStream>
#include <QDateTime>
#include <QMetaType>

namespace nivaro {

/** One biometric template of an employee, as written to cards. */
struct NVGLOBALS_EXPORT _TEMPLATE_DATA
{
    // Template kinds the card data block knows.
    enum Type {
        Fingerprint = 2001,
        PalmVein = 2,
        Face = 13,
        FingerVein = 3,
    };

    quint32 id = 0;
    TYPE_ID worker = 0;
    int type = 0;
    quint16 finger = 0;   // finger or hand index, see NVGlobals::fingerName
    QByteArray data;
    QDateTime created;

    bool operator==(const _TEMPLATE_DATA &other) const;
    bool operator!=(const _TEMPLATE_DATA &other) const { return !(*this == other); }
};

NVGLOBALS_EXPORT QDataStream &operator<<(QDataStream &out, const _TEMPLATE_DATA &tpl);
NVGLOBALS_EXPORT QDataStream &operator>>(QDataStream &in, _TEMPLATE_DATA &tpl);

} // namespace nivaro

Q_DECLARE_METATYPE(nivaro::_TEMPLATE_DATA)

#endif
