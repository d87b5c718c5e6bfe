#include "platform/files/Drives.h"
#include "platform/files/FolderSearch.h"
#include "platform/files/PosixFileSystem.h"
#include "support/Test.h"
#include "tests/platform/TempFolder.h"

#include <fcntl.h>

#include <chrono>
#include <thread>

using namespace tessaly;
using support::failureOf;

namespace {

class FileService : public testing::Test {
protected:
    int openCode(const std::string& name, IOMode mode, bool create = false) {
        return failureOf([&] { files.OpenTextFile(temp.path(name), mode, create, formatAnsi); });
    }
    int getCode(const std::u16string& path) {
        return failureOf([&] { files.GetFile(path); });
    }
    int copyCode(const std::string& from, const std::string& to, bool overwrite = true) {
        return failureOf([&] { files.CopyFile(temp.path(from), temp.path(to), overwrite); });
    }
    int deleteCode(const std::string& name, bool force) {
        return failureOf([&] { files.DeleteFile(temp.path(name), force); });
    }
    int makeFolderCode(const std::string& name) {
        return failureOf([&] { files.CreateFolder(temp.path(name)); });
    }
    int removeFolderCode(const std::u16string& path, bool force) {
        return failureOf([&] { files.DeleteFolder(path, force); });
    }

    support::TempFolder temp;
    PosixFileSystem files;
};

} // namespace

TEST_F(FileService, MissingThingsHaveTheirOwnCodes) {
    EXPECT_EQ(getCode(temp.path("none.wml")), 53);
    EXPECT_EQ(getCode(temp.path("none/a.wml")), 53) << "whatever is no existing file";
    EXPECT_EQ(openCode("none.wml", IOMode::ForReading), 53);
    EXPECT_EQ(openCode("none.wml", IOMode::ForWriting), 53);
    EXPECT_EQ(openCode("none/a.wml", IOMode::ForWriting, true), 76);
    EXPECT_EQ(copyCode("none.wml", "b.wml"), 53);
    EXPECT_EQ(deleteCode("none.wml", true), 53);
    EXPECT_EQ(deleteCode("none/a.wml", true), 76);
    EXPECT_EQ(makeFolderCode("none/a"), 76);
    EXPECT_EQ(removeFolderCode(temp.path("none"), true), 76);
    temp.write("a.wml", "a");
    EXPECT_EQ(openCode("a.wml/b.wml", IOMode::ForWriting, true), 76) << "a file is no folder";
    EXPECT_EQ(copyCode("a.wml", "none/b.wml"), 76);
    EXPECT_FALSE(temp.has("none"));
}

TEST_F(FileService, NamesThatNoFileCanHave) {
    temp.write("a.wml", "a");
    for (const std::u16string& name :
         {std::u16string(u"\\a.wml\0b", 8), std::u16string(u"\\\xD800.wml"),
          u"\\" + std::u16string(300, u'x'), std::u16string(5'000'000, u'\\') + u"x",
          std::u16string()}) {
        const std::u16string path = name.empty() ? name : temp.path() + name;
        EXPECT_FALSE(files.FileExists(path));
        EXPECT_FALSE(files.FolderExists(path));
        EXPECT_EQ(getCode(path), 53);
        EXPECT_EQ(failureOf([&] { files.CreateTextFile(path, true, false); }), 52);
        EXPECT_EQ(failureOf([&] { files.CreateFolder(path); }), 52);
    }
}

