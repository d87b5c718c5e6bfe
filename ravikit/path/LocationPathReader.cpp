#include "ravikit/path/LocationPathReader.h"

#include "ravikit/text/Chars.h"
#include "ravikit/text/Wording.h"

#include <limits>
#include <utility>

namespace ravikit {

bool LocationPathReader::read() {
    do {
        if (!readAlternative()) {
            return false;
        }
    } while (take(u"|"));
    return m_at == m_text.size() || fail(u"the end, `/`, `[` or `|`");
}

bool LocationPathReader::readAlternative() {
    skipBlanks();
    LocationPath::Alternative& alternative = m_path.m_alternatives.emplace_back();
    alternative.absolute = at(u"/");
    bool fromDescendants = take(u"//");
    if (!fromDescendants && take(u"/") && (m_at == m_text.size() || at(u"|"))) {
        return true; // the document itself
    }
    for (;;) {
        if (!readStep(fromDescendants)) {
            return false;
        }
        fromDescendants = take(u"//");
        if (!fromDescendants && !take(u"/")) {
            return true;
        }
    }
}

bool LocationPathReader::readStep(bool fromDescendants) {
    Step step;
    step.fromDescendants = fromDescendants;
    if (take(u"..")) {
        step.axis = Step::Axis::Parent;
    } else if (take(u".")) {
        step.axis = Step::Axis::Self;
    } else if (!readNameTest(step)) {
        return false;
    } else {
        while (take(u"[")) {
            if (!readPredicate(step)) {
                return false;
            }
        }
    }
    m_path.m_alternatives.back().steps.push_back(std::move(step));
    return true;
}

bool LocationPathReader::readNameTest(Step& step) {
    if (take(u"@")) {
        step.axis = Step::Axis::Attribute;
    }
    return take(u"*") || readName(step.name) || fail(u"a name, `*`, `@`, `.` or `..`");
}

bool LocationPathReader::readPredicate(Step& step) {
    Predicate predicate;
    constexpr std::uint32_t beyondAll = std::numeric_limits<std::uint32_t>::max();
    const std::size_t first = m_at;
    for (; m_at < m_text.size() && m_text[m_at] >= u'0' && m_text[m_at] <= u'9'; ++m_at) {
        const std::uint32_t digit = m_text[m_at] - u'0';
        const bool fits = predicate.position < beyondAll / 10;
        predicate.position = fits ? predicate.position * 10 + digit : beyondAll;
    }
    if (m_at == first && (!take(u"@") || !readAttributePredicate(predicate))) {
        return fail(u"a number, `@name` or `@name='value'`");
    }
    skipBlanks();
    step.predicates.push_back(std::move(predicate));
    return take(u"]") || fail(u"`]`");
}

bool LocationPathReader::readAttributePredicate(Predicate& predicate) {
    predicate.kind = Predicate::Kind::HasAttribute;
    if (!readName(predicate.name)) {
        return false;
    }
    if (!take(u"=")) {
        return true;
    }
    predicate.kind = Predicate::Kind::AttributeEquals;
    return readLiteral(predicate.value);
}

bool LocationPathReader::readLiteral(std::u16string& value) {
    if (!at(u"'") && !at(u"\"")) {
        return false;
    }
    const std::size_t close = m_text.find(m_text[m_at], m_at + 1);
    if (close == std::u16string_view::npos) {
        return false;
    }
    value = m_text.substr(m_at + 1, close - m_at - 1);
    m_at = close + 1;
    skipBlanks();
    return true;
}

bool LocationPathReader::readName(std::u16string& name) {
    const std::size_t first = m_at;
    if (!readNamePart()) {
        return false;
    }
    if (at(u":")) {
        ++m_at;
        // Two colons make an axis of the name before them.
        if (!readNamePart()) {
            m_at = first;
            return false;
        }
    }
    name = m_text.substr(first, m_at - first);
    skipBlanks();
    return true;
}

bool LocationPathReader::readNamePart() {
    const std::size_t first = m_at;
    while (m_at < m_text.size()) {
        const char32_t c = codePointAt(m_text, m_at);
        if (c == u':' || !(m_at == first ? isNameStart(c) : isNameChar(c))) {
            break;
        }
        m_at += unitsOf(c);
    }
    return m_at > first;
}

void LocationPathReader::skipBlanks() {
    while (m_at < m_text.size() && isBlank(m_text[m_at])) {
        ++m_at;
    }
}

bool LocationPathReader::take(std::u16string_view token) {
    if (!at(token)) {
        return false;
    }
    m_at += token.size();
    skipBlanks();
    return true;
}

bool LocationPathReader::fail(std::u16string_view expected) {
    if (m_reason.empty()) {
        m_reason = u"In the location path " + quoted(m_text) + u", ";
        m_reason += expected;
        m_reason += m_at < m_text.size()
                        ? u" should stand in front of " + quoted(m_text.substr(m_at))
                        : u" should stand at the end";
    }
    return false;
}

} // namespace ravikit
