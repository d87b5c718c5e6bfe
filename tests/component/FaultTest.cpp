// Every operation on the disk, with every call on the file service failing in its turn, once and
// from then on. What each run leaves behind is compared with a model of the steps.

#include "Fakes.h"
#include "FaultModel.h"
#include "naming/dlgFileExists.h"

using namespace fakes;

namespace {

const Text folder = u"D:\\p\\";
const Text oldFile = u"D:\\p\\p.cvp";
const Text newFile = u"D:\\q\\n.cvp";
const Text last = u"-------------- END OF FILE ----------";

/// An operation: how it is run, and what it promises.
struct Operation {
    const char* name;
    std::function<void()> prepare; ///< beyond the project of two documents on a disk
    std::function<std::string(clProject&)> run;
    std::function<std::string(Model&)> promise;
};

// What the operations promise, step by step.

/// Writes `document` to `path`.
void deck(Model& m, DocumentState& document, const Text& path) {
    bool open = false;
    m.step("OpenTextFile", [&] { open = true, m.now.files[path].clear(); });
    m.step("", [&] { document.content = u"exported:" + document.content; });
    m.stepIf(open, "Write", [&] { m.now.files[path] += document.content; });
    m.stepIf(open, "Close");
}

bool save(Model& m, DocumentState& document, const Text& path) {
    return m.routine(Policy::Show, [&] {
        deck(m, document, path);
        return true;
    });
}

/// The name to write to for `path`; the user overwrites, and closes a dialog that cannot.
Text uniqueName(Model& m, const Text& path) {
    Text name;
    const bool taken = m.now.files.contains(path);
    const char* const free = path == toLower(path) ? "FileExists" : "FileExists FileExists";
    const char* const asked = "FileExists GetFile Attributes GetFileName GetParentFolderName";
    m.step(taken ? asked : free, [&] {
        if (taken && m.fails()) {
            m.show(u"no DeleteFile");
            return;
        }
        m.now.files.erase(path);
        name = path;
    });
    return name;
}

bool saveAs(Model& m, DocumentState& document, const Text& path) {
    return m.routine(Policy::Show, [&] {
        const Text name = uniqueName(m, path);
        if (name.empty()) {
            m.now.messages.push_back("MsgBox 64 [Corvane professional] Document " + ascii(path) +
                                     " has not been saved. \nYou must save this document in order "
                                     "to keep the changes.");
            document.isDirty = true;
            return false;
        }
        deck(m, document, name);
        m.step("GetBaseName", [&] { document.newName = document.name; });
        return true;
    });
}

void line(Model& m, const Text& path, const Text& text, bool open, const std::string& calls = {}) {
    m.stepIf(open, calls + " WriteLine", [&] { m.now.files[path] += text + u"\r\n"; });
}

void projectFile(Model& m) {
    m.routine(Policy::Show, [&] {
        bool open = false;
        m.step("CreateTextFile", [&] { open = true, m.now.files[oldFile].clear(); });
        for (const Text text : {u"Site=P", u"Description=", u"Path=D:\\p", u"Owner=", u"Notes="}) {
            line(m, oldFile, text, open);
        }
        for (const DocumentState& document : m.now.documents) {
            line(m, oldFile, u"Document=" + document.name, open);
        }
        line(m, oldFile, last, open);
        return true;
    });
}

std::string saveAll(Model& m) {
    bool all = true;
    for (DocumentState& document : m.now.documents) {
        if (save(m, document, folder + document.name + u".wml")) {
            document.isDirty = document.added = false;
        } else {
            all = false;
        }
    }
    projectFile(m);
    m.now.needSave = false;
    return ascii(all);
}

std::string projectSaveAs(Model& m) {
    return ascii(m.routine(Policy::Show, [&] {
        const Text path = uniqueName(m, newFile);
        if (path.empty()) {
            return false;
        }
        bool open = false;
        m.step("CreateTextFile", [&] { open = true, m.now.files[path].clear(); });
        line(m, path, u"Site=n", open, "GetBaseName");
        line(m, path, u"Description=", open);
        line(m, path, u"Path=D:\\q", open, "GetParentFolderName");
        line(m, path, u"Owner=", open);
        line(m, path, u"Notes=", open);
        for (DocumentState& document : m.now.documents) {
            Text deckPath;
            m.step("GetParentFolderName", [&] { deckPath = u"D:\\q\\" + document.name + u".wml"; });
            if (!saveAs(m, document, deckPath)) {
                return false;
            }
            document.name = document.newName;
            line(m, path, u"Document=" + document.name, open);
            document.isDirty = document.added = false;
        }
        line(m, path, last, open);
        m.step("GetParentFolderName", [&] { m.now.projectPath = u"D:\\q"; });
        m.now.creationDate = 40000;
        m.now.projectFile = path;
        m.step("GetBaseName", [&] { m.now.projectName = u"n"; });
        return true;
    }));
}

/// Clears `name` if the user gives up or the file cannot be deleted; the user overwrites.
void promptFileExists(Model& m, Text& name) {
    m.routine(Policy::Show, [&] {
        const auto step = [&](const std::string& calls, const std::function<void()>& effect) {
            const bool done = m.step(calls, effect);
            if (!done) {
                name.clear();
            }
            return done;
        };
        bool exists = true;
        step("FileExists", [&] { exists = m.now.files.contains(name); });
        if (!exists) {
            return false;
        }
        const bool asked = step("GetFileName GetParentFolderName", [&] {
            m.now.messages.push_back(
                "MsgBox 52 [File Exists] A file named " +
                ascii(name.substr(name.rfind(u'\\') + 1)) + " already exists in the directory " +
                (name.empty() ? "" : "D:\\q") +
                "\nThis could be part of another project in the same directory. Overwrite?");
        });
        if (asked) {
            step("DeleteFile", [&] { m.now.files.erase(name); });
            return false;
        }
        step("GetExtensionName", [] {}); // nobody asked is nobody who agreed: another name, then
        m.now.messages.emplace_back("MsgBox 52 [Corvane professional] You are about to cancel this "
                                    "operation.\nAre you sure?");
        name.clear();
        return false;
    });
}

std::string create(Model& m) {
    m.routine(Policy::Show, [&] {
        const bool missing = !m.now.folders.contains(u"D:\\q");
        m.step(missing ? "FolderExists CreateFolder" : "FolderExists",
               [&] { m.now.folders.insert(u"D:\\q"); });
        return true;
    });
    Text target;
    m.step("GetFileName", [&] { target = u"D:\\q\\a.wml"; });
    m.step("GetAbsolutePathName");
    promptFileExists(m, target);
    if (target.empty()) {
        return "False";
    }
    const Text path = u"D:\\q\\N.cvp";
    m.step("CopyFile", [&] {
        if (!m.now.folders.contains(u"D:\\q")) {
            throw Failure(FailureCode::PathNotFound);
        }
        m.now.files[target] = m.now.files[folder + u"a.wml"];
    });
    m.step("CreateTextFile", [&] { m.now.files[path].clear(); });
    for (const Text text : {u"Site=N", u"Description=d", u"Path=D:\\q", u"Owner=o"}) {
        line(m, path, text, true);
    }
    line(m, path, u"Document=a", true, "GetBaseName");
    line(m, path, last, true);
    return "True";
}

std::string deleteFiles(Model& m) {
    return ascii(m.routine(Policy::Drop, [&] {
        if (!m.step("GetAbsolutePathName GetParentFolderName")) {
            return false; // whether the folder is a root is not known
        }
        const auto file = [&](const Text& path) {
            m.step("FileExists DeleteFile", [&] { m.now.files.erase(path); });
        };
        const auto below = [&](const Text& path) {
            m.step("FolderExists DeleteFolder", [&] {
                std::erase_if(m.now.files,
                              [&](const auto& entry) { return entry.first.starts_with(path); });
                std::erase_if(m.now.folders,
                              [&](const Text& entry) { return (entry + u"\\").starts_with(path); });
            });
        };
        for (const DocumentState& document : m.now.documents) {
            file(folder + document.name + u".wml");
        }
        below(folder + u"images\\");
        file(oldFile);
        below(folder);
        m.now.needSave = true;
        return true;
    }));
}

bool addDocument(Model& m, const Text& name) {
    return m.routine(Policy::Drop, [&] {
        if (m.step("GetFile")) {
            if (!m.step("OpenAsTextStream")) {
                return false;
            }
            const auto add = [&] {
                const Text text = m.now.files[folder + name + u".wml"];
                m.now.documents.push_back({name, text, false, true, u""});
            };
            if (m.step("AtEndOfStream ReadAll", add)) {
                m.now.needSave = true;
                return true;
            }
        }
        m.now.needSave = true;
        return false;
    });
}

std::string init(Model& m) {
    return ascii(m.routine(Policy::Drop, [&] {
        bool file = false;
        bool open = false;
        m.step("FileExists");
        m.now.documents.clear();
        m.step("GetFile", [&] { file = true; });
        m.stepIf(file, "OpenAsTextStream", [&] { open = true; });
        const std::vector<Text> lines = {u"Site=P2", u"Document=a", u"Document=b"};
        for (std::size_t at = 0;; ++at) {
            if (at == lines.size()) {
                m.stepIf(open, "AtEndOfStream");
                break;
            }
            if (!m.stepIf(open, "AtEndOfStream ReadLine")) {
                break; // a stream that fails counts as ended
            }
            if (at == 0) {
                m.now.projectName = u"P2";
            } else if (!addDocument(m, lines[at].substr(9))) {
                return false;
            } else {
                m.now.needSave = m.now.documents.back().added = false;
            }
            m.step("GetParentFolderName");
        }
        m.stepIf(open, "Close");
        m.stepIf(file, "DateCreated", [&] { m.now.creationDate = 36526.5; });
        return true;
    }));
}

// The disk and the project that each run begins with, and what it left behind.

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

