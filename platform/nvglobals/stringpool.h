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
    int size() const { return int(m_strings.size()); }

private:
    // The map's keys view into m_texts; a deque never moves its elements.
    std::deque<std::string> m_texts;
    std::unordered_map<std::string_view, QString> m_strings;
};

} // namespace nivaro

#endif
