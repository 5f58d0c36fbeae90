#include "bufferedlog.h"

#include <QScrollBar>
#include <QTextBrowser>
#include <QWidget>

namespace {
// Often enough that a person sees the run advance, rarely enough that a
// fast executor's thousands of lines cost a few paints.
constexpr int PaintIntervalMs = 100;
} // namespace

BufferedLog::BufferedLog(QTextBrowser *view, QWidget *page)
    : QObject(page)
    , m_view(view)
    , m_page(page)
    , m_batch(view->document())
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(PaintIntervalMs);
    connect(&m_timer, &QTimer::timeout, this, &BufferedLog::releasePaints);
}

namespace {
void scrollToEnd(QTextBrowser *view)
{
    QScrollBar *bar = view->verticalScrollBar();
    bar->setValue(bar->maximum());
}
} // namespace

void BufferedLog::append(const QString &text)
{
    m_view->append(text);
    scrollToEnd(m_view);
    if (!m_holdingPaints) {
        holdPaints();
    } else if (m_sincePaint.hasExpired(PaintIntervalMs)) {
        // The run has not returned to the event loop since the last paint.
        releasePaints();
        holdPaints();
    }
}

void BufferedLog::clear()
{
    releasePaints();
    m_view->clear();
}

QString BufferedLog::text() const
{
    return m_view->toPlainText();
}

void BufferedLog::holdPaints()
{
    // Someone else may hold the page's paints; then they release them.
    if (!m_page->updatesEnabled())
        return;
    m_page->setUpdatesEnabled(false);
    m_batch.beginEditBlock();
    m_holdingPaints = true;
    m_sincePaint.start();
    m_timer.start();
}

void BufferedLog::releasePaints()
{
    if (!m_holdingPaints)
        return;
    m_holdingPaints = false;
    m_timer.stop();
    m_batch.endEditBlock();
    scrollToEnd(m_view);
    m_page->setUpdatesEnabled(true);
    // Now, not from the event loop: with replies queued one per turn, the
    // next line would hold the paints again before a posted paint came
    // round, and the bar would stay blank until the run ended.
    m_page->repaint();
}
