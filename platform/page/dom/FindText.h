#pragma once

#include "platform/page/dom/Place.h"

#include <cstddef>
#include <optional>
#include <string>

namespace tessaly::page {

/// The place after `units` units of the text inside `element`, its end if there are fewer, and
/// never between the halves of a surrogate pair. Between two texts the place is at the start of
/// the second, unless `atEnd` asks for the end of the first.
Place placeInText(Node& element, std::size_t units, bool atEnd);

/// Where `first` stands in the texts of `root`, and where `last` next stands after it: the span
/// from the start of the one to the end of the other. Nothing if one is not found or empty. Texts
/// are compared as they stand, exact in case, and a match does not go beyond its paragraph.
std::optional<Span> findText(Node& root, const std::u16string& first, const std::u16string& last);

/// The span of the first occurrence of `text`.
std::optional<Span> findText(Node& root, const std::u16string& text);

} // namespace tessaly::page
