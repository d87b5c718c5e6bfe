#pragma once

#include "document/clWMLEventProxy.h"
#include "format/colWMLFormats.h"
#include "util/EventSource.h"
#include "util/Value.h"

#include <cstdint>
#include <memory>
#include <string>

namespace tessaly {

/// The event of a formatter. Nothing raises it: a formatter's changes go out through its proxy.
class IFormatEvents {
public:
    virtual ~IFormatEvents() = default;

    virtual void OnDirty() = 0;
};

/// Publishes a catalogue of formatting commands, and carries commands out on the selection of the
/// view that is showing. The two jobs are independent: `exec` never looks at the catalogue.
class IFormat : public virtual Object {
public:
    /// Carries out one of the nine commands: "Bold", "Italic", "Underline", "Align Left",
    /// "Align Center", "Align Right", "Big Font", "Small Font", "Normal Font". Any other text, also
    /// one that differs in case, does nothing. A missing control or proxy fails with ObjectNotSet.
    ///
    /// In the rich-text control the tags go around the selection, which stays on the same
    /// characters, and one undo record goes through the proxy, last: a failure there leaves the
    /// text changed. "Normal Font" only shows a message box there, and returns when it is closed.
    /// In the page no record is sent.
    virtual void exec(const std::u16string& strFormatting) = 0;

    /// Take a RichTextControl and a BrowserControl, or none; another object fails with
    /// TypeMismatch.
    virtual void MuRtb(const ObjectRef& rtb) = 0;
    virtual void browser(const ObjectRef& browser) = 0;

    /// The live catalogue, the same object at every call.
    virtual std::shared_ptr<colWMLFormats> formats() = 0;

    /// vPLain means the browser control, every other value the rich-text control.
    virtual void view(std::int16_t vw) = 0;

    /// A new picture object for the catalogue's record at `strFormat`, a key or a position from 1:
    /// the icon, or the small bitmap. A record or picture that is not there fails.
    virtual ObjectRef icon(const Value& strFormat) = 0;
    virtual ObjectRef iconSmall(const Value& strFormat) = 0;

    /// `proxy` takes the undo records.
    virtual void init(const std::shared_ptr<clWMLEventProxy>& proxy) = 0;

    virtual EventSource<IFormatEvents>& events() = 0;
};

} // namespace tessaly
