#pragma once

#include "platform/page/dom/Node.h"

namespace tessaly::page {

/// Without content and end tag, such as `br`.
bool isVoid(const Node& element);

/// Its text stands in HTML as it is, such as `script`.
bool holdsRawText(const Node& element);

/// Shown on lines of its own, such as `p`; also the parts of a table.
bool isBlock(const Node& element);

/// Holds other elements and no text of its own, such as `tr` or `ul`.
bool holdsNoText(const Node& element);

/// Its text is no part of the flow of the page, such as that of a `script` or of a `select`.
bool isApartFromFlow(const Node& element);

/// A block that holds one paragraph of text, such as `p` or `li`.
bool isParagraph(const Node& element);

/// Never shown to a reader, such as `style`.
bool isUnseenByName(const Node& element);

} // namespace tessaly::page
