#pragma once

#include <optional>
#include <string>

/// The way of a deck to its page and back, as the fuzzers ask about it.
namespace fuzz {

/// The page of `deck`; none if it is refused.
std::optional<std::u16string> plainOf(const std::u16string& deck);
/// The deck of `page`; none if it is refused.
std::optional<std::u16string> markupOf(const std::u16string& page);

/// Why `deck` is not well-formed, or else not valid; empty if it is both.
std::string faultOf(const std::u16string& deck, bool valid = true);

/// The page as a browser holds it; none if it is too deep for one.
std::optional<std::u16string> browsed(const std::u16string& page, bool oldStyle);

/// Ends the run unless `holds`, with the texts that it is about.
void expect(bool holds, const char* what, const std::u16string& a = {},
            const std::u16string& b = {}, const std::u16string& c = {});

} // namespace fuzz
