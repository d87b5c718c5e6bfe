#include "project/ProjectFile.h"

#include "util/LetterCase.h"

#include <algorithm>

namespace tessaly {

bool isBaseName(std::u16string_view name) {
    const bool hasDrive =
        name.size() >= 2 && name[1] == u':' && toLower(name[0]) >= u'a' && toLower(name[0]) <= u'z';
    return name.find_first_of(u"\\/") == name.npos && !hasDrive && name != u"..";
}

std::optional<ProjectRecord> splitRecord(std::u16string_view line) {
    if (line.starts_with(u'\uFEFF')) { // the byte-order mark of a file that an editor saved
        line.remove_prefix(1);
    }
    const std::size_t first = line.find(u'=');
    if (first == line.npos) {
        return std::nullopt;
    }
    const std::size_t second = std::min(line.find(u'=', first + 1), line.size());
    return ProjectRecord{line.substr(0, first), line.substr(first + 1, second - first - 1)};
}

void writeRecord(TextStream& stream, std::u16string_view key, std::u16string_view value) {
    std::u16string line(key);
    line += u'=';
    line += value;
    stream.WriteLine(line);
}

void writeEndOfProjectFile(TextStream& stream) {
    stream.WriteLine(endOfProjectFile);
}

} // namespace tessaly
