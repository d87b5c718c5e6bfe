#include "support/Test.h"
#include "tests/system/CommandRun.h"

#include <nlohmann/json.hpp>

#include <regex>

namespace {

using system_test::holds;
using system_test::Outcome;

Outcome run(const std::string& arguments, bool errors = false,
            const std::string& program = TESSALY_COMMAND) {
    return system_test::runIn(TESSALY_SOURCE_DIR "/examples", arguments, errors, program);
}

class Command : public testing::Test {
protected:
    std::string write(const std::string& name, const std::string& bytes) const {
        temp.write(name, bytes);
        return temp.posix(name);
    }
    support::TempFolder temp;
};

TEST_F(Command, ShowsCardsInTheirMarkup) {
    const Outcome markup = run("cards weather/index.wml --as markup --json");
    EXPECT_EQ(nlohmann::json::parse(markup.out)[0]["cards"][1]["id"], "menu");
    EXPECT_TRUE(holds(markup, "$(name:noesc)"));
}

TEST_F(Command, ShowsCardsAsText) {
    const std::string own =
        write("own.wml",
              "<!DOCTYPE wml PUBLIC \"-//WAPFORUM//DTD WML 1.1//EN\" \"wml_1.1.xml\" ["
              "<!ENTITY me '<b>Bo</b> &#38;amp; &us;'><!ENTITY us '\"us\"'>]><wml><card id='a' "
              "title='by &us;'><p>by &me;&nbsp;x <select><optgroup title='G'><optgroup "
              "title='H'><option>a</option></optgroup></optgroup><option>b</option></select>"
              "</p></card></wml>");
    EXPECT_EQ(run("cards " + own).out,
              own + "\n1/1 a\nby \"us\"\nby Bo & \"us\"\u00A0x\nG\nH\na\nb\n\n");
    const std::string none = write("none.wml", "<wml x='1'><p>text</p></wml>");
    EXPECT_TRUE(holds(run("cards " + none, true), "no cards to show; line 1, column 13: `p`"));
}

TEST_F(Command, NamesEachFaultOfTheBrokenDecksAtItsPlace) {
    const char* const faults[] = {
        "not-well-formed.wml:4:32:.*&amp;",
        "not-well-formed.wml:5:21:.*`</i>`",
        "not-well-formed.wml:6:8:.*quotes",
        "undeclared-element.wml:4:4:.*did you mean `card`",
        "undeclared-element.wml:8:6:.*did you mean `p`",
        "undeclared-element.wml:9:6:.*`center`",
        "wrong-nesting.wml:5:5:.*text",
        "wrong-nesting.wml:6:29:.*`a` may hold",
        "wrong-nesting.wml:10:6:.*`timer`",
        "duplicate-id.wml:5:.*line 4",
        "wrong-encoding.wml:1:31:.*`latin 1`",
        "entity-bomb.wml:13:23:.*`h`",
    };
    const Outcome check = run("check broken/*.wml");
    EXPECT_EQ(check.status, 1);
    for (const std::string fault : faults) { // the deck that is left is in the README
        EXPECT_TRUE(std::regex_search(check.out, std::regex("broken/" + fault)))
            << fault << " is missing in\n"
            << check.out;
    }
    EXPECT_TRUE(holds(check, " in 7 of 7 decks\n"));

    const auto report = nlohmann::json::parse(run("check --json broken").out);
    EXPECT_EQ(report["invalid"], 7);
    EXPECT_GE(report["errorCount"], 15);
}

TEST_F(Command, KeepsItsExitStatusesApart) {
    const std::pair<std::string, int> statuses[] = {
        {"", 2},
        {"check", 2},
        {"chek weather", 2},
        {"cards x.wml --as pictures", 2},
        {"--help", 0},
        {"--version", 0},
        {"check weather", 0},
        {"tags table,img weather", 1},
        {"tags blink weather", 0},
        {"check /nowhere/deck.wml", 3},
        {"check broken/duplicate-id.wml /nowhere/deck.wml", 3},
        {"info weather/Weather.cvp", 0},
        {"info /nowhere.cvp", 3},
        {"cards weather/Weather.cvp --deck SETTINGS", 0},
        {"cards weather/Weather.cvp --deck none", 3},
        {"info " + write("empty.cvp", ""), 1},
    };
    for (const auto& [arguments, status] : statuses) {
        EXPECT_EQ(run(arguments).status, status) << arguments;
    }
    const std::pair<const char*, const char*> messages[] = {
        {"chek weather", "tessaly: `chek` is no command; did you mean `check`?\n"},
        {"check --jsn weather", "tessaly: `--jsn` is no option; did you mean `--json`?\n"},
        {"cards x --as html", "tessaly: --as: `html` is none of `text`, `plain`, `markup`; "
                              "`tessaly help cards` says how it is used\n"},
        {"check", "tessaly: `PATH` is missing; `tessaly help check` says how it is used\n"},
        {"convert x --to",
         "tessaly: `--to` takes one value; `tessaly help convert` says how it is used\n"},
        {"tags blink,crad weather", "tessaly: `blink` is no element of WML\n"
                                    "tessaly: `crad` is no element of WML; did you mean `card`?\n"},
        {"info broken/wrong-nesting.wml", "Deck        broken/wrong-nesting.wml\n"
                                          "Size        337 characters\nCards       2\n"
                                          "Verdict     invalid; `tessaly check` says why\n"},
    };
    for (const auto& [arguments, message] : messages) {
        EXPECT_EQ(run(arguments, true).out, message);
    }
    EXPECT_EQ(run("help check").out, run("check --help").out);
    EXPECT_EQ(run("-V").out, run("--version").out);
    const Outcome narrow = run("help check", false, "COLUMNS=30 " TESSALY_COMMAND);
    EXPECT_TRUE(holds(narrow, "\n    Decks, project files\n    (.cvp), or folders: every\n"))
        << narrow.out;
}

TEST_F(Command, ReadsADeckFromStandardInput) {
    const auto given = [](const std::string& arguments) {
        return support::shell("printf '<wml><crad/></wml>' | " TESSALY_COMMAND " " + arguments +
                              " 2>&1")
            .out;
    };
    const std::string reason = ":1:7: error: `crad` is no WML element; did you mean `card`?\n";
    EXPECT_EQ(given("check -"), "<stdin>" + reason + "1 error in 1 of 1 deck\n");
    EXPECT_EQ(given("check - --stdin-filename a/b.wml --views"),
              "a/b.wml" + reason +
                  "1 error in 1 of 1 deck\n1 deck switched to the page and back, no byte lost\n");
    EXPECT_EQ(given("convert - --to plain -o - | " TESSALY_COMMAND " convert --to markup -"),
              "<wml><crad/></wml>");
}

TEST_F(Command, ShowsEachFileNameOnOneLine) {
    write("a\n\x1b[1mb.wml", "<wml/");
    EXPECT_TRUE(
        run("check " + temp.posix()).out.starts_with(temp.posix("a\\n\\x1b[1mb.wml:1:2: error: ")));
    const auto report = nlohmann::json::parse(run("check --json " + temp.posix() + "/./").out);
    EXPECT_EQ(report["decks"][0]["file"], temp.posix("./a\n\x1b[1mb.wml"));
    const auto project =
        nlohmann::json::parse(run("info --json ./weather/../weather/Weather.cvp").out);
    EXPECT_EQ(project["decks"][0]["file"], "./weather/../weather/index.wml");
}

TEST_F(Command, NamesWhatItCannotReadAndGoesOn) {
    const std::string deck = "<wml><card id='a'><p>x</p></card></wml>";
    write("z/deck.wml", deck);
    write("bad/deck.wml", deck);
    std::filesystem::create_symlink("loop.wml", temp.posix("bad/loop.wml"));
    write("bad/shut/deck.wml", deck);
    temp.mode("bad/shut", 0);
    write("z/large.wml", "");
    std::filesystem::resize_file(temp.posix("z/large.wml"), 3'000'000'000);
    const std::string before = "z/P.cvp: the project could not be opened in full: ";
    const struct {
        std::string project;
        std::string told;
        std::string verdict;
    } projects[] = {
        {"\xEF\xBB\xBFSite=P\r\nDocument=deck\r\n", "", "1 deck checked, no errors\n"},
        {"Site=P\nDocument=large\nDocument=deck\n",
         before + "its deck " + temp.posix("z/large.wml") + " is too large",
         "1 deck checked, no errors; 1 could"},
        {"Site=P\nDocument=deck\nDocument=DECK\nDocument=gone\n", "z/DECK.wml is listed twice",
         "1 deck checked, no errors; 2 could"},
        {"Site=P\nDocument=\nDocument=deck\n", before + "deck 1 of its list has no name",
         "; 1 could"},
        {"Stie=P\nDocument=deck\n", "its first line is `Stie=P`", "; 1 could"},
        {"Site=P\nDocument=gone\n", "z/gone.wml is missing", "0 decks checked; 1 could"},
    };
    for (const auto& [project, told, verdict] : projects) {
        const Outcome check = run("check " + write("z/P.cvp", project), true);
        EXPECT_TRUE(holds(check, told)) << check.out;
        EXPECT_TRUE(holds(check, verdict)) << check.out;
    }
    // The system keeps nobody out who has all rights.
    const std::string limited =
        support::shell("id -u").out == "0\n"
            ? "setpriv --bounding-set=-dac_override,-dac_read_search --inh-caps=-all "
            : "";
    const Outcome folder = run("check --json " + temp.posix(), false, limited + TESSALY_COMMAND);
    temp.mode("bad/shut", 0755);
    EXPECT_EQ(folder.status, 3);
    const auto report = nlohmann::json::parse(folder.out);
    EXPECT_EQ(report["decks"].size(), 2U);
    std::map<std::string, std::string> reasons;
    for (const auto& unread : report["unreadable"]) {
        reasons[unread["file"]] = unread["reason"];
    }
    EXPECT_EQ(reasons,
              (std::map<std::string, std::string>{
                  {temp.posix("bad/shut"), "cannot be read: Permission denied"},
                  {temp.posix("bad/loop.wml"), "is a link that leads nowhere"},
                  {temp.posix("z/large.wml"), "is too large, or memory does not suffice"}}));
}

TEST_F(Command, LetsNoDeckWriteToTheTerminal) {
    const std::string deck =
        write("escape.wml", "<wml><card id='a'><p>\x1b]0;owned\x07 <x\x1b[31m/></p></card></wml>");
    for (const std::string command : {"check --color always ", "cards --color never "}) {
        const Outcome outcome = run(command + deck, true);
        EXPECT_EQ(outcome.out.find("\x1b]"), std::string::npos) << command;
        EXPECT_EQ(outcome.out.find('\x07'), std::string::npos) << command;
    }
    EXPECT_TRUE(holds(run("check --color always broken/bad-attribute.wml"), "\x1b[1;31m"));
    EXPECT_FALSE(holds(run("check broken/bad-attribute.wml"), "\x1b["));
}

TEST_F(Command, TakesDecksToThePageAndBack) {
    const Outcome views = run("check --views . ../tests/ravikit/decks");
    EXPECT_TRUE(holds(views, " switched to the page and back, no byte lost")) << views.out;
    EXPECT_TRUE(holds(views, "\n3 decks could not be switched: not well-formed")) << views.out;

    // What comes back is UTF-8, and must not say that it is something else.
    const std::string page = temp.posix("page.html");
    const std::string latin =
        write("latin.wml", "<?xml version=\"1.0\" encoding='ISO-8859-1'?>\n<wml>\xE9</wml>");
    EXPECT_EQ(run("convert " + latin + " --to plain -o " + page).status, 0);
    EXPECT_EQ(run("convert " + page + " --to markup").out,
              "<?xml version=\"1.0\" encoding='UTF-8'?>\n<wml>\u00E9</wml>");

    // A byte-order mark is the page's to carry; a file in no known encoding has no page.
    const std::string marked = write("marked.wml", "\xEF\xBB\xBF<wml>\u00E9</wml>");
    EXPECT_EQ(run("convert " + marked + " --to plain -o " + page).status, 0);
    EXPECT_EQ(run("convert " + page + " --to markup").out, "\xEF\xBB\xBF<wml>\u00E9</wml>");
    const std::string unknown = write("unknown.wml", "<?xml version=\"1.0\" encoding=\"x-none\"?>"
                                                     "<wml><card><p>\xE9</p></card></wml>");
    const Outcome unread = run("convert " + unknown + " --to plain", true);
    EXPECT_EQ(unread.status, 1);
    EXPECT_EQ(unread.out, unknown + ":1:31: error: the encoding x-none cannot be read\n");
    const Outcome notes =
        run("check --views --json " + latin + ' ' + write("odd.wml", "<wml>\xE9"));
    const auto decks = nlohmann::json::parse(notes.out)["decks"];
    EXPECT_EQ(decks[0]["views"], "other encoding");
    EXPECT_EQ(decks[1]["notes"][0]["column"], 6);

    const Outcome refused = run("convert broken/not-well-formed.wml --to plain --strict", true);
    EXPECT_EQ(refused.status, 1);
    EXPECT_TRUE(holds(refused, "not-well-formed.wml:4:32: error: ")) << refused.out;
    EXPECT_EQ(run("convert /nowhere.wml --to plain").status, 3);
}

/// Whatever a project file lists or a deck holds, the command ends with a status of its own.
TEST_F(Command, EndsOnHostileInput) {
    std::string nested = "<wml><card><p>";
    std::string faults = "<wml>";
    for (int i = 0; i < 20000; ++i) {
        nested += "<b>";
        faults += "<card id='x'><p>&</q></card>\n";
    }
    const std::string deep = write("deep.wml", nested);
    EXPECT_EQ(run("check " + deep + ' ' + write("many.wml", faults + "</wml>")).status, 1);
    EXPECT_EQ(run("cards " + deep).status, 1);

    std::string cards;
    for (int i = 0; i < 32'769; ++i) {
        cards += "<card/>";
    }
    const std::string many = write("many.wml", "<wml>" + cards + "</wml>");
    EXPECT_TRUE(holds(run("cards " + many, true), "tessaly: " + many + ": has more cards than"));

    std::string line = "Site=";
    line.resize(50'000'000, '=');
    EXPECT_EQ(run("info " + write("line.cvp", line)).status, 1);
    std::string names = "Site=Names\r\n";
    for (const char* name : {"..\\..\\etc\\passwd", "C:\\deck", "Z:deck", "con", "a\tb", "\x01"}) {
        const std::string project =
            write("names.cvp", names + "Document=" + name + "\r\nOwner=me\r\n");
        EXPECT_EQ(run("check " + project).status, 3) << name;
    }
}

TEST(Example, HostPrintsTheEventsOfItsProject) {
    const Outcome outcome = run("weather/Weather.cvp", false, TESSALY_HOST);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "OnSetCurrentDocument\nOnClearErrors\nOnSetCurrentDocument\n"
                           "OnClearErrors\nOnSetCurrentDocument\nOnClearErrors\n");
}

TEST_F(Command, TheExampleEditorKeepsTwoDecksApart) {
    const std::string folder = temp.posix("weather");
    const Outcome edited = support::shell(
        "cp -r " TESSALY_SOURCE_DIR "/examples/weather " + folder + " && " TESSALY_EDITOR " " +
        folder + "/Weather.cvp; diff -r " + TESSALY_SOURCE_DIR "/examples/weather " + folder +
        " -x '*.cvp' | grep '^[<>]'");
    EXPECT_EQ(
        edited.out,
        "Both decks were edited and saved\n"
        "<     <p>Good day, <em>$(name:noesc)</em>.&nbsp;What would you like?</p>\n"
        ">     <p><b>Good day</b>, <em>$(name:noesc)</em>.&nbsp;What <b>would</b> you like?</p>\n"
        "<       Your name:\n"
        ">       Name:\n");
}

} // namespace
