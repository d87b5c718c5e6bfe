#pragma once

#include "external/HTMLDocument.h"

#include <cstdint>
#include <memory>
#include <string>

namespace tessaly {

/// How a page writes its HTML down, as browsers of two ages do.
enum class PageWriting {
    Modern, ///< `<p align="center">`
    Older,  ///< `<P align=center>`: names in capitals, quotes where needed, blocks on new lines
};

/// A browser's page for a test or a host without a screen. What a user does with the mouse is here
/// for the host to call.
///
/// Elements and ranges stay usable whatever becomes of the page, also after it is gone. Text that
/// is nested too deeply for a parser to finish in good time is refused with a failure, and leaves
/// the page as it was.
class HeadlessPage : public HTMLDocument {
public:
    /// A place in the page: after `offset` UTF-16 units of the text inside `element`, counted
    /// from 0 over all the text in it, at its end if it has fewer.
    struct Position {
        std::shared_ptr<IHTMLElement> element;
        std::int32_t offset = 0;
    };

    /// Selects the text between two places, in whichever order they stand. An element that is not
    /// in this page now fails with InvalidArgument, here and in the members below.
    virtual void select(const Position& from, const Position& to) = 0;

    /// Selects all that `element` holds.
    virtual void selectContents(const std::shared_ptr<IHTMLElement>& element) = 0;

    /// Puts the caret there, with no text selected.
    virtual void placeCaret(const Position& position) = 0;

    /// Selects the first occurrence of `text` within a paragraph of the body, compared as it
    /// stands in the page, exact in case. False, and no change, if there is none.
    virtual bool selectText(const std::u16string& text) = 0;

    /// Selects from the first occurrence of `first` to the end of the next one of `last` after
    /// it, in whichever paragraphs. False, and no change, if one is not there.
    virtual bool selectText(const std::u16string& first, const std::u16string& last) = 0;

    /// Selects `element`, such as a picture, as an object.
    virtual void selectObject(const std::shared_ptr<IHTMLElement>& element) = 0;

    virtual void clearSelection() = 0;
};

/// A new page with `html` loaded into it: a whole page or a piece of one. It has a body always.
std::shared_ptr<HeadlessPage> makePage(const std::u16string& html,
                                       PageWriting writing = PageWriting::Modern);

} // namespace tessaly
