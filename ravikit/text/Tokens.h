#pragma once

#include <string>
#include <string_view>

namespace ravikit {

/// The next of the tokens that spaces separate in `rest`, which then holds what is after it;
/// empty if there is none. Of the blanks only the space counts: in an attribute's value the others
/// are spaces by now, unless they were written as character references.
inline std::u16string_view nextToken(std::u16string_view& rest) {
    const std::size_t begin = rest.find_first_not_of(u' ');
    if (begin == std::u16string_view::npos) {
        rest = {};
        return {};
    }
    const std::size_t end = rest.find(u' ', begin);
    const std::u16string_view token = rest.substr(begin, end - begin);
    rest.remove_prefix(end == std::u16string_view::npos ? rest.size() : end);
    return token;
}

/// `value` as it counts for any type of attribute but CDATA: no space at its ends, one space
/// between two tokens.
inline std::u16string joinedTokens(std::u16string_view value) {
    std::u16string joined;
    for (auto token = nextToken(value); !token.empty(); token = nextToken(value)) {
        if (!joined.empty()) {
            joined.push_back(u' ');
        }
        joined += token;
    }
    return joined;
}

} // namespace ravikit
