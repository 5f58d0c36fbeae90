#ifndef PENDINGSAVES_H
#define PENDINGSAVES_H

#include <QHash>
#include <QList>
#include <QString>

/**
 * The saves a property view has sent and not yet heard back about. Replies
 * come in the order the tasks went out, and a failure names no object, so
 * it answers the oldest save still out.
 */
class PendingSaves
{
public:
    using Changes = QHash<QString, QString>;

    // A later save of the same object replaces what it wrote, and keeps
    // the place of the first in the order of replies.
    void add(unsigned int uid, const Changes &changes)
    {
        if (!m_changes.contains(uid))
            m_order.append(uid);
        m_changes.insert(uid, changes);
    }

    // Matches a reply (uid, or 0 for a failure) to its save; false when
    // no save is out for it.
    bool take(unsigned int reply, unsigned int *answered, Changes *changes)
    {
        *answered = reply;
        if (reply == 0)
            *answered = m_order.isEmpty() ? 0 : m_order.takeFirst();
        else
            m_order.removeOne(reply);
        const auto it = m_changes.find(*answered);
        if (it == m_changes.end())
            return false;
        *changes = it.value();
        m_changes.erase(it);
        return true;
    }

    bool isEmpty() const { return m_changes.isEmpty(); }
    void clear()
    {
        m_changes.clear();
        m_order.clear();
    }

private:
    QHash<unsigned int, Changes> m_changes;
    QList<unsigned int> m_order; // exactly the keys of m_changes
};

#endif
