#ifndef REFERENCEINDEX_H
#define REFERENCEINDEX_H

// The plain ordered map of value sets, with its reverse map, that the search
// index must answer exactly like: the tests compare the two on random work
// loads, the benchmark measures both.

#include <QMap>
#include <QMultiHash>
#include <QSet>
#include <QString>

struct ReferenceIndex
{
    QMap<QString, QSet<unsigned>> forward;
    QMultiHash<unsigned, QString> reverse;

    void add(const QString &key, unsigned value)
    {
        forward[key].insert(value);
        if (!reverse.values(value).contains(key))
            reverse.insert(value, key);
    }
    void remove(unsigned value)
    {
        for (const QString &key : reverse.values(value)) {
            auto it = forward.find(key);
            it->remove(value);
            if (it->isEmpty())
                forward.erase(it);
        }
        reverse.remove(value);
    }
    bool contains(const QString &prefix, QSet<unsigned> &result) const
    {
        result.clear();
        if (prefix.isEmpty())
            return false;
        for (auto it = forward.lowerBound(prefix); it != forward.cend() && it.key().startsWith(prefix); ++it)
            result.unite(*it);
        return !result.isEmpty();
    }
};

#endif
