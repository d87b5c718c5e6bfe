#pragma once

#include "external/Platform.h"
#include "platform/controls/MessageLoop.h"
#include "platform/terminal/TerminalDialogs.h"

#include <memory>

namespace tessaly {

/// The platform of a program without windows: files of the POSIX system, dialogs and
/// forms as text on standard error and standard input, Ravikit's objects. A host with windows of
/// its own derives from it and overrides what it does better.
class DefaultPlatform : public Platform {
public:
    DefaultPlatform();
    /// With dialogs on another terminal.
    explicit DefaultPlatform(Terminal terminal);

    std::shared_ptr<IXMLDOMDocument2> newDOMDocument() override;
    std::shared_ptr<Ravik> newRavik() override;
    std::shared_ptr<Tolmek> newTolmek() override;
    std::shared_ptr<FileSystemObject> newFileSystemObject() override;
    std::shared_ptr<ModalForm> newModalForm(const FormLayout& layout) override;

    MsgBoxAnswer MsgBox(const std::u16string& text, MsgBoxFlags flags,
                        const std::u16string& caption) override;
    std::u16string InputBox(const std::u16string& prompt, const std::u16string& title,
                            const std::u16string& defaultText) override;
    void DoEvents() override;

    /// The environment's TMPDIR, otherwise `\tmp\`. Empty if TMPDIR cannot be said as a path of the
    /// component.
    std::u16string temporaryFolder() override;

    Date now() override;

    /// 8 pixels a character, whatever `hdc` is: there is no device to measure on.
    std::int32_t textWidth(std::int32_t hdc, const std::u16string& text) override;

    std::shared_ptr<PictureStore> pictures() override;

    /// The loop that DoEvents runs, for headless controls and for work that a host puts off.
    std::shared_ptr<MessageLoop> messageLoop() const { return m_loop; }

private:
    Terminal m_terminal;
    TerminalDialogs m_dialogs;
    std::shared_ptr<MessageLoop> m_loop;
    std::shared_ptr<PictureStore> m_pictures;
};

} // namespace tessaly
