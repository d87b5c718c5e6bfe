#include "Fakes.h"

using namespace fakes;

namespace {

constexpr char16_t deck[] = u"<wml><card>a</card></wml>";

using Collection = Component;
using Document = Component;

} // namespace

TEST_F(Collection, AddMakesADocumentUsable) {
    std::u16string content = u"<!--DOCTYPE-->";
    const auto doc = project->Documents()->Add(u"C:\\App", u"index", content, nullptr, nullptr,
                                               nullptr, project->Ravik());
    EXPECT_EQ(content, u"imported:<!--DOCTYPE-->");
    EXPECT_EQ(doc->Content(), content);
    EXPECT_TRUE(doc->added() && doc->isValidXML() && doc->Display() && doc->Format());
    EXPECT_FALSE(doc->isDirty() || doc->view() != 0 || doc->wbPlain() || doc->MuRtb());

    content = u"<!--doctype-->";
    project->Documents()->Add(u"", u"bare", content, nullptr, nullptr, nullptr, project->Ravik());
    EXPECT_EQ(world.takeCount("importBareText"), 1);
}

TEST_F(Collection, IsOrderedAndKeyedWithoutRegardToCase) {
    const auto documents = project->Documents();
    const auto add = [&](const std::u16string& name, const std::u16string& key = {}) {
        std::u16string content;
        return documents->Add(u"", name, content, nullptr, nullptr, nullptr, project->Ravik(), key);
    };
    documents->Clear();
    const auto index = add(u"\u00C4index");
    const auto other = add(u"other", u"its key");
    EXPECT_EQ(documents->Item(u"\u00E4INDEX"), index);
    EXPECT_EQ(documents->Item(u"Its Key"), other);
    EXPECT_EQ(codeOf([&] { documents->Item(u"other"); }), FailureCode::InvalidArgument);
    EXPECT_EQ(codeOf([&] { documents->Item(u""); }), FailureCode::InvalidArgument);
    EXPECT_EQ(codeOf([&] { documents->Item({}); }), FailureCode::TypeMismatch);
    EXPECT_EQ(codeOf([&] { add(u"ITS KEY"); }), FailureCode::KeyInUse);
    for (const Value& outside : {Value(0), Value(3), Value(0.9), Value(5e9)}) {
        EXPECT_EQ(codeOf([&] { documents->Item(outside); }), FailureCode::OutOfRange);
    }
    documents->Remove(1);
    EXPECT_EQ(documents->Item(1.0), other);
    add(u"third");
    const auto walk = documents->NewEnum();
    documents->Clear();
    EXPECT_EQ(documents->Count(), 0);
    ASSERT_EQ(walk.size(), 2U);
    EXPECT_EQ(walk[0], other);
    EXPECT_EQ(walk[1]->Name(), u"third");
    const auto nameless = add(u"");
    EXPECT_EQ(documents->Item(u""), nameless);
    EXPECT_EQ(codeOf([&] { add(u""); }), FailureCode::KeyInUse);
}

TEST_F(Collection, WhereThePlatformGivesNothingTheCallFails) {
    const auto document = build(u"<wml/>");
    world.makesNothing = true;
    const auto other = std::make_shared<clProject>();
    const auto bare = std::make_shared<WirelessDocument>();
    const std::function<void()> calls[] = {
        [&] { other->AppPath(u"C:\\App"); },
        [&] { bare->AppPath(u"C:\\App"); },
        [&] { bare->Content(u""); },
        [&] { document->Format()->icon(u"Bold"); },
        [&] { document->Format()->iconSmall(u"Bold"); },
    };
    for (const auto& fails : calls) {
        EXPECT_EQ(codeOf(fails), FailureCode::ObjectNotSet);
    }
    EXPECT_FALSE(other->init(u"C:\\p.cvp") || other->SaveAs(u"C:\\p.cvp") ||
                 document->SaveAs(u"C:\\deck.wml") || document->Save(u"C:\\deck.wml"));
}

