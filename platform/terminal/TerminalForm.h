#pragma once

#include "platform/controls/HeadlessForm.h"
#include "platform/terminal/Terminal.h"

#include <optional>

namespace tessaly {

/// A form that is shown in words. The visible labels are said; then a person chooses one of the
/// visible, enabled buttons by its text, or a part of it from its start that fits no other. Where a
/// text box is visible they type its text instead, which also presses the next button after the
/// box; the other buttons are then reached by a slash and their text. What the form does not take
/// is asked again. The end of the input closes the form.
///
/// Without a terminal the form says what it would have asked and is closed at once.
class TerminalForm : public HeadlessForm {
public:
    TerminalForm(const FormLayout& layout, Terminal terminal)
        : HeadlessForm(layout)
        , m_terminal(terminal) {}

    void show() override;

protected:
    /// Why `text` is not even to be tried, as "cannot ..." or "is ..."; empty if it may be.
    virtual std::u16string objection(const std::u16string& /*text*/) { return {}; }

private:
    const Control* textBox() const;
    const Control* captionOf(const Control& box) const;
    const Control* confirmationOf(const Control& box) const;
    std::vector<const Control*> choices() const;

    std::u16string message() const;
    void tellChoices() const;
    std::u16string question() const;

    bool answer(const std::u16string& line);
    bool enter(const Control& box, const std::u16string& line);
    void refuse(const std::u16string& line, const std::u16string& why) const;
    bool press(const std::u16string& word);

    Terminal m_terminal;
};

} // namespace tessaly
