#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ravikit {

/// The code point that `digits` name, which stand between `&#` and `;`: decimal, or hexadecimal
/// after an `x`. None if they are no number of that kind; a number beyond Unicode comes back as
/// 0x110000, which is no Char.
std::optional<char32_t> characterNumber(std::u16string_view digits);

/// The character that one of the five entities stands for which XML itself knows (`lt`, `gt`,
/// `amp`, `apos`, `quot`), or 0.
char16_t predefinedEntity(std::u16string_view name);

/// Appends `c`, as two units where it takes two.
void appendCodePoint(std::u16string& text, char32_t c);

/// Appends `raw` as it counts in an attribute's value: a line end, and a tab, is one space.
void appendNormalised(std::u16string& text, std::u16string_view raw);

} // namespace ravikit
