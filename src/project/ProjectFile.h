#pragma once

#include "external/FileSystemObject.h"

#include <optional>
#include <string>
#include <string_view>

namespace tessaly {

/// The keys of a project file's records, exact in case, in the order in which they are written.
inline constexpr std::u16string_view keySite = u"Site";
inline constexpr std::u16string_view keyDescription = u"Description";
inline constexpr std::u16string_view keyPath = u"Path"; // written, never read
inline constexpr std::u16string_view keyOwner = u"Owner";
inline constexpr std::u16string_view keyNotes = u"Notes";
inline constexpr std::u16string_view keyDocument = u"Document";

/// The last line of a project file. A reader does not look for it.
inline constexpr char16_t endOfProjectFile[] = u"-------------- END OF FILE ----------";

/// What stands for the name of the first document where the project file cannot be read.
inline constexpr char16_t cannotAccessDocument[] = u"Cannot access document !";

/// One line of a project file: views of the line that was split.
struct ProjectRecord {
    std::u16string_view key;
    std::u16string_view value;
};

/// True if `name` can stand for a deck in the project's folder. One with a separator or a drive,
/// and `..`, would lead to a file elsewhere: that is read, but neither written nor deleted.
bool isBaseName(std::u16string_view name);

/// `line` split at each `=`: the first two pieces, without trimming. What stands after a second
/// `=` is lost. No record for a line without `=`.
std::optional<ProjectRecord> splitRecord(std::u16string_view line);

/// Writes one line. The value goes out as it is: nothing guards one that holds `=` or a line end.
void writeRecord(TextStream& stream, std::u16string_view key, std::u16string_view value);

void writeEndOfProjectFile(TextStream& stream);

} // namespace tessaly
