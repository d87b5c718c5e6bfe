#include "support/Test.h"
#include "tests/system/CommandRun.h"

#include <regex>
#include <sstream>

namespace {

/// The text between the fences of each console block.
std::string consoleBlocks(const std::string& page) {
    const std::string fence = "```console\n";
    std::string blocks;
    for (std::size_t at = page.find(fence); at != std::string::npos; at = page.find(fence, at)) {
        at += fence.size();
        blocks += page.substr(at, page.find("```\n", at) - at);
    }
    return blocks;
}

/// A script that runs the lines after each `$ `, and prints them as they stand there.
std::string scriptOf(const std::string& blocks) {
    std::string script = "cd '" TESSALY_SOURCE_DIR "'\ntessaly() { " TESSALY_COMMAND " \"$@\"; }\n";
    std::istringstream lines(blocks);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("$ ")) {
            script.append("cat <<'LINE'\n").append(line).append("\nLINE\n");
            script.append(line.substr(2)).append(" 2>&1\n");
        }
    }
    return script;
}

/// What differs from day to day, and blanks that no editor leaves at the end of a line.
std::string comparable(const std::string& text) {
    const std::string dated =
        std::regex_replace(text, std::regex(R"(\d{4}-\d\d-\d\d \d\d:\d\d)"), "DATE");
    return std::regex_replace(dated, std::regex(R"([ \r]+\n)"), "\n");
}

} // namespace

TEST(Readme, ShowsWhatTheCommandPrints) {
    const std::string blocks = consoleBlocks(support::bytesOf(TESSALY_SOURCE_DIR "/README.md"));
    ASSERT_NE(blocks.find("$ tessaly delete"), std::string::npos);
    const support::TempFolder temp;
    const std::string folder = temp.posix();
    // The reader's folder is not taken: /tmp/wap, and \tmp\wap in a project file, stand for
    // another.
    const std::string name = folder.substr(std::string("/tmp/").size()) + "/wap";
    temp.write("tour.sh",
               std::regex_replace(scriptOf(blocks), std::regex("/tmp/wap"), "/tmp/" + name));
    const std::string shown = system_test::runIn(folder, "tour.sh", true, "bash").out;
    const std::regex own(std::regex_replace(name, std::regex("/"), R"([/\\])"));
    EXPECT_EQ(comparable(std::regex_replace(shown, own, "wap")), comparable(blocks));
}
