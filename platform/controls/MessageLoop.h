#pragma once

#include <cstddef>
#include <deque>
#include <functional>

namespace tessaly {

/// The messages of a program without windows: work that is put off until somebody lets it run. One
/// thread.
class MessageLoop {
public:
    /// `task` runs in the next DoEvents, after the tasks posted before it.
    void post(std::function<void()> task);

    /// Runs the tasks in order until none is left. Tasks that are posted meanwhile run too, up to
    /// 1,000 of them; the others wait for the next call, so that a task which posts itself again
    /// cannot hold the caller for ever. A task's exception goes to the caller; the tasks after it
    /// stay.
    ///
    /// A task may call DoEvents. Such a call draws on the 1,000 of the outermost one, but runs at
    /// least one task, so that a task which waits for another gets on; 50 calls deep it runs none.
    void DoEvents();

private:
    void runNext();

    std::deque<std::function<void()>> m_tasks;
    std::size_t m_depth = 0;
    std::size_t m_left = 0; ///< how many tasks the outermost call may still run
};

} // namespace tessaly
