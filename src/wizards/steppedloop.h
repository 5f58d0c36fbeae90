#ifndef STEPPEDLOOP_H
#define STEPPEDLOOP_H

/**
 * Runs the step that sends a page's next task. A reply may arrive inside
 * the signal that sent the task (an executor that answers at once) and ask
 * for the next step there: that step then runs after the current one
 * returns, from a loop here, instead of one stack frame deeper per task,
 * which a queue of thousands of tasks would not survive.
 */
class SteppedLoop
{
public:
    template<typename Step>
    void run(Step step)
    {
        if (m_running) {
            m_again = true;
            return;
        }
        m_running = true;
        do {
            m_again = false;
            step();
        } while (m_again);
        m_running = false;
    }

private:
    bool m_running = false;
    bool m_again = false;
};

#endif
