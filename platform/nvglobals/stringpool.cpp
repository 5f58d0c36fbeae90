#include "stringpool.h"

namespace nivaro {

QString StringPool::intern(const char *utf8, int size)
{
    const std::string_view text(utf8, size_t(size));
    const auto it = m_strings.find(text);
    if (it != m_strings.end())
        return it->second;
    m_texts.emplace_back(text);
    const std::string &stored = m_texts.back();
    QString value = QString::fromUtf8(stored.data(), int(stored.size()));
    m_strings.emplace(std::string_view(stored), value);
    return value;
}

} // namespace nivaro
