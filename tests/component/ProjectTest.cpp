#include "Fakes.h"

using namespace fakes;

namespace {

using Texts = std::vector<std::u16string>;

class Project : public Component {
protected:
    Project() {
        subscription = project->events().advise(sink);
        project->ProjectPath(u"D:\\p");
        world.take();
    }

    /// Opens a project file of these lines, with these decks beside it.
    bool open(const Texts& lines, const Texts& decks = {}) {
        std::u16string& text = world.files[file];
        text.clear();
        for (const std::u16string& line : lines) {
            text += line + u"\r\n";
        }
        for (const std::u16string& name : decks) {
            world.files[u"D:\\p\\" + name + u".wml"] = u"<wml>" + name + u"</wml>";
        }
        world.take();
        return project->init(file);
    }
    const std::u16string file = u"D:\\p\\p.cvp";
};

} // namespace

TEST_F(Project, KeepsWhatItIsGiven) {
    project->AppPath(u"C:\\App");
    EXPECT_EQ(world.take(),
              (Log{"setDtdPath 1 C:\\App\\DTD\\wml.dtd", "setSchemaPath 1 C:\\App\\DTD\\wml.xdr"}));
    project->ProjectPath(u"C:\\myTemPlates2\\x");
    EXPECT_TRUE(project->isTemplate());
    project->ProjectPath(u"C:\\Template");
    EXPECT_FALSE(project->isTemplate());
    EXPECT_EQ(codeOf([&] { project->Listbar(project); }), FailureCode::TypeMismatch);
}

TEST_F(Project, TheCurrentDocumentIsTheOneHeard) {
    ASSERT_TRUE(open({u"Site=S", u"Document=a", u"Document=b"}, {u"a", u"b"}));
    const auto a = project->Documents()->Item(u"a");
    const auto b = project->Documents()->Item(u"b");
    world.take();
    project->CurrentDocument(a);
    project->CurrentDocument(a);
    EXPECT_EQ(world.take(), Log{"OnSetCurrentDocument"});
    project->CurrentDocumentEx(a);
    b->isDirty(true);
    EXPECT_EQ(world.take(), Log{"OnSetCurrentDocument"});
    EXPECT_TRUE(project->NeedSave());
    b->isDirty(false);
    EXPECT_FALSE(project->NeedSave());

    a->isDirty(true);
    a->Content(u"fine");
    a->Content(u"REFUSED");
    std::int32_t number = 3;
    std::u16string text = u"t";
    a->raise_OnAdd2Undo(number, text, text, number);
    EXPECT_EQ(world.take(),
              (Log{"OnDocDirty", "isValidText fine", "OnClearErrors", "isValidText REFUSED",
                   "lastError", "OnParseError refused", "OnAdd2UndoStack 3 [t] [t] 3"}));
    browser->page->elements = {std::make_shared<FakeElement>(u"B")};
    a->wbPlain(browser);
    a->validateSupportedTags(u"b");
    EXPECT_EQ(world.take().back(), "OnUTag b");

    project->CurrentDocument(b);
    project->CurrentDocument(nullptr);
    b->isDirty(true);
    EXPECT_EQ(world.take(), Log{"OnSetCurrentDocument"});
    EXPECT_EQ(codeOf([&] { project->CurrentDocumentEx(nullptr); }), FailureCode::ObjectNotSet);
}

TEST_F(Project, SurvivesHandlersThatDropIt) {
    ASSERT_TRUE(open({u"Site=S", u"Document=a"}, {u"a"}));
    const auto a = project->Documents()->Item(1);
    project->CurrentDocument(a);
    support::EventLog second(world.log);
    const Subscription alsoHeard = project->events().advise(second);
    sink.hooks["OnDocDirty"] = sink.hooks["OnDocAdd"] = [&] { project.reset(); };
    world.take();
    a->isDirty(true);
    a->isDirty(true); // nobody is left to hear it
    EXPECT_EQ(world.take(), (Log{"OnDocDirty", "OnDocDirty"}));

    project = std::make_shared<clProject>();
    subscription = project->events().advise(sink);
    project->ProjectPath(u"D:\\p");
    EXPECT_TRUE(project->addDocument(u"a", true));
    EXPECT_EQ(project, nullptr);
}

TEST_F(Project, OpensInTheOrderOfTheFile) {
    project->AppPath(u"C:\\App");
    EXPECT_TRUE(open({u"Site=S\\", u"Document=a"}, {u"a"}));
    EXPECT_EQ(world.take(),
              (Log{"newFileSystemObject", "GetFile D:\\p\\p.cvp", "OpenAsTextStream 1 0",
                   "AtEndOfStream", "ReadLine", "AtEndOfStream", "ReadLine",
                   // The deck.
                   "newFileSystemObject", "GetFile D:\\p\\a.wml", "OpenAsTextStream 1 0",
                   "AtEndOfStream", "ReadAll", "newDOMDocument", "newTolmek", "importBareText",
                   "parseMarkup <wml>a</wml> True False", "selectNodes //card",
                   "loadDtd 1 C:\\App\\DTD\\wml.dtd", "isValidText <wml>a</wml>", "stream gone",
                   // The rest of the project.
                   "AtEndOfStream", "Close", "DateCreated", "stream gone"}));
    EXPECT_EQ(project->ProjectName(), u"S");
    EXPECT_EQ(project->ProjectPath(), u"D:\\p");
    EXPECT_EQ(project->projectFile(), file);
    EXPECT_EQ(project->CreationDate(), 36526.5);
    EXPECT_FALSE(project->NeedSave() || project->Documents()->Item(1)->added());
    EXPECT_EQ(project->Documents()->Item(1)->Ravik(), project->Ravik());
}

