#include "apps/cli/project/ProjectLines.h"

#include "project/ProjectFile.h"

#include <algorithm>

namespace cli {

std::u16string_view firstLineOf(std::u16string_view text) {
    std::u16string_view line = text.substr(0, text.find(u'\n'));
    if (line.ends_with(u'\r')) {
        line.remove_suffix(1);
    }
    return line;
}

std::vector<std::u16string> documentsIn(std::u16string_view text) {
    std::vector<std::u16string> names;
    while (!text.empty()) {
        const auto record = tessaly::splitRecord(firstLineOf(text));
        if (record && record->key == tessaly::keyDocument) {
            names.emplace_back(record->value);
        }
        text.remove_prefix(std::min(text.find(u'\n'), text.size() - 1) + 1);
    }
    return names;
}

} // namespace cli
