#pragma once

#include <csignal>

namespace cli {

/// Ctrl-C as a wish to stop: the first one is remembered, a second one ends the program at once.
/// One object at a time.
class Interrupt {
public:
    /// Where Ctrl-C was ignored it stays so.
    Interrupt();
    ~Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;
    Interrupt(Interrupt&&) = delete;
    Interrupt& operator=(Interrupt&&) = delete;

    bool isRequested() const;

    /// Can be read from then on.
    int descriptor() const;

private:
    struct sigaction m_before = {};
};

} // namespace cli
