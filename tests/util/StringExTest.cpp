#include "component/Fakes.h"

#include "util/clStringEx.h"

using namespace fakes;

namespace {

using StringEx = Component;

} // namespace

TEST_F(StringEx, TrimsTheRightEndInTheCallersText) {
    const clStringEx tools;
    const auto trim = [&](std::u16string text, const std::u16string& what) {
        std::u16string result = tools.trimCharacter(text, what);
        EXPECT_EQ(result, text);
        return result;
    };
    EXPECT_EQ(trim(u"D:\\a\\\\", u"\\"), u"D:\\a");
    EXPECT_EQ(trim(u"\\\\\\", u"\\"), u"");
    EXPECT_EQ(trim(u"abab", u"ab"), u"abab");
    EXPECT_EQ(trim(u"a", u""), u"a");
    EXPECT_EQ(trim(u"", u"a"), u"");
    EXPECT_EQ(codeOf([&] { trim(u"", u""); }), FailureCode::InvalidArgument);

    std::u16string path = u"D:\\a\\b.wml";
    EXPECT_EQ(tools.pathFromFileName(path), u"D:\\a\\");
    EXPECT_EQ(tools.pathFromFileName(path), u"D:\\a\\");
    path = u"b.wml";
    EXPECT_EQ(codeOf([&] { tools.pathFromFileName(path); }), FailureCode::InvalidArgument);
    EXPECT_EQ(path, u"");
}

TEST_F(StringEx, RefusesEachInvalidCharacterWithOneMessage) {
    const clStringEx tools;
    world.take();
    EXPECT_TRUE(tools.validFileName(u"a b.wml") && tools.validFileName(u""));
    EXPECT_EQ(world.take(), Log{});
    for (const char16_t* name : {u"a/", u"\\", u":", u"*", u"?", u"\"", u"a<b>c", u">", u"a|b"}) {
        EXPECT_FALSE(tools.validFileName(name));
        EXPECT_EQ(world.take(),
                  Log{"MsgBox 16 [Corvane professional] File names cannot contain the following "
                      "characters:\n\n         \\/:*?\"<>|"});
    }
}

TEST_F(StringEx, ShortensAPathInItsMiddle) {
    struct Metrics : FakePlatform {
        std::int32_t textWidth(std::int32_t hdc, const std::u16string& text) override {
            const auto narrow = std::count(text.begin(), text.end(), u'.');
            return hdc * static_cast<std::int32_t>(2 * text.size()) -
                   hdc * static_cast<std::int32_t>(narrow);
        }
    };
    Platform::install(std::make_shared<Metrics>());
    const clStringEx tools;
    const std::u16string path = u"C:\\wap\\decks\\news.wml"; // 21 letters, 41 wide
    const std::vector<std::tuple<std::u16string, std::int32_t, std::u16string>> table = {
        {path, 41, path},
        {path, 40, u"C:\\wap\\dec...\\news.wml"},
        {path, 20, u"...\\news.wml"},
        {path, 19, u"...news.wml"},
        {path, 17, u"...ews.wml"},
        {path, 3, u"..."},
        {path, 2, u""},
        {path, -1, u""},
        {u"", 0, u""},
        {u"abcdef", 9, u"...def"},
        {u"C:\\one\\two\\", 21, u"C:\\o...\\two\\"},
        {u"\xD83D\xDE00\xD83D\xDE00\\ab", 11, u"...\\ab"},
        {u"\xD83D\xDE00\xD83D\xDE00\\ab", 13, u"\xD83D\xDE00...\\ab"},
        {u"abcd\xD83D\xDE00", 6, u"..."},
        {std::u16string(u"ab\0cdefgh", 9), 4, u"ab"},
    };
    for (const auto& [whole, width, expected] : table) {
        for (const std::int32_t hdc : {1, 7}) {
            EXPECT_EQ(tools.CompactedPath(whole, width * hdc, hdc), expected) << width;
            EXPECT_EQ(tools.CompactedPathSh(whole, width * hdc, hdc), expected) << width;
        }
    }
}

