#include "customvaluecolumn.h"

#include <string_view>

namespace {
// How many objects go by between two looks at the cancel flag: a lock per
// hundred objects costs nothing beside the comparisons, and a cancelled
// search stops within microseconds.
constexpr int PollEvery = 100;
} // namespace

bool CustomValueColumn::build(const nivaro::NVHash<nivaro::TYPE_ID, nivaro::ObjectInfo> &objects, const QString &key,
                              const Cancelled &cancelled)
{
    m_key = key;
    m_uids.clear();
    m_ends.clear();
    m_text.clear();
    m_uids.reserve(std::size_t(objects.size()));
    m_ends.reserve(std::size_t(objects.size()));
    int n = 0;
    for (auto it = objects.cbegin(); it != objects.cend(); ++it) {
        if (++n % PollEvery == 0 && cancelled && cancelled())
            return false;
        const QString value = fold(it->parameter(key));
        const auto *begin = reinterpret_cast<const char16_t *>(value.utf16());
        m_text.insert(m_text.end(), begin, begin + value.size());
        m_uids.push_back(it.key());
        m_ends.push_back(quint32(m_text.size()));
    }
    return true;
}

QSet<unsigned int> CustomValueColumn::search(const QString &text, const Cancelled &cancelled) const
{
    QSet<unsigned int> found;
    if (m_uids.empty())
        return found;
    const QString folded = fold(text);
    const std::u16string_view needle(reinterpret_cast<const char16_t *>(folded.utf16()), std::size_t(folded.size()));
    const char16_t *base = m_text.data();
    const std::size_t count = m_uids.size();
    std::size_t begin = 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (i && i % PollEvery == 0 && cancelled && cancelled())
            break;
        const std::size_t end = m_ends[i];
        const std::u16string_view value(base + begin, end - begin);
        begin = end;
        if (value.size() >= needle.size() && value.find(needle) != std::u16string_view::npos)
            found.insert(m_uids[i]);
    }
    return found;
}
