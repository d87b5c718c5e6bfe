#pragma once

#include <string>
#include <string_view>

namespace tessaly {

/// The small form of a letter of the Latin, Greek, Cyrillic or Armenian script; any other unit as
/// it is. It depends on no locale, so that a project means the same on every machine.
char16_t toLower(char16_t unit);

std::u16string toLower(std::u16string_view text);

/// True if both texts are the same but for the case of letters.
bool equalIgnoringCase(std::u16string_view a, std::u16string_view b);

} // namespace tessaly
