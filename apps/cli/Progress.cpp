#include "apps/cli/Progress.h"

#include "apps/cli/Printer.h"

#include "platform/terminal/TerminalText.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

namespace cli {

namespace {

constexpr std::chrono::milliseconds quietTime(300);
constexpr std::chrono::milliseconds pace(100);

} // namespace

Progress::Progress(std::string doing, std::size_t total)
    : m_doing(std::move(doing))
    , m_total(total)
    , m_terminal(isSmartTerminal(STDERR_FILENO))
    , m_next(Clock::now() + quietTime) {}

void Progress::step() {
    ++m_done;
    if (!m_terminal || Clock::now() < m_next) {
        return;
    }
    m_next = Clock::now() + pace;
    const std::string line =
        m_doing + ' ' + std::to_string(m_done) + " of " + std::to_string(m_total) + " decks";
    m_shown = std::max(m_shown, line.size());
    tessaly::writeToTerminal(STDERR_FILENO, '\r' + line);
}

void Progress::clear() {
    if (m_shown > 0) {
        tessaly::writeToTerminal(STDERR_FILENO, '\r' + std::string(m_shown, ' ') + '\r');
        m_shown = 0;
    }
}

} // namespace cli