    Outcome observe(std::string result) const {
        Outcome outcome;
        outcome.result = std::move(result);
        std::copy_if(world.log.begin(), world.log.end(), std::back_inserter(outcome.messages),
                     [](const std::string& line) { return line.starts_with("MsgBox"); });
        outcome.files = world.files;
        outcome.folders = world.folders;
        outcome.projectName = project->ProjectName();
        outcome.projectPath = project->ProjectPath();
        outcome.projectFile = project->projectFile();
        outcome.creationDate = project->CreationDate();
        outcome.needSave = project->NeedSave();
        for (const auto& document : project->Documents()->NewEnum()) {
            outcome.documents.push_back({document->Name(), document->Content(), document->isDirty(),
                                         document->added(), document->NewName()});
        }
        return outcome;
    }
    static std::string resultOf(const std::function<std::string()>& run) {
        try {
            return run();
        } catch (const Failure& failure) {
            return "fails with " + std::to_string(failure.number());
        }
    }

    /// One run with `fault`. False if the fault lay behind its last call.
    bool holds(const Operation& operation, const Fault& fault) {
        begin(operation);
        Model model(observe(""), fault);
        model.now.needSave = false; // so far, only the documents need it
        const auto promised = resultOf([&] { return operation.promise(model); });
        model.now.result = promised;
        for (const DocumentState& document : model.now.documents) {
            model.now.needSave = model.now.needSave || document.isDirty;
        }
        world.fault = fault;
        const std::string result = resultOf([&] { return operation.run(*project); });
        world.fault = {};
        EXPECT_EQ(world.diskCalls, model.calls());
        const Outcome outcome = observe(result);
        EXPECT_EQ(outcome.result, model.now.result);
        EXPECT_EQ(outcome.messages, model.now.messages);
        EXPECT_EQ(outcome.files, model.now.files);
        EXPECT_TRUE(outcome == model.now) << "the object or the folders";
        return fault.call <= world.diskCalls;
    }
};

} // namespace

