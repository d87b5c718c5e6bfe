#pragma once

#include "ravikit/convert/Elements.h"
#include "ravikit/html/PageTags.h"

#include <string_view>

namespace ravikit {

/// How an element stands on the page. Nothing that loads, runs or leads anywhere is among them, and
/// none that a browser would move elsewhere from where we write it.
struct Shape {
    PageTag tag = PageTag::Span;
    std::u16string_view start; ///< the start tag but for what differs between elements
    std::u16string_view end;
    std::u16string_view caption = {}; ///< around the attribute that is shown: the start tag
    std::u16string_view captionEnd = {};
    PageTag captionTag = PageTag::None;
    std::u16string_view value = {}; ///< or else the attribute of the page that shows it
};

/// Where an element stands, as far as its shape depends on it.
struct ShapePlace {
    bool isIrregular = false; ///< HTML could not have it as what it is
    bool isInLine = false;    ///< of a key: among text
    bool isInLink = false;    ///< of a link: in another one
};
const Shape& shapeOf(Element element, const ShapePlace& place);

/// What lets a caret, a selection and a deletion be at the border of a card: a picture of one
/// pixel, which is nothing in the deck.
inline constexpr std::u16string_view roomAttribute = u"data-room";
inline constexpr std::u16string_view room =
    u"<img alt=\"\" data-room=\"\" style=\"display:block;width:1px;height:1px\">";
inline constexpr std::u16string_view emptyRoom = u"<p data-room=\"\"><br></p>";
/// What a host may write into a link so that the browser keeps it when its text is deleted.
inline constexpr char16_t emptyLink = u'\u200B';

/// How one stands there that is nothing to see by itself, in a line of text.
const Shape& neutralShape();

} // namespace ravikit
