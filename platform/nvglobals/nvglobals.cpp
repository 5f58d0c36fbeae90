#include "nvglobals.h"

#include "dbparams.h"
#include "objectinfo.h"
#include "objecttypes.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

QString NVGlobals::withoutControlCharacters(const QString &text, bool keepLineBreaks)
{
    auto unwanted = [keepLineBreaks](QChar c) {
        const ushort u = c.unicode();
        if (u < 0x20 || (u >= 0x7F && u < 0xA0))
            return !(keepLineBreaks && (u == '\n' || u == '\t'));
        // The bidirectional formatting characters: one of them is enough to
        // show a name backwards.
        return u == 0x061C || u == 0x200E || u == 0x200F || (u >= 0x202A && u <= 0x202E)
            || (u >= 0x2066 && u <= 0x2069);
    };
    if (std::none_of(text.cbegin(), text.cend(), unwanted))
        return text;
    QString clean;
    clean.reserve(text.size());
    for (const QChar c : text) {
        if (!unwanted(c))
            clean += c;
    }
    return clean;
}

QString NVGlobals::objectName(const nivaro::ObjectInfo &object)
{
    if (object.typeName() != nivaro::OT_WORKER)
        return withoutControlCharacters(object.parameter(db::common::NAME));

    QString name = object.parameter(db::worker::LAST_NAME).trimmed();
    for (const QString *key : {&db::worker::FIRST_NAME, &db::worker::MIDDLE_NAME}) {
        const QString part = object.parameter(*key).trimmed();
        if (part.isEmpty())
            continue;
        if (!name.isEmpty())
            name += QLatin1Char(' ');
        name += part;
    }
    return withoutControlCharacters(name);
}

namespace {

bool parseFacility(const QString &text, int facilityBits, quint64 *id)
{
    static const QRegularExpression separator(QStringLiteral("[,/\\-. ]"));
    const QStringList parts = text.split(separator, Qt::SkipEmptyParts);
    if (parts.size() != 2)
        return false;
    bool okFacility = false;
    bool okNumber = false;
    const quint64 facility = parts.at(0).toULongLong(&okFacility);
    const quint64 number = parts.at(1).toULongLong(&okNumber);
    if (!okFacility || !okNumber || facility >= (quint64(1) << facilityBits) || number > 0xFFFF)
        return false;
    *id = (facility << 16) | number;
    return true;
}

} // namespace

quint64 NVGlobals::cardId(const QString &text, int format)
{
    const QString t = text.trimmed();
    bool ok = false;
    switch (format) {
    case CardDecimal: {
        const quint64 id = t.toULongLong(&ok, 10);
        return ok ? id : 0;
    }
    case CardHex: {
        const quint64 id = t.toULongLong(&ok, 16);
        return ok ? id : 0;
    }
    case CardDecimal24: {
        const quint64 id = t.toULongLong(&ok, 10);
        return ok && id <= 0xFFFFFF ? id : 0;
    }
    case CardWiegand26:
    case CardWiegand34: {
        quint64 id = 0;
        if (parseFacility(t, format == CardWiegand26 ? 8 : 16, &id))
            return id;
        id = t.toULongLong(&ok, 10);
        return ok ? id : 0;
    }
    default:
        return 0;
    }
}

QString NVGlobals::cardIdText(quint64 id, int format)
{
    switch (format) {
    case CardHex:
        return QString::number(id, 16).toUpper();
    case CardDecimal24:
        return QString::number(id & 0xFFFFFF);
    case CardWiegand26:
        return QStringLiteral("%1,%2").arg((id >> 16) & 0xFF, 3, 10, QLatin1Char('0')).arg(id & 0xFFFF, 5, 10, QLatin1Char('0'));
    case CardWiegand34:
        return QStringLiteral("%1,%2").arg((id >> 16) & 0xFFFF, 5, 10, QLatin1Char('0')).arg(id & 0xFFFF, 5, 10, QLatin1Char('0'));
    case CardDecimal:
    default:
        return QString::number(id);
    }
}

QString NVGlobals::fingerName(int finger)
{
    static const char *const names[] = {
        QT_TRANSLATE_NOOP("NVGlobals", "Правый большой"),
        QT_TRANSLATE_NOOP("NVGlobals", "Правый указательный"),
        QT_TRANSLATE_NOOP("NVGlobals", "Правый средний"),
        QT_TRANSLATE_NOOP("NVGlobals", "Правый безымянный"),
        QT_TRANSLATE_NOOP("NVGlobals", "Правый мизинец"),
        QT_TRANSLATE_NOOP("NVGlobals", "Левый большой"),
        QT_TRANSLATE_NOOP("NVGlobals", "Левый указательный"),
        QT_TRANSLATE_NOOP("NVGlobals", "Левый средний"),
        QT_TRANSLATE_NOOP("NVGlobals", "Левый безымянный"),
        QT_TRANSLATE_NOOP("NVGlobals", "Левый мизинец"),
        QT_TRANSLATE_NOOP("NVGlobals", "Правая ладонь"),
        QT_TRANSLATE_NOOP("NVGlobals", "Левая ладонь"),
        QT_TRANSLATE_NOOP("NVGlobals", "Лицо"),
    };
    if (finger < 0 || finger >= int(sizeof(names) / sizeof(names[0])))
        return QStringLiteral("Неизвестно");
    return QString::fromUtf8(names[finger]);
}
