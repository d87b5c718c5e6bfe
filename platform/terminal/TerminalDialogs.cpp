#include "platform/terminal/TerminalDialogs.h"

#include "util/LetterCase.h"

#include <optional>
#include <utility>

namespace tessaly {

std::u16string TerminalDialogs::InputBox(const std::u16string& prompt, const std::u16string& title,
                                         const std::u16string& defaultText) {
    say(title, prompt);
    std::u16string answer;
    if (m_terminal.isAttended()) {
        m_terminal.say((defaultText.empty() ? u"" : u" [" + defaultText + u"]") + u": ");
        const auto line = m_terminal.readLine();
        answer = line && line->empty() ? defaultText : line.value_or(std::u16string());
    } else {
        m_terminal.say(u"\n(nobody to ask: taken as cancelled)\n");
    }
    m_justDeclined = answer.empty();
    return answer;
}

MsgBoxAnswer TerminalDialogs::MsgBox(const std::u16string& text, MsgBoxFlags flags,
                                     const std::u16string& caption) {
    const bool givesUp = std::exchange(m_justDeclined, false);
    say(caption, text);
    if (flags != MsgBoxFlags::ExclamationYesNo) {
        m_terminal.say(u"\n");
        return MsgBoxAnswer::Ok;
    }
    const MsgBoxAnswer assumed = givesUp ? MsgBoxAnswer::Yes : MsgBoxAnswer::No;
    if (m_terminal.isAttended()) {
        return ask(assumed);
    }
    m_terminal.say(givesUp ? u"\n(nobody to ask: answered Yes)\n"
                           : u"\n(nobody to ask: answered No)\n");
    return assumed;
}

void TerminalDialogs::say(const std::u16string& caption, const std::u16string& text) const {
    m_terminal.say(caption + u": " + text);
}

MsgBoxAnswer TerminalDialogs::ask(MsgBoxAnswer assumed) const {
    for (;;) {
        m_terminal.say(assumed == MsgBoxAnswer::Yes ? u" [Y/n] " : u" [y/N] ");
        const auto line = m_terminal.readLine();
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

} // namespace tessaly
