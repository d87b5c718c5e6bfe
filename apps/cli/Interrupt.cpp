#include "apps/cli/Interrupt.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>

namespace cli {

namespace {

// All that a signal handler can reach.
volatile std::sig_atomic_t requested = 0;
volatile std::sig_atomic_t wake = -1;

void request(int /*signal*/) {
    const int error = errno;
    const std::uint64_t one = 1;
    requested = 1;
    if (write(wake, &one, sizeof one) < 0) {
        errno = error;
    }
}

} // namespace

Interrupt::Interrupt() {
    requested = 0;
    wake = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    struct sigaction action = {};
    action.sa_handler = request;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(SIGINT, nullptr, &m_before);
    if (m_before.sa_handler != SIG_IGN) {
        sigaction(SIGINT, &action, nullptr);
    }
}

Interrupt::~Interrupt() {
    sigaction(SIGINT, &m_before, nullptr);
    close(wake);
    wake = -1;
}

bool Interrupt::isRequested() const {
    return requested != 0;
}

int Interrupt::descriptor() const {
    return wake;
}

} // namespace cli
