#include "platform/PathName.h"
#include "tests/platform/TempFolder.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>

using namespace tessaly;
using support::failureOf;

TEST(PathName, PartsOfAPath) {
    struct Row {
        const char16_t* path;
        const char16_t* name;
        const char16_t* base;
        const char16_t* extension;
        const char16_t* folder;
    };
    const std::array rows = {
        Row{u"C:\\Decks\\a.b.wml", u"a.b.wml", u"a.b", u"wml", u"C:\\Decks"},
        Row{u"C:\\a.wml", u"a.wml", u"a", u"wml", u"C:\\"},
        Row{u"C:\\\\a.wml", u"a.wml", u"a", u"wml", u"C:\\"},
        Row{u"C:\\", u"", u"", u"", u""},
        Row{u"C:a", u"a", u"a", u"", u"C:"},
        Row{u"\\a", u"a", u"a", u"", u"\\"},
        Row{u"\\", u"", u"", u"", u""},
        Row{u"a.wml", u"a.wml", u"a", u"wml", u""},
        Row{u"x/y\\a.wml\\\\", u"a.wml", u"a", u"wml", u"x/y"},
        Row{u"x\\\\.wml", u".wml", u"", u"wml", u"x"},
        Row{u"a.", u"a.", u"a", u"", u""},
        Row{u"d.e\\name", u"name", u"name", u"", u"d.e"},
        Row{u"", u"", u"", u"", u""},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(fileNameOf(row.path), row.name) << testing::PrintToString(row.path);
        EXPECT_EQ(baseNameOf(row.path), row.base) << testing::PrintToString(row.path);
        EXPECT_EQ(extensionOf(row.path), row.extension) << testing::PrintToString(row.path);
        EXPECT_EQ(parentFolderOf(row.path), row.folder) << testing::PrintToString(row.path);
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
