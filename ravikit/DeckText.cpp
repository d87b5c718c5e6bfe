#include "ravikit/DeckText.h"

#include "ravikit/ByteEncoding.h"
#include "ravikit/Chars.h"
#include "ravikit/Parser.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

namespace ravikit {
namespace {

constexpr char16_t byteOrderMark = 0xFEFF;

struct Range {
    std::size_t begin;
    std::size_t end;
};

/// Where in `text` the value of `encoding` stands that its XML declaration gives. The declaration
/// need not be right in any other way.
std::optional<Range> declaredEncoding(std::u16string_view text) {
    const std::u16string_view start = u"<?xml";
    if (!text.starts_with(start) || text.size() == start.size() || !isBlank(text[start.size()])) {
        return std::nullopt;
    }
    const std::u16string_view declaration = text.substr(0, text.find_first_of(u"<>", 1));
    for (std::size_t at = start.size();;) {
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
            return Range{at + 1, close};
        }
        at = close + 1;
    }
}

bool isUtf8(std::string_view bytes) {
    const auto at = [bytes](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    for (std::size_t i = 0; i < bytes.size();) {
        const unsigned lead = at(i);
        const std::size_t length = lead < 0x80                    ? 1
                                   : lead >= 0xC2 && lead <= 0xDF ? 2
                                   : lead >= 0xE0 && lead <= 0xEF ? 3
                                   : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                                  : 0;
        if (length == 0 || bytes.size() - i < length) {
            return false;
        }
        for (std::size_t j = 1; j < length; ++j) {
            if ((at(i + j) & 0xC0) != 0x80) {
                return false;
            }
        }
        // What could be shorter, a half of a surrogate pair, and what lies beyond Unicode.
        if ((lead == 0xE0 && at(i + 1) < 0xA0) || (lead == 0xED && at(i + 1) > 0x9F) ||
            (lead == 0xF0 && at(i + 1) < 0x90) || (lead == 0xF4 && at(i + 1) > 0x8F)) {
            return false;
        }
        i += length;
    }
    return true;
}

/// The bytes that `text` was read from, if it was read as `encoding`. None if it cannot have been.
std::optional<std::string> bytesOf(std::u16string_view text, const ByteEncoding& encoding) {
    std::string bytes;
    bytes.reserve(text.size());
    for (const char16_t c : text) {
        if (c < 0x80) {
            bytes.push_back(static_cast<char>(c));
            continue;
        }
        const auto* const byte = std::find(encoding.begin() + 0x80, encoding.end(), c);
        if (byte == encoding.end()) {
            return std::nullopt;
        }
        bytes.push_back(static_cast<char>(byte - encoding.begin()));
    }
    return bytes;
}

/// A file that is not UTF-8 is read as this, which keeps all its bytes.
constexpr std::u16string_view fallbackEncoding = u"WINDOWS-1252";

std::u16string lowerCase(std::u16string_view text) {
    std::u16string lower(text);
    for (char16_t& c : lower) {
        c = c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c | 0x20) : c;
    }
    return lower;
}

/// Whether authors mean `fallbackEncoding` by `name`: in these one finds the quotes and dashes of
/// that encoding, though by rights there are none.
bool meansFallback(std::u16string_view name) {
    const std::u16string lower = lowerCase(name);
    return lower == u"iso-8859-1" || lower == u"us-ascii" || lower == u"windows-1252";
}

/// The text anew, if it came out of a file that was not UTF-8, in the encoding that it declares.
std::optional<std::u16string> decodedAnew(std::u16string_view text) {
    const auto declared = declaredEncoding(text);
    if (!declared || std::all_of(text.begin(), text.end(), [](char16_t c) { return c < 0x80; })) {
        return std::nullopt;
    }
    const std::u16string_view name = text.substr(declared->begin, declared->end - declared->begin);
    const auto encoding = meansFallback(name) ? std::nullopt : byteEncoding(name);
    const auto fallback = byteEncoding(fallbackEncoding);
    if (!encoding || !fallback) {
        return std::nullopt;
    }
    const auto bytes = bytesOf(text, *fallback);
    if (!bytes || isUtf8(*bytes)) {
        return std::nullopt;
    }
    std::u16string decoded(text);
    for (std::size_t i = 0; i < decoded.size(); ++i) {
        decoded[i] = (*encoding)[static_cast<unsigned char>((*bytes)[i])];
    }
    return decoded;
}

/// The deck's own way to end a line.
std::u16string_view lineEndOf(std::u16string_view text) {
    const std::size_t at = text.find_first_of(u"\r\n");
    if (at == std::u16string_view::npos) {
        return u"\n";
    }
    return text.substr(at, text.substr(at).starts_with(u"\r\n") ? 2 : 1);
}

/// What stands ahead of the root.
struct Prolog {
    bool ofDeck = false; ///< a `wml` root follows, and nothing is ahead that should not be
    bool declaration = false;
    bool doctype = false;
    std::size_t root = 0; ///< offset
};

Prolog prologOf(std::u16string_view text) {
    const auto tree = parse(std::u16string(text));
    Prolog prolog;
    const Tree::Id root = tree->documentElement();
    if (root == Tree::none) {
        return prolog;
    }
    prolog.ofDeck = tree->name(root) == u"wml";
    prolog.root = (*tree)[root].begin;
    for (Tree::Id id = Tree::document + 1; id < tree->size(); id = (*tree)[id].next) {
        switch (tree->kind(id)) {
        case NodeKind::XmlDeclaration:
            prolog.declaration = true;
            break;
        case NodeKind::Doctype:
            prolog.doctype = true; // behind the root too: one at a wrong place is enough
            break;
        case NodeKind::ProcessingInstruction:
            // A declaration that does not come first: what is to be done only its author knows.
            prolog.ofDeck = prolog.ofDeck && lowerCase(tree->name(id)) != u"xml";
            break;
        case NodeKind::Comment:
        case NodeKind::Blank:
            break;
        default:
            prolog.ofDeck = prolog.ofDeck && id >= root;
        }
    }
    return prolog;
}

} // namespace

