#include "Fakes.h"

using namespace fakes;

namespace {

/// A command: its caption, which is its key, the tip, and the picture.
const std::vector<std::array<std::string, 3>> rows = {
    {"Bold", "Bold current selection", "BOLD"},
    {"Italic", "Italicise current selection", "ITALIC"},
    {"Underline", "Underline current selection", "UNDERLINE"},
    {"Align Left", "Align current selection to the left", "ALIGNL"},
    {"Align Center", "Align current selection to the center", "ALIGNC"},
    {"Align Right", "Align current selection to the right", "ALIGNR"},
    {"Big Font", "Change selection to BIG font", "BIG"},
    {"Small Font", "Change selection to SMALL font", "SMALL"},
};

class Format : public Component {
protected:
    Log exec(const std::u16string& key) {
        world.take();
        format->exec(key);
        return world.take();
    }
    std::shared_ptr<WirelessDocument> doc = build(u"<wml>t</wml>");
    std::shared_ptr<IFormat> format = doc->Format();
};

} // namespace

TEST_F(Format, PublishesEightCommandsWithTheirPictures) {
    const auto formats = format->formats();
    ASSERT_EQ(formats->Count(), 8);
    std::int32_t number = 0;
    for (const auto& [caption, tip, icon] : rows) {
        const auto row = formats->Item(++number);
        EXPECT_EQ(formats->Item(u16(caption)), row);
        EXPECT_EQ(ascii(row->Caption()) + ": " + ascii(row->ToolTiptext()), caption + ": " + tip);
        format->icon(number);
        format->iconSmall(row->Caption());
        EXPECT_EQ(world.take(), (Log{"picture " + icon + " 1", "picture " + icon + "S 0"}));
    }
}

TEST_F(Format, TheCatalogueIsLiveAndApartFromTheCommands) {
    const auto formats = format->formats();
    EXPECT_EQ(codeOf([&] { format->icon(u"Normal Font"); }), FailureCode::InvalidArgument);
    EXPECT_EQ(codeOf([&] { formats->Add(u"x", u"", u"", u"", u"BOLD"); }), FailureCode::KeyInUse);
    formats->Remove(u"bold");
    EXPECT_EQ(codeOf([&] { format->icon(u"Bold"); }), FailureCode::InvalidArgument);
    EXPECT_EQ(exec(u"Bold").size(), 4U);

    formats->Add(u"same", u"", u"NORMAL", u"NORMALS");
    const auto second = formats->Add(u"same", u"", ObjectRef(rtb), {});
    EXPECT_EQ(formats->Count(), 9);
    format->icon(8);
    EXPECT_EQ(world.take(), Log{"picture NORMAL 1"});
    EXPECT_EQ(second->iconRes(), Value(ObjectRef(rtb)));
}

TEST_F(Format, KeysAreMatchedAsAWholeAndAnyOtherViewIsTheMarkupView) {
    for (const auto view : std::initializer_list<std::int16_t>{0, 1, 2, 7}) {
        format->view(view);
        for (const char16_t* unknown : {u"bold", u"BOLD", u" Bold", u"Bold ", u"Bol", u""}) {
            EXPECT_EQ(exec(unknown), Log{});
        }
        EXPECT_EQ(exec(u"Bold").size(), view == vPLain ? 1U : 4U);
    }
    const std::u16string text = rtb->text;
    EXPECT_EQ(exec(u"Normal Font"),
              Log{"MsgBox 48 [\"Font Normal\" not supported in WML View] This function is only "
                  "available in PLAIN View. To revert back to \nnormal font size please remove any "
                  "<big> or <small> tags manually."});
    EXPECT_EQ(rtb->text, text);
}

TEST_F(Format, AFailureStaysWithTheCallerAndUndoesNothing) {
    EXPECT_EQ(codeOf([&] { format->browser(rtb); }), FailureCode::TypeMismatch);
    rtb->text.clear();
    format->init(nullptr);
    EXPECT_EQ(codeOf([&] { format->exec(u"Bold"); }), FailureCode::ObjectNotSet);
    EXPECT_EQ(rtb->text, u"<b></b>");
    format->MuRtb(nullptr);
    EXPECT_EQ(codeOf([&] { format->exec(u"Bold"); }), FailureCode::ObjectNotSet);
    format->view(vPLain);
    EXPECT_EQ(exec(u"Align Left"), Log{}) << "the page has no selection";
    EXPECT_EQ(exec(u"Big Font"), Log{});
    format->browser(nullptr);
    EXPECT_EQ(codeOf([&] { format->exec(u"Bold"); }), FailureCode::ObjectNotSet);
}
