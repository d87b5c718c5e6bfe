#include "ravikit/xml/declarations/Declarations.h"

#include "ravikit/xml/declarations/DeclarationReader.h"

namespace ravikit {

Declarations readDeclarations(std::u16string_view text, std::uint32_t begin, std::uint32_t end,
                              bool internalSubset, Problems& problems,
                              const SubsetContext& context) {
    return DeclarationReader(text, begin, end, internalSubset, problems, context).read();
}

namespace {

/// The offset after the next `close`, or `begin` if there is none: what a comment or a quote
/// opens and nothing closes is stepped into.
std::size_t behind(std::u16string_view text, std::u16string_view close, std::size_t begin) {
    const std::size_t at = text.find(close, begin);
    return at == std::u16string_view::npos ? begin : at + close.size();
}

/// The same for a quote. Broken text may hold many that nothing closes: the search for each kind
/// fails once.
class Quotes {
public:
    explicit Quotes(std::u16string_view text)
        : m_text(text) {}

    std::size_t behind(std::size_t begin) {
        const char16_t quote = m_text[begin];
        bool& none = quote == u'"' ? m_noDouble : m_noSingle;
        const std::size_t close = none ? std::u16string_view::npos : m_text.find(quote, begin + 1);
        none = close == std::u16string_view::npos;
        return none ? begin + 1 : close + 1;
    }

private:
    std::u16string_view m_text;
    bool m_noDouble = false;
    bool m_noSingle = false;
};

} // namespace

std::uint32_t internalSubsetEnd(std::u16string_view text, std::uint32_t begin) {
    Quotes quotes(text);
    bool inDeclaration = false;
    bool closesComments = true;
    bool closesInstructions = true;
    std::size_t at = begin;
    while (at < text.size()) {
        const char16_t c = text[at];
        const std::u16string_view ahead = text.substr(at, 4);
        if (inDeclaration) {
            inDeclaration = c != u'>';
            at = c == u'"' || c == u'\'' ? quotes.behind(at) : at + 1;
        } else if (c == u']') {
            return static_cast<std::uint32_t>(at);
        } else if (closesComments && ahead.starts_with(u"<!--")) {
            const std::size_t inside = at + 4;
            at = behind(text, u"-->", inside);
            closesComments = at != inside;
        } else if (closesInstructions && ahead.starts_with(u"<?")) {
            const std::size_t inside = at + 2;
            at = behind(text, u"?>", inside);
            closesInstructions = at != inside;
        } else {
            inDeclaration = ahead.starts_with(u"<!");
            ++at;
        }
    }
    return static_cast<std::uint32_t>(text.size());
}

} // namespace ravikit
