#pragma once

#include "platform/page/dom/Dom.h"

#include <string>

namespace tessaly::page {

/// Puts the parsed `html` in the place of what `range` holds; after it, `range` is the place
/// after what was put in. An inline element that the range held from end to end is gone with its
/// content; where the range went from one paragraph into another, the rest of the second joins the
/// first. `range` is tracked by `dom`. A fragment that cannot be parsed fails, and nothing has
/// changed.
void paste(Dom& dom, Span& range, const std::u16string& html);

} // namespace tessaly::page
