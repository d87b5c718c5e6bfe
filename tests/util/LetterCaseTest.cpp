#include "util/LetterCase.h"

#include "support/Test.h"

#include <clocale>
#include <cwctype>

namespace {

std::u16string textOf(char32_t code) {
    return code < 0x10000 ? std::u16string(1, static_cast<char16_t>(code))
                          : std::u16string{static_cast<char16_t>(0xD7C0 + (code >> 10U)),
                                           static_cast<char16_t>(0xDC00 + (code & 0x3FFU))};
}

/// The C library knows which letters are capital and small forms of each other.
TEST(LetterCase, AgreesWithTheCLibraryOnEveryLetter) {
    ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
    unsigned pairs = 0;
    for (char32_t code = 0; code < 0x20000; ++code) {
        const auto wide = static_cast<std::wint_t>(code);
        if (code == 0x130 || code == 0x131) {
            continue; // which letter these two are depends on the language
        }
        const std::u16string text = textOf(code);
        for (const std::wint_t other : {std::towlower(wide), std::towupper(wide)}) {
            EXPECT_TRUE(tessaly::equalIgnoringCase(text, textOf(static_cast<char32_t>(other))))
                << std::hex << wide << ' ' << other;
            pairs += other == wide ? 0U : 1U;
        }
        if (tessaly::toLower(text) != text) {
            EXPECT_TRUE(std::towlower(wide) != wide || std::towupper(wide) != wide)
                << std::hex << wide;
        }
    }
    std::setlocale(LC_CTYPE, "C");
    EXPECT_GT(pairs, 2700U);
    EXPECT_TRUE(tessaly::equalIgnoringCase(u"\u0218TIRI", u"\u0219tiri"));
    EXPECT_FALSE(tessaly::equalIgnoringCase(u"a", u"ab"));
}

} // namespace
