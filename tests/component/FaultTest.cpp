// Every operation on the disk, with every call on the file service failing in its turn, once and
// from then on. What each run leaves is measured against the undisturbed run by what holds for all:
// nothing else is touched, what is written is whole lines in their order, each failure is shown or
// ends the routine, and nothing counts as saved that is not on the disk.

#include "Fakes.h"
#include "naming/dlgFileExists.h"

using namespace fakes;

namespace {

const Text folder = u"D:\\p\\";
const Text oldFile = u"D:\\p\\p.cvp";
const Text newFile = u"D:\\q\\n.cvp";

/// What a routine does about a step that failed.
enum class Policy {
    Show,  ///< 70 and 71 are shown and the next step runs; any other code ends the routine
    Drop,  ///< the next step runs
    Throw, ///< the caller gets the failure, but for what the routines that it calls show
};

struct Operation {
    const char* name;
    Policy policy;
    std::set<Text> touches; ///< the files that it may write or delete
    std::function<void()> prepare;
    std::function<std::string(clProject&)> run;
};

struct DocumentState {
    Text name;
    Text content;
    bool isDirty = true;
};

/// What a run left.
struct Outcome {
    std::string result;
    Log failures; ///< shown with the critical icon
    Files files;
    Text projectFile;
    Text projectName;
    Text projectPath;
    std::vector<DocumentState> documents;
};

using Lines = std::vector<Text>;

Lines linesOf(const Files& files, const Text& path) {
    Lines lines;
    const auto file = files.find(path);
    for (std::size_t at = 0; file != files.end() && at < file->second.size();) {
        const std::size_t end = std::min(file->second.find(u"\r\n", at), file->second.size());
        lines.push_back(file->second.substr(at, end - at));
        at = end + 2;
    }
    return lines;
}

bool isSubsequence(const Lines& part, const Lines& whole) {
    std::size_t at = 0;
    for (const Text& line : whole) {
        at += std::size_t(at < part.size() && part[at] == line);
    }
    return at == part.size();
}

bool isPrefix(const Lines& part, const Lines& whole) {
    return part.size() <= whole.size() && std::equal(part.begin(), part.end(), whole.begin());
}

class Faults : public Component {
protected:
    ~Faults() override { dlgFileExists::shared().unload(); }

    void begin(const Operation& operation) {
        world = {};
        world.folders = {u"D:", u"D:\\p", u"D:\\p\\images", u"D:\\q"};
        world.files = {{oldFile, u"Site=P2\r\nDocument=a\r\nDocument=b\r\n"},
                       {folder + u"a.wml", u"<wml>a</wml>"},
                       {folder + u"b.wml", u"<wml>b</wml>"},
                       {folder + u"c.wml", u"<wml>c</wml>"},
                       {folder + u"images\\x.wbmp", u"x"},
                       {u"D:\\other.wml", u"stays"}};
        world.onShow = [](FakeForm& form) { form.click(u"cmdYes"); };
        world.answers = {MsgBoxAnswer::Yes};
        project = std::make_shared<clProject>();
        project->ProjectPath(u"D:\\p");
        project->projectFile(oldFile);
        project->ProjectName(u"P");
        for (const Text name : {u"a", u"b"}) {
            Text text = u"<wml>" + name + u" typed</wml>";
            project->Documents()
                ->Add(u"", name, text, nullptr, nullptr, nullptr, project->Ravik())
                ->isDirty(true);
        }
        if (operation.prepare) {
            operation.prepare();
        }
        world.log.clear();
        world.diskCalls = 0;
    }

    Outcome outcomeOf(const Operation& operation, const Fault& fault) {
        begin(operation);
        m_before = world.files;
        world.fault = fault;
        Outcome outcome;
        try {
            outcome.result = operation.run(*project);
        } catch (const Failure& failure) {
            outcome.result = "fails with " + std::to_string(failure.number());
        }
        world.fault = {};
        outcome.failures = world.takeOnly({"MsgBox 16"});
        outcome.files = world.files;
        outcome.projectFile = project->projectFile();
        outcome.projectName = project->ProjectName();
        outcome.projectPath = project->ProjectPath();
        for (const auto& document : project->Documents()->NewEnum()) {
            outcome.documents.push_back(
                {document->Name(), document->Content(), document->isDirty()});
        }
        return outcome;
    }

    /// A file is as it was, or on its way to what the undisturbed run leaves: gone, emptied, or
    /// with whole lines in their order. Where a failure ends the routine, nothing follows it.
    void expectFiles(const Operation& operation, bool goesOn, const Outcome& good,
                     const Outcome& now) const {
        std::set<Text> paths;
        for (const Files* files : {&m_before, &good.files, &now.files}) {
            for (const auto& [path, content] : *files) {
                paths.insert(path);
            }
        }
        for (const Text& path : paths) {
            const Lines before = linesOf(m_before, path);
            const Lines left = linesOf(now.files, path);
            const Lines wanted = linesOf(good.files, path);
            if (left == before && now.files.contains(path) == m_before.contains(path)) {
                continue;
            }
            EXPECT_TRUE(operation.touches.contains(path)) << ascii(path) << " is no business of it";
            EXPECT_TRUE(goesOn ? isSubsequence(left, wanted) : isPrefix(left, wanted))
                << ascii(path);
            const bool oneStepFailed = goesOn && now.result == "done" && now.failures.size() == 1;
            EXPECT_TRUE(!oneStepFailed || left.size() + 1 == wanted.size())
                << ascii(path) << ": a failed line took others with it";
        }
    }

