#include "ravikit/xml/ParserCore.h"

// The road that most of a text takes. Its functions stand together so that they become one loop;
// whatever is rare is a call into another file.
namespace ravikit {

inline Parser::At Parser::textEnd(At at) {
    for (;;) {
        at = scan::find(at, m_end, scan::TextStop());
        if (at == m_end || *at == u'<' || *at == u'&') {
            return at;
        }
        at = isBlank(*at) ? scan::skipManyBlanks(at, m_end) : unusualText(at);
    }
}

inline Parser::At Parser::text(At at) {
    At const begin = at;
    if (isBlank(*at)) {
        at = scan::skipManyBlanks(at, m_end);
        if (at == m_end || *at == u'<' || *at == u'&') {
            push(NodeKind::Blank, begin, at);
            return at;
        }
    }
    at = textEnd(at);
    push(NodeKind::Text, begin, at);
    if (outsideRoot()) {
        outside(begin, at);
    }
    return at;
}

// Text that begins with a mark that is no markup. It goes on a text before it, which keeps a
// text full of such marks from filling the memory with nodes.
Parser::At Parser::plainText(At at) {
    At const begin = at;
    at = textEnd(at + 1);
    const Id last = m_tree.m_nodes.size() - 1;
    if (m_tree.kind(last) == NodeKind::Text && node(last).end == offset(begin)) {
        node(last).end = offset(at);
    } else {
        push(NodeKind::Text, begin, at);
    }
    if (outsideRoot()) {
        outside(begin, at);
    }
    return at;
}

// A value from after its quote on: gives the place of the closing quote. Without one that is the
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

inline Parser::At Parser::attribute(At at, Tag& tag) {
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
    if (at != m_end && *at == quote && endsValue(at[1])) {
        ++at;
    } else {
        at = unusualValueEnd(begin, at, attribute, tag, problems);
    }
    Node& done = node(attribute);
    done.end = offset(at);
    done.next = m_tree.m_nodes.size();
    return at;
}

inline Parser::At Parser::attributes(At at, Tag& tag) {
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

inline Parser::At Parser::startTag(At at, At nameAt) {
    const Name name = readName(nameAt);
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

inline Parser::At Parser::endTag(At at) {
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

inline Parser::At Parser::markup(At at) {
    const char16_t next = at[1];
    if (next == u'/') {
        return endTag(at);
    }
    if (startsName(at + 1)) {
        return startTag(at, at + 1);
    }
    if (next == u'!') {
        return exclamation(at);
    }
    return next == u'?' ? instruction(at) : plainMark(at);
}

// A start tag with blanks before its name.
Parser::At Parser::spacedStartTag(At at, At name) {
    problem(ProblemKind::BadTag, at, name, u"no blank may stand after `<`");
    return startTag(at, name);
}

void Parser::content(At at) {
    while (at != m_end) {
        if (*at == u'<') {
            at = markup(at);
        } else if (*at == u'&') {
            at = reference(at);
        } else {
            at = text(at);
        }
    }
}

} // namespace ravikit
