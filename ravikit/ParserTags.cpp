#include "ravikit/ParserCore.h"
#include "ravikit/Wording.h"

namespace ravikit {

Parser::At Parser::startTag(At at) {
    const Name name = readName(at + 1);
    Tag tag{push(NodeKind::Element, at, at, name.id)};
    ++m_tag;
    At const end = attributes(name.end, tag);
    if (m_open.size() > m_limits.depth) {
        return tooDeep(tag, end);
    }
    Node& element = node(tag.element);
    element.flags = tag.flags & 0xF;
    if (outsideRoot()) {
        topElement(tag.element);
    }
    if ((tag.flags & EmptyTag) != 0) {
        element.end = offset(end);
        element.next = m_tree.m_nodes.size();
    } else {
        m_open.push_back({tag.element, name.id, offset(name.end) - element.begin - 1});
        ++m_nameStates[name.id].open;
    }
    return end;
}

Parser::At Parser::attributes(At at, Tag& tag) {
    for (;;) {
        At const begin = at;
        at = skipBlanks(at);
        if (*at == u'>') {
            return at + 1;
        }
        if (*at == u'/' && at[1] == u'>') {
            tag.flags |= EmptyTag;
            return at + 2;
        }
        if (startsName(at)) {
            if (at == begin) {
                missingBlank(at, tag);
            }
            at = attribute(at, tag);
        } else if (at == m_end || *at == u'<') {
            unclosedTag(at, tag);
            return at;
        } else {
            at = junkInTag(at, tag);
        }
    }
}

Parser::At Parser::attribute(At at, Tag& tag) {
    const Name name = readName(at);
    const Id attribute = push(NodeKind::Attribute, at, name.end, name.id);
    NameState& state = m_nameStates[name.id];
    if (state.lastTag == m_tag) {
        duplicateAttribute(attribute, tag);
    }
    state.lastTag = m_tag;

    at = skipBlanks(name.end);
    if (*at != u'=') {
        return attributeWithoutValue(name.end, attribute, tag);
    }
    at = skipBlanks(at + 1);
    const char16_t quote = *at;
    if (quote != u'"' && quote != u'\'') {
        return valueWithoutQuotes(at, attribute, tag);
    }
    At const begin = at + 1;
    const std::size_t problems = m_tree.m_problems.list().size();
    at = value(begin, m_end, quote, attribute);
    At const madeUp =
        *at == quote && at != m_end ? quoteForgotten(begin, at) : endOfOpenValue(begin, at);
    at = madeUp == nullptr ? at + 1 : valueWithoutEnd(begin, madeUp, attribute, tag, problems);
    Node& done = node(attribute);
    done.end = offset(at);
    done.next = m_tree.m_nodes.size();
    return at;
}

// A value from behind its quote on: gives the place of the closing quote. Without one that is the
// place of a < that shows that the quote was forgotten, or `stop`.
Parser::At Parser::value(At begin, At stop, char16_t quote, Id attribute) {
    At at = begin;
    At rawUntil = begin; // before it a < is meant as a character
    for (;;) {
        at = scan::find(at, stop, scan::ValueStop{quote});
        if (at == stop || *at == quote) {
            return at;
        }
        if (*at == u'&') {
            at = valueReference(at, attribute);
        } else if (*at == u'<') {
            if (at >= rawUntil) {
                rawUntil = closingQuoteNear(at, quote);
                if (rawUntil == nullptr) {
                    return at;
                }
                markInValue(at, attribute);
            }
            ++at;
        } else if (isBlank(*at)) {
            mark(attribute, HasReference);
            ++at;
        } else {
            at = character(at);
        }
    }
}

Parser::At Parser::endTag(At at) {
    At const name = at + 2;
    const Open& top = m_open.back();
    if (m_tooDeep == 0 && static_cast<std::size_t>(m_end - name) > top.nameLength &&
        name[top.nameLength] == u'>' &&
        scan::sameUnits(name, place(node(top.element).begin + 1), top.nameLength, m_end)) {
        At const end = name + top.nameLength + 1;
        close(end);
        return end;
    }
    return startsName(name) ? namedEndTag(at, name) : namelessEndTag(at);
}

// An end tag of which `name` is the place of the name.
Parser::At Parser::namedEndTag(At at, At name) {
    const Name read = readName(name);
    At const end = endOfEndTag(at, read.end);
    if (m_tooDeep > 0) {
        --m_tooDeep;
        push(NodeKind::Junk, at, end);
    } else if (!atTop() && m_open.back().name == read.id) {
        close(end);
    } else {
        mismatchedEndTag(at, end, read);
    }
    return end;
}

void Parser::close(At end) {
    const Open& top = m_open.back();
    Node& element = node(top.element);
    element.end = offset(end);
    element.next = m_tree.m_nodes.size();
    --m_nameStates[top.name].open;
    m_open.pop_back();
}

void Parser::topElement(Id element) {
    if (m_tree.m_documentElement == Tree::none) {
        m_tree.m_documentElement = element;
        return;
    }
    if (!m_secondRootTold) {
        m_secondRootTold = true;
        const std::uint32_t begin = node(element).begin;
        const std::u16string_view name = m_tree.name(element);
        problem(ProblemKind::NotWellFormed, place(begin), place(begin) + 1 + name.size(), [&] {
            return quoted(name) + u" stands beside the outermost element " +
                   quoted(m_tree.name(m_tree.m_documentElement)) +
                   u"; a text has one outermost element, which holds all others";
        });
    }
}

// The tag of an element that is not taken in.
Parser::At Parser::tooDeep(const Tag& tag, At end) {
    At const begin = place(node(tag.element).begin);
    m_tree.m_nodes.truncate(tag.element);
    push(NodeKind::Junk, begin, end);
    if (!m_tooDeepTold) {
        m_tooDeepTold = true;
        problem(ProblemKind::TooDeep, begin, end, [&] {
            return u"elements stand more than " + decimal(m_limits.depth) + u" deep in each other";
        });
    }
    if ((tag.flags & EmptyTag) == 0) {
        ++m_tooDeep;
    }
    return end;
}

} // namespace ravikit
