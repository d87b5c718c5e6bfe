#include "platform/page/dom/StyleAttribute.h"

#include "util/LetterCase.h"

namespace tessaly::page {

namespace {

std::u16string_view trimmed(std::u16string_view text) {
    constexpr std::u16string_view blanks = u" \t\r\n\f";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::u16string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// Takes the first declaration off `rest`. A `;` in quotes or brackets does not end it.
std::u16string_view nextDeclaration(std::u16string_view& rest) {
    char16_t quote = 0;
    std::size_t brackets = 0;
    std::size_t at = 0;
    for (; at < rest.size(); ++at) {
        const char16_t unit = rest[at];
        if (quote != 0) {
            quote = unit == quote ? u'\0' : quote;
        } else if (unit == u'"' || unit == u'\'') {
            quote = unit;
        } else if (unit == u'(') {
            ++brackets;
        } else if (unit == u')' && brackets > 0) {
            --brackets;
        } else if (unit == u';' && brackets == 0) {
            break;
        }
    }
    const std::u16string_view declaration = rest.substr(0, at);
    rest.remove_prefix(at < rest.size() ? at + 1 : at);
    return declaration;
}

bool declares(std::u16string_view declaration, std::u16string_view property) {
    return equalIgnoringCase(trimmed(declaration.substr(0, declaration.find(u':'))), property);
}

} // namespace

std::u16string styleProperty(const Node& element, std::u16string_view property) {
    const std::u16string* const style = findAttribute(element, u"style");
    std::u16string value;
    std::u16string_view rest = style != nullptr ? *style : std::u16string_view();
    while (!rest.empty()) {
        const std::u16string_view declaration = nextDeclaration(rest);
        const std::size_t colon = declaration.find(u':');
        if (colon != std::u16string_view::npos && declares(declaration, property)) {
            const std::u16string_view whole = declaration.substr(colon + 1);
            value = toLower(trimmed(whole.substr(0, whole.find(u'!'))));
        }
    }
    return value;
}

void dropStyleProperty(Node& element, std::u16string_view property) {
    const std::u16string* const style = findAttribute(element, u"style");
    if (style == nullptr) {
        return;
    }
    std::u16string kept;
    std::u16string_view rest = *style;
    while (!rest.empty()) {
        const std::u16string_view declaration = trimmed(nextDeclaration(rest));
        if (!declaration.empty() && !declares(declaration, property)) {
            kept += kept.empty() ? u"" : u"; ";
            kept += declaration;
        }
    }
    if (kept.empty()) {
        dropAttribute(element, u"style");
    } else {
        writeAttribute(element, u"style", kept);
    }
}

} // namespace tessaly::page
