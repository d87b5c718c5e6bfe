#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// The pieces from which reasons are put together.
namespace ravikit {

/// `text` between backquotes as an author can read it: shortened if it is long, a control or a
/// lone surrogate as a question mark.
std::u16string quoted(std::u16string_view text);

/// The end tag of the element `name`, in backquotes.
std::u16string quotedEndTag(std::u16string_view name);

/// In decimal digits.
std::u16string decimal(std::uint32_t number);

/// A code point as U+ and at least four hexadecimal digits.
std::u16string codePointName(char32_t c);

/// A byte as 0x and two hexadecimal digits.
std::u16string byteName(unsigned char byte);

} // namespace ravikit
