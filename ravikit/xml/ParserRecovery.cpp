#include "ravikit/text/Wording.h"
#include "ravikit/xml/ParserCore.h"

#include <algorithm>

namespace ravikit {
// Something in a start tag that is no attribute.
Parser::At Parser::junkInTag(At at, Tag& tag) {
    At end = at + 1;
    while (end != m_end && !isBlank(*end) && *end != u'>' && *end != u'<' &&
           !(*end == u'/' && end[1] == u'>')) {
        ++end;
    }
    if (!tag.reported) {
        problem(ProblemKind::BadTag, at, end, [&] {
            const std::u16string name = quoted(m_tree.name(tag.element));
            if (*at == u'/') {
                return u"`/` in the tag of " + name + u" must stand directly before its `>`";
            }
            return quoted(between(at, end)) + u" cannot stand in the tag of " + name +
                   u"; an attribute is written as `name=\"value\"`";
        });
    }
    tag.reported = true;
    tag.flags |= Recovered;
    return end;
}

void Parser::unclosedTag(At at, Tag& tag) {
    tag.flags |= Recovered;
    if (!tag.reported) {
        At const begin = place(node(tag.element).begin);
        problem(ProblemKind::BadTag, begin, at, [&] {
            return u"the tag " + quoted(u"<" + std::u16string(m_tree.name(tag.element))) +
                   u" has no `>`";
        });
    }
}

void Parser::missingBlank(At at, Tag& tag) {
    tag.flags |= Recovered;
    if (!tag.reported) {
        problem(ProblemKind::BadAttribute, at, at,
                [&] { return u"a blank is missing before " + quoted(between(at, nameEnd(at))); });
    }
    tag.reported = true;
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
    if (!tag.reported) {
        problem(ProblemKind::BadAttribute, place(node(attribute).begin), end, [&] {
            const std::u16string name(m_tree.name(attribute));
            return u"attribute " + quoted(name) + u" has no value; write " +
                   quoted(name + u"=\"...\"");
        });
    }
    tag.reported = true;
    tag.flags |= Recovered;
    return end;
}

// From after the = and its blanks.
Parser::At Parser::valueWithoutQuotes(At at, Id attribute, Tag& tag) {
    At end = at;
    while (end != m_end && !isBlank(*end) && *end != u'>' && *end != u'<' &&
           !(*end == u'/' && end[1] == u'>')) {
        ++end;
    }
    mark(attribute, Recovered);
    if (!tag.reported) {
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

// A value that did not plainly end at `stop`.
Parser::At Parser::unusualValueEnd(At begin, At stop, Id attribute, Tag& tag,
                                   std::size_t problems) {
    const bool closed = stop != m_end && *stop != u'<';
    At const end = closed ? quoteForgotten(begin, stop) : endOfOpenValue(begin, stop);
    return end == nullptr ? stop + 1 : valueWithoutEnd(begin, end, attribute, tag, problems);
}

// The quote at `closing` may open the next value rather than close this one, as in
// <a href="one title="two">. Then this value ends before that attribute's name, which is the
// place given; none if the quote closes.
Parser::At Parser::quoteForgotten(At begin, At closing) const {
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
    if (!tag.reported) {
        problem(ProblemKind::BadAttribute, place(node(attribute).begin), end, [&] {
            return u"the value of " + quoted(m_tree.name(attribute)) + u" has no closing quote";
        });
    }
    tag.reported = true;
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
