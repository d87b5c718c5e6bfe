#include "platform/terminal/TerminalDialogs.h"
#include "support/Test.h"
#include "tests/platform/TempFolder.h"

#include <fcntl.h>
#include <unistd.h>

using namespace tessaly;

namespace {

constexpr auto question = MsgBoxFlags::ExclamationYesNo;

/// Nobody: an input with an answer that must not be taken, an output to look at.
class Unattended : public testing::Test {
protected:
    Unattended() { m_temp.write("in", "y\ny\n"); }
    ~Unattended() override {
        close(m_in);
        close(m_out);
    }

    std::string written() const {
        std::string text = m_temp.read("out");
        std::filesystem::resize_file(m_temp.posix("out"), 0);
        return text;
    }

private:
    support::TempFolder m_temp;
    int m_in = open(m_temp.posix("in").c_str(), O_RDONLY | O_CREAT, 0600);
    int m_out = open(m_temp.posix("out").c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);

protected:
    TerminalDialogs dialogs{Terminal(m_in, m_out)};
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
