#include "platform/terminal/Terminal.h"

#include "platform/files/TextCodec.h"
#include "platform/terminal/TerminalText.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace tessaly {

bool Terminal::isAttended() const {
    return isatty(m_input) == 1 && isatty(m_output) == 1;
}

void Terminal::say(std::u16string_view text) const {
    writeToTerminal(m_output, terminalText(text));
}

std::optional<std::u16string> Terminal::readLine() const {
    std::string line;
    for (;;) {
        // One by one, so that what stands after the line is left to the next reader.
        char byte = 0;
        const ssize_t count = hasLeft() ? 0 : read(m_input, &byte, 1);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            say(u"\n");
            return std::nullopt;
        }
        if (byte == '\n') {
            return decodeText(line);
        }
        line += byte;
    }
}

bool Terminal::hasLeft() const {
    std::array<pollfd, 2> awaited = {{{m_left, POLLIN, 0}, {m_input, POLLIN, 0}}};
    while (poll(awaited.data(), awaited.size(), -1) < 0 && errno == EINTR) {
    }
    return (awaited[0].revents & POLLIN) != 0;
}

} // namespace tessaly
