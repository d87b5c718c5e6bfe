#pragma once

#include <cstddef>
#include <deque>
#include <functional>

namespace tessaly {

/// The messages of a program without windows: work that is put off until somebody lets it run. One
/// thread.
class MessageLoop {
public:
    /// `task` runs in the next DoEvents, behind the tasks posted before it.
    void post(std::function<void()> task);

    /// Runs the tasks in order until none is left. Tasks that are posted meanwhile run too, up to
    /// 1,000 of them; the others wait for the next call, so that a task which posts itself again
    /// cannot hold the caller for ever. A task's exception goes to the caller; the tasks behind it
    /// stay. A task may call DoEvents; 50 calls deep it returns without running anything.
    void DoEvents();

private:
    void runNext();

    std::deque<std::function<void()>> m_tasks;
    std::size_t m_depth = 0;
};

} // namespace tessaly
