#include "ravikit/xml/Entities.h"

#include "ravikit/text/Chars.h"
#include "ravikit/text/Reference.h"
#include "ravikit/text/Wording.h"
#include "ravikit/xml/HtmlEntities.h"
#include "ravikit/xml/ParserCore.h"

#include <algorithm>
#include <utility>

namespace ravikit {
namespace {

/// What to write instead: the number of a character that HTML has a name for, or `&amp;`.
std::u16string undeclared(std::u16string_view name) {
    const auto* const known = std::lower_bound(
        htmlNames.begin(), htmlNames.end(), name,
        [](const HtmlName& one, std::u16string_view sought) { return one.name < sought; });
    if (known != htmlNames.end() && known->name == name) {
        return u"`&" + std::u16string(name) + u";` is an entity of HTML; write `&#" +
               decimal(known->character) + u";` for its character";
    }
    return u"no entity " + quoted(name) + u" is declared; for the character `&` write `&amp;`";
}

bool fail(Expansion& expansion, ProblemKind kind, std::u16string reason, bool inside) {
    expansion.kind = kind;
    expansion.reason = std::move(reason);
    expansion.inside = inside;
    return true;
}

} // namespace

void Entities::declare(const Declarations* own, bool closed) {
    m_own = own;
    m_closed = closed;
}

Expansion& Entities::inContent(std::u16string_view name) {
    return expand(name, Place::Content);
}

Expansion& Entities::inValue(std::u16string_view name) {
    return expand(name, Place::Value);
}

Expansion& Entities::expand(std::u16string_view name, Place place) {
    auto& read = place == Place::Content ? m_content : m_value;
    const auto [at, isNew] = read.try_emplace(std::u16string(name));
    Expansion& expansion = at->second;
    if (expansion.state == Expansion::State::Read) {
        return expansion;
    }
    m_passing = {};
    if (expansion.state == Expansion::State::Reading) {
        fail(m_passing, ProblemKind::RecursiveEntity,
             u"the entity " + quoted(name) + u" refers to itself", true);
        return m_passing;
    }
    if (m_depth == m_limits.entityDepth) {
        fail(m_passing, ProblemKind::EntityTooLarge,
             u"entities refer to each other more than " + decimal(m_limits.entityDepth) + u" deep",
             true);
        return m_passing;
    }
    expansion.state = Expansion::State::Reading;
    const EntityDeclaration* const declaration = find(at->first);
    if (!refuse(expansion, declaration, name, place) && declaration != nullptr &&
        !declaration->external) {
        ++m_depth;
        if (place == Place::Content) {
            readContent(expansion, *declaration);
        } else {
            readValue(expansion, *declaration);
        }
        --m_depth;
    }
    expansion.state = Expansion::State::Read;
    return expansion;
}

const EntityDeclaration* Entities::find(const std::u16string& name) const {
    for (const Declarations* const declarations : {m_own, m_known}) {
        if (declarations != nullptr) {
            const auto at = declarations->entities.find(name);
            if (at != declarations->entities.end()) {
                return &at->second;
            }
        }
    }
    return nullptr;
}

bool Entities::refuse(Expansion& expansion, const EntityDeclaration* declaration,
                      std::u16string_view name, Place place) const {
    if (declaration == nullptr) {
        // Without a reader's own entities, XML lets an entity be that an unread part may declare.
        if (m_known == nullptr && !m_closed) {
            return false;
        }
        return fail(expansion, ProblemKind::UnknownEntity, undeclared(name), false);
    }
    if (declaration->unparsed) {
        return fail(expansion, ProblemKind::BadReference,
                    u"the entity " + quoted(name) + u" is no text, so it cannot be referred to",
                    false);
    }
    if (declaration->external && (m_known != nullptr || place == Place::Value)) {
        return fail(expansion, ProblemKind::ExternalEntity,
                    u"the entity " + quoted(name) +
                        u" stands in another file, which is never fetched",
                    false);
    }
    return false;
}

void Entities::readContent(Expansion& expansion, const EntityDeclaration& declaration) {
    const auto tree = std::make_shared<Tree>();
    expansion.units = Parser::parseReplacement(*tree, declaration.replacement, *this, m_limits);
    if (!tree->wellFormed()) {
        const Problem& first = tree->problems().list().front();
        fail(expansion, first.kind, first.reason, true);
        return;
    }
    expansion.entity.content = tree;
}

void Entities::readValue(Expansion& expansion, const EntityDeclaration& declaration) {
    const std::u16string_view text = declaration.replacement;
    std::size_t at = 0;
    while (at < text.size() && expansion.reason.empty()) {
        const std::size_t stop = std::min(text.find_first_of(u"<&", at), text.size());
        appendNormalised(expansion.entity.attributeText, text.substr(at, stop - at));
        at = stop;
        if (at < text.size() && text[at] == u'<') {
            fail(expansion, ProblemKind::BadAttribute,
                 u"`<` cannot come into an attribute's value, not by an entity either", true);
        } else if (at < text.size()) {
            const std::size_t end = std::min(text.find(u';', at), text.size() - 1) + 1;
            readValueReference(expansion, text.substr(at, end - at));
            at = end;
        }
    }
    expansion.units = expansion.entity.attributeText.size();
    // What is kept for all entities together is bounded like what one text expands to.
    m_valueUnits += expansion.units;
    if (m_valueUnits > m_limits.entityUnits && expansion.reason.empty()) {
        fail(expansion, ProblemKind::EntityTooLarge, u"the entities expand to too much text", true);
    }
    if (!expansion.reason.empty()) {
        expansion.entity.attributeText = {};
    }
}

// `reference` runs from the & to the ; or, if there is none, to the end of the entity's text.
void Entities::readValueReference(Expansion& expansion, std::u16string_view reference) {
    const std::u16string_view name = reference.substr(1, reference.size() - 2);
    std::u16string& text = expansion.entity.attributeText;
    const bool isCharacter = !name.empty() && name[0] == u'#';
    if (reference.back() != u';' || (!isCharacter && !isName(name))) {
        fail(expansion, ProblemKind::BadReference, u"`&` starts a reference", true);
    } else if (isCharacter) {
        const auto number = characterNumber(name.substr(1));
        if (number && isChar(*number)) {
            appendCodePoint(text, *number);
        } else {
            fail(expansion, ProblemKind::BadReference,
                 quoted(reference) + u" is no character of XML", true);
        }
    } else if (const char16_t c = predefinedEntity(name); c != 0) {
        text.push_back(c);
    } else {
        const Expansion& inner = expand(name, Place::Value);
        if (!inner.reason.empty()) {
            fail(expansion, inner.kind, inner.reason, true);
        } else if (text.size() + inner.units > m_limits.entityUnits) {
            fail(expansion, ProblemKind::EntityTooLarge, u"the entities expand to too much text",
                 true);
        } else {
            text += inner.entity.attributeText;
        }
    }
}

} // namespace ravikit
