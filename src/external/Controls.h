#pragma once

#include "external/HTMLDocument.h"
#include "util/EventSource.h"
#include "util/Object.h"

#include <cstdint>
#include <memory>
#include <string>

namespace tessaly {

/// The host's text control, which shows the markup view. Positions and lengths are in UTF-16 units,
/// positions from 0.
///
/// It serves one document at a time: WirelessDocument::MuRtb says how it is handed to the next.
class RichTextControl : public virtual Object {
public:
    /// The whole text, also while the control is hidden. Writing replaces all of it.
    virtual std::u16string Text() = 0;
    virtual void Text(const std::u16string& text) = 0;

    /// Shown means that the control holds the current text.
    virtual bool Visible() = 0;
    virtual void Visible(bool visible) = 0;

    virtual std::int32_t SelStart() = 0;
    virtual void SelStart(std::int32_t start) = 0;

    virtual std::int32_t SelLength() = 0;
    virtual void SelLength(std::int32_t length) = 0;

    /// The selected text, empty if none. Writing replaces the selection.
    virtual std::u16string SelText() = 0;
    virtual void SelText(const std::u16string& text) = 0;
};

/// What a browser control reports of its navigations.
class BrowserControlEvents {
public:
    virtual ~BrowserControlEvents() = default;

    /// A navigation starts.
    virtual void BeforeNavigate2() = 0;
    /// It has ended. Delivered while the host's message loop runs.
    virtual void NavigateComplete2() = 0;
};

/// The host's browser control, which shows the plain view. The host has loaded a document with a
/// body into it before it is lent. It serves one document at a time: WirelessDocument::MuRtb says
/// how it is handed to the next.
class BrowserControl : public virtual Object {
public:
    /// The live HTML document, never none while one is loaded. It is to be fetched for each use:
    /// a navigation replaces it.
    virtual std::shared_ptr<HTMLDocument> Document() = 0;

    virtual void Visible(bool visible) = 0;

    virtual EventSource<BrowserControlEvents>& events() = 0;
};

/// The host's list bar. The component passes the reference on and calls nothing on it.
class ListBarControl : public virtual Object {};

} // namespace tessaly
