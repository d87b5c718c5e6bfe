// Saving, making and deleting, as far as it depends on more than the disk: what each step leaves
// on the disk, with failures and without, is in FaultTest.cpp.

#include "Fakes.h"

using namespace fakes;

namespace {

class Saving : public Component {
protected:
    Saving() {
        world.folders = {u"D:", u"D:\\p", u"D:\\q"};
        subscription = project->events().advise(sink);
        project->ProjectPath(u"D:\\p\\");
        project->projectFile(u"D:\\p\\p.cvp");
        project->ProjectName(u"P");
        project->description(u"about it");
        project->Owner(u"me");
        project->notes(u"first\nsecond");
    }

    std::shared_ptr<WirelessDocument> add(const std::u16string& name) {
        world.files[u"D:\\p\\" + name + u".wml"] = u"old";
        std::u16string text = u"<wml>" + name + u"</wml>";
        auto document =
            project->Documents()->Add(u"", name, text, nullptr, nullptr, nullptr, project->Ravik());
        document->isDirty(true);
        world.take();
        return document;
    }
    Value create(std::u16string path, const std::u16string& from = u"D:\\q\\first.wml") {
        return project->Create(u"N", u"d", path, from, u"who");
    }
};

} // namespace

TEST_F(Saving, ADeckGoesOutAsTheMarkupLibraryMakesIt) {
    const auto document = add(u"a");
    document->MuRtb(rtb);
    document->wbPlain(browser);
    document->view(vMarkup);
    rtb->text = u"<wml>typed</wml>";
    world.take();
    EXPECT_TRUE(document->Save(u"D:\\q\\x.wml"));
    EXPECT_EQ(world.take(),
              (Log{"rtb.Text", "newFileSystemObject", "OpenTextFile D:\\q\\x.wml 2 True 0",
                   "exportText", "Write exported:<wml>typed</wml>", "Close", "stream gone"}));
    EXPECT_EQ(document->Content(), u"exported:<wml>typed</wml>");

    // In the plain view the page is taken over first; one that is refused leaves the older text.
    document->view(vPLain);
    browser->page->theBody->html = browser->page->theBody->text = u"page";
    EXPECT_TRUE(document->Save(u"D:\\q\\x.wml"));
    EXPECT_EQ(world.files[u"D:\\q\\x.wml"], u"exported:wml:[<DIV>page</DIV>]");
    browser->page->theBody->html = u"REFUSED";
    EXPECT_TRUE(document->Save(u"D:\\q\\x.wml"));
    EXPECT_EQ(world.files[u"D:\\q\\x.wml"], u"exported:wml:[<DIV>page</DIV>]");
}

TEST_F(Saving, ANameThatIsGivenUpLeavesTheDocumentUnsaved) {
    const auto document = add(u"a");
    const Subscription heard = document->events().advise(sink);
    document->isDirty(false);
    EXPECT_FALSE(document->SaveAs(u"D:\\p\\A.wml"));
    const Log log = world.take();
    EXPECT_EQ(log.back(),
              "MsgBox 64 [Corvane professional] Document D:\\p\\A.wml has not been saved. "
              "\nYou must save this document in order to keep the changes.");
    EXPECT_EQ(std::count(log.begin(), log.end(), "OnDocDirty"), 0);
    EXPECT_TRUE(document->isDirty());
    EXPECT_EQ(world.files[u"D:\\p\\a.wml"], u"old");
}

TEST_F(Saving, AllIsSavedAsTheListStandsNow) {
    add(u"a");
    const auto b = add(u"b");
    project->removeDocument(u"a");
    b->isDirty(false); // a clean one is written too
    EXPECT_TRUE(project->SaveAll());
    EXPECT_EQ(world.files[u"D:\\p\\b.wml"], u"exported:<wml>b</wml>");
    EXPECT_EQ(world.files[u"D:\\p\\p.cvp"],
              u"Site=P\r\nDescription=about it\r\nPath=D:\\p\r\nOwner=me\r\n"
              u"Notes=first\nsecond\r\nDocument=b\r\n-------------- END OF FILE ----------\r\n");
}

TEST_F(Saving, ADeckRenamedByAMoveIsStillTheCurrentDocumentUnderItsKey) {
    add(u"a");
    const auto b = add(u"b");
    project->CurrentDocument(b);
    world.files[u"D:\\q\\B.WML"] = u"of another project";
    world.onShow = [](FakeForm& form) {
        form.click(u"cmdNo");
        form.text(u"txtName", u"b2");
        form.click(u"cmdOk");
    };
    world.take();
    EXPECT_TRUE(project->SaveAs(u"D:\\q\\New.cvp"));
    EXPECT_EQ(b->Name(), u"b2");
    EXPECT_EQ(project->Documents()->Item(u"b"), b) << "filed under its old name";
    EXPECT_EQ(project->CurrentDocument(), b);
    EXPECT_EQ(world.takeCount("OnSetCurrentDocument"), 0);
}

