#pragma once

#include <string>
#include <string_view>

namespace cli {

inline constexpr std::size_t longestFileName = 255; ///< bytes, its extension among them

/// Why a project or a deck cannot be called `name`; empty if it can. The rules are those of file
/// names, of a project file's lines, and of a file name's length with its extension of four bytes.
std::string whyNotAName(std::u16string_view name);

/// Why a project file could not keep `value`; empty if it could.
std::string whyNotAValue(std::u16string_view value);

/// The first of "name-2", "name-3" and so on that no file beside `taken`, with its extension, has.
std::u16string freeName(const std::u16string& name, const std::u16string& taken);

} // namespace cli