TEST_F(FileService, OnlyRegularFilesOpenAndNothingHangs) {
    temp.folder("folder.wml");
    ASSERT_EQ(mkfifo(temp.posix("pipe.wml").c_str(), 0666), 0);
    std::filesystem::create_symlink("/dev/zero", temp.posix("device.wml"));
    std::filesystem::create_symlink("loop.wml", temp.posix("loop.wml"));
    temp.write("a.wml", "a");
    for (const char* name : {"folder.wml", "pipe.wml", "device.wml", "a.wml/"}) {
        EXPECT_FALSE(files.FileExists(temp.path(name))) << name;
        EXPECT_EQ(getCode(temp.path(name)), 53) << name;
    }
    for (const char* name : {"folder.wml", "pipe.wml", "device.wml"}) {
        EXPECT_EQ(openCode(name, IOMode::ForReading), 53) << name;
        EXPECT_EQ(openCode(name, IOMode::ForWriting, true), 70) << name;
        EXPECT_EQ(copyCode("a.wml", name), 70) << name;
        EXPECT_EQ(deleteCode(name, true), 53) << name;
        EXPECT_TRUE(temp.has(name));
    }
    EXPECT_FALSE(files.FileExists(temp.path("loop.wml")));
    EXPECT_TRUE(files.FolderExists(temp.path("folder.wml/")));
}

TEST_F(FileService, PermissionsHoldForEveryUser) {
    temp.write("a.wml", "old");
    temp.mode("a.wml", 0444);
    EXPECT_EQ(files.GetFile(temp.path("a.wml"))->Attributes() & 1, 1);
    EXPECT_EQ(openCode("a.wml", IOMode::ForWriting), 70);
    EXPECT_EQ(failureOf([&] { files.CreateTextFile(temp.path("a.wml"), true, false); }), 70);
    EXPECT_EQ(deleteCode("a.wml", false), 70);
    EXPECT_EQ(temp.read("a.wml"), "old");
    EXPECT_EQ(copyCode("a.wml", "copy.wml"), 0);
    EXPECT_EQ(files.GetFile(temp.path("copy.wml"))->Attributes() & 1, 0);
    EXPECT_EQ(copyCode("copy.wml", "a.wml"), 70);
    EXPECT_EQ(deleteCode("a.wml", true), 0);

    temp.mode("copy.wml", 0222);
    EXPECT_EQ(openCode("copy.wml", IOMode::ForReading), 70);
    EXPECT_EQ(copyCode("copy.wml", "b.wml"), 70);
    EXPECT_FALSE(temp.has("b.wml"));

    temp.folder("shut");
    temp.write("shut/a.wml", "a");
    temp.mode("shut", 0555);
    EXPECT_EQ(openCode("shut/b.wml", IOMode::ForWriting, true), 70);
    EXPECT_EQ(failureOf([&] { files.CreateTextFile(temp.path("shut/b.wml"), false, false); }), 70);
    EXPECT_EQ(makeFolderCode("shut/b"), 70);
    EXPECT_EQ(deleteCode("shut/a.wml", true), 70);
    EXPECT_EQ(openCode("shut/a.wml", IOMode::ForWriting), 0) << "the file itself may be written";
    temp.mode("shut", 0755);
}

TEST_F(FileService, WhatIsThereIsNotMadeAnew) {
    temp.write("a.wml", "old");
    temp.folder("Sub");
    EXPECT_EQ(failureOf([&] { files.CreateTextFile(temp.path("A.WML"), false, false); }), 58);
    EXPECT_EQ(copyCode("a.wml", "A.wml", false), 58);
    EXPECT_EQ(makeFolderCode("sub"), 58);
    EXPECT_EQ(makeFolderCode("a.wml"), 58);
    EXPECT_EQ(copyCode("a.wml", "A.WML"), 0) << "onto itself";
    EXPECT_EQ(temp.read("a.wml"), "old");
    EXPECT_EQ(copyCode("a.wml", "SUB/"), 0) << "into a folder";
    EXPECT_EQ(temp.read("Sub/a.wml"), "old");
    EXPECT_EQ(failureOf([&] { files.CreateTextFile(temp.path("u.txt"), true, true); }), 5);
    EXPECT_EQ(
        failureOf([&] { files.OpenTextFile(temp.path("u.txt"), IOMode::ForReading, true, -1); }),
        5);
    EXPECT_FALSE(temp.has("u.txt"));
}

