#pragma once

#include "external/Platform.h"
#include "platform/terminal/Terminal.h"

#include <string>

namespace tessaly {

/// Message boxes and input boxes of a program without windows. Without a terminal nobody
/// is there to answer, and the box says which answer was taken for granted.
///
/// That answer is No, since a question asks leave to do something that cannot be undone, and the
/// empty text for an input box, as if it had been cancelled. One question differs: the one that
/// follows upon a cancelled input box. It can only ask whether to give up, and No would lead back
/// to the same box for ever; it is answered Yes. Any other dialog and `workGoesOn` in between end
/// that, so that the Yes never meets a question about something else.
class TerminalDialogs {
public:
    explicit TerminalDialogs(Terminal terminal)
        : m_terminal(terminal) {}

    /// A question is answered with y or n; Enter alone, and the end of the input, give the answer
    /// that is taken for granted.
    MsgBoxAnswer MsgBox(const std::u16string& text, MsgBoxFlags flags,
                        const std::u16string& caption);

    /// The line typed; `defaultText` for Enter alone, the empty text for the end of the input.
    std::u16string InputBox(const std::u16string& prompt, const std::u16string& title,
                            const std::u16string& defaultText);

    /// To be called when something else than a dialog was asked of the platform.
    void workGoesOn() { m_justDeclined = false; }

private:
    void say(const std::u16string& caption, const std::u16string& text) const;
    MsgBoxAnswer ask(MsgBoxAnswer assumed) const;

    Terminal m_terminal;
    bool m_justDeclined = false;
};

} // namespace tessaly