TEST_F(Saving, ANameWithAFolderKeepsTheProjectTogether) {
    add(u"a");
    world.folders.insert(u"D:\\q\\sub");
    world.files[u"D:\\q\\n.cvp"] = u"taken";
    world.onShow = [](FakeForm& form) {
        form.click(u"cmdNo");
        form.text(u"txtName", u"sub\\n");
        form.click(u"cmdOk");
    };
    EXPECT_TRUE(project->SaveAs(u"D:\\q\\n.cvp"));
    EXPECT_EQ(project->projectFile(), u"D:\\q\\sub\\n.cvp");
    EXPECT_TRUE(world.files.contains(u"D:\\q\\sub\\a.wml"));
}

TEST_F(Saving, ADeckThatIsReadFromElsewhereIsNeitherWrittenNorDeleted) {
    for (const Text name : {u"..\\q\\v", u"sub/v", u"c:v", u".."}) {
        add(name);
        const Files before = world.files;
        EXPECT_FALSE(project->SaveAs(u"D:\\q\\n.cvp"));
        EXPECT_FALSE(project->SaveDocument(name));
        EXPECT_EQ(world.takeCount("MsgBox 16 [Corvane professional] The document " + ascii(name) +
                                  " has not been saved. \nIts name is no file name, and would lead "
                                  "out of the project's folder."),
                  2);
        EXPECT_EQ(world.files, before);
        EXPECT_FALSE(project->SaveAll());
        EXPECT_FALSE(project->DeleteFiles());
        EXPECT_EQ(world.takeOnly({"OpenTextFile", "DeleteF"}),
                  (Log{"DeleteFile D:\\p\\p.cvp False", "DeleteFolder D:\\p True"}));
        project->removeDocument(1);
        world.folders.insert(u"D:\\p");
    }
}

TEST_F(Saving, AProjectIsMadeAroundOneDeck) {
    world.files = {{u"D:\\q\\first.wml", u"deck"}};
    std::u16string path = u"D:\\new\\\\";
    EXPECT_EQ(project->Create(u"N", u"d", path, u"D:\\q\\first.wml", u"who"), Value(true));
    EXPECT_EQ(path, u"D:\\new");
    const std::u16string made = world.files[u"D:\\new\\N.cvp"];
    EXPECT_EQ(codeOf([&] { create(u"D:\\new", u"D:\\none.wml"); }), FailureCode::FileNotFound);
    EXPECT_EQ(world.files[u"D:\\new\\N.cvp"], made);

    // Taken, then a name that cannot be, then one that is taken too, then a free one.
    world.answers = {MsgBoxAnswer::No, MsgBoxAnswer::No, MsgBoxAnswer::No};
    world.typed = {u"second", u"BARE", u"a|b"};
    world.files[u"D:\\new\\bare.wml"] = u"";
    EXPECT_EQ(create(u"D:\\new"), Value(true));
    EXPECT_NE(world.files[u"D:\\new\\N.cvp"].find(u"Document=second\r\n"), std::u16string::npos);

    // Cancelled but not given up, so asked again; then given up.
    world.answers = {MsgBoxAnswer::Yes, MsgBoxAnswer::No, MsgBoxAnswer::No};
    const Files before = world.files;
    EXPECT_EQ(create(u"D:\\new"), Value(false));
    EXPECT_EQ(world.takeCount("MsgBox 52 [Corvane professional] You are about to cancel this "
                              "operation.\nAre you sure?"),
              2);
    EXPECT_EQ(world.files, before);
}

TEST_F(Saving, MakingAProjectAsksEverywhereButInTheTemporaryFolder) {
    world.files = {{u"D:\\q\\first.wml", u"other"}};
    world.files[u"C:\\Temp\\first.wml"] = u"left over";
    world.folders.insert(u"C:\\Temp");
    EXPECT_EQ(create(u"C:\\Temp\\"), Value(true));
    EXPECT_EQ(world.files[u"C:\\Temp\\first.wml"], u"other");
    world.answers = {MsgBoxAnswer::Yes, MsgBoxAnswer::No};
    EXPECT_EQ(create(u"c:\\temp"), Value(false)) << "a folder of other letters";
}

TEST_F(Saving, AProjectGoesWithAllThatLiesInItsFolder) {
    add(u"a");
    const auto fill = [] {
        world.folders = {u"D:", u"D:\\p", u"D:\\p\\images"};
        world.files = {{u"D:\\p\\a.wml", u""},
                       {u"D:\\p\\p.cvp", u""},
                       {u"D:\\p\\images\\x.wbmp", u""},
                       {u"D:\\p\\stray.wml", u""},
                       {u"D:\\other\\p.cvp", u"stays"}};
    };
    fill();
    world.readOnly = {u"D:\\p\\a.wml"};
    EXPECT_TRUE(project->DeleteFiles());
    EXPECT_EQ(world.take(), (Log{"newFileSystemObject", "DeleteFile D:\\p\\a.wml False",
                                 "DeleteFolder D:\\p\\images True", "DeleteFile D:\\p\\p.cvp False",
                                 "DeleteFolder D:\\p True"}));
    EXPECT_EQ(world.files, (Files{{u"D:\\other\\p.cvp", u"stays"}}));

    for (const char16_t* root : {u"", u"\\", u"D:", u"D:\\"}) {
        fill();
        const Files before = world.files;
        project->ProjectPath(root);
        EXPECT_FALSE(project->DeleteFiles()) << ascii(root);
        EXPECT_EQ(world.files, before);
    }
}
