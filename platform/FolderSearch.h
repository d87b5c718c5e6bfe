#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tessaly {

/// The entry of the POSIX folder `folder` that has this name but for the case of letters; of
/// several the first in the order of their bytes. Entries whose names are not UTF-8 have no name
/// here. A folder that cannot be listed has no entries.
std::optional<std::string> findIgnoringCase(const std::string& folder, std::u16string_view name);

} // namespace tessaly
