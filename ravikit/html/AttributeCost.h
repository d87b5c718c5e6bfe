#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace ravikit {

/// The HTML parser compares each name of an attribute with all that its tag has already, without
/// asking for memory meanwhile. The offset in `html`, in bytes, of the first tag at which that
/// comes to more than `allowed` steps; none if it never does.
std::optional<std::size_t> costlyTag(std::string_view html, std::size_t allowed);

} // namespace ravikit
