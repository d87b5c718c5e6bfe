#pragma once

#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <string>
#include <system_error>

namespace system_test {

/// The command at a pseudo-terminal, with a script for the person.
class TerminalSession {
public:
    TerminalSession(const std::string& folder, const std::string& arguments) {
        const std::string line = "cd '" + folder + "' && exec " TESSALY_COMMAND " " + arguments;
        m_child = forkpty(&m_terminal, nullptr, nullptr, nullptr);
        if (m_child == 0) {
            std::signal(SIGINT, SIG_DFL); // whoever runs the tests may ignore it
            execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
            _exit(127);
        }
        if (m_child < 0) { // nothing would ever be shown, and every wait take its whole time
            throw std::system_error(errno, std::generic_category(), "no pseudo-terminal");
        }
        // The echo of what is typed would come in between at any place.
        termios settings = {};
        tcgetattr(m_terminal, &settings);
        settings.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(m_terminal, TCSANOW, &settings);
    }
    ~TerminalSession() { close(m_terminal); }
    TerminalSession(const TerminalSession&) = delete;
    TerminalSession& operator=(const TerminalSession&) = delete;

    /// Waits until `text` is shown after what was last waited for. False if it never is.
    bool sees(const std::string& text) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        for (;;) {
            const std::size_t found = shown.find(text, m_seen);
            if (found != std::string::npos) {
                m_seen = found + text.size();
                return true;
            }
            if (std::chrono::steady_clock::now() > end || !readMore()) {
                return false;
            }
        }
    }

    void types(const std::string& keys) const {
        if (write(m_terminal, keys.data(), keys.size()) < 0) {
            perror("types");
        }
    }

    /// Waits for the end; the exit status, or -1 for another end.
    int ends() {
        while (readMore()) {
        }
        int status = 0;
        waitpid(m_child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    std::string shown; ///< all that was shown, line ends as CR LF

private:
    bool readMore() {
        std::array<char, 4096> part{};
        pollfd awaited = {m_terminal, POLLIN, 0};
        const ssize_t count =
            poll(&awaited, 1, 20'000) == 1 ? read(m_terminal, part.data(), part.size()) : 0;
        if (count > 0) {
            shown.append(part.data(), static_cast<std::size_t>(count));
        }
        return count > 0;
    }

    int m_terminal = -1;
    pid_t m_child = -1;
    std::size_t m_seen = 0;
};

} // namespace system_test
