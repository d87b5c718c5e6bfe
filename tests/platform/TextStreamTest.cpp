#include "platform/files/PosixFileSystem.h"
#include "support/Test.h"
#include "tests/platform/TempFolder.h"

using namespace tessaly;
using namespace std::string_literals;
using support::failureOf;

namespace {

class TextStreams : public testing::Test {
protected:
    std::shared_ptr<TextStream> reading(const std::string& name) {
        return files.GetFile(temp.path(name))->OpenAsTextStream(IOMode::ForReading, formatAnsi);
    }

    support::TempFolder temp;
    PosixFileSystem files;
};

} // namespace

TEST_F(TextStreams, LinesEndAtLineFeeds) {
    temp.write("a", std::string("one\r\ntwo\n\r\nfo\rur\r\r\n\nlast\r\0x", 27));
    const auto stream = reading("a");
    std::vector<std::u16string> lines;
    while (!stream->AtEndOfStream()) {
        lines.push_back(stream->ReadLine());
    }
    EXPECT_EQ(lines, (std::vector<std::u16string>{u"one", u"two", u"", u"fo\rur\r", u"",
                                                  std::u16string(u"last\r\0x", 7)}));
    EXPECT_EQ(failureOf([&] { stream->ReadLine(); }), 62);
    EXPECT_EQ(failureOf([&] { stream->ReadAll(); }), 62);
    temp.write("empty", "");
    EXPECT_TRUE(reading("empty")->AtEndOfStream());
}

TEST_F(TextStreams, WrittenTextComesBack) {
    const std::u16string text =
        u"\u0416 \xD83D\xDE00 \uFEFF\r\n\0x"s + std::u16string(100'000, u'\u20AC');
    const auto writing = files.CreateTextFile(temp.path("a"), true, false);
    writing->WriteLine(u"first");
    writing->Write(text);
    writing->Close();
    EXPECT_EQ(temp.read("a").substr(0, 9), "first\r\n\xD0\x96");
    const auto stream = reading("a");
    EXPECT_EQ(stream->ReadLine(), u"first");
    EXPECT_TRUE(stream->ReadAll() == text);

    files.OpenTextFile(temp.path("a"), IOMode::ForWriting, false, formatAnsi)->Write(u"short");
    EXPECT_EQ(temp.read("a"), "short") << "emptied first, closed with its last reference";
    files.OpenTextFile(temp.path("a"), IOMode::ForAppending, false, formatAnsi)->Write(u"er");
    EXPECT_EQ(temp.read("a"), "shorter");
}

TEST_F(TextStreams, AStreamDoesOneThing) {
    const auto writing = files.CreateTextFile(temp.path("a"), true, false);
    EXPECT_EQ(failureOf([&] { writing->ReadAll(); }), 54);
    EXPECT_EQ(failureOf([&] { writing->AtEndOfStream(); }), 54);
    writing->Close();
    writing->Close();
    EXPECT_EQ(failureOf([&] { writing->Write(u"x"); }), 91);
    const auto stream = reading("a");
    EXPECT_EQ(failureOf([&] { stream->WriteLine(u"x"); }), 54);
    stream->Close();
    EXPECT_EQ(failureOf([&] { stream->AtEndOfStream(); }), 91);

    temp.write("gone", "x");
    const auto file = files.GetFile(temp.path("gone"));
    std::filesystem::remove(temp.posix("gone"));
    EXPECT_EQ(failureOf([&] { file->OpenAsTextStream(IOMode::ForWriting, formatAnsi); }), 53);
    EXPECT_FALSE(temp.has("gone"));
}

TEST_F(TextStreams, LargeFilesAreReadWholeOrRefused) {
    constexpr std::size_t size = 200'000'000;
    temp.write("large", "x");
    std::filesystem::resize_file(temp.posix("large"), size - 1);
    std::ofstream(temp.posix("large"), std::ios::app) << '\xE9'; // the other code page, at the end
    const std::u16string text = reading("large")->ReadAll();
    ASSERT_EQ(text.size(), size);
    EXPECT_EQ(text.front(), u'x');
    EXPECT_EQ(text.back(), u'\u00E9');

    std::filesystem::resize_file(temp.posix("large"), std::uintmax_t{1} << 33U);
    EXPECT_EQ(failureOf([&] { reading("large")->AtEndOfStream(); }), 7);
}
