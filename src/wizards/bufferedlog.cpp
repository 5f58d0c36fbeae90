#include "bufferedlog.h"

#include <QScrollBar>
#include <QTextBrowser>
#include <QTextCursor>
#include <QWidget>

namespace {
// Long enough to take many replies of a fast executor, short enough that a
// person sees the log follow the run.
constexpr int FlushIntervalMs = 100;
} // namespace

BufferedLog::BufferedLog(QTextBrowser *view, QWidget *page)
    : QObject(page)
    , m_view(view)
    , m_page(page)
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(FlushIntervalMs);
    connect(&m_timer, &QTimer::timeout, this, &BufferedLog::flush);
}

void BufferedLog::append(const QString &text)
{
    m_waiting.append(text);
    if (m_timer.isActive())
        return;
    m_timer.start();
    // Someone else may hold the page's paints; then they release them.
    if (m_page->updatesEnabled()) {
        m_page->setUpdatesEnabled(false);
        m_holdingPaints = true;
    }
}

void BufferedLog::clear()
{
    m_waiting.clear();
    m_view->clear();
}

QString BufferedLog::text() const
{
    flush();
    return m_view->toPlainText();
}

void BufferedLog::flush() const
{
    if (m_waiting.isEmpty()) {
        releasePaints();
        return;
    }
    // One edit block: the document lays out once for the whole batch.
    QTextCursor batch(m_view->document());
    batch.beginEditBlock();
    for (const QString &line : qAsConst(m_waiting))
        m_view->append(line);
    batch.endEditBlock();
    m_waiting.clear();
    QScrollBar *bar = m_view->verticalScrollBar();
    bar->setValue(bar->maximum());
    releasePaints();
}

void BufferedLog::releasePaints() const
{
    if (!m_holdingPaints)
        return;
    m_holdingPaints = false;
    m_page->setUpdatesEnabled(true);
    // Now, not from the event loop: with replies queued one per turn, the
    // next line would hold the paints again before a posted paint came
    // round, and the bar would stay blank until the run ended.
    m_page->repaint();
}
