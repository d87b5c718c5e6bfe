#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

/// What was decided about a file's encoding, where its bytes and what it says do not agree.
struct EncodingNote {
    std::size_t offset; ///< in the text, of what made it necessary
    std::u16string text;
};

/// The text of a file, and what its author should hear about how it was read.
struct FileText {
    std::u16string text; ///< a byte-order mark stays, as U+FEFF
    std::vector<EncodingNote> notes;
};

/// The text of a file. Its encoding is the one that its byte-order mark shows or, where it has
/// none, the one that its XML declaration names. What declares no encoding or UTF-8 is UTF-8, with
/// the odd bytes that it may hold as in Windows-1252, or else Windows-1252 as a whole.
///
/// A file whose encoding cannot be read comes as raw bytes (ravikit/encoding/RawBytes.h), and is
/// written with the bytes that it had.
FileText decodeFile(std::string_view bytes);

/// The same of the file `path`, a path of the component. Fails as opening and reading a file does.
FileText readFile(const std::u16string& path);

/// The bytes of a file with `text`: UTF-8, and raw bytes as they are. Half of a surrogate pair that
/// is none becomes U+FFFD.
std::string encodeFile(std::u16string_view text);

} // namespace tessaly
