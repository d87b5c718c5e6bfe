#include "ravikit/text/Wording.h"
#include "ravikit/xml/ParserCore.h"

namespace ravikit {

Parser::At Parser::comment(At at) {
    At const body = at + 4;
    At close = findClose(body, u"--");
    if (close != m_end && close[2] != u'>') {
        At const dashes = close;
        close = findClose(close, u"-->");
        if (close != m_end) {
            problem(ProblemKind::BadComment, dashes, dashes + 2,
                    u"`--` cannot stand inside a comment");
        }
    }
    if (close == m_end) {
        m_swallowed = true;
        problem(ProblemKind::BadComment, at, body, u"the comment has no end; write `-->`");
        push(NodeKind::Comment, at, m_end, NameTable::none, Recovered);
        return m_end;
    }
    characters(body, close);
    push(NodeKind::Comment, at, close + 3);
    return close + 3;
}

Parser::At Parser::cdata(At at) {
    At const body = at + 9;
    At const close = findClose(body, u"]]>");
    const bool ends = close != m_end;
    if (ends) {
        characters(body, close);
    } else {
        m_swallowed = true;
        problem(ProblemKind::BadCData, at, body, u"the CDATA section has no end; write `]]>`");
    }
    At const end = ends ? close + 3 : m_end;
    push(NodeKind::CData, at, end, NameTable::none, recoveredIf(!ends));
    if (outsideRoot()) {
        outside(at, end);
    }
    return end;
}

Parser::At Parser::instruction(At at) {
    if (at[2] == u'=') {
        return junk(at, ProblemKind::BadProcessingInstruction,
                    u"code of a server page is not WML; check the deck as the server sends it");
    }
    if (!startsName(at + 2)) {
        return junk(at, ProblemKind::BadProcessingInstruction,
                    u"a processing instruction begins with a name, as in `<?name ...?>`");
    }
    const Name target = readName(at + 2);
    At const close = m_noInstructionEnd ? m_end : findClose(target.end, u"?>");
    if (close == m_end) {
        m_noInstructionEnd = true; // nor will there be one farther on
        At const end = findClose(target.end, u">");
        problem(ProblemKind::BadProcessingInstruction, at, target.end,
                u"the processing instruction has no end; write `?>`");
        push(NodeKind::ProcessingInstruction, at, end == m_end ? end : end + 1, target.id,
             Recovered);
        return end == m_end ? end : end + 1;
    }
    const std::u16string_view name = between(at + 2, target.end);
    const auto isLetter = [name](std::size_t i, char16_t c) { return (name[i] | 0x20) == c; };
    if (name.size() == 3 && isLetter(0, u'x') && isLetter(1, u'm') && isLetter(2, u'l')) {
        problem(ProblemKind::BadProcessingInstruction, at, target.end,
                u"the XML declaration can stand at the very start of the text only");
    } else if (close != target.end && !isBlank(*target.end)) {
        problem(ProblemKind::BadProcessingInstruction, target.end, target.end,
                [&] { return u"a blank is missing after the name " + quoted(name); });
    }
    characters(target.end, close);
    push(NodeKind::ProcessingInstruction, at, close + 2, target.id);
    return close + 2;
}

// Markup that is none: to its >, or to where other markup begins.
Parser::At Parser::junk(At at, ProblemKind kind, std::u16string_view reason) {
    At end = at + 1;
    while (end != m_end && *end != u'>' && *end != u'<') {
        ++end;
    }
    end += *end == u'>' && end != m_end ? 1 : 0;
    problem(kind, at, end, reason);
    push(NodeKind::Junk, at, end);
    return end;
}

} // namespace ravikit
