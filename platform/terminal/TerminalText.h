#pragma once

#include <string>
#include <string_view>

namespace tessaly {

/// UTF-8 for a terminal: control characters, save the line feed and the tab, become U+FFFD, so that
/// a file name cannot send the terminal commands.
std::string terminalText(std::u16string_view text);

/// Writes `text` to an open descriptor. A failure is dropped: there is nowhere left to report it.
void writeToTerminal(int descriptor, std::string_view text);

} // namespace tessaly
