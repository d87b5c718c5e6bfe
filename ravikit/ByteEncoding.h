#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace ravikit {

/// What each byte stands for in an encoding of one byte a character. A byte that the encoding
/// leaves open stands for the control of the same number, so that nothing is lost.
using ByteEncoding = std::array<char16_t, 256>;

/// The encoding that is called `name`, in any case. None if nobody knows it, or if it is none of
/// one byte a character that begins with ASCII.
std::optional<ByteEncoding> byteEncoding(std::u16string_view name);

} // namespace ravikit
