#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// What a deck says of its own encoding.
namespace ravikit {

inline constexpr char16_t byteOrderMark = 0xFEFF;
inline constexpr std::string_view utf8Mark = "\xEF\xBB\xBF"; ///< the same in UTF-8

/// Offsets in a text, `end` after the last unit.
struct TextRange {
    std::size_t begin;
    std::size_t end;
};

/// Where in `text` the value of `encoding` stands that its XML declaration gives. The declaration
/// need not be right in any other way; a byte-order mark may stand before it.
std::optional<TextRange> declaredEncoding(std::u16string_view text);

/// That value; empty if there is none.
std::u16string_view declaredName(std::u16string_view text);

/// The name that a file declares, whose letters are those of ASCII or of EBCDIC.
std::u16string declaredName(std::string_view bytes);

/// The Unicode encoding that a file shows by its byte-order mark or, where characters of ASCII take
/// more than one byte, by the first of them; empty if it shows none.
std::string_view markedEncoding(std::string_view bytes);

/// True for what XML allows as the name of an encoding.
bool isEncodingName(std::u16string_view name);

bool isUtf8Name(std::u16string_view name);

/// True for the names that authors give to Windows-1252: under them one finds its quotes and
/// dashes, though by rights they have none.
bool meansWindows1252(std::u16string_view name);

/// `text` with its ASCII capitals as small letters.
std::u16string asciiLowerCase(std::u16string_view text);

} // namespace ravikit
