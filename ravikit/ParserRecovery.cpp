#include "ravikit/ParserCore.h"
#include "ravikit/Wording.h"

#include <algorithm>

namespace ravikit {
namespace {

bool sameButForCase(std::u16string_view a, std::u16string_view b) {
    const auto lower = [](char16_t c) {
        return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c | 0x20) : c;
    };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [lower](char16_t x, char16_t y) { return lower(x) == lower(y); });
}

} // namespace

// An end tag that does not end the innermost open element.
void Parser::mismatchedEndTag(At at, At end, const Name& name) {
    const std::u16string_view word = between(name.begin, name.end);
    if (m_nameStates[name.id].open > 0) {
        std::vector<NameTable::Id> early;
        while (m_open.back().name != name.id) {
            early.push_back(m_open.back().name);
            closeTop(at, word);
        }
        close(end);
        forgetClosedEarly();
        for (const NameTable::Id inner : early) {
            m_closedEarly.push_back({inner, m_open.size()});
        }
        return;
    }
    if (!atTop() && sameButForCase(m_tree.name(m_open.back().element), word)) {
        problem(ProblemKind::StrayEndTag, at, end, [&] {
            return quoted(m_tree.name(m_open.back().element)) + u" is closed by " +
                   quotedEndTag(word) + u"; capital and small letters differ";
        });
        mark(m_open.back().element, Recovered);
        close(end);
        return;
    }
    push(NodeKind::Junk, at, end);
    if (!wasClosedEarly(name.id)) {
        problem(ProblemKind::StrayEndTag, at, end, [&] {
            return quotedEndTag(word) + u" ends nothing: no " + quoted(word) + u" is open here";
        });
    }
}

// Drops what was closed early in surroundings that have ended since.
void Parser::forgetClosedEarly() {
    while (!m_closedEarly.empty() && m_closedEarly.back().depth > m_open.size()) {
        m_closedEarly.pop_back();
    }
}

// Whether an end tag of this name was already told of as missing where it should have stood.
bool Parser::wasClosedEarly(NameTable::Id name) {
    forgetClosedEarly();
    constexpr std::ptrdiff_t farthest = 8;
    const auto from =
        m_closedEarly.end() - std::min(farthest, static_cast<std::ptrdiff_t>(m_closedEarly.size()));
    const auto found = std::find_if(from, m_closedEarly.end(), [&](const ClosedEarly& early) {
        return early.name == name && early.depth == m_open.size();
    });
    if (found == m_closedEarly.end()) {
        return false;
    }
    m_closedEarly.erase(found);
    return true;
}

// Ends the innermost open element at `at`, where the end tag of `closer` stands.
void Parser::closeTop(At at, std::u16string_view closer) {
    const Open& top = m_open.back();
    const std::uint32_t begin = node(top.element).begin;
    problem(ProblemKind::UnclosedElement, place(begin), place(begin + 1 + top.nameLength), [&] {
        const std::u16string_view name = m_tree.name(top.element);
        const std::uint32_t opened = lineOf(begin);
        const std::uint32_t closed = lineOf(offset(at));
        return quoted(name) + (opened == closed ? u"" : u" opened on line " + decimal(opened)) +
               u" is closed by " + quotedEndTag(closer) +
               (opened == closed ? u"" : u" on line " + decimal(closed)) + u"; write " +
               quotedEndTag(name) + u" first";
    });
    mark(top.element, Recovered);
    close(at);
}

// An end tag that does not begin with a name.
Parser::At Parser::namelessEndTag(At at) {
    At const name = skipBlanks(at + 2);
    if (name != at + 2 && startsName(name)) {
        problem(ProblemKind::BadTag, at, name, u"no blank may stand behind `</`");
        return namedEndTag(at, name);
    }
    if (*name != u'>' || m_tooDeep > 0 || atTop()) {
        return junk(at, ProblemKind::StrayEndTag, u"`</` begins an end tag, as in `</p>`");
    }
    const Id element = m_open.back().element;
    problem(ProblemKind::StrayEndTag, at, name + 1, [&] {
        return u"an end tag names its element; write " + quotedEndTag(m_tree.name(element));
    });
    mark(element, Recovered);
    close(name + 1);
    return name + 1;
}

// From behind the name in an end tag.
Parser::At Parser::endOfEndTag(At at, At nameEnd) {
    At end = skipBlanks(nameEnd);
    if (*end == u'>') {
        return end + 1;
    }
    At const extra = end;
    while (end != m_end && *end != u'>' && *end != u'<') {
        ++end;
    }
    problem(ProblemKind::BadTag, at, end, [&] {
        const std::u16string_view tag = between(at, nameEnd);
        return extra == end ? u"the end tag " + quoted(tag) + u" has no `>`"
                            : u"the end tag " + quoted(tag) + u" can hold nothing but its name";
    });
    return end != m_end && *end == u'>' ? end + 1 : end;
}

// Something in a start tag that is no attribute.
Parser::At Parser::junkInTag(At at, Tag& tag) {
    At end = at + 1;
    while (end != m_end && !isBlank(*end) && *end != u'>' && *end != u'<' &&
           !(*end == u'/' && end[1] == u'>')) {
        ++end;
    }
    if (!tag.told) {
        problem(ProblemKind::BadTag, at, end, [&] {
            const std::u16string name = quoted(m_tree.name(tag.element));
            if (*at == u'/') {
                return u"`/` in the tag of " + name + u" must stand directly ahead of its `>`";
            }
            return quoted(between(at, end)) + u" cannot stand in the tag of " + name +
                   u"; an attribute is written as `name=\"value\"`";
        });
    }
    tag.told = true;
    tag.flags |= Recovered;
    return end;
}

