#pragma once

#include "platform/page/dom/Place.h"

#include <string>

namespace tessaly::page {

/// The text that a reader sees inside `element`, its lines ended by a line feed: white space
/// collapsed but in `pre`, each block on lines of its own, a line between paragraphs, tabs between
/// the cells of a table. What is hidden, scripts and styles are left out, unless `element` itself
/// is hidden: then it is all its characters.
std::u16string renderedText(const Node& element);

/// The same for a stretch of the page.
std::u16string renderedText(const Span& span);

} // namespace tessaly::page
