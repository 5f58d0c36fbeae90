#ifndef STEPPEDLOOP_H
#define STEPPEDLOOP_H

#include <deque>
#include <functional>
#include <utility>

/**
 * Runs the steps that send a page's next task. A reply may arrive inside
 * the signal that sent the task (an executor that answers at once) and ask
 * for the next step there: that step then runs after the current one
 * returns, from a loop here, instead of one stack frame deeper per task,
 * which a queue of thousands of tasks would not survive. Steps run in the
 * order asked for, each whole, so what a step emits after sending a task
 * still comes after that send, as it does with an executor that answers
 * from the event loop.
 */
class SteppedLoop
{
public:
    void run(std::function<void()> step)
    {
        m_waiting.push_back(std::move(step));
        if (m_running)
            return;
        m_running = true;
        while (!m_waiting.empty()) {
            const std::function<void()> next = std::move(m_waiting.front());
            m_waiting.pop_front();
            next();
        }
        m_running = false;
    }

private:
    bool m_running = false;
    std::deque<std::function<void()>> m_waiting;
};

#endif
