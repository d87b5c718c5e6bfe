#pragma once

#include "external/ModalForm.h"

#include <string>
#include <vector>

namespace tessaly {

/// A form where there is no screen to draw it on. It keeps the state of its controls, and to show
/// it means to say on a descriptor what it would have asked and to come back at once, as if the
/// user had closed the window.
class ScreenlessForm : public ModalForm {
public:
    /// `output` stays open as long as the form is in use.
    ScreenlessForm(const FormLayout& layout, int output);

    void show() override;
    /// Without effect: the form is never up.
    void hide() override {}

    std::u16string text(const std::u16string& control) override;
    void text(const std::u16string& control, const std::u16string& text) override;
    void visible(const std::u16string& control, bool visible) override;
    void enabled(const std::u16string& control, bool enabled) override;

    EventSource<ModalFormEvents>& events() override { return m_events; }

    /// What the last `visible` and `enabled` set; True before. An unknown name fails with
    /// InvalidArgument.
    bool isVisible(const std::u16string& control);
    bool isEnabled(const std::u16string& control);

private:
    struct Control {
        std::u16string name;
        FormControlKind kind;
        std::u16string text;
        bool visible = true;
        bool enabled = true;
    };

    Control& find(const std::u16string& name);

    std::u16string m_title;
    std::vector<Control> m_controls;
    EventSource<ModalFormEvents> m_events;
    int m_output;
};

} // namespace tessaly
