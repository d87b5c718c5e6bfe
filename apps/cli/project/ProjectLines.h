#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace cli {

/// The names of the decks that the text of a project file lists, in order.
std::vector<std::u16string> documentsIn(std::u16string_view text);

/// The first line of `text`, without its end.
std::u16string_view firstLineOf(std::u16string_view text);

/// As a project's name counts: a project has none if that is blank.
inline bool isBlank(std::u16string_view text) {
    return text.find_first_not_of(u' ') == text.npos;
}

} // namespace cli
