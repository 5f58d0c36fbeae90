#ifndef NIVARO_SORTEDSET_H
#define NIVARO_SORTEDSET_H

#include <QSet>

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <vector>

/**
 * A set of values kept as one sorted vector: what a prefix query of the
 * search index answers. Building it from sorted runs, intersecting and
 * uniting are linear merges, and it costs four bytes per uid, where a hash
 * set would allocate a node for each; a search over a million employees
 * returns tens of thousands of uids.
 */
template<typename T>
class SortedSet
{
public:
    using const_iterator = typename std::vector<T>::const_iterator;
    using value_type = T;

    SortedSet() = default;
    SortedSet(std::initializer_list<T> values)
        : m_values(values)
    {
        normalise();
    }

    // Takes values in any order, with repeats.
    static SortedSet fromValues(std::vector<T> values)
    {
        SortedSet set;
        set.m_values = std::move(values);
        set.normalise();
        return set;
    }
    static SortedSet fromQSet(const QSet<T> &values)
    {
        return fromValues(std::vector<T>(values.cbegin(), values.cend()));
    }
    QSet<T> toQSet() const
    {
        QSet<T> set;
        set.reserve(size());
        for (const T &v : m_values)
            set.insert(v);
        return set;
    }

    const_iterator begin() const { return m_values.cbegin(); }
    const_iterator end() const { return m_values.cend(); }
    const_iterator cbegin() const { return m_values.cbegin(); }
    const_iterator cend() const { return m_values.cend(); }
    int size() const { return int(m_values.size()); }
    int count() const { return size(); }
    bool isEmpty() const { return m_values.empty(); }
    bool contains(const T &value) const { return std::binary_search(m_values.cbegin(), m_values.cend(), value); }
    void clear() { m_values.clear(); }
    const std::vector<T> &values() const { return m_values; }

    SortedSet &intersect(const SortedSet &other)
    {
        std::vector<T> out;
        out.reserve(std::min(m_values.size(), other.m_values.size()));
        std::set_intersection(m_values.cbegin(), m_values.cend(), other.m_values.cbegin(), other.m_values.cend(),
                              std::back_inserter(out));
        m_values.swap(out);
        return *this;
    }
    SortedSet &unite(const SortedSet &other)
    {
        std::vector<T> out;
        out.reserve(m_values.size() + other.m_values.size());
        std::set_union(m_values.cbegin(), m_values.cend(), other.m_values.cbegin(), other.m_values.cend(),
                       std::back_inserter(out));
        m_values.swap(out);
        return *this;
    }

    bool operator==(const SortedSet &other) const { return m_values == other.m_values; }
    bool operator!=(const SortedSet &other) const { return m_values != other.m_values; }

private:
    template<typename>
    friend class TrieStatic;

    void normalise()
    {
        std::sort(m_values.begin(), m_values.end());
        m_values.erase(std::unique(m_values.begin(), m_values.end()), m_values.end());
    }

    std::vector<T> m_values;
};

#endif
