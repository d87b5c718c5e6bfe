#include "apps/cli/session/Session.h"

#include "platform/files/PathName.h"
#include "util/Attempt.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <system_error>
#include <utility>

namespace cli {

namespace fs = std::filesystem;
using tessaly::toComponentPath;

namespace {

/// The folder that stands for AppPath.
std::string dataFolder() {
    return installationFolder() + "/share/tessaly";
}

std::string lowerExtension(const std::string& path) {
    std::string extension = fs::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return extension;
}

/// The value of an attribute node, whose markup is its name and its quoted value.
std::u16string attributeValue(const std::u16string& markup) {
    const std::size_t quote = markup.find_first_of(u"\"'");
    return quote == std::u16string::npos ? std::u16string()
                                         : markup.substr(quote + 1, markup.size() - quote - 2);
}

} // namespace

std::string deckBeside(const std::string& projectFile, const std::u16string& name) {
    return (fs::path(projectFile).parent_path() / (utf8(name) + ".wml")).string();
}

bool isProject(const std::string& path) {
    return lowerExtension(path) == ".cvp";
}

bool isDeck(const std::string& path) {
    return lowerExtension(path) == ".wml";
}

std::int32_t cardCount(tessaly::WirelessDocument& document) {
    return document.DOM()->selectNodes(u"//card")->length();
}

std::vector<std::string> cardIds(tessaly::WirelessDocument& document) {
    std::vector<std::string> ids;
    const auto cards = document.DOM()->selectNodes(u"//card");
    for (std::int32_t i = 0; i < cards->length(); ++i) {
        const auto id = cards->item(i)->selectNodes(u"@id")->item(0);
        ids.push_back(id ? utf8(attributeValue(id->xml())) : std::string());
    }
    return ids;
}

std::string readStandardInput() {
    return {std::istreambuf_iterator<char>(std::cin), {}};
}

std::string installationFolder() {
    std::error_code failed;
    const fs::path command = fs::read_symlink("/proc/self/exe", failed);
    return command.parent_path().parent_path().string();
}

Session::Session(const std::string& inputName)
    : m_inputName(inputName.empty() ? standardInput : inputName)
    , m_files(tessaly::Platform::current()->newFileSystemObject())
    , m_decks(newProject()) {}

std::shared_ptr<tessaly::clProject> Session::newProject() {
    auto project = std::make_shared<tessaly::clProject>();
    project->AppPath(toComponentPath(dataFolder()));
    return project;
}

void Session::raiseStatus(ExitStatus status) {
    m_status = std::max(m_status, status);
}

void Session::complain(ExitStatus status, const std::string& file, const std::string& what) {
    m_unread.push_back({file, what});
    std::cerr << "tessaly: " << shownPath(file) << ": " << harmless(what) << '\n';
    raiseStatus(status);
}

bool Session::readable(const std::string& file) {
    const auto failed = tessaly::attempt([&] {
        m_files->GetFile(toComponentPath(file))
            ->OpenAsTextStream(tessaly::IOMode::ForReading, tessaly::formatAnsi);
    });
    if (failed) {
        complain(ExitStatus::Unreadable, file, utf8(failed->description()));
    }
    return !failed;
}

std::shared_ptr<tessaly::clProject> Session::openProject(const std::string& file) {
    if (!readable(file)) {
        return nullptr;
    }
    auto project = newProject();
    if (!project->init(toComponentPath(file))) {
        tellWhyInPart(file, *project);
    }
    return project;
}

std::vector<Deck> Session::decksOf(tessaly::clProject& project, const std::string& file) {
    std::vector<Deck> decks;
    for (const auto& document : project.Documents()->NewEnum()) {
        decks.push_back({deckBeside(file, document->Name()), document});
    }
    return decks;
}

std::optional<std::u16string> Session::readText(const std::string& file) {
    std::optional<tessaly::FileText> read = readFile(file);
    return read ? std::optional(std::move(read->text)) : std::nullopt;
}

std::optional<tessaly::FileText> Session::readFile(const std::string& file) {
    std::optional<tessaly::FileText> text;
    const auto failed = tessaly::attempt([&] { text = tessaly::readFile(toComponentPath(file)); });
    if (failed) {
        std::error_code unknown;
        const bool isFolder = fs::is_directory(file, unknown); // which the component calls no file
        complain(ExitStatus::Unreadable, file, isFolder ? "is a folder" : reasonOf(*failed));
    }
    return text;
}

} // namespace cli
