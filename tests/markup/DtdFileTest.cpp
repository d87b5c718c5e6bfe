#include "external/Platform.h"
#include "ravikit/component/Objects.h"
#include "support/Test.h"
#include "tests/platform/TempFolder.h"

#include <chrono>
#include <filesystem>

namespace {

using namespace tessaly;
namespace fs = std::filesystem;

/// A DTD in a file of its own.
class DtdFile : public testing::Test {
protected:
    /// Writes the file; its time stamp is `minute` minutes after some point in time.
    void write(const std::string& text, int minute) {
        m_folder.write("dtd", text);
        fs::last_write_time(m_folder.posix("dtd"),
                            fs::file_time_type() + std::chrono::minutes(minute));
    }

    bool judges(const std::u16string& text) {
        const auto tolmek = makeTolmek(m_files);
        m_loaded = isTrue(tolmek->loadDtd(kindMarkup, path()));
        return tolmek->isValidText(text);
    }

    std::u16string path() const { return m_folder.path("dtd"); }

    std::shared_ptr<FileSystemObject> m_files = Platform::current()->newFileSystemObject();
    support::TempFolder m_folder;
    bool m_loaded = false;
};

TEST_F(DtdFile, DecidesWhatIsValid) {
    EXPECT_TRUE(judges(u"<wml><card/></wml>")); // no file: the built-in DTD
    EXPECT_FALSE(m_loaded);
    write("<!ELEMENT tiny EMPTY>", 1);
    EXPECT_TRUE(judges(u"<tiny/>"));
    EXPECT_TRUE(m_loaded);
    EXPECT_FALSE(judges(u"<wml><card/></wml>"));
    EXPECT_THROW(makeTolmek(m_files)->loadDtd(kindPlain, path()), Failure);
}

TEST_F(DtdFile, IsReadAgainOnlyWhenItsTimeStampChanges) {
    write("<!ELEMENT one EMPTY>", 1);
    EXPECT_TRUE(judges(u"<one/>"));
    write("<!ELEMENT two EMPTY>", 1);
    EXPECT_TRUE(judges(u"<one/>"));
    write("<!ELEMENT two EMPTY>", 2);
    EXPECT_TRUE(judges(u"<two/>"));
    for (const char* const useless : {"no DTD at all", "", "<!ELEMENT two"}) {
        static int minute = 2;
        write(useless, ++minute);
        EXPECT_TRUE(judges(u"<wml><card/></wml>")) << useless;
        EXPECT_FALSE(m_loaded);
    }
}

TEST_F(DtdFile, GivesItsEntitiesToTheParser) {
    write("\xEF\xBB\xBF<!ELEMENT wml (#PCDATA)><!ENTITY corvid 'crow'>", 1);
    const auto ravik = makeRavik(m_files);
    const auto knows = [&](const std::u16string& entity) {
        return !ravik->parseMarkup(u"<wml>&" + entity + u";</wml>", true, false)->xml().empty();
    };
    EXPECT_TRUE(knows(u"nbsp") && !knows(u"corvid"));
    ravik->setDtdPath(kindMarkup, path());
    EXPECT_TRUE(knows(u"corvid") && !knows(u"nbsp"));
    ravik->setDtdPath(kindMarkup, path() + u"-gone");
    EXPECT_TRUE(knows(u"nbsp") && !knows(u"corvid"));
    EXPECT_THROW(ravik->setDtdPath(kindPlain, path()), Failure);
    EXPECT_THROW(ravik->setSchemaPath(2, path()), Failure);
}

} // namespace
