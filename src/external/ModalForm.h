#pragma once

#include "util/EventSource.h"
#include "util/Object.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tessaly {

enum class FormControlKind { Picture, Label, Button, TextBox };

/// One control of a form. Positions and sizes are in twips, 1440 to the inch.
struct FormControl {
    std::u16string name;
    FormControlKind kind = FormControlKind::Label;
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::u16string text;
    std::u16string toolTip;
    ObjectRef
        picture; ///< what a Picture control shows: an icon of the component, a tessaly::Picture
};

/// A window with the fixed border of a dialog, without boxes to minimise or maximise it: its title,
/// its client area in twips, its controls in tab order. No button answers to Enter or Escape.
struct FormLayout {
    std::u16string title;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::vector<FormControl> controls;
};

/// What a form reports of its controls, each by its name.
class ModalFormEvents {
public:
    virtual ~ModalFormEvents() = default;

    virtual void OnClick(const std::u16string& control) = 0;
    /// The text of a text box has changed, also by code.
    virtual void OnChange(const std::u16string& control) = 0;
};

/// A modal window that the host draws. Its logic stays with the component.
class ModalForm : public virtual Object {
public:
    /// Shows the window and returns when it is hidden, by a handler through `hide` or by the user,
    /// who closed it.
    virtual void show() = 0;
    virtual void hide() = 0;

    /// Of the control called `control`. An unknown name fails with InvalidArgument.
    virtual std::u16string text(const std::u16string& control) = 0;
    virtual void text(const std::u16string& control, const std::u16string& text) = 0;
    virtual void visible(const std::u16string& control, bool visible) = 0;
    virtual void enabled(const std::u16string& control, bool enabled) = 0;

    virtual EventSource<ModalFormEvents>& events() = 0;
};

} // namespace tessaly
