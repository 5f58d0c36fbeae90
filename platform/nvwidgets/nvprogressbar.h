#ifndef NVPROGRESSBAR_H
#define NVPROGRESSBAR_H

#include "nvwidgets_export.h"

#include <QProgressBar>

/**
 * The progress bar of the wizards' progress pages. Besides its value it
 * shows how the run went: failed() paints the bar red, successed() green,
 * so that an operator sees a failure even after the bar has reached 100 %.
 */
class NVWIDGETS_EXPORT NVProgressBar : public QProgressBar
{
    Q_OBJECT
public:
    enum State { Running, Failed, Succeeded };
    Q_ENUM(State)

    explicit NVProgressBar(QWidget *parent = nullptr);

    State state() const { return m_state; }

public Q_SLOTS:
    void failed();
    void successed();
    // Back to the style's own colour, as at the start of a run.
    void resetState();

private:
    void paintAs(State state);

    State m_state = Running;
};

#endif
