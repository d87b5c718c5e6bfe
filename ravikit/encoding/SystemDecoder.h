#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace ravikit {

/// True if the system knows an encoding that it calls `name`.
bool systemKnows(const std::string& name);

/// UTF-16 for `bytes` in the encoding that the system calls `name`, strictly; a byte-order mark
/// stays. None if it knows no such encoding or if `bytes` are not in it; `good` is then how many of
/// them are.
std::optional<std::u16string> decodeBySystem(std::string_view bytes, const std::string& name,
                                             std::size_t* good = nullptr);

} // namespace ravikit
