#include "apps/cli/project/DeckNames.h"

#include "apps/cli/Printer.h"
#include "platform/files/PathName.h"
#include "platform/files/PosixFileSystem.h"
#include "platform/files/TextCodec.h"

#include <algorithm>

namespace cli {

namespace {

constexpr std::size_t extensionLength = 4;
constexpr std::u16string_view forbidden = u"\\/:*?\"<>|";

bool isControl(char16_t unit) {
    return unit < 0x20 || unit == 0x7F;
}

} // namespace

std::string whyNotAValue(std::u16string_view value) {
    if (value.find(u'=') != value.npos) {
        return "cannot hold =, where a project file would cut it off";
    }
    return std::any_of(value.begin(), value.end(), isControl)
               ? "cannot hold line ends or other control characters"
               : "";
}

std::string whyNotAName(std::u16string_view name) {
    if (name.find_first_not_of(u' ') == name.npos) {
        return "is blank, and a name is needed";
    }
    if (name.find_first_of(forbidden) != name.npos) {
        return "holds one of the characters that file names cannot: " + utf8(forbidden);
    }
    if (utf8(name).size() + extensionLength > longestFileName) {
        return "is too long: with its extension a file name has at most 255 bytes";
    }
    return whyNotAValue(name);
}

std::u16string freeName(const std::u16string& name, const std::u16string& taken) {
    tessaly::PosixFileSystem files;
    const std::u16string folder = tessaly::parentFolderOf(taken) + u"\\";
    const std::u16string extension = u"." + tessaly::extensionOf(taken);
    for (int number = 2;; ++number) {
        std::u16string other = name;
        other.append(u"-").append(tessaly::decodeText(std::to_string(number)));
        std::u16string file = folder;
        if (!files.FileExists(file.append(other).append(extension))) {
            return other;
        }
    }
}

} // namespace cli