TEST_F(Faults, LeaveBehindWhatEachStepPromises) {
    const auto take = [](const Text& path) { return [=] { world.files[path] = u"taken"; }; };
    const auto makeNew = [](clProject& p) {
        Text path = u"D:\\q";
        return ascii(std::get<bool>(p.Create(u"N", u"d", path, folder + u"a.wml", u"o")));
    };
    const auto moveAway = [](clProject& p) { return ascii(p.SaveAs(newFile)); };
    const auto saveFirstAs = [](clProject& p) {
        return ascii(p.Documents()->Item(1)->SaveAs(u"D:\\q\\a.wml"));
    };
    const auto firstAs = [](Model& m) {
        return ascii(saveAs(m, m.now.documents[0], u"D:\\q\\a.wml"));
    };
    const auto firstInPlace = [](Model& m) {
        return ascii(save(m, m.now.documents[0], folder + u"a.wml"));
    };
    const std::vector<Operation> operations = {
        {"Create", nullptr, makeNew, create},
        {"Create, name taken", take(u"D:\\q\\a.wml"), makeNew, create},
        {"Create, no folder", [] { world.folders.erase(u"D:\\q"); }, makeNew, create},
        {"Save", nullptr, [](clProject& p) { return p.Save(), "done"; },
         [](Model& m) { return projectFile(m), "done"; }},
        {"SaveDocument", nullptr, [](clProject& p) { return ascii(p.SaveDocument(u"a")); },
         firstInPlace},
        {"SaveAll", nullptr, [](clProject& p) { return ascii(p.SaveAll()); }, saveAll},
        {"SaveAs of the project", nullptr, moveAway, projectSaveAs},
        {"SaveAs of the project, names taken",
         [] { world.files[newFile] = world.files[u"D:\\q\\b.wml"] = u"taken"; }, moveAway,
         projectSaveAs},
        {"SaveAs of a document", nullptr, saveFirstAs, firstAs},
        {"SaveAs of a document, name taken", take(u"D:\\q\\a.wml"), saveFirstAs, firstAs},
        {"DeleteFiles", nullptr, [](clProject& p) { return ascii(p.DeleteFiles()); }, deleteFiles},
        {"init", nullptr, [](clProject& p) { return ascii(p.init(oldFile)); }, init},
        {"addDocument", nullptr, [](clProject& p) { return ascii(p.addDocument(u"c")); },
         [](Model& m) { return ascii(addDocument(m, u"c")); }},
    };
    std::int32_t points = 0;
    for (const Operation& operation : operations) {
        for (const std::int32_t code : {70, 71, 61, 76, 4711}) {
            for (const bool onwards : {false, true}) {
                Fault fault{1, static_cast<FailureCode>(code), onwards};
                for (; !HasFailure() && holds(operation, fault); ++fault.call) {
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
