#ifndef BUFFEREDLOG_H
#define BUFFEREDLOG_H

#include <QObject>
#include <QStringList>
#include <QTimer>

class QTextBrowser;

/**
 * The log of a progress page. Lines reach the view in batches: a run with
 * a reply per event-loop turn would otherwise lay out and repaint the whole
 * view once per line, which costs more than the tasks themselves. Every
 * line still ends up in the view, in order, with the newest in view; text()
 * and clear() see the lines not yet shown.
 */
class BufferedLog : public QObject
{
    Q_OBJECT
public:
    explicit BufferedLog(QTextBrowser *view, QObject *parent = nullptr);

    // Adds text as a new paragraph.
    void append(const QString &text);
    void clear();
    QString text() const;
    // Shows the waiting lines now.
    void flush() const;

private:
    QTextBrowser *m_view;
    mutable QStringList m_waiting;
    QTimer m_timer;
};

#endif
