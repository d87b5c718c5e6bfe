#include "platform/files/PathName.h"
#include "support/Test.h"
#include "tests/platform/TempFolder.h"

#include <filesystem>

using namespace tessaly;
using support::failureOf;

TEST(PathName, PartsOfAPath) {
    // The path, then its name, base name, extension and folder.
    const char16_t* const rows[][5] = {
        {u"C:\\Decks\\a.b.wml", u"a.b.wml", u"a.b", u"wml", u"C:\\Decks"},
        {u"C:\\\\a.wml", u"a.wml", u"a", u"wml", u"C:\\"},
        {u"C:\\", u"", u"", u"", u""},
        {u"C:a", u"a", u"a", u"", u"C:"},
        {u"\\a", u"a", u"a", u"", u"\\"},
        {u"\\", u"", u"", u"", u""},
        {u"a.wml", u"a.wml", u"a", u"wml", u""},
        {u"x/y\\a.wml\\\\", u"a.wml", u"a", u"wml", u"x/y"},
        {u"x\\\\.wml", u".wml", u"", u"wml", u"x"},
        {u"d.e\\name", u"name", u"name", u"", u"d.e"},
    };
    for (const auto& [path, name, base, extension, folder] : rows) {
        SCOPED_TRACE(testing::PrintToString(path));
        EXPECT_EQ(fileNameOf(path), name);
        EXPECT_EQ(baseNameOf(path), base);
        EXPECT_EQ(extensionOf(path), extension);
        EXPECT_EQ(parentFolderOf(path), folder);
    }
}

TEST(PathName, AbsolutePaths) {
    EXPECT_EQ(absolutePathOf(u"C:/Decks/./x/..\\a\\"), u"C:\\Decks\\a");
    EXPECT_EQ(absolutePathOf(u"C:\\..\\.."), u"C:\\");
    EXPECT_EQ(absolutePathOf(u"\\\\tmp\\"), u"\\tmp");
    const auto here = toComponentPath(std::filesystem::current_path().string());
    EXPECT_EQ(absolutePathOf(u""), here);
    EXPECT_EQ(absolutePathOf(u"x\\..\\y"), here + u"\\y");
    EXPECT_EQ(absolutePathOf(u"..\\y"), parentFolderOf(here) + u"\\y");
}

TEST(PathName, PathsOfTheSystemAndBack) {
    for (const char* path : {"/home/x/a.wml", "x/a.wml", "../a.wml", "/", "/C:/x"}) {
        EXPECT_EQ(toPosixPath(toComponentPath(path)), path);
    }
    EXPECT_EQ(toComponentPath("a.wml"), u".\\a.wml") << "so that it has a folder";
    EXPECT_EQ(toPosixPath(toComponentPath("C:x/y")), "C:x/y") << "no drive";
    EXPECT_EQ(failureOf([] { toComponentPath("a\\b"); }), 52);
    EXPECT_EQ(failureOf([] { toComponentPath("a\xFF"); }), 52);
    EXPECT_EQ(toPosixPath(u"a\\.."), ".");
}
