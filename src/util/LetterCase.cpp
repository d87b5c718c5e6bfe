#include "util/LetterCase.h"

#include <algorithm>

namespace tessaly {

namespace {

bool within(char16_t unit, char16_t first, char16_t last) {
    return unit >= first && unit <= last;
}

/// In these blocks capital and small letters stand in turns; `capitalIsEven` says which comes
/// first.
bool alternates(char16_t unit, bool& capitalIsEven) {
    capitalIsEven = !(within(unit, 0x0139, 0x0148) || within(unit, 0x0179, 0x017E));
    return (within(unit, 0x0100, 0x017E) && unit != 0x0130 && unit != 0x0131 && unit != 0x0138 &&
            unit != 0x0149 && unit != 0x0178) ||
           within(unit, 0x0460, 0x0481) || within(unit, 0x048A, 0x04BF) ||
           within(unit, 0x04D0, 0x052F) || within(unit, 0x1E00, 0x1E95) ||
           within(unit, 0x1EA0, 0x1EFF);
}

} // namespace

char16_t toLower(char16_t unit) {
    if (within(unit, u'A', u'Z')) {
        return unit + 0x20;
    }
    if (unit < 0xC0) {
        return unit;
    }
    const bool latin1 = within(unit, 0xC0, 0xDE) && unit != 0xD7;
    const bool greek = within(unit, 0x0391, 0x03AB) && unit != 0x03A2;
    if (latin1 || greek || within(unit, 0x0410, 0x042F)) {
        return unit + 0x20;
    }
    if (within(unit, 0x0400, 0x040F)) {
        return unit + 0x50;
    }
    if (within(unit, 0x0531, 0x0556)) {
        return unit + 0x30;
    }
    if (unit == 0x0178) {
        return 0x00FF;
    }
    bool capitalIsEven = true;
    if (alternates(unit, capitalIsEven) && (unit % 2 == 0) == capitalIsEven) {
        return unit + 1;
    }
    return unit;
}

std::u16string toLower(std::u16string_view text) {
    std::u16string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char16_t unit) { return toLower(unit); });
    return lower;
}

bool equalIgnoringCase(std::u16string_view a, std::u16string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char16_t x, char16_t y) { return toLower(x) == toLower(y); });
}

} // namespace tessaly
