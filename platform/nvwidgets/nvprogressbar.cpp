#include "nvprogressbar.h"

NVProgressBar::NVProgressBar(QWidget *parent)
    : QProgressBar(parent)
{
}

void NVProgressBar::failed()
{
    paintAs(Failed);
}

void NVProgressBar::successed()
{
    paintAs(Succeeded);
}

void NVProgressBar::resetState()
{
    paintAs(Running);
}

void NVProgressBar::paintAs(State state)
{
    if (state == m_state)
        return;
    m_state = state;
    // The chunk is drawn in the Highlight colour by every built-in style.
    QPalette p = palette();
    switch (state) {
    case Failed:
        p.setColor(QPalette::Highlight, QColor(0xc6, 0x28, 0x28));
        break;
    case Succeeded:
        p.setColor(QPalette::Highlight, QColor(0x2e, 0x7d, 0x32));
        break;
    case Running:
        p = QPalette();
        break;
    }
    setPalette(p);
}
