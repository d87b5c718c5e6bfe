#pragma once

#include "external/Platform.h"

#include <optional>
#include <string>

namespace tessaly {

/// Message boxes and input boxes of a program without windows. They are shown on one descriptor and
/// answered on another; without a terminal on both nobody is there to answer, and the box says
/// which answer was taken for granted.
///
/// That answer is No, since a question asks leave to do something that cannot be undone, and the
/// empty text for an input box, as if it had been cancelled. One question differs: the one that
/// follows upon a cancelled input box. It can only ask whether to give up, and No would lead back
/// to the same box for ever; it is answered Yes. Any other dialog and `workGoesOn` in between end
/// that, so that the Yes never meets a question about something else.
class TerminalDialogs {
public:
    /// The descriptors stay open as long as this object is in use.
    explicit TerminalDialogs(int input, int output)
        : m_input(input)
        , m_output(output) {}

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
    bool isAttended() const;
    void say(const std::u16string& caption, const std::u16string& text) const;
    MsgBoxAnswer ask(MsgBoxAnswer assumed) const;
    std::optional<std::u16string> readLine() const;

    int m_input;
    int m_output;
    bool m_justDeclined = false;
};

} // namespace tessaly
