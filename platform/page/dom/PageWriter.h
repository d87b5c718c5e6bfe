#pragma once

#include "platform/page/dom/Node.h"

#include <string>

namespace tessaly::page {

/// How a browser writes its page down.
enum class Writing : std::uint8_t {
    Modern, ///< small letters, every value in quotes
    Older,  ///< names in capitals, quotes where they are needed, blocks on new lines
};

/// The element as HTML, its own tags included.
std::u16string outerHtml(const Node& element, Writing writing);

/// What stands inside the element as HTML.
std::u16string innerHtml(const Node& element, Writing writing);

} // namespace tessaly::page