    /// A document that counts as saved is on the disk, and a project that says that it moved has.
    static void expectObject(const Outcome& good, const Outcome& now) {
        for (const DocumentState& document : now.documents) {
            const Text path = good.projectFile == oldFile ? folder : Text(u"D:\\q\\");
            EXPECT_TRUE(document.isDirty ||
                        now.files.at(path + document.name + u".wml") == document.content)
                << ascii(document.name);
        }
        for (const auto member :
             {&Outcome::projectFile, &Outcome::projectName, &Outcome::projectPath}) {
            EXPECT_TRUE(now.*member == good.*member || now.result != "True");
        }
    }

    /// One run with `fault`. False if the fault came after its last call.
    bool holds(const Operation& operation, const Outcome& good, const Fault& fault) {
        const Outcome now = outcomeOf(operation, fault);
        const std::int32_t struck = fault.onwards ? world.diskCalls - fault.call + 1
                                                  : std::int32_t(fault.call <= world.diskCalls);
        if (struck <= 0) {
            return false;
        }
        const bool isShown =
            operation.policy == Policy::Show && (fault.code == FailureCode::PermissionDenied ||
                                                 fault.code == FailureCode::DiskNotReady);
        const auto shown = static_cast<std::int32_t>(now.failures.size());
        if (isShown) {
            EXPECT_EQ(shown, struck);
            EXPECT_TRUE(now.result != "True" || operation.name == std::string("SaveAll"));
        } else if (operation.policy == Policy::Drop) {
            EXPECT_EQ(shown, 0);
        } else {
            EXPECT_LE(shown, struck);
        }
        EXPECT_TRUE(operation.policy == Policy::Throw || !now.result.starts_with("fails"));
        expectFiles(operation, isShown || operation.policy == Policy::Drop, good, now);
        expectObject(good, now);
        return true;
    }

private:
    Files m_before;
};

std::string made(clProject& project) {
    Text path = u"D:\\q";
    return ascii(std::get<bool>(project.Create(u"N", u"d", path, folder + u"a.wml", u"o")));
}
std::function<void()> taken(const Text& path) {
    return [=] { world.files[path] = u"taken"; };
}

} // namespace

TEST_F(Faults, LoseNothingElseAndAreNeverTakenForSuccess) {
    const std::set<Text> copy = {u"D:\\q\\a.wml", u"D:\\q\\N.cvp"};
    const std::set<Text> decks = {folder + u"a.wml", folder + u"b.wml", oldFile};
    const std::set<Text> there = {newFile, u"D:\\q\\a.wml", u"D:\\q\\b.wml"};
    const std::set<Text> everything = {folder + u"a.wml", folder + u"b.wml", folder + u"c.wml",
                                       folder + u"images\\x.wbmp", oldFile};
    const Text away = u"D:\\q\\a.wml";
    const auto moved = [](clProject& p) { return ascii(p.SaveAs(newFile)); };
    const auto firstSavedAs = [&](clProject& p) {
        return ascii(p.Documents()->Item(1)->SaveAs(away));
    };
    const auto namesTaken = [] { world.files[newFile] = world.files[u"D:\\q\\b.wml"] = u"taken"; };
    const auto saved = [](clProject& p) { return p.Save(), "done"; };
    const auto deckSaved = [](clProject& p) { return ascii(p.SaveDocument(u"a")); };
    const auto allSaved = [](clProject& p) { return ascii(p.SaveAll()); };
    const auto deleted = [](clProject& p) { return ascii(p.DeleteFiles()); };
    const auto opened = [](clProject& p) { return ascii(p.init(oldFile)); };
    const auto added = [](clProject& p) { return ascii(p.addDocument(u"c")); };
    const std::vector<Operation> operations = {
        {"Create", Policy::Throw, copy, nullptr, made},
        {"Create, name taken", Policy::Throw, copy, taken(u"D:\\q\\a.wml"), made},
        {"Create, no folder", Policy::Throw, copy, [] { world.folders.erase(u"D:\\q"); }, made},
        {"Save", Policy::Show, {oldFile}, nullptr, saved},
        {"SaveDocument", Policy::Show, {folder + u"a.wml"}, nullptr, deckSaved},
        {"SaveAll", Policy::Show, decks, nullptr, allSaved},
        {"SaveAs of the project", Policy::Show, there, nullptr, moved},
        {"SaveAs of the project, names taken", Policy::Show, there, namesTaken, moved},
        {"SaveAs of a document", Policy::Show, {away}, nullptr, firstSavedAs},
        {"SaveAs of a document, name taken", Policy::Show, {away}, taken(away), firstSavedAs},
        {"DeleteFiles", Policy::Drop, everything, nullptr, deleted},
        {"init", Policy::Drop, {}, nullptr, opened},
        {"addDocument", Policy::Drop, {}, nullptr, added},
    };
    std::int32_t points = 0;
    for (const Operation& operation : operations) {
        const Outcome good = outcomeOf(operation, {});
        for (const std::int32_t code : {70, 71, 61, 76, 4711}) {
            for (const bool onwards : {false, true}) {
                Fault fault{1, static_cast<FailureCode>(code), onwards};
                for (; !HasFailure() && holds(operation, good, fault); ++fault.call) {
                    ++points;
                }
                ASSERT_FALSE(HasFailure()) << operation.name << ": code " << code << " at call "
                                           << fault.call << (onwards ? " and from then on" : "");
            }
        }
    }
    EXPECT_GE(points, 500);
    std::cout << "tried: " << points << " points of failure in " << operations.size()
              << " operations on the disk\n";
}
