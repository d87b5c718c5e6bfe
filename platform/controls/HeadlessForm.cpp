#include "platform/controls/HeadlessForm.h"

#include "util/Failure.h"

#include <algorithm>

namespace tessaly {

HeadlessForm::HeadlessForm(const FormLayout& layout)
    : m_title(layout.title) {
    m_controls.reserve(layout.controls.size());
    for (const FormControl& control : layout.controls) {
        m_controls.push_back({control, control.text});
    }
}

std::u16string HeadlessForm::text(const std::u16string& control) {
    return find(control).text;
}

void HeadlessForm::text(const std::u16string& control, const std::u16string& text) {
    Control& found = find(control);
    if (found.text == text) {
        return;
    }
    found.text = text;
    if (found.layout.kind == FormControlKind::TextBox) {
        m_events.raise(&ModalFormEvents::OnChange, control);
    }
}

void HeadlessForm::visible(const std::u16string& control, bool visible) {
    find(control).visible = visible;
}

void HeadlessForm::enabled(const std::u16string& control, bool enabled) {
    find(control).enabled = enabled;
}

bool HeadlessForm::isVisible(const std::u16string& control) {
    return find(control).visible;
}

bool HeadlessForm::isEnabled(const std::u16string& control) {
    return find(control).enabled;
}

void HeadlessForm::click(const std::u16string& button) {
    if (find(button).isUsable(FormControlKind::Button)) {
        m_events.raise(&ModalFormEvents::OnClick, button);
    }
}

HeadlessForm::Control& HeadlessForm::find(const std::u16string& name) {
    const auto found =
        std::find_if(m_controls.begin(), m_controls.end(),
                     [&](const Control& control) { return control.layout.name == name; });
    if (found == m_controls.end()) {
        throw Failure(FailureCode::InvalidArgument);
    }
    return *found;
}

} // namespace tessaly
