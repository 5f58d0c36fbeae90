#include "stringpool.h"

namespace nivaro {

namespace {
// How often a key's values are looked at, and how many distinct ones in
// that many make it not worth pooling.
constexpr int CheckEvery = 512;
constexpr double MostlyDistinct = 0.5;
} // namespace

QString StringPool::Texts::intern(const char *utf8, int size)
{
    const std::string_view text(utf8, size_t(size));
    const auto it = strings.find(text);
    if (it != strings.end())
        return it->second;
    texts.emplace_back(text);
    const std::string &stored = texts.back();
    QString value = QString::fromUtf8(stored.data(), int(stored.size()));
    strings.emplace(std::string_view(stored), value);
    return value;
}

QString StringPool::intern(const char *utf8, int size)
{
    return m_keys.intern(utf8, size);
}

int StringPool::size() const
{
    return int(m_keys.strings.size());
}

QString StringPool::internValue(const QString &key, const char *utf8, int size)
{
    ValueStats &stats = m_values[key.constData()];
    if (!stats.pooled)
        return QString::fromUtf8(utf8, size);
    QString value = stats.pool.intern(utf8, size);
    if (++stats.seen % CheckEvery == 0 && double(stats.pool.strings.size()) > MostlyDistinct * stats.seen) {
        stats.pooled = false;
        stats.pool = Texts();
    }
    return value;
}

} // namespace nivaro
