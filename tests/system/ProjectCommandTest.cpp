#include "support/Test.h"
#include "tests/system/CommandRun.h"
#include "tests/system/TerminalSession.h"

#include <nlohmann/json.hpp>

namespace {

namespace fs = std::filesystem;
using support::bytesOf;
using system_test::holds;
using system_test::Outcome;
using system_test::TerminalSession;

/// A project file from its first line to its last, of a project in `folder`.
std::string projectFile(const std::string& name, std::string folder, const std::string& between,
                        const std::vector<std::string>& decks,
                        const std::string& description = "Decks") {
    std::replace(folder.begin(), folder.end(), '/', '\\');
    std::string text =
        "Site=" + name + "\r\nDescription=" + description + "\r\nPath=" + folder + "\r\n" + between;
    for (const std::string& deck : decks) {
        text += "Document=" + deck + "\r\n";
    }
    return text + "-------------- END OF FILE ----------\r\n";
}

/// A folder of its own, with a few decks that differ in `source`.
class ProjectCommand : public testing::Test {
protected:
    ProjectCommand() {
        for (const char* deck : {"index", "news", "sport"}) {
            write("source/" + std::string(deck) + ".wml", deckOf(deck));
        }
    }
    static std::string deckOf(const std::string& text) {
        return "<?xml version=\"1.0\"?>\r\n<!DOCTYPE wml PUBLIC \"-//WAPFORUM//DTD WML 1.1//EN\" "
               "\"http://www.wapforum.org/DTD/wml_1.1.xml\">\r\n<wml>\r\n<card id='a'><p>" +
               text + "</p></card>\r\n</wml>\r\n";
    }

    void write(const std::string& name, const std::string& bytes) const { temp.write(name, bytes); }
    std::string read(const std::string& name) const { return temp.read(name); }
    Outcome run(const std::string& arguments) const {
        return system_test::runIn(folder, arguments, true);
    }

    /// A project `old/Old.cvp` with decks of these names.
    void makeProject(const std::vector<std::string>& decks) const {
        for (const std::string& deck : decks) {
            write("old/" + deck + ".wml", deckOf(deck));
        }
        write("old/Old.cvp", projectFile("Old", folder / "old", "Owner=me\r\nNotes=\r\n", decks));
    }

    /// Waits for each text and types what goes with it.
    static void follow(TerminalSession& session,
                       const std::vector<std::pair<std::string, std::string>>& script) {
        for (const auto& [shown, typed] : script) {
            ASSERT_TRUE(session.sees(shown)) << shown << " is not in\n" << session.shown;
            session.types(typed);
        }
    }

    /// Every file below the folder with its content.
    std::map<std::string, std::string> everything() const {
        std::map<std::string, std::string> files;
        for (const auto& entry : fs::recursive_directory_iterator(folder)) {
            files[entry.path().string()] = entry.is_directory() ? "" : bytesOf(entry.path());
        }
        return files;
    }

