#include "ravikit/xml/declarations/DeclarationReader.h"

#include "ravikit/text/Chars.h"
#include "ravikit/text/Wording.h"

#include <utility>

namespace ravikit {

DeclarationReader::DeclarationReader(std::u16string_view text, std::uint32_t begin,
                                     std::uint32_t end, bool internalSubset, Problems& problems,
                                     const SubsetContext& context)
    : m_input(text, begin, end)
    , m_internal(internalSubset)
    , m_context(context)
    , m_problems(problems) {}

Declarations DeclarationReader::read() {
    if (!m_internal && m_input.rest().starts_with(u"<?xml") && isBlank(m_input.peek(5)) &&
        !textDeclaration()) {
        skipDeclaration(0, m_input.offset());
    }
    for (skipBlanks(true); !m_input.atEnd() && !m_problems.full(); skipBlanks(true)) {
        const std::size_t depth = m_input.depth();
        const std::uint32_t begin = m_input.offset();
        if (!declaration()) {
            skipDeclaration(depth, begin);
        }
    }
    if (m_openSections > 0) {
        fail(u"a section that `<![INCLUDE[` opens is not closed by `]]>`");
    }
    return std::move(m_result);
}

bool DeclarationReader::declaration() {
    const std::uint32_t level = m_input.level();
    if (m_input.accept(u"<!ELEMENT")) {
        return element() && end(level);
    }
    if (m_input.accept(u"<!ATTLIST")) {
        return attributes() && end(level);
    }
    if (m_input.accept(u"<!ENTITY")) {
        return entity() && end(level);
    }
    if (m_input.accept(u"<!NOTATION")) {
        return notation() && end(level);
    }
    if (m_input.accept(u"<!--")) {
        return comment();
    }
    if (m_input.accept(u"<?")) {
        return instruction();
    }
    if (!m_internal && m_input.accept(u"<![")) {
        return conditionalSection();
    }
    if (m_openSections > 0 && m_input.accept(u"]]>")) {
        --m_openSections;
        return true;
    }
    return fail(u"here can only stand a declaration: `<!ELEMENT`, `<!ATTLIST`, `<!ENTITY`, "
                u"`<!NOTATION`, a comment or an instruction");
}

// The > of a declaration, which must stand where the declaration began: `level`.
bool DeclarationReader::end(std::uint32_t level) {
    skipBlanks();
    if (m_input.peek() != u'>') {
        return fail(u"a declaration must end here with `>`");
    }
    if (m_input.level() != level) {
        return fail(u"a declaration must begin and end in the same parameter entity");
    }
    m_input.advance(1);
    return true;
}

// Goes on after a declaration that began at `begin` in the `depth`th replacement.
void DeclarationReader::skipDeclaration(std::size_t depth, std::uint32_t begin) {
    m_input.leaveTo(depth);
    if (m_input.depth() == 0 && m_input.offset() == begin && !m_input.atEnd()) {
        m_input.advance(1);
    }
    const std::size_t stop = m_input.rest().find_first_of(u"<>%");
    if (stop == std::u16string_view::npos) {
        m_input.advance(m_input.rest().size());
    } else {
        m_input.advance(stop + (m_input.peek(stop) == u'>' ? 1 : 0));
    }
}

// <?xml at the head of a DTD file: the version may be left out, the encoding may not.
bool DeclarationReader::textDeclaration() {
    m_input.advance(5);
    bool found = false;
    bool blank = false;
    for (const std::u16string_view name : {u"version", u"encoding"}) {
        blank = skipBlanks(false) || blank;
        found = m_input.accept(name);
        if (!found) {
            continue;
        }
        skipBlanks(false);
        if (!blank || !m_input.accept(u"=")) {
            return fail(u"the XML declaration of a DTD has the form "
                        u"`<?xml version=\"1.0\" encoding=\"UTF-8\"?>`");
        }
        skipBlanks(false);
        if (!literal(name)) {
            return false;
        }
        blank = false;
    }
    skipBlanks(false);
    if (!found || !m_input.accept(u"?>")) {
        return fail(u"the XML declaration of a DTD has the form "
                    u"`<?xml version=\"1.0\" encoding=\"UTF-8\"?>`");
    }
    return true;
}

bool DeclarationReader::conditionalSection() {
    skipBlanks();
    const bool included = m_input.accept(u"INCLUDE");
    if (!included && !m_input.accept(u"IGNORE")) {
        return fail(u"expected `INCLUDE` or `IGNORE` after `<![`");
    }
    skipBlanks();
    if (!m_input.accept(u"[")) {
        return fail(u"expected `[` after `INCLUDE` or `IGNORE`");
    }
    if (!included) {
        return ignoredSection();
    }
    ++m_openSections;
    return true;
}

bool DeclarationReader::ignoredSection() {
    for (std::uint32_t open = 1; open > 0;) {
        const std::size_t at = m_input.rest().find_first_of(u"<]");
        if (at == std::u16string_view::npos) {
            m_input.advance(m_input.rest().size());
            return fail(u"a section that `<![IGNORE[` opens is not closed by `]]>`");
        }
        m_input.advance(at);
        if (m_input.accept(u"<![")) {
            ++open;
        } else if (m_input.accept(u"]]>")) {
            --open;
        } else {
            m_input.advance(1);
        }
    }
    return true;
}

bool DeclarationReader::comment() {
    const std::size_t length = m_input.rest().find(u"--");
    if (length == std::u16string_view::npos || !m_input.rest().substr(length).starts_with(u"-->")) {
        return fail(length == std::u16string_view::npos ? u"the comment has no end `-->`"
                                                        : u"`--` cannot stand inside a comment",
                    ProblemKind::BadComment);
    }
    if (!characters(m_input.rest().substr(0, length))) {
        return false;
    }
    m_input.advance(length + 3);
    return true;
}

bool DeclarationReader::instruction() {
    constexpr auto kind = ProblemKind::BadProcessingInstruction;
    const std::u16string_view target = m_input.name();
    if (target.empty()) {
        return fail(u"expected a name after `<?`", kind);
    }
    if (target.size() == 3 && (target[0] | 0x20) == u'x' && (target[1] | 0x20) == u'm' &&
        (target[2] | 0x20) == u'l') {
        return fail(u"`<?xml` can only stand at the very beginning", kind);
    }
    const std::size_t length = m_input.rest().find(u"?>");
    if (length == std::u16string_view::npos) {
        return fail(u"the instruction has no end `?>`", kind);
    }
    if (length > 0 && !isBlank(m_input.peek())) {
        return fail(u"expected a blank after the name of an instruction", kind);
    }
    if (!characters(m_input.rest().substr(0, length))) {
        return false;
    }
    m_input.advance(length + 2);
    return true;
}

} // namespace ravikit
