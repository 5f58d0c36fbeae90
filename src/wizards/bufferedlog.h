#ifndef BUFFEREDLOG_H
#define BUFFEREDLOG_H

#include <QElapsedTimer>
#include <QObject>
#include <QTextCursor>
#include <QTimer>

class QTextBrowser;

/**
 * The log of a progress page. Every line is in the view's document, with
 * the scroll bar at its maximum, as soon as append() returns: the host
 * reads the log and its scroll position whenever it likes. What waits is
 * the drawing: a run with a reply per event-loop turn would otherwise lay
 * out and repaint the page once per line, which costs more than the tasks
 * themselves.
 *
 * So a line after a quiet spell is laid out and shown as usual, and the
 * lines that follow it within 100 ms are laid out together, with the
 * page's paints held meanwhile. The page paints itself at most every
 * 100 ms (from append() when the run never returns to the event loop, else
 * from a timer) and once more after the last line; the operator sees the
 * label, the bar and the log advance.
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
    // Keeps one edit block open while paints are held: the document takes
    // each line at once and lays them out when the block closes.
    QTextCursor m_batch;
    bool m_holdingPaints = false;
    QElapsedTimer m_sincePaint;
    QTimer m_timer;
};

#endif
