#include "ravikit/validity/Judge.h"

#include "ravikit/text/Chars.h"
#include "ravikit/text/Tokens.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace ravikit {
namespace {

bool isNameToken(std::u16string_view token) {
    for (std::size_t i = 0; i < token.size(); i += unitsOf(codePointAt(token, i))) {
        if (!isNameChar(codePointAt(token, i))) {
            return false;
        }
    }
    return !token.empty();
}

template <class Condition>
bool allTokens(std::u16string_view value, const Condition& condition) {
    for (auto token = nextToken(value); !token.empty(); token = nextToken(value)) {
        if (!condition(token)) {
            return false;
        }
    }
    return true;
}

} // namespace

// Gives where the element's content begins.
Judge::Id Judge::attributes(const Walk& walk, Id element, const ElementRules& rules) {
    const Tree& tree = walk.tree;
    const Id behind = tree[element].next;
    std::uint32_t required = 0;
    std::vector<std::u16string_view> meant; // by misspelt names: these are not reported as missing
    Id id = element + 1;
    for (; id < behind && tree.kind(id) == NodeKind::Attribute; id = tree[id].next) {
        const std::uint16_t name = walk.source.attribute(tree[id]);
        const std::uint16_t index = name == noAttribute ? 0 : rules.attributeIndex[name];
        if (index == 0) {
            meant.push_back(tellUnknownAttribute(walk, id, rules));
            continue;
        }
        const AttributeRules& attribute = rules.attributes[index - 1];
        required += attribute.required ? 1 : 0;
        if (!attribute.plain && !tree.has(id, Recovered)) {
            attributeValue(walk, id, attribute);
        }
    }
    if (required != rules.required && !tree.has(element, Recovered)) {
        tellMissingAttributes(walk, element, rules, meant);
    }
    return id;
}

void Judge::attributeValue(const Walk& walk, Id id, const AttributeRules& attribute) {
    const AttributeDeclaration& declaration = *attribute.declaration;
    std::u16string made;
    std::u16string_view value = walk.tree.rawValue(id);
    if (walk.tree.has(id, HasReference)) {
        made = walk.tree.value(id);
        value = made;
    }
    if (declaration.type != AttributeDeclaration::Type::CData &&
        value.find(u' ') != std::u16string_view::npos) {
        made = joinedTokens(value);
        value = made;
    }
    if (!allowed(walk, id, declaration, value)) {
        tellBadValue(walk, id, declaration, value);
    }
}

bool Judge::allowed(const Walk& walk, Id id, const AttributeDeclaration& declaration,
                    std::u16string_view value) {
    using Type = AttributeDeclaration::Type;
    if (declaration.defaultKind == AttributeDeclaration::Default::Fixed &&
        value != declaration.defaultValue) {
        return false;
    }
    switch (declaration.type) {
    case Type::CData:
        return true;
    case Type::Notation:
    case Type::Enumeration:
        return std::find(declaration.values.begin(), declaration.values.end(), value) !=
               declaration.values.end();
    case Type::NmToken:
        return isNameToken(value);
    case Type::NmTokens:
        return !value.empty() && allTokens(value, isNameToken);
    case Type::Id:
        return isName(value) && identify(walk, id, value);
    case Type::IdRef:
        return isName(value) && refer(walk, id, value);
    case Type::IdRefs:
        return !value.empty() && allTokens(value, isName) && refer(walk, id, value);
    case Type::Entity:
        return isUnparsedEntity(value);
    case Type::Entities:
        return !value.empty() && allTokens(value, [this](std::u16string_view name) {
            return isUnparsedEntity(name);
        });
    }
    return true;
}

// Always true: what is wrong with a second one is not how it is written.
bool Judge::identify(const Walk& walk, Id id, std::u16string_view value) {
    const NameTable::Id number = m_ids.intern(value);
    if (number == m_idPlaces.size()) {
        m_idPlaces.push_back(placeOf(walk, id).begin);
    } else if (number < m_idPlaces.size()) {
        tellSecondId(walk, id, value, m_idPlaces[number]);
    }
    return true;
}

// Always true: whether the id exists is known at the end.
bool Judge::refer(const Walk& walk, Id id, std::u16string_view values) {
    for (auto value = nextToken(values); !value.empty(); value = nextToken(values)) {
        m_referredIds.push_back({std::u16string(value), valuePlace(walk, id)});
    }
    return true;
}

void Judge::checkReferredIds() {
    for (const ReferredId& referred : m_referredIds) {
        if (m_ids.find(referred.value) == NameTable::none) {
            tellUnknownId(referred);
        }
    }
}

bool Judge::isUnparsedEntity(std::u16string_view name) const {
    for (const Declarations* const declarations : {m_tree.internalSubset(), &m_dtd.declarations}) {
        if (declarations != nullptr) {
            const auto entity = declarations->entities.find(std::u16string(name));
            if (entity != declarations->entities.end()) {
                return entity->second.unparsed;
            }
        }
    }
    return false;
}

} // namespace ravikit