    support::TempFolder temp;
    const fs::path folder = temp.posix();
};

/// What the README does not show of a project's life.
TEST_F(ProjectCommand, AddsAndRemovesADeckInTheListAndDeletesAllWithoutAsking) {
    const auto sources = everything();
    makeProject({"index", "sport"});
    write("old/news.wml", deckOf("news"));
    const auto listed = [&](const std::vector<std::string>& decks) {
        return projectFile("Old", folder / "old", "Owner=me\r\nNotes=\r\n", decks);
    };
    EXPECT_EQ(run("add old/Old.cvp news.wml").status, 0);
    EXPECT_EQ(read("old/Old.cvp"), listed({"index", "sport", "news"}));
    EXPECT_EQ(run("remove old/Old.cvp Sport").status, 0);
    EXPECT_EQ(read("old/Old.cvp"), listed({"index", "news"}));
    EXPECT_EQ(read("old/sport.wml"), deckOf("sport"));
    EXPECT_EQ(run("delete old/Old.cvp --yes").status, 0);
    EXPECT_EQ(everything(), sources);
}

TEST_F(ProjectCommand, SettlesConflictsWithThePerson) {
    makeProject({"index", "news"});
    for (const char* taken :
         {"New.cvp", "Other.cvp", "index.wml", "one.wml", "two.wml", "news.wml"}) {
        write(std::string("new/") + taken, "taken");
    }
    temp.mode("new/Other.cvp", 0444);
    TerminalSession session(folder, "save-as old/Old.cvp new/New.cvp");
    follow(session,
           {
               {"The project New.cvp already exists in the directory /", "perhaps\n"},
               {"yes, no or cancel? ", "NO\n"},
               {"Please enter a new name for the project New.cvp\r\nNew Name: [New] ", "a=b\n"},
               {"cannot hold =", "other\n"},
               {"/other.cvp is READ-ONLY.\r\nPlease choose another project name \r\n  /cancel: ",
                "Third\n"},
               {"The document index.wml already exists", "n\n"},
               {"New Name: [index] ", "one\n"},
               {"The document one.wml already exists", "n\n"},
               {"New Name: [one] ", "ONE\n"},
               {"\"ONE\" cannot be taken here; please type another.\r\nNew Name: ", "two\n"},
               {"The document two.wml already exists", "n\n"},
               {"New Name: [two] ", "three\n"},
               {"The document news.wml already exists", "y\n"},
           });
    EXPECT_EQ(session.ends(), 0) << session.shown;
    EXPECT_TRUE(session.shown.ends_with("saved new/Third.cvp with 2 decks\r\n"
                                        "renamed index to three\r\n"));
    EXPECT_EQ(read("new/Third.cvp"),
              projectFile("Third", folder / "new", "Owner=me\r\nNotes=\r\n", {"three", "news"}));
    EXPECT_EQ(read("new/three.wml"), deckOf("index"));
    EXPECT_EQ(read("new/news.wml"), deckOf("news"));
    for (const char* kept : {"New.cvp", "Other.cvp", "index.wml", "one.wml", "two.wml"}) {
        EXPECT_EQ(read(std::string("new/") + kept), "taken") << kept;
    }
}

TEST_F(ProjectCommand, ChangesNothingWhenThePersonGoes) {
    makeProject({"index"});
    write("new/New.cvp", "taken");
    write("new/Other.cvp", "taken");
    temp.mode("new/Other.cvp", 0444);
    const auto before = everything();
    const std::string save = "save-as old/Old.cvp new/New.cvp";
    const std::string make = "new old --name OLD --from source/index.wml";
    const std::pair<std::string, const char*> cases[] = {
        {save, "\x03"}, {save, "\x04"}, {save, "n\n\x04"}, {save, "n\nOther\n/c\n"},
        {make, "\x03"}, {make, "\x04"}, {make, "\n"},      {make, "y\nn\n\x04\x04"},
    };
    for (const auto& [arguments, typed] : cases) {
        TerminalSession session(folder, arguments);
        EXPECT_TRUE(session.sees(arguments == save ? "yes, no or cancel? " : "[y/N] "));
        session.types(typed);
        EXPECT_EQ(session.ends(), *typed == '\x03' ? 130 : 1) << session.shown;
        EXPECT_EQ(everything(), before) << testing::PrintToString(typed) << session.shown;
    }
}

TEST_F(ProjectCommand, AsksWhereANewDeckGoesAndWhatIsRemoved) {
    makeProject({"index"});
    write("old/picture.gif", "GIF");
    TerminalSession made(folder, "new old --name OLD --from source/index.wml");
    follow(made, {{"Overwrite it? [y/N] ", "maybe\n"},
                  {"[y/N] ", "YES\n"},
                  {"index.wml already exists in the directory /", "\n"}, // Enter alone is No
                  {"for the filename: ", "a*b\n"},
                  {"file names cannot", "de\xC3\xA7k\n"}});
    EXPECT_EQ(made.ends(), 0) << made.shown;
    EXPECT_EQ(read("old/de\xC3\xA7k.wml"), deckOf("index"));

    const auto before = everything();
    TerminalSession spared(folder, "delete old/Old.cvp");
    EXPECT_TRUE(spared.sees("2 other files:\r\n  old/index.wml\r\n  old/picture.gif\r\n"));
    spared.types("\n");
    EXPECT_EQ(spared.ends(), 1);
    EXPECT_EQ(everything(), before);

    const Outcome inside = system_test::runIn(folder / "old", "delete Old.cvp --yes --json");
    EXPECT_EQ(inside.status, 1) << "the current folder stays";
    const auto report = nlohmann::json::parse(inside.out);
    EXPECT_EQ(report["left"], nlohmann::json({"."}));
    EXPECT_EQ(report["removed"].size(), 4);

    makeProject({"index"});
    write("old/picture.gif", "GIF");
    fs::permissions(folder / "old/Old.cvp", fs::perms::owner_read);
    const auto closed = everything();
    EXPECT_TRUE(holds(run("new old --name old --from source/index.wml --on-conflict overwrite"),
                      "old/Old.cvp: is read-only"));
    EXPECT_EQ(everything(), closed);
    fs::permissions(folder / "old/Old.cvp", fs::perms::owner_all);
    fs::create_directory_symlink("old", folder / "link");
    const Outcome linked = run("delete link/Old.cvp --yes");
    EXPECT_EQ(linked.status, 1) << "the picture stays behind the link";
    EXPECT_TRUE(holds(linked, "old/picture.gif: could not be removed")) << linked.out;
    EXPECT_FALSE(fs::exists(fs::symlink_status(folder / "link")));
}

TEST_F(ProjectCommand, AnswersConflictsAsWasSaidBeforehand) {
    makeProject({"index", "news"});
    write("new/New.cvp", "taken");
    write("new/news.wml", "taken");
    write("new/news-2.wml", "taken");
    const auto before = everything();
    const Outcome stopped = run("save-as old/Old.cvp new/New.cvp --on-conflict stop");
    EXPECT_EQ(stopped.status, 1);
    EXPECT_TRUE(holds(stopped, "tessaly: new/New.cvp: is there already")) << stopped.out;
    EXPECT_TRUE(
        holds(run("save-as old/Old.cvp new/Free.cvp"), "tessaly: new/news.wml: is there already"));
    EXPECT_EQ(everything(), before);

    const Outcome renamed = run("save-as old/Old.cvp new/New.cvp --on-conflict rename");
    EXPECT_EQ(renamed.out, "saved new/New-2.cvp with 2 decks\nrenamed news to news-3\n");
    EXPECT_EQ(read("new/New-2.cvp"),
              projectFile("New-2", folder / "new", "Owner=me\r\nNotes=\r\n", {"index", "news-3"}));
    EXPECT_EQ(read("new/New.cvp") + read("new/news.wml"), "takentaken");

    temp.mode("new/news.wml", 0444);
    const auto closed = everything();
    const Outcome readOnly = run("save-as old/Old.cvp new/New.cvp --on-conflict overwrite");
    EXPECT_EQ(readOnly.status, 1);
    EXPECT_TRUE(holds(readOnly, "tessaly: new/news.wml: is read-only")) << readOnly.out;
    EXPECT_EQ(everything(), closed);
    temp.mode("new/news.wml", 0644);
    EXPECT_EQ(run("save-as old/Old.cvp new/New.cvp --on-conflict overwrite").status, 0);
    EXPECT_EQ(read("new/news.wml"), deckOf("news"));

    const std::string anew = "new new --name X --from source/news.wml";
    EXPECT_EQ(run(anew).status, 1);
    EXPECT_EQ(read("new/news.wml"), deckOf("news"));
    EXPECT_EQ(run(anew + " --on-conflict rename").status, 0);
    EXPECT_EQ(read("new/news-4.wml"), deckOf("news"));
    write("source/news.wml", "anew");
    EXPECT_EQ(run("new new --name Y --from source/news.wml --on-conflict overwrite").status, 0);
    EXPECT_EQ(read("new/news.wml"), "anew");
}

TEST_F(ProjectCommand, OverwritesNoFileThatDiffersInCaseAlone) {
    makeProject({"index"});
    for (const char* taken : {"new.cvp", "New.cvp", "Index.wml", "index.wml"}) {
        write(std::string("new/") + taken, "taken");
    }
    temp.mode("new/new.cvp", 0444); // which is not the one that is asked about
    EXPECT_EQ(run("save-as old/Old.cvp new/New.cvp --on-conflict overwrite").out,
              "saved new/New.cvp with 1 deck\n");
    EXPECT_EQ(read("new/index.wml"), deckOf("index"));
    EXPECT_EQ(run("new new --name X --from source/index.wml --on-conflict overwrite").status, 0);
    EXPECT_EQ(read("new/index.wml"), deckOf("index"));
    EXPECT_EQ(read("new/new.cvp") + read("new/Index.wml"), "takentaken");
}

/// Ctrl-C may come at any moment: here after the first deck, and at the latest at the question
/// about the last one.
TEST_F(ProjectCommand, LeavesWholeFilesWhenInterrupted) {
    std::vector<std::string> decks;
    decks.reserve(1000);
    for (int i = 0; i < 1000; ++i) {
        decks.push_back("deck" + std::to_string(i));
    }
    makeProject(decks);
    write("new/deck0.wml", "taken");
    write("new/deck999.wml", "taken");
    TerminalSession session(folder, "save-as old/Old.cvp new/New.cvp");
    ASSERT_TRUE(session.sees("yes or no? ")) << session.shown;
    usleep(400'000); // the work counts as long now, and shows how far it is
    session.types("y\n");
    EXPECT_TRUE(session.sees("saving ")) << session.shown;
    session.types("\x03");
    EXPECT_EQ(session.ends(), 130) << session.shown;
    EXPECT_NE(session.shown.find("tessaly: new/New.cvp: interrupted"), std::string::npos);

    std::vector<std::string> saved;
    for (const std::string& deck : decks) {
        if (fs::exists(folder / "new" / (deck + ".wml")) && deck != "deck999") {
            EXPECT_EQ(read("new/" + deck + ".wml"), deckOf(deck)) << deck;
            saved.push_back(deck);
        }
    }
    EXPECT_EQ(read("new/New.cvp"),
              projectFile("New", folder / "new", "Owner=me\r\nNotes=\r\n", saved));
    EXPECT_EQ(read("new/deck999.wml"), "taken");
    EXPECT_EQ(run("check new/New.cvp").status, 0);
}

/// Each ends with the file named, and with every file as it was.
TEST_F(ProjectCommand, RefusesWhatItCannotDoAndNamesTheFile) {
    makeProject({"index", "news"});
    write("broken/Broken.cvp", "Site=B\r\nDocument=index\r\nDocument=gone\r\n");
    write("broken/index.wml", deckOf("index"));
    write("shut/S.cvp", "Site=S\r\nDocument=index\r\n");
    write("shut/index.wml", deckOf("index"));
    write("shut/news.wml", deckOf("news"));
    temp.mode("shut/S.cvp", 0444);
    write("plain", "no folder");
    write("Twin/index.wml", "taken");
    fs::create_directory(folder / "twin");
    write("away/A.cvp", "Site=A\r\nDocument=index\r\nDocument=..\\source\\news\r\n");
    write("away/index.wml", deckOf("index"));
    write("away/Index.wml", "twin");
    const std::string elsewhere = "away/..\\source\\news.wml";
    const std::string long251(251, 'x');
    const std::string fresh = "new fresh --from source/index.wml --name ";
    const struct {
        std::string arguments;
        int status;
        std::string told;
    } cases[] = {
        {fresh + "'  '", 1, "--name   : is blank"},
        {fresh + "'a/b'", 1, "--name a/b: holds one of the characters"},
        {fresh + "'a=b'", 1, "--name a=b: cannot hold ="},
        {fresh + long251 + "y", 1, "too long"},
        {fresh + "A --owner 'a=b'", 1, "--owner: cannot hold ="},
        {fresh + "A --description 'a\nSite=b'", 1, "--description: cannot hold"},
        {"new fresh --name A --from source/gone.wml", 3, "source/gone.wml: "},
        {"new fresh --name A --from old/Old.cvp", 1, "old/Old.cvp: is no deck"},
        {"new no/where --name A --from source/index.wml", 3,
         "not there: " + (folder / "no/where").string()},
        {"new plain --name A --from source/index.wml", 3, "plain/A.cvp: would lie in something"},
        {"new old --name Old --from source/sport.wml", 1, "old/Old.cvp: is there already"},
        {"add old/Old.cvp INDEX", 1, "old/INDEX.wml: is a deck of the project already"},
        {"add old/Old.cvp ../source/sport", 1, "../source/sport: holds one"},
        {"add old/Old.cvp -- -gone", 3, "old/-gone.wml: is not there"},
        {"add old/Old.cvp -gone", 2, "`-gone` is no option"},
        {"add broken/Broken.cvp index", 3, "its deck broken/gone.wml is missing"},
        {"remove broken/Broken.cvp index", 3, "its deck broken/gone.wml is missing"},
        {"add shut/S.cvp news", 3,
         "shut/S.cvp: the project file was not written in full: it is read-only"},
        {"remove old/Old.cvp sport", 1, "sport: is no deck of the project"},
        {"save-as old/Old.cvp old/Old.cvp", 1, "old/Old.cvp: is there already"},
        {"save-as old/Old.cvp nowhere/New.cvp", 3, "not there: " + (folder / "nowhere").string()},
        {"save-as old/Old.cvp Twin/New.cvp", 1, "Twin/index.wml: is there already"},
        {"save-as away/A.cvp New.cvp", 1, elsewhere + ": is listed by the project but lies else"},
        {"delete away/A.cvp", 1,
         "1 deck and 1 other file:\n  away/Index.wml\nIts deck " + elsewhere + " lies elsewhere"},
        {"save-as old/Old.cvp New", 1, "New: is no project file"},
        {"save-as old/Old.cvp 'a=b.cvp'", 1, "a=b.cvp: cannot hold ="},
        {"save-as old/Old.cvp $'\\xff.cvp'", 1, "no path that can be used"},
        {"delete old/index.wml --yes", 1, "old/index.wml: is no project file"},
        {"first plain", 1, "plain: lists no deck"},
        {"first gone.cvp", 3, "gone.cvp: "},
        {"new fresh --name A --from source/index.wml --on-conflict perhaps", 2, "perhaps"},
    };
    const auto before = everything();
    for (const auto& one : cases) {
        const Outcome outcome = run(one.arguments);
        EXPECT_EQ(outcome.status, one.status) << one.arguments << '\n' << outcome.out;
        EXPECT_TRUE(holds(outcome, one.told)) << one.arguments << '\n' << outcome.out;
        EXPECT_EQ(everything(), before) << one.arguments;
    }
    const Outcome deleted = run("delete away/A.cvp --yes");
    EXPECT_EQ(deleted.status, 1);
    EXPECT_TRUE(holds(deleted, elsewhere + ": is listed")) << deleted.out;
    EXPECT_EQ(read("source/news.wml"), deckOf("news"));
    EXPECT_EQ(run("save-as old/Old.cvp twin/New.cvp").status, 0) << "a folder of its own";
}

TEST_F(ProjectCommand, NamesTheFileThatTheDiskIsTooSmallFor) {
    makeProject({"index", "news"});
    write("old/news.wml", deckOf(std::string(20'000, 'x')));
    fs::create_directory(folder / "new");
    const std::string small = "ulimit -f 16 && " TESSALY_COMMAND;
    const Outcome full = system_test::runIn(folder, "save-as old/Old.cvp new/New.cvp", true, small);
    EXPECT_EQ(full.status, 3);
    EXPECT_EQ(full.out, "tessaly: new/news.wml: cannot be written: Disk full\n"
                        "tessaly: new/New.cvp: lists the 1 of 2 decks that were saved\n");
    EXPECT_EQ(read("new/index.wml"), deckOf("index"));
}

TEST_F(ProjectCommand, PutsTheProjectFileBackThatTheDiskIsTooSmallFor) {
    std::vector<std::string> names;
    for (const char letter : std::string("abcdefg")) {
        names.emplace_back(100, letter);
    }
    makeProject(names);
    const std::string last(250, 'x');
    write("old/" + last + ".wml", deckOf("last"));
    const auto before = everything();
    const std::string kilobyte = "ulimit -f 2 && " TESSALY_COMMAND; // in blocks of 512 bytes
    const Outcome full = system_test::runIn(folder, "add old/OLD.cvp " + last, true, kilobyte);
    EXPECT_EQ(full.status, 3);
    EXPECT_EQ(full.out,
              "tessaly: old/OLD.cvp: the project file was not written in full: Disk full\n"
              "tessaly: old/OLD.cvp: holds what it held before\n");
    EXPECT_EQ(everything(), before);
}

TEST_F(ProjectCommand, LeavesNothingHalfOnAFullDisk) {
    write("big.wml", deckOf(std::string(20'000, 'x')));
    write("page.html", "good");
    temp.mode("page.html", 0604);
    fs::create_symlink("page.html", folder / "link");
    const auto before = everything();
    const std::string small = "ulimit -f 16 && " TESSALY_COMMAND;
    for (const char* command :
         {"convert big.wml --to plain -o link", "convert big.wml --to plain -o fresh.html",
          "new fresh --name Fresh --from big.wml"}) {
        EXPECT_EQ(system_test::runIn(folder, command, true, small).status, 3) << command;
        EXPECT_EQ(everything(), before) << command;
    }
    EXPECT_EQ(run("convert source/news.wml --to plain -o link").status, 0);
    EXPECT_TRUE(holds({0, read("page.html")}, "news"));
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(fs::status(folder / "page.html").permissions(), fs::perms(0604));
    for (const char* command : {"--help", "check source", "convert big.wml --to plain",
                                "convert big.wml --to plain -o /dev/full"}) {
        const Outcome full = system_test::runIn(folder, std::string(command) + " >/dev/full");
        EXPECT_EQ(full.status, 3) << command;
    }
}

TEST_F(ProjectCommand, LosesNothingOfTwoCommandsAtOnce) {
    std::vector<std::string> decks = {"index"};
    for (int i = 0; i < 40; ++i) {
        decks.push_back("deck" + std::to_string(i));
        write("old/" + decks.back() + ".wml", deckOf("x"));
    }
    makeProject({"index"});
    const std::string add = TESSALY_COMMAND " add old/Old.cvp deck";
    const std::string script = "for i in $(seq 0 2 39); do " + add + "$i & " + add +
                               "$((i + 1)); one=$?; wait $! && [ $one = 0 ] || exit 1; done";
    EXPECT_EQ(system_test::runIn(folder, "'" + script + "'", true, "bash -c").status, 0);
    const std::string listed = read("old/Old.cvp");
    for (const std::string& deck : decks) {
        EXPECT_NE(listed.find("Document=" + deck + "\r\n"), std::string::npos) << deck;
    }
}

TEST_F(ProjectCommand, TakesUnusualNames) {
    const std::vector<std::string> names = {
        std::string(251, 'x'),      "dots..",          "blank ", "-a",
        "\xD0\x9F\xD0\xBE\xD0\xB3", "\xF0\x9F\x8C\xA7"};
    for (const std::string& name : names) {
        fs::remove_all(folder / "old");
        write("old/index.wml", deckOf("index"));
        const std::string stem = "old/" + name;
        write(stem + ".wml", deckOf(name));
        const std::string project = "'" + stem + ".cvp'";
        const std::string quoted = "'" + name + "'";
        const Outcome made = run("new old --name=" + quoted + " --from '" + stem + ".wml'");
        EXPECT_EQ(made.status, 0) << made.out;
        EXPECT_EQ(read(stem + ".cvp"), projectFile(name, folder / "old", "Owner=\r\n", {name}, ""));
        EXPECT_EQ(run("add " + project + " index").status, 0) << name;
        EXPECT_EQ(run("remove " + project + " -- " + quoted).status, 0) << name;
        EXPECT_EQ(run("first " + project).out, "index\n");
        EXPECT_EQ(read(stem + ".wml"), deckOf(name));
    }
    makeProject({"index"});
    const Outcome bare =
        system_test::runIn(folder / "old", "save-as Old.cvp Bare.cvp --on-conflict rename");
    EXPECT_EQ(bare.out, "saved Bare.cvp with 1 deck\nrenamed index to index-2\n");
}

} // namespace
