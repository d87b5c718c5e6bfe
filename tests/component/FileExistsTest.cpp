#include "Fakes.h"

#include "format/Picture.h"
#include "naming/dlgFileExists.h"

using namespace fakes;

namespace {

const std::u16string deck = u"D:\\p\\Index.wml";
const std::u16string projectFile = u"D:\\p\\P.cvp";

class FileExists : public Component {
protected:
    FileExists() {
        world.files = {{deck, u"old"}, {projectFile, u"old"}, {u"D:\\p\\b.wml", u"b"}};
        world.take();
    }
    ~FileExists() override { dlgFileExists::shared().unload(); }

    static std::u16string ask(const std::u16string& path, bool ofProject) {
        return dlgFileExists::shared().getUniqueFileName(path, ofProject);
    }
    /// At each showing, types the next name, by way of No where the dialog asks to overwrite.
    static void typeNames(std::vector<std::u16string> names) {
        world.onShow = [names = std::move(names), shown = std::size_t{0}](FakeForm& form) mutable {
            if (form.shown[u"cmdNo"]) {
                form.click(u"cmdNo");
            }
            form.text(u"txtName", names.at(shown++));
            form.click(u"cmdOk");
        };
    }
    static std::string visibleControls(FakeForm& form) {
        std::string names;
        for (const FormControl& control : form.layout.controls) {
            const auto shown = form.shown.find(control.name);
            if (shown != form.shown.end() && shown->second) {
                names += (names.empty() ? "" : " ") + ascii(control.name);
            }
        }
        return names;
    }
};

} // namespace

TEST_F(FileExists, EachStateHasItsTextsAndControls) {
    struct Row {
        bool ofProject;
        bool readOnly;
        bool afterNo;
        std::u16string reason;
        std::string visible;
        std::u16string preset;
    };
    const std::u16string closed = u"The project D:\\p\\P.cvp is READ-ONLY.\nPlease choose another "
                                  u"project name ";
    const std::vector<Row> rows = {
        {true, true, false, closed, "txtName lblEnterNewName cmdOk cmdCancel", u"P"},
        {true, false, false,
         u"The project P.cvp already exists in the directory D:\\p\nOverwrite? ",
         "cmdYes cmdNo cmdCancel", u""},
        {false, true, false,
         u"The document D:\\p\\Index.wml is READ-ONLY.\nPlease choose another document name ",
         "txtName lblEnterNewName cmdOk", u"Index"},
        {false, false, false,
         u"The document Index.wml already exists in the directory D:\\p\nOverwrite? ",
         "cmdYes cmdNo", u""},
        {true, false, true, u"Please enter a new name for the project P.cvp",
         "txtName lblEnterNewName cmdOk", u"P"},
        {false, false, true, u"Please enter a new name for the document Index.wml",
         "txtName lblEnterNewName cmdOk", u"Index"},
    };
    for (const Row& row : rows) {
        dlgFileExists::shared().unload();
        const std::u16string& path = row.ofProject ? projectFile : deck;
        world.readOnly = row.readOnly ? Paths{path} : Paths{};
        int shows = 0;
        world.onShow = [&](FakeForm& form) {
            ++shows;
            if (row.afterNo) {
                form.click(u"cmdNo");
            }
            EXPECT_EQ(form.texts[u"lblReason"], row.reason);
            EXPECT_EQ(visibleControls(form), row.visible) << ascii(row.reason);
            EXPECT_EQ(form.texts[u"txtName"], row.preset);
            EXPECT_EQ(narrow<Picture>(form.layout.controls[0].picture)->width(), 32);
            for (const FormControl& control : form.layout.controls) {
                EXPECT_TRUE(control.left + control.width < form.layout.width &&
                            control.top + control.height < form.layout.height);
            }
            if (form.shown[u"cmdOk"]) {
                EXPECT_FALSE(form.open[u"cmdOk"]);
                const std::vector<std::pair<std::u16string, bool>> typed = {
                    {toLower(row.preset), false},
                    {row.preset + u"2", true},
                    {u"", false},
                    {u"  ", true},
                    {u"a/b", true},
                    {row.preset, false}};
                for (const auto& [text, enabled] : typed) {
                    form.text(u"txtName", text);
                    EXPECT_EQ(form.open[u"cmdOk"], enabled) << ascii(text);
                }
            }
        };
        EXPECT_EQ(ask(path, row.ofProject), u"") << "closed: nothing is to be written";
        EXPECT_EQ(shows, 1);
    }
}

