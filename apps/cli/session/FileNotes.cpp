#include "apps/cli/session/FileNotes.h"

#include "platform/files/FileHandle.h"
#include "platform/files/FileLookup.h"
#include "platform/files/FileText.h"
#include "platform/files/PathName.h"
#include "ravikit/text/Lines.h"
#include "util/Attempt.h"

namespace cli {

std::optional<std::string> bytesOf(const Deck& deck) {
    std::optional<std::string> bytes = deck.bytes;
    if (bytes) {
        return bytes;
    }
    tessaly::attempt([&] {
        // As the component found it, which may differ from the project's line in letter case.
        const auto file = tessaly::lookUpFile(tessaly::toComponentPath(deck.file));
        bytes = tessaly::FileHandle::forReading(file.path, file.status).readAll();
    });
    return bytes;
}

std::vector<Note> notesIn(const tessaly::FileText& file) {
    if (file.notes.empty()) {
        return {};
    }
    const std::size_t mark = file.text.starts_with(u'\xFEFF') ? 1 : 0;
    const std::u16string_view shown = std::u16string_view(file.text).substr(mark);
    const ravikit::Lines lines(shown);
    std::vector<Note> notes;
    for (const tessaly::EncodingNote& note : file.notes) {
        const auto place = lines.at(static_cast<std::uint32_t>(note.offset - mark));
        notes.push_back({place.line, place.column, utf8(note.text)});
    }
    return notes;
}

std::vector<Note> notesOf(const Deck& deck) {
    const auto bytes = bytesOf(deck);
    return bytes ? notesIn(tessaly::decodeFile(*bytes)) : std::vector<Note>();
}

} // namespace cli
