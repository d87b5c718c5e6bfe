#pragma once

#include "ravikit/validity/ContentModel.h"
#include "ravikit/xml/NameTable.h"
#include "ravikit/xml/declarations/Declarations.h"

#include <cstdint>
#include <string>
#include <vector>

namespace ravikit {

/// What may stand as an attribute's value.
struct AttributeRules {
    const AttributeDeclaration* declaration = nullptr;
    bool required = false;
    bool plain = false; ///< any text will do
};

/// What may stand in an element.
struct ElementRules {
    std::u16string_view name;
    bool declared = false;
    bool holdsText = false;
    bool holdsNothing = false; ///< declared EMPTY: not even blanks
    ContentTable content;
    std::vector<std::uint16_t> attributeIndex; ///< by attribute name: 1 plus the index, or 0
    std::vector<AttributeRules> attributes;
    std::uint32_t required = 0; ///< how many attributes it must have
};

struct DtdTables;

/// What the names of a text mean to a DTD, by their numbers in the text's table.
struct NameMeanings {
    static constexpr Symbol unknown = 0xFFFF;
    static constexpr std::uint16_t noAttribute = 0xFFFF;

    std::vector<Symbol> elements;          ///< an undeclared one is unknown
    std::vector<std::uint16_t> attributes; ///< by the numbers of DtdTables::attributeNames

    /// Takes in the names that the table has beyond those that are known here.
    void learn(const NameTable& names, const DtdTables& dtd);
};

/// A DTD in the form in which it is judged by.
struct DtdTables {
    Declarations declarations;
    NameTable elementNames;
    NameTable attributeNames;
    std::vector<ElementRules> elements; ///< by symbol
    std::vector<Symbol> roots;          ///< which the document element can be
    ElementRules anything;              ///< of an element that nothing is known of
    NameMeanings meanings;              ///< of Declarations::names

    /// How an author calls what the DTD declares, such as "WML element".
    std::u16string kindOfElement;
};

} // namespace ravikit
