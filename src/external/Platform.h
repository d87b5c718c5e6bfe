#pragma once

#include "external/DOM.h"
#include "external/FileSystemObject.h"
#include "external/ModalForm.h"
#include "external/PictureStore.h"
#include "external/Ravikit.h"

#include <cstdint>
#include <memory>
#include <string>

namespace tessaly {

/// The look of a message box. The numbers are those of the message boxes' flags.
enum class MsgBoxFlags : std::int32_t {
    Critical = 16,         ///< critical icon, OK
    Exclamation = 48,      ///< exclamation icon, OK
    ExclamationYesNo = 52, ///< exclamation icon, Yes and No
    Information = 64,      ///< information icon, OK
};

enum class MsgBoxAnswer : std::int32_t { Ok = 1, Cancel = 2, Yes = 6, No = 7 };

/// The title of every message box that has no title of its own.
inline constexpr char16_t defaultCaption[] = u"Corvane professional";

/// All that the component asks of the world. A host installs one before it makes its first
/// clProject or WirelessDocument; a host that installs none gets the default one.
class Platform : public virtual Object {
public:
    /// The platform in force: the one installed last, or the default one, made at the first call.
    static std::shared_ptr<Platform> current();

    /// Puts `platform` in force, up to the end of the process. None brings the default one back.
    static void install(std::shared_ptr<Platform> platform);

    /// Drops the default platform if it is all that is left of the component's objects, so that it
    /// alone does not keep the component loaded.
    static void dropIdleDefault();

    /// New objects. One that cannot be made fails.
    virtual std::shared_ptr<IXMLDOMDocument2> newDOMDocument() = 0;
    virtual std::shared_ptr<Ravik> newRavik() = 0;
    virtual std::shared_ptr<Tolmek> newTolmek() = 0;
    virtual std::shared_ptr<FileSystemObject> newFileSystemObject() = 0;
    virtual std::shared_ptr<ModalForm> newModalForm(const FormLayout& layout) = 0;

    /// A modal message box; returns when the user has answered. A line break in `text` is a line
    /// feed.
    virtual MsgBoxAnswer MsgBox(const std::u16string& text, MsgBoxFlags flags,
                                const std::u16string& caption) = 0;

    /// A modal box with one line to type: what the user typed, or the empty string for Cancel.
    virtual std::u16string InputBox(const std::u16string& prompt, const std::u16string& title,
                                    const std::u16string& defaultText) = 0;

    /// Lets the host's pending messages run; returns when none is left. A failure ends what waits:
    /// WirelessDocument::view then gives the switch up, and loses nothing.
    virtual void DoEvents() = 0;

    /// The system's folder for temporary files with a trailing `\`; empty if there is none.
    virtual std::u16string temporaryFolder() = 0;

    virtual Date now() = 0;

    /// The width of `text` in pixels in the device context `hdc`.
    virtual std::int32_t textWidth(std::int32_t hdc, const std::u16string& text) = 0;

    /// The component's own pictures. Never none.
    virtual std::shared_ptr<PictureStore> pictures() = 0;
};

/// The platform for a host that installs none. The component declares it and does not define it:
/// whoever puts the component into a program links the definition beside it.
std::shared_ptr<Platform> makeDefaultPlatform();

} // namespace tessaly