TEST_F(Project, TakesAProjectFileAsItComes) {
    project->notes(u"old notes");
    EXPECT_TRUE(open({u"", u"Description=a=b=c", u" Owner=no", u"Owner= who ", u"owner=no",
                      u"Site=first", u"Document=a", u"Site=last"},
                     {u"a"}));
    EXPECT_EQ(project->description(), u"a");
    EXPECT_EQ(project->Owner(), u" who ");
    EXPECT_EQ(project->ProjectName(), u"last");
    EXPECT_EQ(project->notes(), u"old notes");
    const auto old = project->Documents()->Item(1);
    project->CurrentDocument(old);

    EXPECT_TRUE(open({})); // the name of before still stands
    EXPECT_EQ(project->Documents()->Count(), 0);
    EXPECT_EQ(project->CurrentDocument(), old);
    EXPECT_FALSE(open({u"Document=a", u"Site=  "}));
    EXPECT_EQ(
        world.takeOnly({"MsgBox"}),
        Log{"MsgBox 16 [Project Initialisation Failed!] The project file D:\\p\\p.cvp appears "
            "to be corrupt. Cannot initialise project"});
    EXPECT_FALSE(project->init(u"D:\\p\\none.cvp"));
    EXPECT_EQ(project->projectFile(), file);
    EXPECT_EQ(project->Documents()->Count(), 1); // what was read stays

    world.files[u"bare.cvp"] = u"Site=S\r\n";
    EXPECT_FALSE(project->init(u"bare.cvp"));
    EXPECT_EQ(project->ProjectPath(), u"");
}

TEST_F(Project, ADocumentThatCannotBeLoadedEndsTheRead) {
    EXPECT_FALSE(open({u"Site=S", u"Document=a", u"Document=A", u"Site=T"}, {u"a", u"A"}));
    EXPECT_EQ(world.takeOnly({"MsgBox"}), Log{});
    EXPECT_EQ(project->Documents()->Count(), 1);
    EXPECT_EQ(project->ProjectName(), u"S");
    EXPECT_TRUE(project->NeedSave());
    EXPECT_FALSE(open({u"Site=S", u"Document="}));
    EXPECT_EQ(world.takeOnly({"MsgBox"}), Log{});
    world.files[u"D:\\p\\empty.wml"];
    EXPECT_TRUE(open({u"Site=S", u"Document=empty"}));
    EXPECT_EQ(project->Documents()->Count(), 1);

    project->ProjectPath(u""); // a document on the first line is sought in the folder of before
    EXPECT_FALSE(open({u"Document=a"}, {u"a"}));
    EXPECT_EQ(world.takeOnly({"MsgBox"}),
              Log{"MsgBox 16 [Error Opening Document] An error occurred while "
                  "accessing the document \\a.wml\nPlease verify that the project "
                  "file is not corrupt"});
}

TEST_F(Project, AFileThatCannotBeReadLeavesTheOpenProjectAsItWas) {
    ASSERT_TRUE(open({u"Site=S", u"Document=a"}, {u"a"}));
    world.files[u"D:\\q\\q.cvp"] = u"Site=Q\r\nDocument=b\r\n";
    for (const char* call :
         {"newFileSystemObject", "GetFile", "OpenAsTextStream", "AtEndOfStream", "ReadLine"}) {
        world.fails = {{call, FailureCode::DeviceError}};
        EXPECT_FALSE(project->init(u"D:\\q\\q.cvp")) << call;
        EXPECT_EQ(project->projectFile(), file) << call;
        EXPECT_EQ(project->Documents()->Count(), 1) << call;
        EXPECT_FALSE(project->addDocument(u"b"));
    }
    world.fails = {};
    world.files[u"D:\\q\\q.cvp"].clear(); // gives no folder either
    EXPECT_TRUE(project->init(u"D:\\q\\q.cvp"));
    const Files before = world.files;
    EXPECT_FALSE(project->DeleteFiles());
    EXPECT_EQ(world.files, before) << "neither project goes in place of the other";
}

TEST_F(Project, AddsADeckForTheHost) {
    open({}, {u"a", u"b"});
    EXPECT_TRUE(project->addDocument(u"a", false));
    EXPECT_EQ(world.takeCount("OnDocAdd a"), 0);
    EXPECT_TRUE(project->addDocument(u"b", true));
    EXPECT_EQ(world.takeCount("OnDocAdd b"), 1);
    EXPECT_FALSE(project->addDocument(u"b", true)); // told, though it was there already
    EXPECT_EQ(world.takeCount("OnDocAdd b"), 1);

    project->removeDocument(u"A");
    EXPECT_EQ(project->Documents()->Item(1)->Name(), u"b");
    EXPECT_EQ(codeOf([&] { project->removeDocument(2); }), FailureCode::OutOfRange);
}

TEST_F(Project, FindsTheFirstDocumentWithoutOpening) {
    open({u"Site=S", u"Document=index=2", u"Document=b"});
    world.take();
    EXPECT_EQ(project->getFirstDocument(file), u"index");
    EXPECT_EQ(world.take(), (Log{"newFileSystemObject", "GetFile D:\\p\\p.cvp",
                                 "OpenAsTextStream 1 0", "AtEndOfStream", "DoEvents", "ReadLine",
                                 "AtEndOfStream", "DoEvents", "ReadLine", "stream gone"}));
    open({u"Site=S"});
    EXPECT_EQ(project->getFirstDocument(file), u"");
    EXPECT_EQ(project->getFirstDocument(u"D:\\none.cvp"), u"Cannot access document !");
    world.fails["ReadLine"] = FailureCode::DeviceError;
    EXPECT_EQ(project->getFirstDocument(file), u"Cannot access document !");
}
