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
 *
 * While lines wait, the page's repaints wait with them: its label and bar
 * keep their values current, and the page paints itself at once with
 * each batch, so the operator sees the run advance.
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
    // Shows the waiting lines now.
    void flush() const;

private:
    void releasePaints() const;

    QTextBrowser *m_view;
    QWidget *m_page;
    mutable bool m_holdingPaints = false;
    mutable QStringList m_waiting;
    QTimer m_timer;
};

#endif
