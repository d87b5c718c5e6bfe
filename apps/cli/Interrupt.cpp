#include "apps/cli/Interrupt.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>

namespace cli {

namespace {

// All that a signal handler can reach.
volatile std::sig_atomic_t requested = 0;
volatile std::sig_atomic_t wake = -1;

void request(int signal) {
    const int error = errno;
    const std::uint64_t one = 1;
    requested = signal;
    if (write(wake, &one, sizeof one) < 0) {
        errno = error;
    }
}

} // namespace

Interrupt::Interrupt() {
    requested = 0;
    wake = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    for (std::size_t i = 0; i < signals.size(); ++i) {
        const bool stops = signals[i] != SIGPIPE && signals[i] != SIGXFSZ;
        struct sigaction action = {};
        action.sa_handler = stops ? request : SIG_IGN;
        action.sa_flags = stops ? static_cast<int>(SA_RESETHAND) : 0;
        sigaction(signals[i], nullptr, &m_before[i]);
        if (m_before[i].sa_handler != SIG_IGN) {
            sigaction(signals[i], &action, nullptr);
        }
    }
}

Interrupt::~Interrupt() {
    for (std::size_t i = 0; i < signals.size(); ++i) {
        sigaction(signals[i], &m_before[i], nullptr);
    }
    close(wake);
    wake = -1;
}

bool Interrupt::isRequested() const {
    return requested != 0;
}

int Interrupt::signal() {
    return requested;
}

int Interrupt::descriptor() const {
    return wake;
}

} // namespace cli
