#include "platform/terminal/TerminalForm.h"

#include "util/LetterCase.h"

#include <algorithm>
#include <cstdlib>

namespace tessaly {

namespace {

/// What stands before a button's text where a line is otherwise taken for the text of a box.
constexpr char16_t buttonMark = u'/';

/// "a", "a or b", "a, b or c".
std::u16string alternatives(const std::vector<std::u16string>& words) {
    std::u16string list;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const bool last = i + 1 == words.size();
        list += i == 0 ? u"" : last ? u" or " : u", ";
        list += words[i];
    }
    return list;
}

/// A button's tool tip for somebody who has no mouse.
std::u16string typedTip(const std::u16string& tip, const std::u16string& text,
                        const std::u16string& word) {
    const std::u16string clicking = u"Clicking \"" + text + u"\"";
    return tip.starts_with(clicking) ? u"Typing \"" + word + u"\"" + tip.substr(clicking.size())
                                     : tip;
}

} // namespace

void TerminalForm::show() {
    m_terminal.say(message() + u'\n');
    if (!m_terminal.isAttended()) {
        m_terminal.say(u"(nobody to ask: taken as closed)\n");
        return;
    }
    open();
    tellChoices();
    while (isUp() && (textBox() != nullptr || !choices().empty())) {
        m_terminal.say(question());
        const std::optional<std::u16string> line = m_terminal.readLine();
        if (!line) {
            return;
        }
        if (answer(*line) && isUp()) {
            m_terminal.say(message() + u'\n');
            tellChoices();
        }
    }
}

const HeadlessForm::Control* TerminalForm::textBox() const {
    for (const Control& control : controls()) {
        if (control.isUsable(FormControlKind::TextBox)) {
            return &control;
        }
    }
    return nullptr;
}

/// The visible label that stands in the box's row, next to its left.
const HeadlessForm::Control* TerminalForm::captionOf(const Control& box) const {
    const Control* caption = nullptr;
    for (const Control& control : controls()) {
        const FormControl& label = control.layout;
        const bool inRow = std::abs(label.top - box.layout.top) < box.layout.height;
        if (control.isUsable(FormControlKind::Label) && inRow && label.left < box.layout.left &&
            (caption == nullptr || label.left > caption->layout.left)) {
            caption = &control;
        }
    }
    return caption;
}

/// The visible button, enabled or not, that is next after the box in tab order.
const HeadlessForm::Control* TerminalForm::confirmationOf(const Control& box) const {
    for (const Control* control = &box; control <= &controls().back(); ++control) {
        if (control->layout.kind == FormControlKind::Button && control->visible) {
            return control;
        }
    }
    return nullptr;
}

/// The buttons that can be named now.
std::vector<const HeadlessForm::Control*> TerminalForm::choices() const {
    const Control* box = textBox();
    const Control* confirmation = box == nullptr ? nullptr : confirmationOf(*box);
    std::vector<const Control*> buttons;
    for (const Control& control : controls()) {
        if (control.isUsable(FormControlKind::Button) && &control != confirmation) {
            buttons.push_back(&control);
        }
    }
    return buttons;
}

std::u16string TerminalForm::message() const {
    const Control* box = textBox();
    const Control* caption = box == nullptr ? nullptr : captionOf(*box);
    std::u16string text = title() + u":";
    for (const Control& control : controls()) {
        if (control.layout.kind == FormControlKind::Label && control.visible &&
            &control != caption && !control.text.empty()) {
            text += u' ' + control.text;
        }
    }
    return text;
}

void TerminalForm::tellChoices() const {
    const bool types = textBox() != nullptr;
    for (const Control* button : choices()) {
        const std::u16string text = toLower(button->text);
        const std::u16string word = types ? buttonMark + text : text;
        m_terminal.say(u"  " + word + u": " + typedTip(button->layout.toolTip, text, word) + u'\n');
    }
}

std::u16string TerminalForm::question() const {
    if (const Control* box = textBox()) {
        const Control* caption = captionOf(*box);
        const std::u16string offer = box->text.empty() ? u"" : u" [" + box->text + u"]";
        return (caption == nullptr ? u"Text:" : caption->text) + offer + u' ';
    }
    std::vector<std::u16string> words;
    for (const Control* button : choices()) {
        words.push_back(toLower(button->text));
    }
    return alternatives(words) + u"? ";
}

/// False if `line` was not taken, which has been said.
bool TerminalForm::answer(const std::u16string& line) {
    const Control* box = textBox();
    if (box == nullptr) {
        return press(line);
    }
    if (line.starts_with(buttonMark) && !choices().empty()) {
        return press(line.substr(1));
    }
    return enter(*box, line.empty() ? box->text : line);
}

bool TerminalForm::enter(const Control& box, const std::u16string& line) {
    const std::u16string why = line.empty() ? u"" : objection(line);
    if (!why.empty()) {
        refuse(line, why);
        return false;
    }
    text(box.layout.name, line);
    const Control* button = confirmationOf(box);
    if (button != nullptr && !button->enabled) {
        refuse(line, u"cannot be taken here; please type another");
        return false;
    }
    if (button != nullptr) {
        click(button->layout.name);
    }
    return true;
}

void TerminalForm::refuse(const std::u16string& line, const std::u16string& why) const {
    m_terminal.say(line.empty() ? u"A text is needed here.\n"
                                : u"\"" + line + u"\" " + why + u".\n");
}

bool TerminalForm::press(const std::u16string& word) {
    const std::u16string wanted = toLower(word);
    const Control* found = nullptr;
    std::size_t fitting = 0;
    for (const Control* button : choices()) {
        const std::u16string text = toLower(button->text);
        if (text == wanted) {
            click(button->layout.name);
            return true;
        }
        if (!wanted.empty() && text.starts_with(wanted)) {
            found = button;
            ++fitting;
        }
    }
    if (fitting != 1) {
        return false;
    }
    click(found->layout.name);
    return true;
}

} // namespace tessaly
