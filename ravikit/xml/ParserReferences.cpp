#include "ravikit/text/Reference.h"
#include "ravikit/text/Wording.h"
#include "ravikit/xml/ParserCore.h"

namespace ravikit {

// In content.
Parser::At Parser::reference(At at) {
    const Reference reference = readReference(at);
    if (reference.end == nullptr) {
        return plainText(at);
    }
    push(NodeKind::Reference, at, reference.end, reference.name);
    if (outsideRoot()) {
        outside(at, reference.end);
    } else if (!reference.isCharacter) {
        expand(at, reference, false);
    }
    return reference.end;
}

// In the value of an attribute.
Parser::At Parser::valueReference(At at, Id attribute) {
    const Reference reference = readReference(at);
    if (reference.end == nullptr) {
        mark(attribute, Recovered);
        return at + 1;
    }
    mark(attribute, HasReference);
    push(NodeKind::Reference, at, reference.end, reference.name);
    if (!reference.isCharacter) {
        expand(at, reference, true);
    }
    return reference.end;
}

Parser::Reference Parser::readReference(At at) {
    if (at[1] == u'#') {
        return readCharacterReference(at);
    }
    if (!startsName(at + 1)) {
        problem(ProblemKind::BadReference, at, at + 1,
                u"`&` starts a reference; write `&amp;` for the character itself");
        return {};
    }
    const Name name = readName(at + 1);
    if (*name.end != u';') {
        problem(ProblemKind::BadReference, at, name.end, [&] {
            const std::u16string word(between(at, name.end));
            return u"the reference " + quoted(word) + u" must end with `;`; for the character " +
                   u"`&` itself write `&amp;`";
        });
        return {};
    }
    return {name.end + 1, false, name.id};
}

Parser::Reference Parser::readCharacterReference(At at) {
    At end = at + 2;
    while (*end < 0x80 && (isNameChar(*end))) {
        ++end;
    }
    const auto number = characterNumber(between(at + 2, end));
    if (*end != u';' || !number) {
        problem(ProblemKind::BadReference, at, end, [&] {
            return quoted(between(at, end)) +
                   u" is no reference to a character, which is written as `&#233;` or `&#xE9;`";
        });
        return {};
    }
    if (!isChar(*number)) {
        problem(ProblemKind::BadReference, at, end + 1, [&] {
            return quoted(between(at, end + 1)) + u" stands for a character that no text can hold";
        });
    }
    return {end + 1, true, NameTable::none};
}

void Parser::expand(At at, const Reference& reference, bool inValue) {
    const std::u16string_view name = between(at + 1, reference.end - 1);
    if (predefinedEntity(name) != 0) {
        return;
    }
    Expansion& expansion = inValue ? m_entities.inValue(name) : m_entities.inContent(name);
    if (!expansion.reason.empty()) {
        // A fault in the entity's text is reported once; one in the reference each time.
        if (!expansion.inside || !expansion.reported) {
            problem(expansion.kind, at, reference.end, [&] {
                return expansion.inside && m_kind == Kind::Document
                           ? u"the text of the entity " + quoted(name) + u" cannot be used: " +
                                 expansion.reason
                           : expansion.reason;
            });
        }
        expansion.reported = m_kind == Kind::Document;
        return;
    }
    m_expanded += expansion.units;
    if (m_expanded > m_limits.entityUnits && !m_expandedTold) {
        m_expandedTold = true;
        problem(ProblemKind::EntityTooLarge, at, reference.end, [&] {
            return u"the entities of the text expand to more than " +
                   decimal(m_limits.entityUnits) + u" characters";
        });
    }
    if (m_expandedTold) {
        return;
    }
    Entity& kept = m_tree.m_entities[reference.name];
    if (inValue && kept.attributeText.empty()) {
        kept.attributeText = expansion.entity.attributeText;
    } else if (!inValue && !kept.content) {
        kept.content = expansion.entity.content;
    }
}

} // namespace ravikit
