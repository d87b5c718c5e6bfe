#include "ravikit/encoding/Declared.h"

#include "ravikit/encoding/RawBytes.h"
#include "ravikit/encoding/SystemDecoder.h"
#include "ravikit/text/Chars.h"

#include <algorithm>
#include <array>

namespace ravikit {
namespace {

using namespace std::string_view_literals;

/// The value of `encoding` in an XML declaration, which ends before its mark.
std::optional<TextRange> encodingIn(std::u16string_view declaration) {
    for (std::size_t at = 0;;) {
        at = declaration.find_first_of(u"\"'", at);
        if (at == std::u16string_view::npos) {
            return std::nullopt;
        }
        const std::size_t close = declaration.find(declaration[at], at + 1);
        if (close == std::u16string_view::npos) {
            return std::nullopt;
        }
        std::u16string_view before = declaration.substr(0, at);
        const auto trim = [&before] {
            while (isBlank(before.back())) {
                before.remove_suffix(1);
            }
        };
        trim();
        if (before.ends_with(u'=')) {
            before.remove_suffix(1);
            trim();
        }
        const std::u16string_view name = u"encoding";
        if (before.ends_with(name) && isBlank(before[before.size() - name.size() - 1])) {
            return TextRange{at + 1, close};
        }
        at = close + 1;
    }
}

bool isOneOf(std::u16string_view name, std::initializer_list<std::u16string_view> names) {
    return std::find(names.begin(), names.end(), asciiLowerCase(name)) != names.end();
}

} // namespace

std::optional<TextRange> declaredEncoding(std::u16string_view text) {
    const std::u16string_view start = u"<?xml";
    const std::size_t skipped = text.starts_with(byteOrderMark) ? 1 : 0;
    text.remove_prefix(skipped);
    if (!text.starts_with(start) || text.size() == start.size() || !isBlank(text[start.size()])) {
        return std::nullopt;
    }
    auto range = encodingIn(text.substr(0, text.find_first_of(u"<>", 1)));
    if (range) {
        range->begin += skipped;
        range->end += skipped;
    }
    return range;
}

std::u16string_view declaredName(std::u16string_view text) {
    const auto range = declaredEncoding(text);
    return range ? text.substr(range->begin, range->end - range->begin) : std::u16string_view();
}

std::u16string declaredName(std::string_view bytes) {
    constexpr std::size_t longest = 512; // a declaration with every blank that one would think of
    if (bytes.starts_with(utf8Mark)) {
        bytes.remove_prefix(utf8Mark.size());
    }
    const std::string_view head = bytes.substr(0, longest);
    const bool isEbcdic = head.starts_with("\x4C\x6F\xA7\x94");
    const auto text = isEbcdic ? decodeBySystem(head, "IBM037") : rawText(head);
    return std::u16string(declaredName(text.value_or(u"")));
}

std::string_view markedEncoding(std::string_view bytes) {
    struct Mark {
        std::string_view bytes;
        std::string_view encoding;
    };
    // The longer ones first: one begins as another.
    static constexpr std::array marks{Mark{"\xFF\xFE\0\0"sv, "UTF-32LE"},
                                      Mark{"\0\0\xFE\xFF"sv, "UTF-32BE"},
                                      Mark{"<\0\0\0"sv, "UTF-32LE"},
                                      Mark{"\0\0\0<"sv, "UTF-32BE"},
                                      Mark{utf8Mark, "UTF-8"},
                                      Mark{"\xFF\xFE"sv, "UTF-16LE"},
                                      Mark{"\xFE\xFF"sv, "UTF-16BE"},
                                      Mark{"<\0"sv, "UTF-16LE"},
                                      Mark{"\0<"sv, "UTF-16BE"}};
    const auto* const found = std::find_if(marks.begin(), marks.end(), [bytes](const Mark& mark) {
        return bytes.starts_with(mark.bytes);
    });
    return found == marks.end() ? std::string_view() : found->encoding;
}

bool isEncodingName(std::u16string_view name) {
    const auto isLetter = [](char16_t c) {
        return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
    };
    return !name.empty() && isLetter(name[0]) &&
           std::all_of(name.begin(), name.end(), [isLetter](char16_t c) {
               return isLetter(c) || (c >= u'0' && c <= u'9') || c == u'.' || c == u'_' ||
                      c == u'-';
           });
}

bool isUtf8Name(std::u16string_view name) {
    return isOneOf(name, {u"utf-8", u"utf8"});
}

bool meansWindows1252(std::u16string_view name) {
    return isOneOf(name, {u"windows-1252", u"cp1252", u"iso-8859-1", u"iso8859-1", u"iso_8859-1",
                          u"latin1", u"latin-1", u"us-ascii", u"ascii"});
}

std::u16string asciiLowerCase(std::u16string_view text) {
    std::u16string lower(text);
    for (char16_t& c : lower) {
        c = c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c | 0x20) : c;
    }
    return lower;
}

} // namespace ravikit
