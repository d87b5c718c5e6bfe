#include "ravikit/text/Reference.h"

namespace ravikit {
namespace {

std::optional<char32_t> digitValue(char16_t c, char32_t base) {
    if (c >= u'0' && c <= u'9') {
        return static_cast<char32_t>(c - u'0');
    }
    const auto lower = static_cast<char16_t>(c | 0x20);
    if (base == 16 && lower >= u'a' && lower <= u'f') {
        return static_cast<char32_t>(lower - u'a' + 10);
    }
    return std::nullopt;
}

} // namespace

std::optional<char32_t> characterNumber(std::u16string_view digits) {
    char32_t base = 10;
    if (!digits.empty() && digits[0] == u'x') {
        base = 16;
        digits.remove_prefix(1);
    }
    if (digits.empty()) {
        return std::nullopt;
    }
    constexpr char32_t beyond = 0x110000;
    char32_t number = 0;
    for (const char16_t c : digits) {
        const std::optional<char32_t> digit = digitValue(c, base);
        if (!digit) {
            return std::nullopt;
        }
        number = number >= beyond ? beyond : number * base + *digit;
    }
    return number >= beyond ? beyond : number;
}

char16_t predefinedEntity(std::u16string_view name) {
    switch (name.size()) {
    case 2:
        return name == u"lt" ? u'<' : name == u"gt" ? u'>' : u'\0';
    case 3:
        return name == u"amp" ? u'&' : u'\0';
    case 4:
        return name == u"quot" ? u'"' : name == u"apos" ? u'\'' : u'\0';
    default:
        return u'\0';
    }
}

void appendCodePoint(std::u16string& text, char32_t c) {
    if (c >= 0x10000) {
        text.push_back(static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10)));
        c = 0xDC00 + ((c - 0x10000) & 0x3FF);
    }
    text.push_back(static_cast<char16_t>(c));
}

void appendNormalised(std::u16string& text, std::u16string_view raw) {
    for (std::size_t i = 0; i < raw.size(); ++i) {
        if (raw[i] == u'\r' && i + 1 < raw.size() && raw[i + 1] == u'\n') {
            ++i;
        }
        text.push_back(raw[i] == u'\r' || raw[i] == u'\n' || raw[i] == u'\t' ? u' ' : raw[i]);
    }
}

} // namespace ravikit
