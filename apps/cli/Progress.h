#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace cli {

/// How far a long operation has come: one line on standard error that is written over and gone at
/// the end. Nothing is shown without a terminal, nor of an operation that ends soon.
class Progress {
public:
    /// `doing` is "saving" or the like.
    Progress(std::string doing, std::size_t total);
    ~Progress() { clear(); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    Progress(Progress&&) = delete;
    Progress& operator=(Progress&&) = delete;

    /// One deck more is done.
    void step();

    /// Takes the line away, for something else to be written there. The next `step` brings it back.
    void clear();

private:
    using Clock = std::chrono::steady_clock;

    std::string m_doing;
    std::size_t m_total;
    std::size_t m_done = 0;
    std::size_t m_shown = 0; ///< length of the line that stands there
    bool m_terminal;
    Clock::time_point m_next;
};

} // namespace cli
