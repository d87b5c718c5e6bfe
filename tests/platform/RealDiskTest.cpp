// Projects on a real disk that is full, closed, or holds something else than what is expected.

#include "naming/dlgFileExists.h"
#include "platform/DefaultPlatform.h"
#include "support/Test.h"
#include "tessaly.h"
#include "tests/platform/TempFolder.h"

#include <sys/resource.h>

#include <csignal>
#include <filesystem>

using namespace tessaly;

namespace {

/// Keeps what the user is shown, and answers Yes.
class Shown : public DefaultPlatform {
public:
    MsgBoxAnswer MsgBox(const std::u16string& text, MsgBoxFlags, const std::u16string&) override {
        texts.push_back(text);
        return MsgBoxAnswer::Yes;
    }
    std::vector<std::u16string> texts;
};

/// No file may grow beyond `bytes` as long as it lives.
class SmallFiles {
public:
    explicit SmallFiles(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &m_old);
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit small = {bytes, m_old.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~SmallFiles() {
        setrlimit(RLIMIT_FSIZE, &m_old);
        std::signal(SIGXFSZ, SIG_DFL);
    }
    SmallFiles(const SmallFiles&) = delete;
    SmallFiles& operator=(const SmallFiles&) = delete;

private:
    rlimit m_old = {};
};

class RealDisk : public testing::Test {
protected:
    RealDisk() {
        Platform::install(platform);
        temp.folder("p");
        temp.folder("q");
        temp.write("p/p.cvp", "Site=P\r\nDescription=d\r\nOwner=o\r\nNotes=n\r\nDocument=a\r\n");
        temp.write("p/a.wml", deck);
        project = std::make_shared<clProject>();
        EXPECT_TRUE(project->init(temp.path("p/p.cvp")));
    }
    ~RealDisk() override {
        project.reset();
        dlgFileExists::shared().unload();
        Platform::install(nullptr);
    }
    std::shared_ptr<WirelessDocument> document() { return project->Documents()->Item(1); }
    Value create(const std::u16string& from, const std::u16string& description = u"") {
        std::u16string path = temp.path("q");
        return project->Create(u"N", description, path, from, u"");
    }
    using Texts = std::vector<std::u16string>;
    Texts takeShown() { return std::exchange(platform->texts, {}); }

    const std::string deck = "<wml><card><p>old</p></card></wml>";
    const Texts denied = {u"Permission denied"};
    std::shared_ptr<Shown> platform = std::make_shared<Shown>();
    support::TempFolder temp;
    std::shared_ptr<clProject> project;
};

} // namespace

TEST_F(RealDisk, WhatIsClosedToWritingIsToldAndStays) {
    document()->Content(u"<wml/>");
    temp.mode("p/a.wml", 0444);
    EXPECT_FALSE(project->SaveDocument(u"a"));
    EXPECT_EQ(takeShown(), denied);
    EXPECT_EQ(temp.read("p/a.wml"), deck);
}

TEST_F(RealDisk, AFullDiskLeavesTheTextInMemory) {
    const std::u16string text = u"<wml>" + std::u16string(5000, u'x') + u"</wml>";
    document()->Content(text);
    document()->isDirty(true);
    {
        const SmallFiles full(1000);
        EXPECT_FALSE(project->SaveAll());
    }
    EXPECT_TRUE(project->NeedSave());
    EXPECT_TRUE(document()->Content().ends_with(text));
    EXPECT_TRUE(project->SaveAll());
    EXPECT_EQ(temp.read("p/a.wml").size(), document()->Content().size());

    project->notes(std::u16string(2000, u'n'));
    {
        const SmallFiles full(1000); // the lines that went out are a file that still opens
        project->Save();
        const std::u16string longText(2000, u'd');
        EXPECT_EQ(support::failureOf([&] { create(temp.path("p/p.cvp"), longText); }), 61);
    }
    EXPECT_EQ(std::make_shared<clProject>()->getFirstDocument(temp.path("p/p.cvp")), u"");
    EXPECT_TRUE(temp.read("p/p.cvp").starts_with("Site=P\r\nDescription=d\r\n"));
    EXPECT_EQ(takeShown(), Texts{});
}

TEST_F(RealDisk, LinksAreFollowedAndNotReplaced) {
    temp.write("q/real.wml", deck);
    std::filesystem::remove(temp.posix("p/a.wml"));
    std::filesystem::create_symlink(temp.posix("q/real.wml"), temp.posix("p/a.wml"));
    document()->Content(u"<wml/>");
    EXPECT_TRUE(project->SaveDocument(u"a"));
    EXPECT_TRUE(std::filesystem::is_symlink(temp.posix("p/a.wml")));
    EXPECT_TRUE(temp.read("q/real.wml").ends_with("<wml/>"));

    // A project is made where the deck lies to which the given link leads; the user says overwrite.
    temp.write("q/a.wml", "mine");
    std::filesystem::remove(temp.posix("p/a.wml"));
    std::filesystem::create_symlink(temp.posix("q/a.wml"), temp.posix("p/a.wml"));
    EXPECT_EQ(create(temp.path("p/a.wml")), Value(true));
    EXPECT_EQ(temp.read("q/a.wml"), "mine");
}

TEST_F(RealDisk, ADeckThatWentBetweenTwoSteps) {
    ASSERT_TRUE(std::filesystem::remove(temp.posix("p/a.wml")));
    EXPECT_TRUE(project->SaveAll()) << "it is written anew from memory";
    EXPECT_TRUE(temp.read("p/a.wml").ends_with(deck));
    ASSERT_TRUE(std::filesystem::remove(temp.posix("p/a.wml")));
    temp.write("P/a.wml", "of another project");
    EXPECT_FALSE(project->DeleteFiles());
    EXPECT_FALSE(temp.has("p"));
    EXPECT_FALSE(project->DeleteFiles());
    EXPECT_TRUE(temp.has("P/a.wml"));
}
