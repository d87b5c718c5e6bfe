#pragma once

#include "ravikit/convert/Elements.h"
#include "ravikit/convert/PageTags.h"

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
};

/// How `element` stands there. `isIrregular`: where HTML could not have it as what it is.
const Shape& shapeOf(Element element, bool isIrregular);

/// How one stands there that is nothing to see by itself, in a line of text.
const Shape& neutralShape();

} // namespace ravikit
