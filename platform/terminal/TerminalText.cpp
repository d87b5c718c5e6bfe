#include "platform/terminal/TerminalText.h"

#include "platform/files/TextCodec.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>

namespace tessaly {

namespace {

bool isCommand(char16_t unit) {
    const bool c0 = unit < 0x20 && unit != u'\n' && unit != u'\t';
    return c0 || (unit >= 0x7F && unit < 0xA0);
}

} // namespace

std::string terminalText(std::u16string_view text) {
    std::u16string harmless(text);
    std::replace_if(harmless.begin(), harmless.end(), isCommand, char16_t{0xFFFD});
    return encodeUtf8(harmless);
}

void writeToTerminal(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = write(descriptor, text.data(), text.size());
        if (count >= 0) {
            text.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            return;
        }
    }
}

} // namespace tessaly
