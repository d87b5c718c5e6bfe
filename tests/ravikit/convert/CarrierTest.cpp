#include "ravikit/convert/page/Carrier.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using ravikit::appendCarried;
using ravikit::carriedSource;

std::u16string everyUnit() {
    std::u16string text;
    for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
        text += static_cast<char16_t>(unit);
    }
    return text;
}

/// Whether no browser takes it for something, and none writes it in another way.
bool isInert(char16_t c) {
    return c > u' ' && c < 0x7F && std::u16string_view(u"\"&<>").find(c) == std::u16string::npos;
}

TEST(Carrier, EveryUnitAtEveryPlace) {
    const std::u16string text = everyUnit();
    for (std::size_t shift = 0; shift <= 16; ++shift) {
        const std::u16string source = std::u16string(shift, u'x') + text + u"<a b=\"c\">\r\n";
        std::u16string page;
        appendCarried(page, source);
        EXPECT_TRUE(std::all_of(page.begin(), page.end(), isInert)) << shift;
        EXPECT_TRUE(carriedSource(page) == source) << shift;
    }
}

/// What a browser could not have written back is no source, wherever it stands.
TEST(Carrier, NotWhole) {
    for (std::size_t place = 0; place <= 40; ++place) {
        std::u16string page;
        appendCarried(page, std::u16string(40, u'x'));
        for (const char16_t* const wrong : {u" ", u"\"", u"<", u"&", u"\n", u"\u00E4", u"`AB"}) {
            EXPECT_FALSE(carriedSource(std::u16string(page).insert(place, wrong))) << place;
        }
    }
}

} // namespace
