#include "ravikit/xml/declarations/DeclarationReader.h"

#include "ravikit/text/Chars.h"
#include "ravikit/text/Wording.h"

#include <algorithm>

namespace ravikit {
namespace {

bool isPublicIdCharacter(char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') ||
           std::u16string_view(u" \r\n-'()+,./:=?;!*#@$_%").find(c) != std::u16string_view::npos;
}

} // namespace

// Tells one problem at the place that has been reached; always false.
bool DeclarationReader::fail(std::u16string_view reason, ProblemKind kind) {
    if (!m_stopped) {
        const std::uint32_t at = m_input.offset();
        m_problems.add(kind, at, at, std::u16string(reason));
    }
    return false;
}

// Counts what entities expand to. False, and the end of all reading, once it is too much.
bool DeclarationReader::spend(std::uint64_t units) {
    m_spent += units + 1;
    if (m_spent <= m_limits.entityUnits) {
        return true;
    }
    fail(u"the entities expand to too much text", ProblemKind::EntityTooLarge);
    m_stopped = true;
    m_input.stop();
    return false;
}

// Whether something may be declared where nobody has looked.
bool DeclarationReader::mayBeUndeclared() const {
    return !m_context.standalone && (m_context.external || m_result.incomplete);
}

// Steps over blanks, over the ends of replacements and, if `expand`, into references to parameter
// entities. Each of these separates as a blank does. Gives whether there was any.
bool DeclarationReader::skipBlanks(bool expand) {
    for (bool any = false;; any = true) {
        if (isBlank(m_input.peek())) {
            m_input.advance(1);
        } else if (expand && m_input.peek() == u'%' && !isBlank(m_input.peek(1)) &&
                   m_input.peek(1) != 0) {
            parameterReference();
        } else if (!m_input.atEnd() || !m_input.leave()) {
            return any;
        }
    }
}

bool DeclarationReader::needBlank(std::u16string_view behind) {
    return skipBlanks() || fail(u"expected a blank after " + quoted(behind));
}

bool DeclarationReader::parameterReference() {
    const std::uint32_t begin = m_input.offset();
    m_input.advance(1);
    const std::u16string_view name = m_input.name();
    if (name.empty() || !m_input.accept(u";")) {
        return fail(u"a reference to a parameter entity has the form `%name;`",
                    ProblemKind::BadReference);
    }
    ParameterEntity* entity = nullptr;
    if (!findParameter(name, entity)) {
        return false;
    }
    if (entity == nullptr) {
        return true;
    }
    if (entity->open) {
        return fail(u"the parameter entity " + quoted(name) + u" refers to itself",
                    ProblemKind::RecursiveEntity);
    }
    if (m_input.depth() == m_limits.entityDepth) {
        return fail(u"parameter entities refer to each other too deep",
                    ProblemKind::EntityTooLarge);
    }
    if (!spend(entity->replacement.size())) {
        return false;
    }
    m_input.enter(*entity, begin);
    return true;
}

// Gives no entity for one that is external, or that something unread may declare: it stands for
// nothing then. False, with its problem, for one that nobody declares.
bool DeclarationReader::findParameter(std::u16string_view name, ParameterEntity*& entity) {
    const auto found = m_parameters.find(std::u16string(name));
    const bool declared = found != m_parameters.end() || mayBeUndeclared();
    m_result.incomplete = true;
    if (!declared) {
        return fail(u"no parameter entity " + quoted(name) + u" is declared",
                    ProblemKind::UnknownEntity);
    }
    entity = found == m_parameters.end() || found->second.external ? nullptr : &found->second;
    return true;
}

// A text between quotes, without them. `what` says to the author what it would be.
std::optional<std::u16string_view> DeclarationReader::literal(std::u16string_view what) {
    const char16_t quote = m_input.peek();
    if (quote != u'"' && quote != u'\'') {
        fail(std::u16string(what) + u" must stand here between quotes");
        return std::nullopt;
    }
    const std::size_t close = m_input.rest().find(quote, 1);
    if (close == std::u16string_view::npos) {
        fail(std::u16string(what) + u" has no closing quote");
        return std::nullopt;
    }
    const std::u16string_view text = m_input.rest().substr(1, close - 1);
    if (!characters(text)) {
        return std::nullopt;
    }
    m_input.advance(close + 1);
    return text;
}

std::u16string_view DeclarationReader::neededName(std::u16string_view what) {
    const std::u16string_view name = m_input.name();
    if (name.empty()) {
        fail(u"the name of " + std::u16string(what) + u" must stand here");
    }
    return name;
}

// SYSTEM or PUBLIC with its literals. A notation can do without the second one of PUBLIC.
bool DeclarationReader::externalId(bool needSystem, std::u16string_view* system) {
    const bool isPublic = m_input.accept(u"PUBLIC");
    if (!isPublic && !m_input.accept(u"SYSTEM")) {
        return fail(u"`SYSTEM`, `PUBLIC` or a text between quotes must stand here");
    }
    if (!needBlank(isPublic ? u"PUBLIC" : u"SYSTEM")) {
        return false;
    }
    if (isPublic) {
        const auto publicId = literal(u"a public identifier");
        if (!publicId) {
            return false;
        }
        if (!std::all_of(publicId->begin(), publicId->end(), isPublicIdCharacter)) {
            return fail(u"a character here cannot stand in a public identifier");
        }
        const bool blank = skipBlanks();
        if (!needSystem && m_input.peek() == u'>') {
            return true;
        }
        if (!blank) {
            return fail(u"expected a blank after a public identifier");
        }
    }
    const auto systemId = literal(u"a system identifier");
    if (systemId && system != nullptr) {
        *system = *systemId;
    }
    return systemId.has_value();
}

bool DeclarationReader::characters(std::u16string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        const char32_t c = codePointAt(text, i);
        if (!isChar(c)) {
            return fail(codePointName(c) + u" is no character of XML", ProblemKind::BadCharacter);
        }
        i += unitsOf(c);
    }
    return true;
}

} // namespace ravikit
