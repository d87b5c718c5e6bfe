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
}

TEST_F(StringEx, CutsAPathBehindItsLastBackslash) {
    const clStringEx tools;
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