TEST_F(FileExists, AnswersBecomePaths) {
    EXPECT_EQ(ask(u"D:\\p\\New.WML", false), u"D:\\p\\New.WML");
    EXPECT_EQ(world.take(), Log{"newFileSystemObject"}) << "no window for a free name";

    world.onShow = [](FakeForm& form) { form.click(u"cmdYes"); };
    EXPECT_EQ(ask(u"D:\\p\\INDEX.wml", false), u"D:\\p\\INDEX.wml");
    EXPECT_FALSE(world.files.contains(deck));
    world.take();
    EXPECT_EQ(ask(projectFile, true), projectFile);
    EXPECT_EQ(world.take(),
              (Log{"newFileSystemObject", "GetFile d:\\p\\p.cvp",
                   "show The project P.cvp already exists in the directory D:\\p\nOverwrite? ",
                   "DeleteFile D:\\p\\P.cvp True", "hide"}))
        << "the window is the one of before";

    world.files[projectFile] = u"";
    world.onShow = [](FakeForm& form) { form.click(u"cmdCancel"); };
    EXPECT_EQ(ask(projectFile, true), u"");
    EXPECT_TRUE(world.files.contains(projectFile));

    typeNames({u"b.wml"});
    world.files[deck] = u"";
    EXPECT_EQ(ask(deck, false), u"D:\\p\\b.wml.wml");
    typeNames({u"b.wml"});
    world.files[u"C:\\odd.txt"] = u"";
    EXPECT_EQ(ask(u"C:\\odd.txt", true), u"C:\\b.wml.cvp");
}

TEST_F(FileExists, AFileThatStaysLeavesTheDialogOpen) {
    world.fails = {{"DeleteFile", FailureCode::DeviceError}};
    world.onShow = [](FakeForm& form) {
        form.click(u"cmdYes");
        EXPECT_EQ(world.log.back(), "MsgBox 16 [Corvane professional] Device I/O error");
        world.fails.clear();
        form.click(u"cmdYes");
    };
    EXPECT_EQ(ask(deck, false), deck);
    EXPECT_FALSE(world.files.contains(deck));
}

TEST_F(FileExists, IsLoadedOnceAndUnloadedByADocument) {
    world.onShow = [&](FakeForm&) { // a handler in here asks again, and lets a document end
        EXPECT_EQ(codeOf([] { ask(deck, false); }), FailureCode::PermissionDenied);
        std::make_shared<WirelessDocument>().reset();
        EXPECT_EQ(world.log.back(), "hide");
    };
    EXPECT_EQ(ask(deck, false), u"");
    EXPECT_EQ(world.takeCount("newModalForm"), 1);
    world.onShow = [](FakeForm& form) { form.click(u"cmdYes"); };
    EXPECT_EQ(ask(deck, false), deck);
    EXPECT_EQ(world.takeCount("newModalForm"), 1);
    std::make_shared<WirelessDocument>().reset();
    EXPECT_EQ(world.takeCount("newModalForm"), 0) << "it was loaded";
    std::make_shared<WirelessDocument>().reset();
    EXPECT_EQ(world.takeCount("newModalForm"), 1) << "loaded to be unloaded";
    world.fails = {{"newModalForm", FailureCode::OutOfMemory}};
    std::make_shared<WirelessDocument>().reset();
}
