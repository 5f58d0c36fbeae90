#ifndef NIVARO_NVHASH_H
#define NIVARO_NVHASH_H

#include <QMultiHash>

namespace nivaro {

/**
 * The keyed container of records handed between the store and the views.
 * A multi-hash, so that a selection may name a uid more than once; callers
 * take the distinct uids with uniqueKeys().
 */
template<typename Key, typename T>
class NVHash : public QMultiHash<Key, T>
{
public:
    NVHash() = default;
    NVHash(std::initializer_list<std::pair<Key, T>> list)
        : QMultiHash<Key, T>(list)
    {
    }
    NVHash(const QHash<Key, T> &other) // NOLINT(google-explicit-constructor): a QHash is an NVHash
        : QMultiHash<Key, T>(other)
    {
    }
};

} // namespace nivaro

#endif
