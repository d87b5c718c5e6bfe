#pragma once

#include "platform/page/dom/Dom.h"

#include <optional>

namespace tessaly::page {

/// What the formatting commands change. The value of a style is 1 or 0 for on or off; for FontSize
/// it is 1 to 7, or `otherSize` for a size that is none of these.
enum class InlineStyle : std::uint8_t { Bold, Italic, Underline, FontSize };

inline constexpr int otherSize = 0;

/// The value of text that nothing around it gives another one.
int initialValue(InlineStyle style);

/// The value that `element` gives to the text in it; nothing if it leaves it as it is.
std::optional<int> valueGivenBy(const Node& element, InlineStyle style);

/// True if `dropStyle` takes away what the element gives, as from a `b`; not so for a heading,
/// which is bold by its nature.
bool canDropStyle(const Node& element, InlineStyle style);

/// A new element that gives what `element` gives and nothing else.
Node& carrierOf(Dom& dom, const Node& element, InlineStyle style);

/// Takes the style away from `element`: its attribute, or the tag itself, which becomes a `span`
/// if it has other attributes and goes if it has none.
void dropStyle(Dom& dom, Node& element, InlineStyle style);

/// A new element that gives `value`, as browsers make it; null where there is none, since an
/// underline cannot be taken away from inside.
Node* newCarrier(Dom& dom, InlineStyle style, int value);

} // namespace tessaly::page
