#include "platform/ScreenlessForm.h"
#include "platform/TerminalDialogs.h"
#include "tests/platform/TempFolder.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <array>

using namespace tessaly;

namespace {

constexpr auto question = MsgBoxFlags::ExclamationYesNo;

/// What has been written to a descriptor that does not wait.
std::string readWritten(int descriptor) {
    std::string text;
    std::array<char, 4096> part = {};
    for (ssize_t count = 0; (count = read(descriptor, part.data(), part.size())) > 0;) {
        text.append(part.data(), static_cast<std::size_t>(count));
    }
    return text;
}

std::size_t countOf(const std::string& text, const std::string& what) {
    std::size_t count = 0;
    for (std::size_t at = text.find(what); at != text.npos; at = text.find(what, at + 1)) {
        ++count;
    }
    return count;
}

std::array<int, 2> makePipe() {
    std::array<int, 2> ends = {};
    EXPECT_EQ(pipe2(ends.data(), O_NONBLOCK), 0);
    return ends;
}

/// Nobody: an input with an answer that must not be taken, an output to look at.
class Unattended : public testing::Test {
protected:
    Unattended() { EXPECT_EQ(write(m_in[1], "y\ny\n", 4), 4); }
    ~Unattended() override {
        for (const int descriptor : {m_in[0], m_in[1], m_out[0], m_out[1]}) {
            close(descriptor);
        }
    }

    int output() const { return m_out[1]; }
    std::string written() const { return readWritten(m_out[0]); }

private:
    std::array<int, 2> m_in = makePipe();
    std::array<int, 2> m_out = makePipe();

protected:
    TerminalDialogs dialogs{m_in[0], m_out[1]};
};

/// Somebody who has typed ahead.
class Attended : public testing::Test {
protected:
    Attended() {
        grantpt(m_master);
        unlockpt(m_master);
        m_slave = open(ptsname(m_master), O_RDWR | O_NOCTTY);
        fcntl(m_master, F_SETFL, O_NONBLOCK);
    }
    ~Attended() override {
        close(m_slave);
        close(m_master);
    }

    void type(const std::string& keys) const {
        EXPECT_EQ(write(m_master, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
    }
    std::string shown() const { return readWritten(m_master); }
    TerminalDialogs dialogs() const { return TerminalDialogs(m_slave, m_slave); }

private:
    int m_master = posix_openpt(O_RDWR | O_NOCTTY);
    int m_slave = -1;
};

} // namespace

TEST_F(Unattended, BoxesAreShownAndQuestionsAreDeclined) {
    EXPECT_EQ(dialogs.MsgBox(u"a\nb\x1B[2J\u0085", MsgBoxFlags::Critical, u"Title"),
              MsgBoxAnswer::Ok);
    EXPECT_EQ(written(), "Title: a\nb\xEF\xBF\xBD[2J\xEF\xBF\xBD\n");
    EXPECT_EQ(dialogs.MsgBox(u"Overwrite?", question, u"T"), MsgBoxAnswer::No);
    EXPECT_EQ(written(), "T: Overwrite?\n(nobody to ask: answered No)\n");
    EXPECT_EQ(dialogs.InputBox(u"Name?", u"T", u"default"), u"");
    EXPECT_EQ(written(), "T: Name?\n(nobody to ask: taken as cancelled)\n");
}

TEST_F(Unattended, OnlyTheQuestionBehindACancelledInputIsAccepted) {
    dialogs.InputBox(u"Name?", u"T", u"");
    EXPECT_EQ(dialogs.MsgBox(u"Give up?", question, u"T"), MsgBoxAnswer::Yes);
    EXPECT_EQ(dialogs.MsgBox(u"Overwrite?", question, u"T"), MsgBoxAnswer::No);
    dialogs.InputBox(u"Name?", u"T", u"");
    dialogs.MsgBox(u"Note", MsgBoxFlags::Information, u"T");
    EXPECT_EQ(dialogs.MsgBox(u"Overwrite?", question, u"T"), MsgBoxAnswer::No);
    dialogs.InputBox(u"Name?", u"T", u"");
    dialogs.workGoesOn();
    EXPECT_EQ(dialogs.MsgBox(u"Overwrite?", question, u"T"), MsgBoxAnswer::No);
}

TEST_F(Attended, AnswersAreReadLineByLine) {
    type("maybe\nYES\nn\n\nde\xC3\xA7k\n\n");
    TerminalDialogs dialog = dialogs();
    EXPECT_EQ(dialog.MsgBox(u"Overwrite?", question, u"T"), MsgBoxAnswer::Yes);
    EXPECT_EQ(dialog.MsgBox(u"Overwrite?", question, u"T"), MsgBoxAnswer::No);
    EXPECT_EQ(dialog.MsgBox(u"Overwrite?", question, u"T"), MsgBoxAnswer::No) << "Enter alone";
    EXPECT_EQ(dialog.InputBox(u"Name?", u"T", u"old"), u"de\u00E7k");
    EXPECT_EQ(dialog.InputBox(u"Name?", u"T", u"old"), u"old");
    EXPECT_EQ(countOf(shown(), "[y/N]"), 4U) << "asked again after the first answer";
}

TEST_F(Attended, TheEndOfTheInputIsNoAnswer) {
    type("\x04\x04\x04");
    TerminalDialogs dialog = dialogs();
    EXPECT_EQ(dialog.MsgBox(u"Overwrite?", question, u"T"), MsgBoxAnswer::No);
    EXPECT_EQ(dialog.InputBox(u"Name?", u"T", u"old"), u"");
    EXPECT_EQ(dialog.MsgBox(u"Give up?", question, u"T"), MsgBoxAnswer::Yes);
}

TEST_F(Unattended, AFormIsSaidAndKeepsItsState) {
    FormLayout layout;
    layout.title = u"Title";
    layout.controls.resize(3);
    layout.controls[0].name = u"lblReason";
    layout.controls[1].name = u"txtName";
    layout.controls[1].kind = FormControlKind::TextBox;
    layout.controls[2].name = u"lblHidden";
    layout.controls[2].text = u"hidden";
    ScreenlessForm form(layout, output());
    struct Changes : ModalFormEvents {
        void OnClick(const std::u16string&) override { ADD_FAILURE(); }
        void OnChange(const std::u16string& control) override { heard += control + u' '; }
        std::u16string heard;
    } changes;
    const auto bond = form.events().advise(changes);
    form.text(u"lblReason", u"Overwrite?");
    form.text(u"txtName", u"deck");
    form.text(u"txtName", u"deck");
    form.visible(u"lblHidden", false);
    form.enabled(u"txtName", false);
    form.show();
    EXPECT_EQ(written(), "Title: Overwrite?\n(no screen to show this form on: taken as closed)\n");
    EXPECT_EQ(changes.heard, u"txtName ");
    EXPECT_EQ(form.text(u"txtName"), u"deck");
    EXPECT_TRUE(form.isVisible(u"txtName") && !form.isEnabled(u"txtName"));
    EXPECT_EQ(support::failureOf([&] { form.text(u"txtname"); }), 5);
}
