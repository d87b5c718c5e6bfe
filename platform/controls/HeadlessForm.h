#pragma once

#include "external/ModalForm.h"

#include <string>
#include <vector>

namespace tessaly {

/// A form without a window: it keeps the state of its controls. What it means to show it is left to
/// the classes that derive from it.
class HeadlessForm : public ModalForm {
public:
    explicit HeadlessForm(const FormLayout& layout);

    void hide() override { m_up = false; }

    std::u16string text(const std::u16string& control) override;
    void text(const std::u16string& control, const std::u16string& text) override;
    void visible(const std::u16string& control, bool visible) override;
    void enabled(const std::u16string& control, bool enabled) override;

    EventSource<ModalFormEvents>& events() override { return m_events; }

    /// What the last `visible` and `enabled` set; True before. An unknown name fails with
    /// InvalidArgument.
    bool isVisible(const std::u16string& control);
    bool isEnabled(const std::u16string& control);

protected:
    struct Control {
        FormControl layout;
        std::u16string text;
        bool visible = true;
        bool enabled = true;

        bool isUsable(FormControlKind kind) const {
            return layout.kind == kind && visible && enabled;
        }
    };

    const std::u16string& title() const { return m_title; }
    const std::vector<Control>& controls() const { return m_controls; }

    /// True from `open` until a handler hides the form.
    bool isUp() const { return m_up; }
    void open() { m_up = true; }

    /// As a click on the button would; without effect if it is hidden or disabled.
    void click(const std::u16string& button);

private:
    Control& find(const std::u16string& name);

    std::u16string m_title;
    std::vector<Control> m_controls; ///< in tab order; keeps its size
    EventSource<ModalFormEvents> m_events;
    bool m_up = false;
};

} // namespace tessaly
