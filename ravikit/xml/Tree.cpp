#include "ravikit/xml/Tree.h"

#include "ravikit/text/Chars.h"
#include "ravikit/text/Reference.h"
#include "ravikit/xml/declarations/Declarations.h"

namespace ravikit {

Tree::~Tree() = default;

Tree::Id Tree::firstContent(Id id) const {
    const Id behind = m_nodes[id].next;
    Id at = id + 1;
    while (at < behind && kind(at) == NodeKind::Attribute) {
        at = m_nodes[at].next;
    }
    return at;
}

Tree::Id Tree::parent(Id id) const {
    if (id == document) {
        return none;
    }
    Id above = document;
    Id at = document + 1;
    while (at != id) {
        if (m_nodes[at].next > id) {
            above = at++;
        } else {
            at = m_nodes[at].next;
        }
    }
    return above;
}

std::uint32_t Tree::startTagEnd(Id id) const {
    const Node& element = m_nodes[id];
    std::uint32_t at = element.begin + 1 + static_cast<std::uint32_t>(name(id).size());
    for (Id next = id + 1; next < element.next && kind(next) == NodeKind::Attribute;
         next = m_nodes[next].next) {
        at = m_nodes[next].end;
    }
    // After the last attribute a tag that recovery had to fix may hold anything but these two.
    while (at < element.end && m_text[at] != u'>' && m_text[at] != u'<') {
        ++at;
    }
    return at < element.end && m_text[at] == u'>' ? at + 1 : at;
}

std::uint32_t Tree::endTagBegin(Id id) const {
    const Node& element = m_nodes[id];
    if (has(id, EmptyTag)) {
        return element.end;
    }
    if (!has(id, Recovered)) {
        return static_cast<std::uint32_t>(m_text.rfind(u'<', element.end - 1));
    }
    // There may be no end tag: the end of the content says.
    std::uint32_t contentEnd = startTagEnd(id);
    for (Id at = firstContent(id); at < element.next; at = m_nodes[at].next) {
        contentEnd = m_nodes[at].end;
    }
    return contentEnd;
}

std::u16string_view Tree::rawValue(Id attribute) const {
    std::u16string_view rest = source(attribute).substr(name(attribute).size());
    while (!rest.empty() && isBlank(rest[0])) {
        rest.remove_prefix(1);
    }
    if (rest.empty() || rest[0] != u'=') {
        return {};
    }
    rest.remove_prefix(1);
    while (!rest.empty() && isBlank(rest[0])) {
        rest.remove_prefix(1);
    }
    if (!rest.empty() && (rest[0] == u'"' || rest[0] == u'\'')) {
        const char16_t quote = rest[0];
        rest.remove_prefix(1);
        if (!rest.empty() && rest.back() == quote) {
            rest.remove_suffix(1);
        }
    }
    return rest;
}

std::u16string Tree::value(Id attribute) const {
    const std::u16string_view raw = rawValue(attribute);
    if (!has(attribute, HasReference)) {
        return std::u16string(raw);
    }
    std::u16string value;
    const auto begin = static_cast<std::uint32_t>(raw.data() - m_text.data());
    std::uint32_t at = begin;
    for (Id id = attribute + 1; id < m_nodes[attribute].next; ++id) {
        appendNormalised(value, raw.substr(at - begin, m_nodes[id].begin - at));
        const auto entity = m_entities.find(m_nodes[id].name);
        value += entity == m_entities.end() ? referenceText(id) : entity->second.attributeText;
        at = m_nodes[id].end;
    }
    appendNormalised(value, raw.substr(at - begin));
    return value;
}

Tree::Id Tree::attribute(Id element, std::u16string_view name) const {
    const Id behind = m_nodes[element].next;
    for (Id at = element + 1; at < behind && kind(at) == NodeKind::Attribute;
         at = m_nodes[at].next) {
        if (this->name(at) == name) {
            return at;
        }
    }
    return none;
}

const Tree* Tree::entityTree(Id reference) const {
    const auto entity = m_entities.find(m_nodes[reference].name);
    return entity == m_entities.end() ? nullptr : entity->second.content.get();
}

std::u16string Tree::referenceText(Id reference) const {
    std::u16string_view digits = source(reference);
    if (digits.size() < 3 || digits.back() != u';') {
        return {};
    }
    std::u16string text;
    if (digits[1] == u'#') {
        const auto number = characterNumber(digits.substr(2, digits.size() - 3));
        if (number && isChar(*number)) {
            appendCodePoint(text, *number);
        }
        return text;
    }
    if (const char16_t c = predefinedEntity(name(reference)); c != 0) {
        return {c};
    }
    const auto entity = m_entities.find(m_nodes[reference].name);
    if (entity == m_entities.end()) {
        return {};
    }
    if (!entity->second.content) {
        return entity->second.attributeText; // no reference in content needed more
    }
    const Tree* const content = entity->second.content.get();
    for (Id id = 1; id < content->size(); ++id) {
        switch (content->kind(id)) {
        case NodeKind::Attribute:
            id = (*content)[id].next - 1;
            break;
        case NodeKind::Text:
        case NodeKind::Blank:
            text += content->source(id);
            break;
        case NodeKind::CData:
            text += content->source(id).substr(9, content->source(id).size() - 12);
            break;
        case NodeKind::Reference:
            text += content->referenceText(id);
            break;
        default:
            break;
        }
    }
    return text;
}

std::size_t Tree::memoryUse() const {
    std::size_t bytes = sizeof(Tree) + m_ownText.capacity() * sizeof(char16_t) + m_nodes.bytes() +
                        m_names.memoryUse() + m_problems.list().capacity() * sizeof(Problem);
    for (const Problem& problem : m_problems.list()) {
        bytes += problem.reason.capacity() * sizeof(char16_t);
    }
    for (const auto& [name, entity] : m_entities) {
        bytes += sizeof(name) + sizeof(entity) + entity.attributeText.capacity() * sizeof(char16_t);
        bytes += entity.content ? entity.content->memoryUse() : 0;
    }
    return bytes;
}

} // namespace ravikit
