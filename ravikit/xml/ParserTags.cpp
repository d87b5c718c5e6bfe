#include "ravikit/text/NearMiss.h"
#include "ravikit/text/Wording.h"
#include "ravikit/xml/ParserCore.h"

#include <algorithm>

// Elements and their end tags, as far as something is out of the ordinary.
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
            return quoted(name) + u" stands beside the root element " +
                   quoted(m_tree.name(m_tree.m_documentElement)) +
                   u"; a text has one root element, which holds all others";
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
    if (!atTop() && misspeltTag(at, end, word)) {
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
    if (!atTop()) {
        mark(m_open.back().element, Recovered); // what it ends may be what is missing in there
    }
    const bool isOfTextOutside = outsideRoot() && m_outsideEnd != nullptr;
    if (!isOfTextOutside && !wasClosedEarly(name.id)) {
        problem(ProblemKind::StrayEndTag, at, end, [&] {
            return quotedEndTag(word) + u" ends nothing: no " + quoted(word) + u" is open here";
        });
    }
}

// An end tag that ends nothing by its name, but is meant to end the innermost open element: it is
// misspelt, or the start tag is. False if that element's own end tag comes later.
bool Parser::misspeltTag(At at, At end, std::u16string_view word) {
    const Open& top = m_open.back();
    const std::u16string_view name = m_tree.name(top.element);
    At const next = nextEndOfLevel(end);
    if (next != nullptr && between(next, nameEnd(next)) == name) {
        return false;
    }
    NearMiss near(word);
    near.offer(name);
    const bool isKnown = isElementName(name);
    if (!isKnown && (isElementName(word) || !near.best().empty())) {
        At const begin = place(node(top.element).begin + 1);
        problem(ProblemKind::UnclosedElement, begin, begin + name.size(), [&] {
            return quoted(name) + u" is closed by " + quotedEndTag(word) + u"; did you mean " +
                   quoted(word) + u"?";
        });
        mark(top.element, Recovered);
    } else if (isKnown && !isElementName(word)) {
        problem(ProblemKind::StrayEndTag, at, end, [&] {
            return quoted(name) + u" is closed by " + quotedEndTag(word) + u"; write " +
                   quotedEndTag(name);
        });
    } else {
        return false;
    }
    close(end);
    return true;
}

// The name in the next end tag that does not end what begins after `from`; none if that is not
// found near.
Parser::At Parser::nextEndOfLevel(At from) const {
    constexpr std::ptrdiff_t farthest = 4000;
    At const stop = m_end - from > farthest ? from + farthest : m_end;
    int depth = 0;
    for (At at = std::find(from, stop, u'<'); at != stop; at = std::find(at + 1, stop, u'<')) {
        if (at[1] == u'/') {
            if (depth-- == 0) {
                return at + 2;
            }
        } else if (startsName(at + 1)) {
            At const close = std::find(at, stop, u'>');
            const bool isEmpty = close != stop && close[-1] == u'/';
            depth += isEmpty ? 0 : 1;
        }
    }
    return nullptr;
}

bool Parser::isElementName(std::u16string_view name) const {
    const Declarations* const known = m_entities.known();
    return known != nullptr &&
           std::any_of(known->elements.begin(), known->elements.end(),
                       [name](const ElementDeclaration& one) { return one.name == name; });
}

bool Parser::isDeclaredEmpty(std::u16string_view name) const {
    const Declarations* const known = m_entities.known();
    return known != nullptr &&
           std::any_of(known->elements.begin(), known->elements.end(),
                       [name](const ElementDeclaration& one) {
                           return one.name == name &&
                                  one.content == ElementDeclaration::Content::Empty;
                       });
}

std::u16string Parser::howToClose(const Open& open) const {
    const std::u16string_view name = m_tree.name(open.element);
    if (!isDeclaredEmpty(name)) {
        return u"write " + quotedEndTag(name);
    }
    const Id inside = open.element + 1;
    const bool hasAttributes =
        inside < m_tree.m_nodes.size() && m_tree.kind(inside) == NodeKind::Attribute;
    return u"write `<" + std::u16string(name) + (hasAttributes ? u" .../>`" : u"/>`");
}

// Drops what was closed early in surroundings that have ended since.
void Parser::forgetClosedEarly() {
    while (!m_closedEarly.empty() && m_closedEarly.back().depth > m_open.size()) {
        m_closedEarly.pop_back();
    }
}

// Whether an end tag of this name was already reported as missing where it should have stood.
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
    problem(ProblemKind::UnclosedElement, place(begin + 1), place(begin + 1 + top.nameLength), [&] {
        const std::u16string_view name = m_tree.name(top.element);
        const std::uint32_t opened = lineOf(begin);
        const std::uint32_t closed = lineOf(offset(at));
        return quoted(name) + (opened == closed ? u"" : u" opened on line " + decimal(opened)) +
               u" is closed by " + quotedEndTag(closer) +
               (opened == closed ? u"" : u" on line " + decimal(closed)) + u"; " + howToClose(top) +
               (isDeclaredEmpty(name) ? u"" : u" first");
    });
    mark(top.element, Recovered);
    close(at);
}

// An end tag that does not begin with a name.
Parser::At Parser::namelessEndTag(At at) {
    At const name = skipBlanks(at + 2);
    if (name != at + 2 && startsName(name)) {
        problem(ProblemKind::BadTag, at, name, u"no blank may stand after `</`");
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

// From after the name in an end tag.
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

} // namespace ravikit