TEST_F(Collection, AddThatFailsLeavesTheListAlone) {
    std::u16string content;
    const auto add = [&](const ObjectRef& listbar, const ObjectRef& ravik) {
        return codeOf([&] {
            project->Documents()->Add(u"", u"x", content, nullptr, nullptr, listbar, ravik);
        });
    };
    EXPECT_EQ(add(nullptr, project), FailureCode::TypeMismatch);
    EXPECT_EQ(add(project, project->Ravik()), FailureCode::TypeMismatch);
    EXPECT_EQ(add(nullptr, nullptr), FailureCode::ObjectNotSet);
    world.fails["newTolmek"] = FailureCode::OutOfMemory;
    EXPECT_EQ(add(nullptr, project->Ravik()), FailureCode::OutOfMemory);
    EXPECT_EQ(project->Documents()->Count(), 0);
}

TEST_F(Document, ItsTypeNamesItsExtensionAndChoosesItsServices) {
    const auto doc = std::make_shared<WirelessDocument>();
    const std::u16string names[] = {u"WML",  u"",    u"HTML", u"HTML", u"HDML",
                                    u"Text", u"XML", u"Res1", u"res2", u""};
    for (std::int32_t type = 0; type < 10; ++type) {
        doc->DocType(static_cast<DocumentType>(type));
        EXPECT_EQ(doc->DocumentTypeName(), names[type]) << type;
        EXPECT_EQ(doc->Display() && doc->Format() && doc->validate(), type == dcWML);
    }
}

TEST_F(Document, ControlsAreBoundFilledAndCheckedForTheirType) {
    const auto doc = build(deck);
    EXPECT_EQ(rtb->text, deck);
    EXPECT_EQ(codeOf([&] { doc->MuRtb(browser); }), FailureCode::TypeMismatch);
    EXPECT_EQ(codeOf([&] { doc->wbPlain(rtb); }), FailureCode::TypeMismatch);

    const auto oldFormat = doc->Format();
    doc->DocType(dcWML);
    EXPECT_NE(doc->Format(), oldFormat);
    doc->Format()->exec(u"Bold"); // the new formatter has the controls and the proxy
    EXPECT_EQ(world.take().back(), "OnAdd2UndoStack 0 [<b></b>] [] 2");

    doc->DocType(dcText);
    const auto second = std::make_shared<FakeRtb>();
    EXPECT_EQ(codeOf([&] { doc->MuRtb(second); }), FailureCode::ObjectNotSet);
    EXPECT_EQ(codeOf([&] { doc->wbPlain(nullptr); }), FailureCode::ObjectNotSet);
    EXPECT_TRUE(doc->MuRtb() == second && !doc->wbPlain());
    EXPECT_EQ(second->text, u"");
}

TEST_F(Document, ContentIsJudgedAndNothingElse) {
    const auto doc = build(deck);
    const auto dom = doc->DOM();
    for (const bool dirty : {true, false, true, true}) {
        doc->isDirty(dirty);
    }
    EXPECT_EQ(world.take(), (Log{"OnDocDirty", "OnDocDirty", "OnDocDirty"}));
    sink.hooks["OnParseError"] = [&] { EXPECT_FALSE(doc->isValidXML()); };
    doc->Content(u"REFUSED");
    EXPECT_EQ(world.take(), (Log{"isValidText REFUSED", "lastError", "OnParseError refused"}));
    EXPECT_TRUE(!doc->isDirty() && doc->DOM() == dom && rtb->text == deck);
    doc->Content(u"fine");
    EXPECT_EQ(world.take(), (Log{"isValidText fine", "OnClearErrors"}));
}

TEST_F(Document, RefreshTakesTheShownTextAndReplacesTheDomOnlyIfItIsValid) {
    const auto doc = build(deck);
    doc->view(vMarkup);
    rtb->text = u"REFUSED";
    const auto dom = doc->DOM();
    world.take();
    doc->Refresh();
    EXPECT_EQ(world.take(),
              (Log{"rtb.Text", "isValidText REFUSED", "lastError", "OnParseError refused"}));
    EXPECT_EQ(doc->Content(), u"REFUSED");
    EXPECT_EQ(doc->DOM(), dom);

    rtb->text = u"<card>new</card>";
    doc->Refresh();
    EXPECT_EQ(world.take(), (Log{"rtb.Text", "isValidText <card>new</card>", "OnClearErrors",
                                 "parseMarkup <card>new</card> True False", "selectNodes //card"}));
    EXPECT_EQ(doc->Display()->currentDisplayNode(), u"html:<card>new</card>");
}

