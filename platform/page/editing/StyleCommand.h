#pragma once

#include "platform/page/dom/Dom.h"
#include "platform/page/editing/InlineStyle.h"

namespace tessaly::page {

/// Gives the selected text the value. Elements that say otherwise are taken away, and put back
/// around what they hold beside the selection; what is still otherwise is wrapped, as much at a
/// time as stands in one paragraph. The selection stays on its text.
void applyStyle(Dom& dom, InlineStyle style, int value);

/// Gives the selected text the style, or takes it away where all of the text has it.
void toggleStyle(Dom& dom, InlineStyle style);

} // namespace tessaly::page
