#pragma once

#include <string>
#include <string_view>

namespace tessaly {

/// What `unit` is where the case of letters does not count: Unicode's simple case folding, by which
/// a letter becomes its small form, with hardly an exception. It depends on no locale, so that a
/// project means the same on every machine; the dotted and the dotless i of Turkish stay as they
/// are.
char16_t toLower(char16_t unit);

/// The same of a text, letters beyond the first plane included. The length stays.
std::u16string toLower(std::u16string_view text);

/// True if both texts are the same but for the case of letters.
bool equalIgnoringCase(std::u16string_view a, std::u16string_view b);

} // namespace tessaly