TEST_F(FileService, NamesAreFoundWithoutRegardToCase) {
    temp.folder("Decks/Weather");
    temp.write("Decks/Weather/Index.WML", "capital");
    temp.write("Decks/Weather/index.WML", "small");
    temp.write("Decks/Weather/\xC3\x84rger.wml", "umlaut");
    temp.write("Decks/Weather/bad\xFFname.wml", "bytes");
    const auto text = [&](const std::u16string& name) {
        return files.GetFile(temp.path() + u"\\DECKS/weather\\" + name)
            ->OpenAsTextStream(IOMode::ForReading, formatAnsi)
            ->ReadAll();
    };
    EXPECT_EQ(text(u"index.WML"), u"small") << "the exact one wins";
    EXPECT_EQ(text(u"INDEX.wml"), u"capital") << "the first in sorted order";
    EXPECT_EQ(text(u"\u00E4RGER.WML"), u"umlaut");
    EXPECT_FALSE(files.FileExists(temp.path("Decks/Weather/BAD\xEF\xBF\xBDname.wml")));

    files.CreateTextFile(temp.path("decks/WEATHER/New.wml"), true, false)->Close();
    EXPECT_TRUE(temp.has("Decks/Weather/New.wml"));
    EXPECT_FALSE(temp.has("decks"));
    files.OpenTextFile(temp.path("decks/weather/NEW.wml"), IOMode::ForWriting, true, formatAnsi)
        ->Write(u"x");
    EXPECT_EQ(temp.read("Decks/Weather/New.wml"), "x");
}

TEST_F(FileService, ARemovedNameIsFreeAndDoesNotLeadToItsTwin) {
    for (const std::string wish : {"deck.wml", "dEcK.wml"}) { // there as it is written, or not
        temp.write("Deck.wml", "twin");
        temp.write("DECK.wml", "twin");
        temp.write("deck.wml", "old");
        EXPECT_EQ(deleteCode(wish, true), 0);
        EXPECT_FALSE(files.FileExists(temp.path(wish)));
        temp.write("from", "new");
        EXPECT_EQ(failureOf([&] {
                      PosixFileSystem().CopyFile(temp.path("from"), temp.path(wish), false);
                  }),
                  0);
        EXPECT_EQ(temp.read(wish) + temp.read("Deck.wml"), "newtwin");
        std::filesystem::remove(temp.posix(wish));
        EXPECT_TRUE(files.FileExists(temp.path(wish))) << "written since, so it may lead to others";
    }
    temp.folder("Weather");
    temp.write("weather/index.wml", "kept");
    EXPECT_EQ(removeFolderCode(temp.path("Weather"), true), 0);
    EXPECT_EQ(removeFolderCode(temp.path("Weather"), true), 76);
    EXPECT_EQ(openCode("Weather/index.wml", IOMode::ForWriting), 76);
    EXPECT_EQ(temp.read("weather/index.wml"), "kept");
    EXPECT_EQ(makeFolderCode("Weather"), 0);
}

TEST_F(FileService, AnIndexedFolderIsNeverStale) {
    temp.write("Old.wml", "");
    const std::string folder = temp.posix();
    std::this_thread::sleep_for(std::chrono::milliseconds(50)); // so that the index is kept
    ASSERT_EQ(findIgnoringCase(folder, u"OLD.WML"), "Old.wml");
    ASSERT_EQ(findIgnoringCase(folder, u"NEW.WML"), std::nullopt);
    temp.write("new.wml", "");
    std::filesystem::rename(temp.posix("Old.wml"), temp.posix("gone"));
    EXPECT_EQ(findIgnoringCase(folder, u"NEW.WML"), "new.wml");
    EXPECT_EQ(findIgnoringCase(folder, u"OLD.WML"), std::nullopt);
}

