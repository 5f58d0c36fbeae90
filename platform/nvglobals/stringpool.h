#ifndef NIVARO_STRINGPOOL_H
#define NIVARO_STRINGPOOL_H

#include "nvglobals_export.h"

#include <QString>

#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>

namespace nivaro {

/**
 * Hands out one shared QString per distinct UTF-8 text, so that records
 * decoded in bulk share their parameter keys instead of each holding a copy.
 * Look-ups do not allocate. Not thread-safe; meant to live for one load.
 */
class NVGLOBALS_EXPORT StringPool
{
public:
    StringPool() = default;
    StringPool(const StringPool &) = delete;
    StringPool &operator=(const StringPool &) = delete;

    QString intern(const char *utf8, int size);
    int size() const;

    /**
     * A parameter value of `key` (a text this pool handed out). Values of
     * keys that repeat (names, flags, codes, dates) are shared; a key whose
     * values turn out mostly distinct (numbers of documents, phones) stops
     * being pooled, so the pool never grows a copy of every unique value.
     */
    QString internValue(const QString &key, const char *utf8, int size);

private:
    struct Texts
    {
        // The map's keys view into texts; a deque never moves its elements.
        std::deque<std::string> texts;
        std::unordered_map<std::string_view, QString> strings;
        QString intern(const char *utf8, int size);
    };
    struct ValueStats
    {
        Texts pool;
        int seen = 0;
        bool pooled = true;
    };

    Texts m_keys;
    // By the address of the key's characters: keys come from this pool, so
    // equal keys share them.
    std::unordered_map<const void *, ValueStats> m_values;
};

} // namespace nivaro

#endif
