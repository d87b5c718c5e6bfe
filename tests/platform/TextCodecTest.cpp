#include "platform/TextCodec.h"
#include "support/Test.h"
#include "tests/support/Iconv.h"

using namespace tessaly;

using support::Iconv;

TEST(TextCodec, Utf8IsDecodedAsStrictlyAsByTheCLibrary) {
    const Iconv oracle("UTF-8");
    // Every lead with the second bytes around each border, at each offset to the 8-byte steps.
    for (int lead = 0x80; lead < 0x100; ++lead) {
        for (const int second : {0x00, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0, 0xFF}) {
            for (const char* tail : {"", "\x80", "\xBF\x80", "\xBF\xBF\xBF", "\xBF\x41"}) {
                const std::string bytes = std::string(static_cast<std::size_t>(lead) % 9, 'a') +
                                          static_cast<char>(lead) + static_cast<char>(second) +
                                          tail;
                ASSERT_EQ(decodeUtf8(bytes), oracle(bytes)) << testing::PrintToString(bytes);
            }
        }
    }
    std::mt19937 random(7);
    for (int i = 0; i < 200'000; ++i) {
        std::string bytes;
        for (auto left = random() % 12; left > 0; --left) {
            const auto kind = random() % 3;
            bytes += static_cast<char>(kind == 0   ? random() % 0x80
                                       : kind == 1 ? 0x80 + random() % 0x40
                                                   : 0xC0 + random() % 0x40);
        }
        ASSERT_EQ(decodeUtf8(bytes), oracle(bytes)) << testing::PrintToString(bytes);
    }
}

TEST(TextCodec, EveryCharacterComesBack) {
    std::u16string text;
    for (char32_t point = 0; point < 0x110000; ++point) {
        if (point >= 0x10000) {
            text += static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10U));
            text += static_cast<char16_t>(0xDC00 + (point & 0x3FFU));
        } else if (point < 0xD800 || point > 0xDFFF) {
            text += static_cast<char16_t>(point);
        }
    }
    EXPECT_TRUE(decodeUtf8(encodeUtf8(text)) == text);
    EXPECT_EQ(encodeUtf8(u"a\xD800z\xDC00"), "a\xEF\xBF\xBDz\xEF\xBF\xBD");
    EXPECT_EQ(encodeUtf8(u"\xDC00\xD83D\xDE00\xD83D"), "\xEF\xBF\xBD\xF0\x9F\x98\x80\xEF\xBF\xBD");
    EXPECT_EQ(decodeText("\xEF\xBB\xBFx"), u"\uFEFFx") << "the byte-order mark stays";
}

TEST(TextCodec, WhatIsNotUtf8IsWindows1252) {
    const Iconv oracle("CP1252");
    std::u16string seen;
    for (int value = 0; value < 0x100; ++value) {
        const std::string byte(1, static_cast<char>(value));
        const auto expected = oracle(byte);
        const std::u16string text = decodeWindows1252(byte);
        EXPECT_EQ(text, expected.value_or(std::u16string(1, static_cast<char16_t>(value))));
        EXPECT_EQ(seen.find(text), seen.npos) << "two bytes with one character: " << value;
        seen += text;
    }
    EXPECT_EQ(decodeText("caf\xE9 \x93\xC3\xA9\x94"), u"caf\u00E9 \u201C\u00C3\u00A9\u201D")
        << "the whole file, not the bad part";
}