TEST_F(FileService, EachNewDeckIsFoundAtOnceInAnotherCase) {
    temp.folder("decks");
    for (int i = 0; i < 1'000; ++i) {
        files.CreateTextFile(temp.path("decks/deck" + std::to_string(i)), false, false);
        ASSERT_TRUE(files.FileExists(temp.path("decks/DECK" + std::to_string(i))));
    }
}

TEST_F(FileService, DrivesAreMountedFolders) {
    temp.folder("disk/Sub");
    temp.write("disk/Sub/a.wml", "a");
    temp.write("secret", "s");
    EXPECT_EQ(getCode(u"Q:\\Sub\\a.wml"), 53) << "never mounted";
    EXPECT_FALSE(files.FileExists(u"Q:\\Sub\\a.wml"));
    mountDrive(u'q', temp.posix("disk"));
    EXPECT_TRUE(files.FileExists(u"Q:\\sub\\A.WML"));
    EXPECT_TRUE(files.FileExists(u"q:Sub/a.wml"));
    EXPECT_TRUE(files.FolderExists(u"Q:"));
    EXPECT_FALSE(files.FileExists(u"Q:\\..\\secret")) << "the root of a drive has nothing above it";
    EXPECT_EQ(getCode(u"Q:\\none.wml"), 53);
    EXPECT_EQ(removeFolderCode(u"Q:\\", true), 70);
    EXPECT_EQ(toPosixPath(u"Q:\\Sub\\.\\x"), temp.posix("disk/Sub/x"));
    std::filesystem::remove_all(temp.posix("disk"));
    EXPECT_EQ(getCode(u"Q:\\Sub\\a.wml"), 53) << "gone";
    EXPECT_EQ(failureOf([&] { files.CreateFolder(u"Q:\\x"); }), 71);
    EXPECT_FALSE(files.FolderExists(u"Q:\\"));
    unmountDrive(u'Q');
    EXPECT_EQ(failureOf([&] { files.CreateTextFile(u"Q:\\x", true, false); }), 71);
    EXPECT_EQ(failureOf([] { mountDrive(u'1', "/tmp"); }), 5);
}

TEST_F(FileService, FoldersGoWithAllThatTheyHold) {
    temp.folder("project/a/b/c");
    temp.folder("other");
    temp.write("other/kept", "k");
    temp.write("project/a/b/deck.wml", "d");
    temp.mode("project/a/b/deck.wml", 0444);
    std::filesystem::create_symlink(temp.posix("other"), temp.posix("project/link"));
    EXPECT_EQ(removeFolderCode(temp.path("project"), false), 70);
    EXPECT_TRUE(temp.has("project/a/b/deck.wml"));
    temp.mode("project/a/b", 0555);
    EXPECT_EQ(removeFolderCode(temp.path("project"), true), 0);
    EXPECT_FALSE(temp.has("project"));
    EXPECT_EQ(temp.read("other/kept"), "k") << "links are not followed";
    for (const char16_t* path : {u"\\", u".", u"..", u"a\\..\\.."}) {
        EXPECT_EQ(removeFolderCode(path, true), 70);
    }
}

TEST_F(FileService, DatesAreLocalDays) {
    temp.write("a.wml", "a");
    setenv("TZ", "UTC-3", 1);
    const timespec times[2] = {{0, 0}, {1'000'000'000, 0}}; // 9 September 2001, 01:46:40 UTC
    ASSERT_EQ(utimensat(AT_FDCWD, temp.posix("a.wml").c_str(), times, 0), 0);
    const Date modified = files.GetFile(temp.path("a.wml"))->DateLastModified();
    const Date created = files.GetFile(temp.path("a.wml"))->DateCreated();
    unsetenv("TZ");
    EXPECT_DOUBLE_EQ(modified, 37143 + (4 * 3600 + 46 * 60 + 40) / 86400.0);
    EXPECT_TRUE(created == modified || created > 46000) << "made now, where the system knows it";
}
