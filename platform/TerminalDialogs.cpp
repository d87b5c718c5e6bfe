#include "platform/TerminalDialogs.h"

#include "platform/TerminalText.h"
#include "platform/TextCodec.h"
#include "util/LetterCase.h"

#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <utility>

namespace tessaly {

std::u16string TerminalDialogs::InputBox(const std::u16string& prompt, const std::u16string& title,
                                         const std::u16string& defaultText) {
    say(title, prompt);
    std::u16string answer;
    if (isAttended()) {
        const std::string offer = defaultText.empty() ? "" : " [" + terminalText(defaultText) + "]";
        writeToTerminal(m_output, offer + ": ");
        const auto line = readLine();
        answer = line && line->empty() ? defaultText : line.value_or(std::u16string());
    } else {
        writeToTerminal(m_output, "\n(nobody to ask: taken as cancelled)\n");
    }
    m_justDeclined = answer.empty();
    return answer;
}

MsgBoxAnswer TerminalDialogs::MsgBox(const std::u16string& text, MsgBoxFlags flags,
                                     const std::u16string& caption) {
    const bool givesUp = std::exchange(m_justDeclined, false);
    say(caption, text);
    if (flags != MsgBoxFlags::ExclamationYesNo) {
        writeToTerminal(m_output, "\n");
        return MsgBoxAnswer::Ok;
    }
    const MsgBoxAnswer assumed = givesUp ? MsgBoxAnswer::Yes : MsgBoxAnswer::No;
    if (isAttended()) {
        return ask(assumed);
    }
    writeToTerminal(m_output, givesUp ? "\n(nobody to ask: answered Yes)\n"
                                      : "\n(nobody to ask: answered No)\n");
    return assumed;
}

bool TerminalDialogs::isAttended() const {
    return isatty(m_input) == 1 && isatty(m_output) == 1;
}

void TerminalDialogs::say(const std::u16string& caption, const std::u16string& text) const {
    writeToTerminal(m_output, terminalText(caption) + ": " + terminalText(text));
}

MsgBoxAnswer TerminalDialogs::ask(MsgBoxAnswer assumed) const {
    for (;;) {
        writeToTerminal(m_output, assumed == MsgBoxAnswer::Yes ? " [Y/n] " : " [y/N] ");
        const auto line = readLine();
        const std::u16string answer = toLower(line.value_or(std::u16string()));
        if (answer.empty()) {
            return assumed;
        }
        if (answer == u"y" || answer == u"yes") {
            return MsgBoxAnswer::Yes;
        }
        if (answer == u"n" || answer == u"no") {
            return MsgBoxAnswer::No;
        }
    }
}

std::optional<std::u16string> TerminalDialogs::readLine() const {
    std::string line;
    for (;;) {
        // One by one, so that what stands behind the line is left to the next reader.
        char byte = 0;
        const ssize_t count = read(m_input, &byte, 1);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            writeToTerminal(m_output, "\n");
            return std::nullopt;
        }
        if (byte == '\n') {
            return decodeText(line);
        }
        line += byte;
    }
}

} // namespace tessaly