std::u16string importDeck(std::u16string text) {
    // A file with the mark was UTF-8, whatever its declaration says.
    if (text.starts_with(byteOrderMark)) {
        text.erase(0, 1);
        return text;
    }
    auto decoded = decodedAnew(text);
    return decoded ? std::move(*decoded) : text;
}

std::u16string declareUtf8(std::u16string text) {
    const std::size_t start = text.starts_with(byteOrderMark) ? 1 : 0;
    const auto declared = declaredEncoding(std::u16string_view(text).substr(start));
    if (declared) {
        const std::size_t length = declared->end - declared->begin;
        if (lowerCase(text.substr(start + declared->begin, length)) != u"utf-8") {
            text.replace(start + declared->begin, length, u"UTF-8");
        }
    }
    return text;
}

std::u16string exportDeck(std::u16string text) {
    text = declareUtf8(std::move(text));
    const std::size_t start = text.starts_with(byteOrderMark) ? 1 : 0;
    const std::u16string_view body = std::u16string_view(text).substr(start);
    const Prolog prolog = prologOf(body);
    if (!prolog.ofDeck) {
        return text;
    }
    const std::u16string lineEnd(lineEndOf(body));
    if (!prolog.doctype) {
        std::u16string doctype = u"<!DOCTYPE wml PUBLIC \"-//WAPFORUM//DTD WML 1.3//EN\" "
                                 u"\"http://www.wapforum.org/DTD/wml13.dtd\">" +
                                 lineEnd;
        if (prolog.root > 0 && !isBlank(body[prolog.root - 1])) {
            doctype.insert(0, lineEnd);
        }
        text.insert(start + prolog.root, doctype);
    }
    if (!prolog.declaration) {
        text.insert(start, u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>" + lineEnd);
    }
    return text;
}

} // namespace ravikit
