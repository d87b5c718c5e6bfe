#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tessaly {

/// The entry of the POSIX folder `folder` that has this name but for the case of letters; of
/// several the first in the order of their bytes. Entries whose names are not UTF-8 have no name
/// here. A folder that cannot be listed has no entries.
std::optional<std::string> findIgnoringCase(const std::string& folder, std::u16string_view name);

/// Keeps the search fast while this process makes one entry after the other in a folder, and ends
/// what is remembered of a removed name: to be made before the entry at `path`, a path of the
/// system, and reported once the entry is there.
class NewEntry {
public:
    explicit NewEntry(const std::string& path);

    void made() const;

private:
    std::string m_folder;
    std::string m_name;
    bool m_wasKnown = false; ///< the folder had been searched and was unchanged since
};

} // namespace tessaly
