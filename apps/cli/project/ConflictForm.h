#pragma once

#include "platform/terminal/TerminalForm.h"

namespace cli {

class CommandPlatform;

/// The component's file-exists dialog, in which the person answers or what they said beforehand.
class ConflictForm final : public tessaly::TerminalForm {
public:
    /// `platform` outlives each showing of the form.
    ConflictForm(const tessaly::FormLayout& layout, tessaly::Terminal terminal,
                 CommandPlatform& platform)
        : TerminalForm(layout, terminal)
        , m_platform(platform) {}

    void show() override;

    using TerminalForm::text;
    void text(const std::u16string& control, const std::u16string& text) override;

protected:
    std::u16string objection(const std::u16string& text) override;

private:
    void overwrite();
    void rename();
    void stop();

    CommandPlatform& m_platform;
};

} // namespace cli
