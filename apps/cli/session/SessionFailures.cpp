// Why a project could not be opened in full: the component keeps silent about it.

#include "apps/cli/project/ProjectLines.h"
#include "apps/cli/session/Session.h"

#include "platform/files/PathName.h"
#include "util/Attempt.h"
#include "util/LetterCase.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace cli {

namespace fs = std::filesystem;

namespace {

/// What keeps `file` from being read; empty if nothing does.
std::string whyUnreadable(tessaly::FileSystemObject& files, const std::string& file) {
    const auto failed = tessaly::attempt([&] {
        files.GetFile(tessaly::toComponentPath(file))
            ->OpenAsTextStream(tessaly::IOMode::ForReading, tessaly::formatAnsi)
            ->AtEndOfStream();
    });
    std::error_code unknown;
    const bool nothingThere = !fs::exists(fs::symlink_status(file, unknown));
    if (failed && failed->code() == tessaly::FailureCode::FileNotFound && nothingThere) {
        return "is missing";
    }
    return failed ? reasonOf(*failed) : "";
}

/// True if an earlier one of `names` is that of number `index`, in whatever letters.
bool isRepeated(const std::vector<std::u16string>& names, std::size_t index) {
    return std::any_of(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(index),
                       [&](const std::u16string& earlier) {
                           return tessaly::equalIgnoringCase(earlier, names[index]);
                       });
}

} // namespace

std::string reasonOf(const tessaly::Failure& failure) {
    switch (failure.code()) {
    case tessaly::FailureCode::OutOfMemory:
        return "is too large, or memory does not suffice";
    case tessaly::FailureCode::Overflow:
        return "has more cards than can be shown: 32767";
    default:
        return "cannot be read: " + utf8(failure.description());
    }
}

std::vector<std::u16string> Session::listed(const std::string& file) {
    return documentsIn(readText(file).value_or(u""));
}

void Session::tellWhyInPart(const std::string& file, tessaly::clProject& project) {
    const std::u16string text = readText(file).value_or(u"");
    const std::vector<std::u16string> names = documentsIn(text);
    // The first name that was not loaded is what stopped it.
    const auto loaded = static_cast<std::size_t>(project.Documents()->Count());
    if (loaded == names.size()) {
        complain(ExitStatus::Invalid, file,
                 "is no project file: no line Site= gives it a name; its first line is `" +
                     utf8(firstLineOf(text).substr(0, 60)) + '`');
        return;
    }
    std::string why = "the project could not be opened in full: ";
    if (names[loaded].empty()) {
        why += "deck " + std::to_string(loaded + 1) + " of its list has no name";
    } else {
        const std::string deck = deckBeside(file, names[loaded]);
        const std::string unreadable = whyUnreadable(*m_files, deck);
        why += "its deck " + shownPath(deck) + ' ';
        why += !unreadable.empty() ? unreadable
               : isRepeated(names, loaded)
                   ? "is listed twice"
                   : reasonOf(tessaly::Failure(tessaly::FailureCode::OutOfMemory));
    }
    complain(ExitStatus::Unreadable, file, why);
}

} // namespace cli
