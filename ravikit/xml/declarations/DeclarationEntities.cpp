#include "ravikit/xml/declarations/DeclarationReader.h"

#include "ravikit/text/Chars.h"
#include "ravikit/text/Reference.h"
#include "ravikit/text/Wording.h"

#include <utility>

namespace ravikit {

bool DeclarationReader::entity() {
    if (!needBlank(u"<!ENTITY")) {
        return false;
    }
    const bool parameter = m_input.accept(u"%");
    if (parameter && !needBlank(u"%")) {
        return false;
    }
    EntityDeclaration declaration;
    declaration.name = neededName(u"an entity");
    if (declaration.name.empty() || !needBlank(declaration.name)) {
        return false;
    }
    if (m_input.peek() == u'"' || m_input.peek() == u'\'') {
        const bool inText = m_input.depth() == 0;
        const auto text = literal(u"the text of an entity");
        if (!text || !appendValue(declaration.replacement, *text, inText, 0)) {
            return false;
        }
    } else if (!externalEntity(declaration, parameter)) {
        return false;
    }
    if (parameter) {
        m_parameters.try_emplace(
            std::move(declaration.name),
            ParameterEntity{std::move(declaration.replacement), declaration.external});
    } else if (predefinedEntity(declaration.name) == 0) {
        std::u16string name = declaration.name;
        m_result.entities.try_emplace(std::move(name), std::move(declaration));
        m_values.reset();
    }
    return true;
}

bool DeclarationReader::externalEntity(EntityDeclaration& declaration, bool parameter) {
    declaration.external = true;
    std::u16string_view system;
    if (!externalId(true, &system)) {
        return false;
    }
    if (system.find(u'#') != std::u16string_view::npos) {
        return fail(u"a system identifier cannot hold a `#`: it names a whole file");
    }
    const bool blank = skipBlanks();
    if (parameter || !m_input.accept(u"NDATA")) {
        return true;
    }
    if (!blank) {
        return fail(u"expected a blank before `NDATA`");
    }
    declaration.unparsed = true;
    return needBlank(u"NDATA") && !neededName(u"a notation").empty();
}

// Appends `source` as an entity's replacement text has it: character references and references to
// parameter entities resolved, all other references as they are. `inText`: it stands in the text
// itself, whose line ends can have any form. `depth`: how many parameter entities it is in.
bool DeclarationReader::appendValue(std::u16string& value, std::u16string_view source, bool inText,
                                    std::uint32_t depth) {
    for (std::size_t i = 0; i < source.size();) {
        const char16_t c = source[i];
        if (c == u'&' && source.substr(i).starts_with(u"&#")) {
            if (!characterReference(value, source, i)) {
                return false;
            }
        } else if (c == u'%' || (c == u'&' && depth == 0)) {
            const std::size_t end = source.find(u';', i);
            const std::u16string_view name =
                end == std::u16string_view::npos ? u"" : source.substr(i + 1, end - i - 1);
            if (!isName(name)) {
                return fail(u"`" + std::u16string(1, c) + u"` begins a reference here; " +
                                (c == u'%' ? u"as a character write `&#37;`"
                                           : u"as a character write `&#38;#38;`"),
                            ProblemKind::BadReference);
            }
            if (c == u'&') {
                value += source.substr(i, end + 1 - i);
            } else if (!includedParameter(value, name, depth)) {
                return false;
            }
            i = end + 1;
        } else if (c == u'\r' && inText) {
            value.push_back(u'\n');
            i += source.substr(i).starts_with(u"\r\n") ? 2U : 1U;
        } else {
            value.push_back(c);
            ++i;
        }
    }
    return true;
}

// At `at` stands "&#"; moves `at` after the reference.
bool DeclarationReader::characterReference(std::u16string& value, std::u16string_view source,
                                           std::size_t& at) {
    const std::size_t end = source.find(u';', at);
    const auto number = end == std::u16string_view::npos
                            ? std::nullopt
                            : characterNumber(source.substr(at + 2, end - at - 2));
    if (!number || !isChar(*number)) {
        return fail(u"a reference here names no character of XML", ProblemKind::BadReference);
    }
    appendCodePoint(value, *number);
    at = end + 1;
    return true;
}

bool DeclarationReader::includedParameter(std::u16string& value, std::u16string_view name,
                                          std::uint32_t depth) {
    if (m_internal && m_input.depth() == 0) {
        return fail(u"a DOCTYPE's own declarations cannot refer to a parameter entity inside the "
                    u"text of an entity",
                    ProblemKind::BadReference);
    }
    ParameterEntity* entity = nullptr;
    if (!findParameter(name, entity)) {
        return false;
    }
    if (entity == nullptr) {
        return true;
    }
    if (entity->open || depth == m_limits.entityDepth) {
        return fail(u"the parameter entity " + quoted(name) + u" refers to itself",
                    ProblemKind::RecursiveEntity);
    }
    if (!spend(entity->replacement.size())) {
        return false;
    }
    entity->open = true;
    const bool included = appendValue(value, entity->replacement, false, depth + 1);
    entity->open = false;
    return included;
}

} // namespace ravikit
