#pragma once

#include "ravikit/xml/Entities.h"
#include "ravikit/xml/declarations/DeclarationInput.h"
#include "ravikit/xml/declarations/Declarations.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace ravikit {

/// One run over the declarations of a DTD.
///
/// A function that reads a part of a declaration gives false, or nothing, if it is not there as it
/// must be; the problem is reported by then. The rest of that declaration is stepped over.
class DeclarationReader {
public:
    DeclarationReader(std::u16string_view text, std::uint32_t begin, std::uint32_t end,
                      bool internalSubset, Problems& problems, const SubsetContext& context);

    Declarations read();

private:
    // DeclarationReader.cpp: what stands side by side.
    bool declaration();
    bool textDeclaration();
    bool conditionalSection();
    bool ignoredSection();
    bool comment();
    bool instruction();
    bool end(std::uint32_t level);
    void skipDeclaration(std::size_t depth, std::uint32_t begin);

    // DeclarationParts.cpp: blanks, literals, references to parameter entities, problems.
    bool skipBlanks() { return skipBlanks(!m_internal || m_input.depth() > 0); }
    bool skipBlanks(bool expand);
    bool needBlank(std::u16string_view behind);
    bool parameterReference();
    bool findParameter(std::u16string_view name, ParameterEntity*& entity);
    std::optional<std::u16string_view> literal(std::u16string_view what);
    std::u16string_view neededName(std::u16string_view what);
    bool externalId(bool needSystem, std::u16string_view* system);
    bool characters(std::u16string_view text);
    bool mayBeUndeclared() const;
    bool spend(std::uint64_t units);
    bool fail(std::u16string_view reason, ProblemKind kind = ProblemKind::BadDeclaration);

    // DeclarationTypes.cpp: elements, attributes and notations.
    bool element();
    bool content(ElementDeclaration& declaration);
    bool mixedContent(ContentParticle& model, std::uint32_t level);
    bool group(ContentParticle& group, std::uint32_t level, int depth);
    bool groupMember(ContentParticle& group, int depth);
    void repeat(ContentParticle& particle);
    bool attributes();
    bool attribute(const std::u16string& element);
    bool attributeType(AttributeDeclaration& declaration);
    bool enumeration(AttributeDeclaration& declaration);
    bool attributeDefault(AttributeDeclaration& declaration);
    bool defaultValue(AttributeDeclaration& declaration);
    bool defaultReference(std::u16string& value, std::u16string_view name);
    bool notation();

    // DeclarationEntities.cpp: entities and their values.
    bool entity();
    bool externalEntity(EntityDeclaration& declaration, bool parameter);
    bool entityValue(std::u16string_view literal, std::u16string& value);
    bool appendValue(std::u16string& value, std::u16string_view source, bool literal,
                     std::uint32_t depth);
    bool characterReference(std::u16string& value, std::u16string_view source, std::size_t& at);
    bool includedParameter(std::u16string& value, std::u16string_view name, std::uint32_t depth);

    DeclarationInput m_input;
    const bool m_internal;
    const SubsetContext m_context;
    Problems& m_problems;
    const Limits m_limits;
    Declarations m_result;
    std::map<std::u16string, ParameterEntity> m_parameters;
    std::set<std::u16string> m_elementsSeen;
    std::set<std::u16string> m_attributesSeen; // element, blank, attribute
    std::optional<Entities> m_values;          // good until the next entity is declared
    std::uint64_t m_spent = 0;
    std::uint32_t m_openSections = 0;
    bool m_stopped = false;
};

} // namespace ravikit
