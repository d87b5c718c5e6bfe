#pragma once

#include <array>
#include <csignal>

namespace cli {

/// Signals that would end the program in the midst of a file. Ctrl-C, a request to end and a
/// terminal that is closed become a wish to stop, which is remembered; the second of a kind ends
/// the program at once. A pipe that nobody reads and a file that grows too large become failures of
/// the write. One object at a time.
class Interrupt {
public:
    /// A signal that was ignored stays so.
    Interrupt();
    ~Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;
    Interrupt(Interrupt&&) = delete;
    Interrupt& operator=(Interrupt&&) = delete;

    bool isRequested() const;

    /// The signal that asked to stop since the last object was made; 0 for none.
    static int signal();

    /// Can be read from then on.
    int descriptor() const;

private:
    static constexpr std::array<int, 5> signals = {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGXFSZ};

    std::array<struct sigaction, signals.size()> m_before = {};
};

} // namespace cli
