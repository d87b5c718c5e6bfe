#include "ravikit/encoding/EncodingFault.h"

#include "ravikit/encoding/Declared.h"
#include "ravikit/encoding/Decoder.h"
#include "ravikit/encoding/RawBytes.h"
#include "ravikit/encoding/SystemDecoder.h"
#include "ravikit/text/Lines.h"
#include "ravikit/text/Wording.h"

#include <algorithm>
#include <string>
#include <utility>

namespace ravikit {
namespace {

Problem problemAt(TextRange range, std::u16string reason) {
    return {ProblemKind::UnreadableEncoding, static_cast<std::uint32_t>(range.begin),
            static_cast<std::uint32_t>(range.end), std::move(reason)};
}

std::u16string cannotBeRead(std::u16string_view name) {
    return u"the encoding " + std::u16string(name) + u" cannot be read";
}

/// The bytes that the text was read from; none if other text has been added since.
std::optional<std::string> bytesOf(std::u16string_view text) {
    std::string bytes(text.size(), '\0');
    std::transform(text.begin(), text.end(), bytes.begin(), byteOf);
    const bool isWhole =
        std::all_of(text.begin(), text.end(), [](char16_t c) { return c < 0x80 || isRawByte(c); });
    return isWhole ? std::optional(std::move(bytes)) : std::nullopt;
}

/// What is reported of `bytes` that are not in the encoding `name`, or have not been read in it.
std::u16string reasonFor(std::u16string_view text, const std::string& bytes, bool isMarked,
                         const std::u16string& name) {
    std::size_t good = 0;
    const bool isGood =
        isMarked ? decodeBySystem(bytes, std::string(name.begin(), name.end()), &good).has_value()
                 : decodeDeclared(bytes, name, &good).has_value();
    if (isGood) {
        return u"the text was opened before its encoding was " + name +
               u"; save it and open it once more";
    }
    if (!isKnownEncoding(name) || good == bytes.size()) {
        return cannotBeRead(name);
    }
    const std::uint32_t line = Lines(text).at(static_cast<std::uint32_t>(good)).line;
    return cannotBeRead(name) + u": byte " + byteName(static_cast<unsigned char>(bytes[good])) +
           u" in line " + decimal(line) + u" does not belong to it";
}

} // namespace

std::optional<Problem> unknownEncoding(std::u16string_view text) {
    const auto declared = declaredEncoding(text);
    const std::u16string_view name = declaredName(text);
    // What is no name at all is reported where the rest of the declaration is looked at.
    if (!declared || !isEncodingName(name) || isKnownEncoding(name)) {
        return std::nullopt;
    }
    return problemAt(*declared, cannotBeRead(name));
}

std::optional<Problem> undecodedBytes(std::u16string_view text) {
    const std::size_t raw = findRawByte(text);
    const auto head = bytesOf(text.substr(0, 4));
    const std::string_view marked = head ? markedEncoding(*head) : std::string_view();
    if (raw == text.size() && marked.empty()) {
        return std::nullopt;
    }
    const std::u16string name(marked.empty() ? std::u16string(declaredName(text))
                                             : std::u16string(marked.begin(), marked.end()));
    const TextRange place =
        declaredEncoding(text).value_or(marked.empty() ? TextRange{raw, raw + 1} : TextRange{0, 0});
    if (name.empty()) {
        return problemAt(place, u"the text holds bytes in an encoding that it does not name");
    }
    const auto bytes = bytesOf(text);
    return problemAt(place,
                     bytes ? reasonFor(text, *bytes, !marked.empty(), name) : cannotBeRead(name));
}

} // namespace ravikit
