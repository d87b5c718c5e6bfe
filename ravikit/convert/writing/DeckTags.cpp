#include "ravikit/convert/writing/DeckTags.h"

#include "ravikit/text/Chars.h"
#include "ravikit/text/Scan.h"

#include <algorithm>

namespace ravikit {

namespace {

std::u16string asAttribute(const AttributeChange& change) {
    std::u16string text = change.name + u"=\"";
    appendCharacters(text, change.value, true);
    return text + u'"';
}

/// What character data or a value cannot hold as it is, or what has to be looked at.
struct CharacterStop {
    bool operator()(char16_t c) const {
        return c == u'&' || c == u'<' || c == u'>' || c == u'"' || c == u'\u00A0' ||
               scan::needsLook(c);
    }
#if defined(__SSE2__)
    scan::Bytes operator()(scan::Bytes b) const {
        using scan::either;
        using scan::equals;
        return either(either(either(equals(b, u'&'), equals(b, u'<')),
                             either(equals(b, u'>'), equals(b, u'"'))),
                      either(equals(b, u'\u00A0'), scan::Control()(b)));
    }
#endif
};

/// How many units `text` begins with that are written as they are.
std::size_t plainUnits(std::u16string_view text) {
    const char16_t* const end = text.data() + text.size();
    return static_cast<std::size_t>(scan::find(text.data(), end, CharacterStop()) - text.data());
}

/// The line end and the blanks that `at` stands after, if there is nothing else on its line.
std::u16string_view indentBefore(std::u16string_view text, std::size_t at) {
    std::size_t begin = at;
    while (begin > 0 && (text[begin - 1] == u' ' || text[begin - 1] == u'\t')) {
        --begin;
    }
    if (begin == 0 || (text[begin - 1] != u'\n' && text[begin - 1] != u'\r')) {
        return {};
    }
    while (begin > 0 && text[begin - 1] == u'\n') {
        --begin;
        break;
    }
    while (begin > 0 && text[begin - 1] == u'\r') {
        --begin;
    }
    return text.substr(begin, at - begin);
}

} // namespace

bool appendCharacters(std::u16string& out, std::u16string_view text, bool isValue) {
    bool isWhole = true;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t plain = plainUnits(text.substr(at));
        out += text.substr(at, plain);
        at += plain;
        if (at == text.size()) {
            break;
        }
        const char32_t c = codePointAt(text, at);
        const std::size_t units = unitsOf(c);
        switch (c) {
        case u'&':
            out += u"&amp;";
            break;
        case u'<':
            out += u"&lt;";
            break;
        case u'>':
            out += u"&gt;";
            break;
        case u'"':
            out += isValue ? u"&quot;" : u"\"";
            break;
        case u'\u00A0':
            out += u"&#160;";
            break;
        default:
            if (isChar(c)) {
                out += text.substr(at, units);
            } else {
                isWhole = false;
                if (c >= 0xD800) {
                    out += u'\uFFFD';
                }
            }
        }
        at += units;
    }
    return isWhole;
}

std::u16string startTag(const Tree* deck, const Opening& opening, bool isCopy, bool keepsSlash) {
    if (opening.source == Tree::none) {
        return opening.tag.empty() ? u'<' + std::u16string(nameOf(opening.element)) + u'>'
                                   : opening.tag;
    }
    const Tree& tree = *deck;
    const std::u16string_view text = tree.text();
    std::uint32_t at = tree[opening.source].begin;
    std::u16string tag;
    std::vector<bool> done(opening.changes.size());
    for (Tree::Id id = opening.source + 1;
         id < tree[opening.source].next && tree.kind(id) == NodeKind::Attribute;
         id = tree[id].next) {
        std::size_t change = 0;
        while (change < done.size() && opening.changes[change].name != tree.name(id)) {
            ++change;
        }
        const bool removed = (isCopy && tree.name(id) == u"id") ||
                             (change < done.size() && opening.changes[change].remove);
        std::u16string_view gap = text.substr(at, tree[id].begin - at);
        if (removed) {
            while (!gap.empty() && isBlank(gap.back())) {
                gap.remove_suffix(1);
            }
        }
        tag += gap;
        if (change < done.size()) {
            done[change] = true;
        }
        if (!removed) {
            tag += change < done.size() ? asAttribute(opening.changes[change])
                                        : std::u16string(tree.source(id));
        }
        at = tree[id].end;
    }
    std::u16string_view rest = text.substr(at, tree.startTagEnd(opening.source) - at);
    const bool hasSlash = tree.has(opening.source, EmptyTag);
    const std::u16string_view closing = hasSlash ? u"/>" : u">";
    if (rest.ends_with(closing)) {
        rest.remove_suffix(closing.size());
    }
    std::u16string_view blanks = rest;
    blanks.remove_prefix(std::min(rest.find_last_not_of(u" \t\r\n") + 1, rest.size()));
    tag += rest.substr(0, rest.size() - blanks.size());
    for (std::size_t i = 0; i < done.size(); ++i) {
        const bool isFirst = std::none_of(
            opening.changes.begin(), opening.changes.begin() + static_cast<std::ptrdiff_t>(i),
            [&](const AttributeChange& one) { return one.name == opening.changes[i].name; });
        if (!done[i] && isFirst && !opening.changes[i].remove) {
            tag += u' ' + asAttribute(opening.changes[i]);
        }
    }
    if (!hasSlash || keepsSlash) {
        tag += blanks;
    }
    return tag + std::u16string(hasSlash && keepsSlash ? u"/>" : u">");
}

std::u16string endTag(const Tree* tree, const Opening& opening) {
    if (opening.source == Tree::none) {
        return u"</" + std::u16string(nameOf(opening.element)) + u'>';
    }
    const std::uint32_t begin = tree->endTagBegin(opening.source);
    const std::uint32_t end = (*tree)[opening.source].end;
    if (begin < end) {
        return std::u16string(tree->text().substr(begin, end - begin));
    }
    return u"</" + std::u16string(tree->name(opening.source)) + u'>';
}

std::u16string childIndentation(const Tree& tree, Tree::Id id) {
    const std::u16string_view text = tree.text();
    bool hasChild = false;
    for (Tree::Id child = tree.firstContent(id); child < tree[id].next; child = tree[child].next) {
        const bool isElement = tree.kind(child) == NodeKind::Element;
        const std::u16string_view indent =
            isElement ? indentBefore(text, tree[child].begin) : std::u16string_view();
        if (!indent.empty()) {
            return std::u16string(indent);
        }
        hasChild = hasChild || isElement;
    }
    if (hasChild) {
        return {};
    }
    const std::u16string own(indentBefore(text, tree[id].begin));
    return own.empty() ? own : own + u"  ";
}

} // namespace ravikit
