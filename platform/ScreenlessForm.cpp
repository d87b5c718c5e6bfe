#include "platform/ScreenlessForm.h"

#include "platform/TerminalText.h"
#include "util/Failure.h"

#include <algorithm>

namespace tessaly {

ScreenlessForm::ScreenlessForm(const FormLayout& layout, int output)
    : m_title(layout.title)
    , m_output(output) {
    m_controls.reserve(layout.controls.size());
    for (const FormControl& control : layout.controls) {
        m_controls.push_back({control.name, control.kind, control.text});
    }
}

void ScreenlessForm::show() {
    std::u16string message = m_title + u":";
    for (const Control& control : m_controls) {
        if (control.kind == FormControlKind::Label && control.visible && !control.text.empty()) {
            message += u' ' + control.text;
        }
    }
    writeToTerminal(m_output, terminalText(message) +
                                  "\n(no screen to show this form on: taken as closed)\n");
}

std::u16string ScreenlessForm::text(const std::u16string& control) {
    return find(control).text;
}

void ScreenlessForm::text(const std::u16string& control, const std::u16string& text) {
    Control& found = find(control);
    if (found.text == text) {
        return;
    }
    found.text = text;
    if (found.kind == FormControlKind::TextBox) {
        m_events.raise(&ModalFormEvents::OnChange, control);
    }
}

void ScreenlessForm::visible(const std::u16string& control, bool visible) {
    find(control).visible = visible;
}

void ScreenlessForm::enabled(const std::u16string& control, bool enabled) {
    find(control).enabled = enabled;
}

bool ScreenlessForm::isVisible(const std::u16string& control) {
    return find(control).visible;
}

bool ScreenlessForm::isEnabled(const std::u16string& control) {
    return find(control).enabled;
}

ScreenlessForm::Control& ScreenlessForm::find(const std::u16string& name) {
    const auto found = std::find_if(m_controls.begin(), m_controls.end(),
                                    [&](const Control& control) { return control.name == name; });
    if (found == m_controls.end()) {
        throw Failure(FailureCode::InvalidArgument);
    }
    return *found;
}

} // namespace tessaly
