#include "ravikit/html/Style.h"

#include "ravikit/text/Chars.h"

#include <algorithm>

namespace ravikit {

namespace {

constexpr char16_t lower(char16_t c) {
    return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
}

bool holds(std::u16string_view text, std::u16string_view word) {
    for (std::size_t at = 0; at + word.size() <= text.size(); ++at) {
        if (sameWord(text.substr(at, word.size()), word)) {
            return true;
        }
    }
    return false;
}

/// The number that `text` begins with; -1 if there is none.
int leadingNumber(std::u16string_view text) {
    int number = -1;
    for (const char16_t c : text.substr(0, 6)) {
        if (c < u'0' || c > u'9') {
            break;
        }
        number = std::max(number, 0) * 10 + (c - u'0');
    }
    return number;
}

std::uint32_t cssSize(std::u16string_view value) {
    if (holds(value, u"large") || sameWord(value, u"larger")) {
        return Larger;
    }
    if (holds(value, u"small")) {
        return Smaller;
    }
    if (sameWord(value, u"medium")) {
        return NormalSize;
    }
    // Of the sizes in numbers those count that no one can take for plain text: from 19 pixels on,
    // which is what browsers make of `big`, and up to the 13 of `small`.
    const int number = leadingNumber(value);
    if (number < 0) {
        return 0;
    }
    const int quarterPoints = holds(value, u"pt")   ? number * 4
                              : holds(value, u"px") ? number * 3
                              : holds(value, u"%")  ? number * 48 / 100
                                                    : 48;
    if (quarterPoints >= 57) {
        return Larger;
    }
    return quarterPoints > 0 && quarterPoints <= 39 ? Smaller : Plain;
}

std::uint32_t propertyEffect(std::u16string_view name, std::u16string_view value) {
    const char16_t first = name.empty() ? u'\0' : lower(name.front());
    if (first != u't' && first != u'f') {
        return 0; // no property that counts begins with another letter
    }
    if (sameWord(name, u"text-align")) {
        return alignCode(value);
    }
    if (sameWord(name, u"font-weight")) {
        const int number = leadingNumber(value);
        const bool isNormal = sameWord(value, u"normal") || (number > 0 && number < 600);
        return isNormal ? NormalWeight : holds(value, u"bold") || number >= 600 ? Bold : Plain;
    }
    if (sameWord(name, u"font-style")) {
        return sameWord(value, u"normal")                                  ? NormalSlant
               : sameWord(value, u"italic") || sameWord(value, u"oblique") ? Italic
                                                                           : Plain;
    }
    if (sameWord(name, u"text-decoration") || sameWord(name, u"text-decoration-line")) {
        return holds(value, u"underline") ? Underlined : Plain;
    }
    return sameWord(name, u"font-size") ? cssSize(value) : 0;
}

} // namespace

bool sameWordInAnyCase(std::u16string_view text, std::u16string_view word) {
    return text.size() == word.size() &&
           std::equal(text.begin(), text.end(), word.begin(),
                      [](char16_t a, char16_t b) { return lower(a) == b; });
}

std::u16string_view trimmed(std::u16string_view text) {
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

std::uint32_t alignCode(std::u16string_view value) {
    return sameWord(value, u"left")     ? 1
           : sameWord(value, u"center") ? 2
           : sameWord(value, u"right")  ? 3
                                        : 0;
}

std::u16string_view alignName(std::uint32_t code) {
    return code == 1 ? u"left" : code == 2 ? u"center" : code == 3 ? u"right" : u"";
}

std::uint32_t styleEffects(std::u16string_view css) {
    std::uint32_t effects = 0;
    while (!css.empty()) {
        const std::u16string_view property = css.substr(0, css.find(u';'));
        css.remove_prefix(std::min(property.size() + 1, css.size()));
        const std::size_t colon = property.find(u':');
        if (colon != std::u16string_view::npos) {
            effects |= propertyEffect(trimmed(property.substr(0, colon)),
                                      trimmed(property.substr(colon + 1)));
        }
    }
    return effects;
}

std::uint32_t fontSizeEffect(std::u16string_view size) {
    size = trimmed(size);
    if (size.starts_with(u'+')) {
        return Larger;
    }
    if (size.starts_with(u'-')) {
        return Smaller;
    }
    const int number = leadingNumber(size);
    if (number >= 3) {
        return number > 3 ? Larger : NormalSize;
    }
    return number > 0 ? Smaller : Plain;
}

} // namespace ravikit