TEST_F(StringEx, WorksOnMarkup) {
    const clStringEx tools;
    const auto filter = [&](const std::u16string& text) {
        return tools.filterDelimeterPair(text, u"<", std::u16string(u">"));
    };
    const auto clean = [&](const std::u16string& text) {
        return tools.removeControlCharacters(text);
    };
    const auto quote = [&](const std::u16string& text) { return tools.insertQuotes(text); };
    using Edit = std::function<std::u16string(const std::u16string&)>;
    const std::vector<std::tuple<Edit, std::u16string, std::u16string>> table = {
        {filter, u"ab<c>de<f>gh", u"abdegh"},
        {filter, u"a<b>", u"a"},
        {filter, u"<a>b", u"b"},
        {filter, u"<a><b>c", u"c"},
        {filter, u"<abc", u"<abc"},
        {filter, u"abc>", u"abc>"},
        {filter, u"abc", u"abc"},
        {filter, u"a>b<c>d", u"b<c>d"},
        {filter, u"", u""},
        {clean, u"  a  \r\n b", u"a b"},
        {clean, u"a\tb\x01 \x1F\x7F ", u"ab \x7F "},
        {clean, u"", u""},
        {quote, u"<a b=1 c=2>", u"<a b=\"1\" c=\"2\">"},
        {quote, u"<a b=\"c=d\">", u"<a b=\"c=d\">"},
        {quote, u"<a b>", u"<a b>"},
        {quote, u"<a b=>", u"<a b=\"\">"},
        {quote, u"<a b= c>", u"<a b=\"\" c>"},
        {quote, u"<p>a=b</p>", u"<p>a=\"b</p\">"},
        {quote, u"a='b c'>", u"a=\"'b\" c'>"},
        {quote, u"a=1\" b=2\" c=3 >", u"a=\"1\"\" b=2\" c=\"3\" >"},
    };
    for (const auto& [edit, text, expected] : table) {
        EXPECT_EQ(edit(text), expected) << ascii(text);
    }
    EXPECT_EQ(codeOf([&] { filter(u"a<b<c>d>e"); }), FailureCode::InvalidArgument);
    EXPECT_EQ(codeOf([&] { quote(u"<a b=1"); }), FailureCode::InvalidArgument);
    EXPECT_EQ(codeOf([&] { quote(u"b="); }), FailureCode::InvalidArgument);
}

TEST_F(StringEx, FiltersFromAPositionAndWithAnyDelimiters) {
    const clStringEx tools;
    const auto filter = [&](const std::u16string& open, const Value& close, std::int32_t from) {
        return tools.filterDelimeterPair(u"a<!b!>c<!d!>e", open, close, from);
    };
    EXPECT_EQ(filter(u"<!", std::u16string(u"!>"), 1), u"a>c>e"); // one character is passed over
    EXPECT_EQ(filter(u"<", std::u16string(u">"), 5), u"c<!d!>e"); // inside a pair
    EXPECT_EQ(filter(u"<", std::u16string(u">"), 14), u"");
    EXPECT_EQ(filter(u"<", std::u16string(u">"), -1), u"ace");
    EXPECT_EQ(codeOf([&] { filter(u"<", std::int32_t{1}, 1); }), FailureCode::TypeMismatch);
}

TEST_F(StringEx, TellsWhetherAPositionIsBetweenDelimiters) {
    const clStringEx tools;
    const std::vector<std::pair<std::int32_t, bool>> table = {
        {-1, false}, {0, false}, {1, false}, {2, false},
        {3, true},   {4, false}, {5, true},  {6, true},
    };
    for (const auto& [position, expected] : table) {
        std::int32_t changed = position;
        EXPECT_EQ(tools.bBetweenDelimeters(u"a<b>c", changed, u"<", u">"), expected) << position;
        EXPECT_EQ(changed, position == 0 ? 1 : position);
    }
}
