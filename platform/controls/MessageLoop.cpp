#include "platform/controls/MessageLoop.h"

#include <utility>

namespace tessaly {

namespace {

constexpr std::size_t mostPostedMeanwhile = 1'000;
constexpr std::size_t deepest = 50;

/// Counts a call for as long as it lasts, however it ends.
class Nested {
public:
    explicit Nested(std::size_t& depth)
        : m_depth(depth) {
        ++m_depth;
    }
    ~Nested() { --m_depth; }
    Nested(const Nested&) = delete;
    Nested& operator=(const Nested&) = delete;
    Nested(Nested&&) = delete;
    Nested& operator=(Nested&&) = delete;

private:
    std::size_t& m_depth;
};

} // namespace

void MessageLoop::post(std::function<void()> task) {
    m_tasks.push_back(std::move(task));
}

void MessageLoop::DoEvents() {
    if (m_depth == deepest) {
        return;
    }
    if (m_depth == 0) {
        m_left = m_tasks.size() + mostPostedMeanwhile;
    }
    const Nested nested(m_depth);
    for (bool first = true; !m_tasks.empty() && (first || m_left > 0); first = false) {
        runNext();
    }
}

void MessageLoop::runNext() {
    const std::function<void()> task = std::move(m_tasks.front());
    m_tasks.pop_front();
    m_left -= m_left > 0 ? 1 : 0;
    task();
}

} // namespace tessaly
