#ifndef CUSTOMVALUECOLUMN_H
#define CUSTOMVALUECOLUMN_H

#include "nvdialogs_export.h"

#include <nvhash.h>
#include <nvtypes.h>
#include <objectinfo.h>

#include <QSet>
#include <QString>

#include <functional>
#include <vector>

/**
 * The values of one parameter key over a collection of objects, case-folded
 * once and packed into one array, so that a search for a part of a value
 * walks contiguous memory instead of looking the key up in every record and
 * folding every value again. Built on the search thread from a snapshot of
 * the collection; the employee search keeps one per key between searches.
 * A plain value, read-only once built.
 */
class NVDIALOGS_EXPORT CustomValueColumn
{
public:
    // Returns true when the work should stop; polled every 100 objects.
    using Cancelled = std::function<bool()>;

    CustomValueColumn() = default;

    // Files the key's value (the empty text where absent) of every object.
    // False when cancelled part way; the column is then incomplete.
    bool build(const nivaro::NVHash<nivaro::TYPE_ID, nivaro::ObjectInfo> &objects, const QString &key,
               const Cancelled &cancelled = Cancelled());

    // The uids whose value contains `text`, case ignored as
    // QString::contains(text, Qt::CaseInsensitive) ignores it. When
    // cancelled it returns what it found in the objects it went through.
    QSet<unsigned int> search(const QString &text, const Cancelled &cancelled = Cancelled()) const;

    int size() const { return int(m_uids.size()); }
    QString key() const { return m_key; }

    // What the column was built from, for the owner's cache.
    quint64 revision = 0;

    // One case for every comparison: what QString's case-insensitive
    // comparison folds to.
    static QString fold(const QString &text) { return text.toCaseFolded(); }

private:
    QString m_key;
    std::vector<nivaro::TYPE_ID> m_uids;
    std::vector<quint32> m_ends;    // end of each value in m_text
    std::vector<char16_t> m_text;   // the folded values one after another
};

#endif
