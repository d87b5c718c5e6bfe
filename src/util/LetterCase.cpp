#include "util/LetterCase.h"

#include "util/CaseFolding.h"

#include <algorithm>
#include <cstddef>

namespace tessaly {

namespace {

char32_t folded(char32_t code) {
    const auto* const range =
        std::lower_bound(caseRanges.begin(), caseRanges.end(), code,
                         [](const CaseRange& one, char32_t sought) { return one.last < sought; });
    const bool isIn = range != caseRanges.end() && range->first <= code &&
                      (code - range->first) % range->step == 0;
    return isIn ? static_cast<char32_t>(static_cast<std::int32_t>(code) + range->distance) : code;
}

bool isPair(std::u16string_view text, std::size_t at) {
    return (text[at] & 0xFC00) == 0xD800 && at + 1 < text.size() &&
           (text[at + 1] & 0xFC00) == 0xDC00;
}

} // namespace

char16_t toLower(char16_t unit) {
    if (unit < 0x80) {
        return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
    }
    return static_cast<char16_t>(folded(unit));
}

std::u16string toLower(std::u16string_view text) {
    std::u16string lower(text);
    for (std::size_t at = 0; at < lower.size(); ++at) {
        if (!isPair(text, at)) {
            lower[at] = toLower(text[at]);
            continue;
        }
        // What stands beyond the first plane folds to what does, too.
        const char32_t code =
            folded(0x10000 + ((text[at] & 0x3FFU) << 10U | (text[at + 1] & 0x3FFU)));
        lower[at] = static_cast<char16_t>(0xD7C0 + (code >> 10U));
        lower[++at] = static_cast<char16_t>(0xDC00 + (code & 0x3FFU));
    }
    return lower;
}

bool equalIgnoringCase(std::u16string_view a, std::u16string_view b) {
    return a.size() == b.size() && (a == b || toLower(a) == toLower(b));
}

} // namespace tessaly
