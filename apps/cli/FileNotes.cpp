#include "apps/cli/FileNotes.h"

#include "platform/FileLookup.h"
#include "platform/FileText.h"
#include "platform/PathName.h"
#include "ravikit/Lines.h"
#include "util/Attempt.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace cli {

namespace {

/// The file as the component found it, which may differ from the project's line in letter case.
std::optional<tessaly::Found> found(const Deck& deck) {
    std::optional<tessaly::Found> file;
    tessaly::attempt([&] { file = tessaly::lookUpFile(tessaly::toComponentPath(deck.file)); });
    return file;
}

std::string read(const tessaly::Found& file) {
    std::ifstream stream(file.path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace

std::optional<std::string> bytesOf(const Deck& deck) {
    const auto file = found(deck);
    return file ? std::optional(read(*file)) : std::nullopt;
}

std::vector<Note> notesOf(const Deck& deck) {
    const std::u16string text = deck.document->Content();
    const bool isAscii =
        std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit < 0x80; });
    const auto file = found(deck);
    if (!file || (isAscii && static_cast<std::size_t>(file->status.st_size) == text.size())) {
        return {}; // a byte a character, about which there is nothing to decide
    }
    const tessaly::FileText decoded = tessaly::decodeFile(read(*file));
    if (decoded.notes.empty()) {
        return {};
    }
    const std::size_t mark = decoded.text.starts_with(u'\xFEFF') ? 1 : 0;
    const std::u16string_view shown = std::u16string_view(decoded.text).substr(mark);
    const ravikit::Lines lines(shown);
    std::vector<Note> notes;
    for (const tessaly::EncodingNote& note : decoded.notes) {
        const auto place = lines.at(static_cast<std::uint32_t>(note.offset - mark));
        notes.push_back({place.line, place.column, utf8(note.text)});
    }
    return notes;
}

} // namespace cli