TEST_F(Document, RefreshAndSizeConvertThePageAndFallBackOnTheOldText) {
    const auto doc = build(deck);
    doc->view(vPLain);
    browser->page->theBody->html = u"page";
    doc->Refresh();
    EXPECT_EQ(doc->Content(), u"wml:[<BODY><DIV>page</DIV></BODY>]");
    browser->page->theBody->html = u"longer page";
    EXPECT_EQ(doc->size(), 41);
    browser->page->theBody->html = u"REFUSED";
    doc->Refresh();
    EXPECT_EQ(doc->Content(), u"wml:[<BODY><DIV>page</DIV></BODY>]");
    EXPECT_EQ(world.takeCount("OnParseError refused"), 0);
    EXPECT_EQ(doc->size(), 41);
}

TEST_F(Document, HearsOnlyItsOwnProxyAndIsNotDirtiedByIt) {
    const auto doc = build(deck);
    const auto proxy = std::make_shared<clWMLEventProxy>();
    doc->Format()->exec(u"Italic");
    doc->Format()->init(proxy);
    doc->Format()->exec(u"Italic");
    proxy->raiseDirty();
    EXPECT_EQ(world.takeCount("OnAdd2UndoStack 0 [<i></i>] [] 2"), 1);
    EXPECT_FALSE(doc->isDirty());
}

TEST_F(Document, SurvivesAHandlerThatDropsTheLastReference) {
    for (const bool refused : {true, false}) {
        auto doc = build(u"<wml>t</wml>");
        project->Documents()->Clear();
        sink.hooks["OnParseError"] = sink.hooks["OnAdd2UndoStack"] = [&] { doc.reset(); };
        if (refused) {
            rtb->text = u"<wml>REFUSED</wml>";
            doc->view(vPLain);
            EXPECT_TRUE(rtb->visible); // the switch was finished all the same
        } else {
            doc->Format()->exec(u"Bold");
        }
        EXPECT_EQ(doc, nullptr);
    }
}

TEST_F(Document, SearchesTheMarkupForTheHostsTags) {
    const auto doc = build(deck);
    doc->view(vMarkup);
    doc->Content(u"<wml>kept</wml>");
    const auto before = doc->DOM();
    doc->validateSupportedTags(u",,");
    EXPECT_EQ(doc->DOM(), before);
    rtb->text = u"<b>1</b><b>2</b>";
    world.take();
    sink.hooks["OnUTag"] = [&] { EXPECT_EQ(doc->DOM()->xml(), u"<wml>kept</wml>"); };
    doc->validateSupportedTags(u"b, b");
    const Log parses{"rtb.Text", "parseMarkup <b>1</b><b>2</b> False False",
                     "parseMarkup <wml>kept</wml> True False", "selectNodes //card"};
    Log expected = parses;
    expected.insert(expected.end(), {"OnUTag b", "OnUTag b"});
    expected.insert(expected.end(), parses.begin(), parses.end());
    EXPECT_EQ(world.take(), expected);

    world.fails["parseMarkup"] = FailureCode::DeviceError; // the DOM holds a wml, the text not
    doc->validateSupportedTags(u"wml");
    EXPECT_EQ(world.take(), parses);
}

TEST_F(Document, SearchesThePageInAnyOtherView) {
    const auto doc = build(deck);
    browser->page->elements.assign(2, std::make_shared<FakeElement>(u"B"));
    const auto dom = doc->DOM();
    doc->validateSupportedTags(u"b,,i");
    EXPECT_EQ(world.take(),
              (Log{"getElementsByTagName b", "OnUTag b", "OnUTag b", "getElementsByTagName i"}));
    EXPECT_EQ(doc->DOM(), dom);
    sink.hooks["OnUTag"] = [] { throw Failure(FailureCode::DeviceError); };
    doc->validateSupportedTags(u"b"); // a handler's failure ends that tag and goes no further
    sink.hooks["OnUTag"] = [] { throw std::logic_error("a host's own exception"); };
    EXPECT_THROW(doc->validateSupportedTags(u"b"), std::logic_error);
}
