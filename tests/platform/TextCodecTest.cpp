#include "platform/files/TextCodec.h"
#include "platform/files/FileText.h"
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

/// What a deck says of its encoding, and the bytes of a text in it.
TEST(FileText, IsReadByItsMarkThenByItsDeclaration) {
    using namespace std::string_literals;
    const auto deck = [](const std::string& encoding, const std::string& text) {
        return "<?xml version='1.0' encoding='" + encoding + "'?>" + text;
    };
    const auto wide = [](const std::string& ascii, std::size_t first) {
        std::string bytes;
        for (const char c : ascii) {
            bytes += first == 0 ? std::string{c, '\0'} : std::string{'\0', c};
        }
        return bytes;
    };
    const struct {
        std::string bytes;
        std::u16string text; ///< its end
        std::string note;    ///< the begin of the first note
    } files[] = {
        {deck("Shift_JIS", "\x93\xFA\x96\x7B"), u"\u65E5\u672C", ""},
        {deck("EUC-JP", "\xC6\xFC\xCB\xDC"), u"\u65E5\u672C", ""},
        {deck("ISO-2022-JP", "\x1B$BF|K\\\x1B(B"), u"\u65E5\u672C", ""},
        {deck("gb2312", "\xD6\xD0\xCE\xC4"), u"\u4E2D\u6587", ""},
        {deck("GBK", "\xD6\xD0\xE9\x46"), u"\u4E2D\u9555", ""},
        {deck("GB18030", "\x81\x39\xEE\x39"), u"\u3400", ""},
        {deck("Big5", "\xA4\xA4\xA4\xE5"), u"\u4E2D\u6587", ""},
        {deck("EUC-KR", "\xC7\xD1\xB1\xDB"), u"\uD55C\uAE00", ""},
        {deck("koi8-r", "\xF0\xD2"), u"\u041F\u0440", ""},
        {deck("iso-8859-1", "\x93\xE9"), u"\u201C\u00E9", ""},
        {wide(deck("UTF-16", "e"), 0), u"?>e", ""},
        {"\xFE\xFF" + wide(deck("utf-16", "e"), 1), u"?>e", ""},
        {"\xFF\xFE" + wide(deck("UTF-8", "e"), 0), u"?>e", "the file declares UTF-8"},
        {deck("windows-1251", "\u041F\u0440\u0438"), u"\u041F\u0440\u0438", "the file declares"},
        {"<wml>caf\xE9", u"caf\u00E9", "byte 0xE9 is not UTF-8, and no other"},
        {deck("UTF-8", "\xE9\xE8"), u"\u00E9\u00E8", "byte 0xE9 is not UTF-8, which"},
        {deck("UTF-8", "\u041F\u0440\u0438\xE9"), u"\u041F\u0440\u0438\u00E9", "byte 0xE9"},
        {"\xEF\xBB\xBF<wml>\xE9", u"\u00E9", "byte 0xE9"},
    };
    for (const auto& file : files) {
        const FileText read = decodeFile(file.bytes);
        EXPECT_TRUE(read.text.ends_with(file.text)) << testing::PrintToString(file.bytes);
        const std::string note = read.notes.empty() ? "" : encodeUtf8(read.notes.front().text);
        EXPECT_TRUE(note.starts_with(file.note) && note.empty() == file.note.empty()) << note;
    }
    // What cannot be read goes back to the disk as it was.
    for (const std::string& bytes : {deck("Shift_JIS", "\x93\xFF\xE9"), deck("x-none", "\xE9\x80"),
                                     "\xFF\xFE" + wide("<wml>", 0) + "\x00\xD8"s}) {
        EXPECT_EQ(encodeFile(decodeFile(bytes).text), bytes);
    }
}
