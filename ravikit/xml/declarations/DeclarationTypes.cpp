#include "ravikit/xml/declarations/DeclarationReader.h"

#include "ravikit/text/Chars.h"
#include "ravikit/text/Reference.h"
#include "ravikit/text/Tokens.h"
#include "ravikit/text/Wording.h"

#include <algorithm>
#include <array>
#include <utility>

namespace ravikit {

bool DeclarationReader::element() {
    if (!needBlank(u"<!ELEMENT")) {
        return false;
    }
    ElementDeclaration declaration;
    declaration.name = neededName(u"an element");
    if (declaration.name.empty() || !needBlank(declaration.name) || !content(declaration)) {
        return false;
    }
    if (m_elementsSeen.insert(declaration.name).second) {
        m_result.elements.push_back(std::move(declaration));
    }
    return true;
}

bool DeclarationReader::content(ElementDeclaration& declaration) {
    using Content = ElementDeclaration::Content;
    if (m_input.accept(u"EMPTY")) {
        declaration.content = Content::Empty;
        return true;
    }
    if (m_input.accept(u"ANY")) {
        declaration.content = Content::Any;
        return true;
    }
    const std::uint32_t level = m_input.level();
    if (!m_input.accept(u"(")) {
        return fail(u"what an element may hold must stand here: `EMPTY`, `ANY` or a group in `(` "
                    u"and `)`");
    }
    skipBlanks();
    if (m_input.accept(u"#PCDATA")) {
        declaration.content = Content::Mixed;
        return mixedContent(declaration.model, level);
    }
    declaration.content = Content::Children;
    return group(declaration.model, level, 1);
}

// After "(#PCDATA".
bool DeclarationReader::mixedContent(ContentParticle& model, std::uint32_t level) {
    model.kind = ContentParticle::Kind::Choice;
    model.repeat = ContentParticle::Repeat::ZeroOrMore;
    model.children.push_back({ContentParticle::Kind::PcData, {}, {}, {}});
    for (skipBlanks(); m_input.accept(u"|"); skipBlanks()) {
        skipBlanks();
        const std::u16string_view name = neededName(u"an element");
        if (name.empty()) {
            return false;
        }
        model.children.push_back({ContentParticle::Kind::Name, {}, std::u16string(name), {}});
    }
    if (m_input.level() != level) {
        return fail(u"a group must begin and end in the same parameter entity");
    }
    if (m_input.accept(u")*") || (model.children.size() == 1 && m_input.accept(u")"))) {
        return true;
    }
    return fail(u"a group with `#PCDATA` and elements has the form `(#PCDATA | a | b)*`");
}

// After the ( of a group, which stood at `level`; reads up to what follows the ).
bool DeclarationReader::group(ContentParticle& group, std::uint32_t level, int depth) {
    constexpr int deepest = 128;
    if (depth > deepest) {
        return fail(u"groups stand inside each other too deep", ProblemKind::TooDeep);
    }
    group.kind = ContentParticle::Kind::Sequence;
    char16_t separator = 0;
    while (groupMember(group, depth)) {
        skipBlanks();
        const char16_t c = m_input.peek();
        if (c == u')') {
            if (m_input.level() != level) {
                return fail(u"a group must begin and end in the same parameter entity");
            }
            m_input.advance(1);
            repeat(group);
            return true;
        }
        if ((c != u',' && c != u'|') || (separator != 0 && separator != c)) {
            return fail(u"between the members of a group must stand `,` everywhere or `|` "
                        u"everywhere, and `)` after them");
        }
        separator = c;
        if (c == u'|') {
            group.kind = ContentParticle::Kind::Choice;
        }
        m_input.advance(1);
    }
    return false;
}

bool DeclarationReader::groupMember(ContentParticle& group, int depth) {
    skipBlanks();
    ContentParticle& member = group.children.emplace_back();
    const std::uint32_t level = m_input.level();
    if (m_input.accept(u"(")) {
        return this->group(member, level, depth + 1);
    }
    member.name = neededName(u"an element");
    repeat(member);
    return !member.name.empty();
}

void DeclarationReader::repeat(ContentParticle& particle) {
    using Repeat = ContentParticle::Repeat;
    if (m_input.accept(u"?")) {
        particle.repeat = Repeat::Optional;
    } else if (m_input.accept(u"*")) {
        particle.repeat = Repeat::ZeroOrMore;
    } else if (m_input.accept(u"+")) {
        particle.repeat = Repeat::OneOrMore;
    }
}

bool DeclarationReader::attributes() {
    if (!needBlank(u"<!ATTLIST")) {
        return false;
    }
    const std::u16string element(neededName(u"an element"));
    if (element.empty()) {
        return false;
    }
    bool blank = skipBlanks();
    while (m_input.peek() != u'>') {
        if (!blank) {
            return fail(u"a blank must stand here");
        }
        if (!attribute(element)) {
            return false;
        }
        blank = skipBlanks();
    }
    return true;
}

bool DeclarationReader::attribute(const std::u16string& element) {
    AttributeDeclaration declaration;
    declaration.element = element;
    declaration.name = neededName(u"an attribute");
    if (declaration.name.empty() || !needBlank(declaration.name) || !attributeType(declaration) ||
        !needBlank(u"the type of an attribute") || !attributeDefault(declaration)) {
        return false;
    }
    if (m_attributesSeen.insert(element + u' ' + declaration.name).second) {
        m_result.attributes.push_back(std::move(declaration));
    }
    return true;
}

bool DeclarationReader::attributeType(AttributeDeclaration& declaration) {
    using Type = AttributeDeclaration::Type;
    struct Word {
        std::u16string_view word;
        Type type;
    };
    // A word stands before the words that begin it.
    static constexpr std::array<Word, 8> words = {{{u"CDATA", Type::CData},
                                                   {u"IDREFS", Type::IdRefs},
                                                   {u"IDREF", Type::IdRef},
                                                   {u"ID", Type::Id},
                                                   {u"ENTITY", Type::Entity},
                                                   {u"ENTITIES", Type::Entities},
                                                   {u"NMTOKENS", Type::NmTokens},
                                                   {u"NMTOKEN", Type::NmToken}}};
    for (const auto& [word, type] : words) {
        if (m_input.accept(word)) {
            declaration.type = type;
            return true;
        }
    }
    const bool isNotation = m_input.accept(u"NOTATION");
    declaration.type = isNotation ? Type::Notation : Type::Enumeration;
    return (!isNotation || needBlank(u"NOTATION")) && enumeration(declaration);
}

bool DeclarationReader::enumeration(AttributeDeclaration& declaration) {
    if (m_input.peek() != u'(') {
        return fail(u"the type of an attribute must stand here, such as `CDATA` or `(a | b)`");
    }
    do {
        m_input.advance(1);
        skipBlanks();
        const std::u16string_view value = declaration.type == AttributeDeclaration::Type::Notation
                                              ? m_input.name()
                                              : m_input.nameToken();
        if (value.empty()) {
            return fail(u"a value that the attribute may have must stand here");
        }
        declaration.values.emplace_back(value);
        skipBlanks();
    } while (m_input.peek() == u'|');
    return m_input.accept(u")") || fail(u"`|` or `)` must stand here");
}

bool DeclarationReader::attributeDefault(AttributeDeclaration& declaration) {
    using Default = AttributeDeclaration::Default;
    if (m_input.accept(u"#REQUIRED")) {
        declaration.defaultKind = Default::Required;
        return true;
    }
    if (m_input.accept(u"#IMPLIED")) {
        declaration.defaultKind = Default::Implied;
        return true;
    }
    declaration.defaultKind = Default::Value;
    if (m_input.accept(u"#FIXED")) {
        declaration.defaultKind = Default::Fixed;
        if (!needBlank(u"#FIXED")) {
            return false;
        }
    }
    return defaultValue(declaration);
}

bool DeclarationReader::defaultValue(AttributeDeclaration& declaration) {
    const auto text = literal(u"`#REQUIRED`, `#IMPLIED` or a value");
    if (!text) {
        return false;
    }
    std::u16string& value = declaration.defaultValue;
    for (std::size_t i = 0; i < text->size();) {
        const std::size_t next = std::min(text->find_first_of(u"<&", i), text->size());
        appendNormalised(value, text->substr(i, next - i));
        i = next;
        if (i == text->size()) {
            break;
        }
        const std::size_t end = text->find(u';', i);
        if ((*text)[i] == u'<' || end == std::u16string_view::npos) {
            return fail(u"`<` and `&` cannot stand in an attribute's value; write `&lt;` and "
                        u"`&amp;`",
                        ProblemKind::BadAttribute);
        }
        const std::u16string_view name = text->substr(i + 1, end - i - 1);
        if (name.starts_with(u'#')) {
            if (!characterReference(value, *text, i)) {
                return false;
            }
        } else if (!defaultReference(value, name)) {
            return false;
        }
        i = end + 1;
    }
    if (declaration.type != AttributeDeclaration::Type::CData) {
        value = joinedTokens(value);
    }
    return true;
}

bool DeclarationReader::defaultReference(std::u16string& value, std::u16string_view name) {
    if (!isName(name)) {
        return fail(u"`&` begins a reference; as a character write `&amp;`",
                    ProblemKind::BadReference);
    }
    if (const char16_t c = predefinedEntity(name); c != 0) {
        value.push_back(c);
        return true;
    }
    if (!m_values) {
        m_values.emplace(m_context.known, m_limits);
    }
    // Only what has been declared so far counts.
    m_values->declare(&m_result, !mayBeUndeclared());
    const Expansion& expansion = m_values->inValue(name);
    if (!expansion.reason.empty()) {
        return fail(expansion.reason, expansion.kind);
    }
    value += expansion.entity.attributeText;
    return spend(expansion.entity.attributeText.size() + expansion.units);
}

bool DeclarationReader::notation() {
    if (!needBlank(u"<!NOTATION")) {
        return false;
    }
    const std::u16string_view name = neededName(u"a notation");
    if (name.empty() || !needBlank(name) || !externalId(false, nullptr)) {
        return false;
    }
    m_result.notations.emplace_back(name);
    return true;
}

} // namespace ravikit
