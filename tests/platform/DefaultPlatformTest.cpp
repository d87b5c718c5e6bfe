#include "platform/DefaultPlatform.h"
#include "platform/files/LocalDate.h"
#include "support/Test.h"

#include <ctime>

using namespace tessaly;

TEST(DefaultPlatform, IsThereWithoutAsking) {
    const auto platform = Platform::current();
    EXPECT_EQ(platform->newDOMDocument()->xml(), u"");
    EXPECT_TRUE(platform->pictures()->picture(u"Bold", PictureKind::Icon));
    EXPECT_EQ(platform->textWidth(0, u"ab\xD83D\xDE00"), 24);
    EXPECT_NEAR(platform->now(), localDate(std::time(nullptr)), 5 / 86400.0);
}

TEST(DefaultPlatform, TheTemporaryFolderEndsInASeparator) {
    DefaultPlatform platform;
    unsetenv("TMPDIR");
    EXPECT_EQ(platform.temporaryFolder(), u"\\tmp\\");
    setenv("TMPDIR", "/var/tmp/", 1);
    EXPECT_EQ(platform.temporaryFolder(), u"\\var\\tmp\\");
    setenv("TMPDIR", "/a\\b", 1);
    EXPECT_EQ(platform.temporaryFolder(), u"");
    unsetenv("TMPDIR");
}
