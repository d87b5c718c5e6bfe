#include "platform/files/FileText.h"

#include "platform/files/FileHandle.h"
#include "platform/files/FileLookup.h"
#include "platform/files/TextCodec.h"
#include "ravikit/encoding/Declared.h"
#include "ravikit/encoding/Decoder.h"
#include "ravikit/encoding/RawBytes.h"
#include "ravikit/encoding/SystemDecoder.h"
#include "ravikit/text/Wording.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace tessaly {

namespace {

using ravikit::byteName;

FileText undecoded(std::string_view bytes) {
    return {ravikit::rawText(bytes), {}};
}

/// `text`, with a note at its declaration that it is read in another encoding.
FileText otherThanDeclared(std::u16string text, std::u16string_view encoding) {
    FileText file{std::move(text), {}};
    const std::u16string declared(ravikit::declaredName(file.text));
    file.notes.push_back({ravikit::declaredEncoding(file.text)->begin,
                          u"the file declares " + declared + u", but is read as " +
                              std::u16string(encoding) + u", which it is"});
    return file;
}

/// A Unicode encoding that the file shows, which counts for more than what it declares.
FileText decodeMarked(std::string_view bytes, std::string_view encoding) {
    auto text = ravikit::decodeBySystem(bytes, std::string(encoding));
    if (!text) {
        return undecoded(bytes);
    }
    const std::u16string kind(encoding.begin(), encoding.begin() + 6); // without the byte order
    const std::u16string declared = ravikit::asciiLowerCase(ravikit::declaredName(*text));
    const bool agrees = declared.empty() || declared.starts_with(ravikit::asciiLowerCase(kind)) ||
                        declared.starts_with(u"iso-10646-ucs-");
    return agrees ? FileText{*std::move(text), {}} : otherThanDeclared(*std::move(text), kind);
}

/// Windows-1252, with a note at the first byte for which `isOdd` is true.
template <class IsOdd>
FileText decodeAsWindows1252(std::string_view bytes, const std::u16string& isNo, IsOdd&& isOdd) {
    FileText file{decodeWindows1252(bytes), {}};
    const auto* const odd = std::find_if(bytes.begin(), bytes.end(), isOdd);
    if (odd != bytes.end()) {
        file.notes.push_back({static_cast<std::size_t>(odd - bytes.begin()),
                              u"byte " + byteName(static_cast<unsigned char>(*odd)) + isNo +
                                  u"; the file is read as Windows-1252"});
    }
    return file;
}

/// UTF-8 in which single bytes are none.
FileText patched(NearlyUtf8 nearly) {
    FileText file{std::move(nearly.text), {}};
    for (const NearlyUtf8::Odd& odd : nearly.odd) {
        file.notes.push_back({odd.offset, u"byte " + byteName(odd.byte) +
                                              u" is not UTF-8; it is read as `" +
                                              file.text[odd.offset] + u"`, as in Windows-1252"});
    }
    if (nearly.oddCount > nearly.odd.size()) {
        const auto more = static_cast<std::uint32_t>(nearly.oddCount - nearly.odd.size());
        file.notes.push_back({nearly.odd.back().offset,
                              ravikit::decimal(more) + u" more bytes are not UTF-8, and are read "
                                                       u"as in Windows-1252"});
    }
    return file;
}

/// A file that declares UTF-8 or nothing.
FileText decodeUndeclared(std::string_view bytes) {
    if (auto text = decodeUtf8(bytes)) {
        const std::u16string_view declared = ravikit::declaredName(*text);
        return declared.empty() || ravikit::isUtf8Name(declared) ||
                       !ravikit::isKnownEncoding(declared)
                   ? FileText{*std::move(text), {}}
                   : otherThanDeclared(*std::move(text), u"UTF-8");
    }
    // In text of another encoding, hardly a character looks like a UTF-8 sequence.
    constexpr std::size_t byFar = 3;
    NearlyUtf8 nearly = decodeNearlyUtf8(bytes);
    if (bytes.starts_with(ravikit::utf8Mark) || nearly.sequences >= byFar * nearly.oddCount) {
        return patched(std::move(nearly));
    }
    const std::size_t first = nearly.odd.front().offset + nearly.sequences;
    return decodeAsWindows1252(
        bytes,
        ravikit::declaredName(bytes).empty() ? u" is not UTF-8, and no other encoding is declared"
                                             : u" is not UTF-8, which the file declares",
        [at = bytes.data() + first](const char& byte) { return &byte == at; });
}

/// A file that declares the encoding `declared`, which is not UTF-8.
FileText decodeAsDeclared(std::string_view bytes, const std::u16string& declared) {
    const bool isAscii = std::all_of(bytes.begin(), bytes.end(),
                                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    // Text of another encoding is hardly ever UTF-8 too, unless there is next to nothing of it.
    constexpr std::size_t byChance = 2;
    auto utf8 = isAscii ? std::nullopt : decodeUtf8(bytes);
    if (utf8 && (ravikit::meansWindows1252(declared) || !ravikit::isKnownEncoding(declared) ||
                 decodeNearlyUtf8(bytes).sequences > byChance)) {
        return ravikit::isKnownEncoding(declared) ? otherThanDeclared(*std::move(utf8), u"UTF-8")
                                                  : FileText{*std::move(utf8), {}};
    }
    if (ravikit::meansWindows1252(declared)) {
        return {decodeWindows1252(bytes), {}};
    }
    auto decoded = ravikit::decodeDeclared(bytes, declared);
    return decoded ? FileText{std::move(decoded->text), {}} : undecoded(bytes);
}

} // namespace

FileText decodeFile(std::string_view bytes) {
    const std::string_view marked = ravikit::markedEncoding(bytes);
    if (!marked.empty() && marked != "UTF-8") {
        return decodeMarked(bytes, marked);
    }
    const std::u16string declared = ravikit::declaredName(bytes);
    // What cannot be a name at all is an error of the declaration, and names nothing.
    const bool isUtf8 =
        !marked.empty() || ravikit::isUtf8Name(declared) || !ravikit::isEncodingName(declared);
    return isUtf8 ? decodeUndeclared(bytes) : decodeAsDeclared(bytes, declared);
}

FileText readFile(const std::u16string& path) {
    const Found found = lookUpFile(path);
    return decodeFile(FileHandle::forReading(found.path, found.status).readAll());
}

std::string encodeFile(std::u16string_view text) {
    std::string bytes;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t raw = ravikit::findRawByte(text, at);
        bytes += encodeUtf8(text.substr(at, raw - at));
        at = raw;
        if (at < text.size()) {
            bytes += ravikit::byteOf(text[at++]);
        }
    }
    return bytes;
}

} // namespace tessaly