void Parser::unclosedTag(At at, Tag& tag) {
    tag.flags |= Recovered;
    if (!tag.told) {
        At const begin = place(node(tag.element).begin);
        problem(ProblemKind::BadTag, begin, at, [&] {
            return u"the tag " + quoted(u"<" + std::u16string(m_tree.name(tag.element))) +
                   u" has no `>`";
        });
    }
}

void Parser::missingBlank(At at, Tag& tag) {
    tag.flags |= Recovered;
    if (!tag.told) {
        problem(ProblemKind::BadAttribute, at, at,
                [&] { return u"a blank is missing ahead of " + quoted(between(at, nameEnd(at))); });
    }
    tag.told = true;
}

void Parser::duplicateAttribute(Id attribute, Tag& tag) {
    const Node& twice = node(attribute);
    tag.flags |= Recovered;
    mark(attribute, Recovered);
    problem(ProblemKind::DuplicateAttribute, place(twice.begin), place(twice.end), [&] {
        return u"attribute " + quoted(m_tree.name(attribute)) + u" stands twice in " +
               quoted(m_tree.name(tag.element));
    });
}

Parser::At Parser::attributeWithoutValue(At end, Id attribute, Tag& tag) {
    mark(attribute, Recovered);
    if (!tag.told) {
        problem(ProblemKind::BadAttribute, place(node(attribute).begin), end, [&] {
            const std::u16string name(m_tree.name(attribute));
            return u"attribute " + quoted(name) + u" has no value; write " +
                   quoted(name + u"=\"...\"");
        });
    }
    tag.told = true;
    tag.flags |= Recovered;
    return end;
}

// From behind the = and its blanks.
Parser::At Parser::valueWithoutQuotes(At at, Id attribute, Tag& tag) {
    At end = at;
    while (end != m_end && !isBlank(*end) && *end != u'>' && *end != u'<' &&
           !(*end == u'/' && end[1] == u'>')) {
        ++end;
    }
    mark(attribute, Recovered);
    if (!tag.told) {
        problem(ProblemKind::BadAttribute, place(node(attribute).begin), end, [&] {
            const std::u16string name(m_tree.name(attribute));
            return u"the value of " + quoted(name) + u" must stand in quotes: write " +
                   quoted(name + u"=\"" + std::u16string(between(at, end)) + u"\"");
        });
    }
    tag.flags |= Recovered;
    node(attribute).end = offset(end);
    return end;
}

// The quote at `closing` may open the next value rather than close this one, as in
// <a href="one title="two">. Then this value ends ahead of that attribute's name, which is the
// place given; none if the quote closes.
Parser::At Parser::quoteForgotten(At begin, At closing) const {
    const char16_t next = closing[1];
    if (isBlank(next) || next == u'>' || next == u'/') {
        return nullptr;
    }
    constexpr std::ptrdiff_t longestName = 64;
    At const farthest = closing - begin > longestName ? closing - longestName : begin;
    At at = closing;
    if (at == begin || *--at != u'=') {
        return nullptr;
    }
    At const nameEnd = at;
    while (at != farthest && at[-1] < 0x80 && isNameChar(at[-1])) {
        --at;
    }
    if (at == nameEnd || at == farthest || !isBlank(at[-1])) {
        return nullptr;
    }
    while (at != begin && isBlank(at[-1])) {
        --at;
    }
    return at;
}

// Where a value is taken to end of which no closing quote was found before `stop`: with its tag
// or its line.
Parser::At Parser::endOfOpenValue(At begin, At stop) const {
    At end = begin;
    while (end != stop && *end != u'>' && *end != u'\n' && *end != u'\r') {
        ++end;
    }
    if (end != stop && *end == u'>' && end != begin && end[-1] == u'/') {
        --end;
    }
    while (end != begin && isBlank(end[-1])) {
        --end;
    }
    return end;
}

// Reads the value once more, to the `end` made up for it, and forgets the first reading.
Parser::At Parser::valueWithoutEnd(At begin, At end, Id attribute, Tag& tag, std::size_t problems) {
    m_tree.m_nodes.truncate(attribute + 1);
    m_tree.m_problems.truncate(problems);
    constexpr char16_t noQuote = u'<';
    end = value(begin, end, noQuote, attribute);
    mark(attribute, Recovered);
    tag.flags |= Recovered;
    if (!tag.told) {
        problem(ProblemKind::BadAttribute, place(node(attribute).begin), end, [&] {
            return u"the value of " + quoted(m_tree.name(attribute)) + u" has no closing quote";
        });
    }
    tag.told = true;
    return end;
}

// A < in a value: does the value's closing quote come soon, so that the < is meant as a
// character? Gives its place; none if the quote seems forgotten. It looks ahead a little way only,
// so that the cost stays in line with the text.
Parser::At Parser::closingQuoteNear(At at, char16_t quote) const {
    constexpr std::ptrdiff_t farthest = 160;
    At const stop = m_end - at > farthest ? at + farthest : m_end;
    while (at != stop && *at != quote && *at != u'\n' && *at != u'\r') {
        ++at;
    }
    const bool closes = at != stop && *at == quote &&
                        (isBlank(at[1]) || at[1] == u'>' || (at[1] == u'/' && at[2] == u'>'));
    return closes ? at : nullptr;
}

void Parser::markInValue(At at, Id attribute) {
    mark(attribute, Recovered);
    problem(ProblemKind::BadAttribute, at, at + 1, [&] {
        return u"`<` cannot stand in the value of " + quoted(m_tree.name(attribute)) +
               u"; write `&lt;`";
    });
}

} // namespace ravikit
