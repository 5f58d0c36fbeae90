#ifndef NIVARO_NVGLOBALS_H
#define NIVARO_NVGLOBALS_H

#include "nvglobals_export.h"

#include <QString>

namespace nivaro {
class ObjectInfo;
}

/**
 * Helpers on objects shared by every view: display names, card numbers and
 * finger names. Stateless.
 */
class NVGLOBALS_EXPORT NVGlobals
{
public:
    /**
     * How card numbers are shown and typed (the database setting
     * PT_CARD_VIEW_FORMAT, decimal). The full number is what readers report
     * and what card objects store (PT_CARD_NUMBER, decimal).
     */
    enum CardViewFormat {
        CardDecimal = 0,     // the full number in decimal: "4294967295"
        CardWiegand26 = 1,   // facility (8 bits) and number (16 bits): "045,12345"
        CardHex = 2,         // the full number in hexadecimal: "2D3039"
        CardDecimal24 = 3,   // the low 24 bits in decimal, as Em-Marine cards print it: "2961465"
        CardWiegand34 = 4,   // facility (16 bits) and number (16 bits): "00045,12345"
    };

    // An employee's surname, first name and patronymic joined by spaces
    // (empty parts left out); any other object's PT_NAME. Without control
    // characters, whatever the record holds.
    static QString objectName(const nivaro::ObjectInfo &object);

    /**
     * The card number that `text`, typed in view format `format`, stands
     * for: what a card search looks up. The facility formats take "," "/"
     * "-" "." or a space between facility and number; a text without one is
     * read as a full decimal number. Text that is no number, a part that
     * overflows its bits, or an unknown format give 0.
     */
    static quint64 cardId(const QString &text, int format);
    // The inverse: the full number as a person sees it in that format.
    static QString cardIdText(quint64 id, int format);

    // The text without control characters (line breaks and tabs kept when
    // asked) and without the bidirectional formatting characters, which
    // can make a name read backwards. The same text when there are none.
    static QString withoutControlCharacters(const QString &text, bool keepLineBreaks = false);

    // The untranslated name of a finger or hand index (context "NVGlobals").
    static QString fingerName(int finger);
};

#endif
