#ifndef BUFFEREDLOG_H
#define BUFFEREDLOG_H

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

class QTextBrowser;

/**
 * The log of a progress page. Every line is in the view, with the newest
 * scrolled into view, as soon as append() returns: the host reads the log
 * and its scroll position whenever it likes. What waits is the drawing: a
 * run with a reply per event-loop turn would otherwise repaint the page
 * once per line, which costs more than the tasks themselves.
 *
 * So while lines come, the page's paints are held, and the page paints
 * itself at most every 100 ms (from append() when the run never returns
 * to the event loop, else from a timer), and once more after the last
 * line; the operator sees the label, the bar and the log advance.
 */
class BufferedLog : public QObject
{
    Q_OBJECT
public:
    // view lies on page, which owns the log.
    BufferedLog(QTextBrowser *view, QWidget *page);

    // Adds text as a new paragraph.
    void append(const QString &text);
    void clear();
    QString text() const;

private:
    void holdPaints();
    void releasePaints();

    QTextBrowser *m_view;
    QWidget *m_page;
    bool m_holdingPaints = false;
    QElapsedTimer m_sincePaint;
    QTimer m_timer;
};

#endif
