#pragma once

#include "apps/cli/Printer.h"
#include "platform/files/FileText.h"
#include "tessaly.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cli {

/// In the order of their weight: the gravest one counts.
enum class ExitStatus { Fine = 0, Invalid = 1, Usage = 2, Unreadable = 3 };

/// What an author should hear about how a file was read; no error.
struct Note {
    std::size_t line = 1; ///< from 1
    std::size_t column = 1;
    std::string reason;
};

/// A deck that has been opened.
struct Deck {
    std::string file; ///< as the person would name it
    std::shared_ptr<tessaly::WirelessDocument> document;
    std::vector<Note> notes = {};          ///< about how the file was read
    std::optional<std::string> bytes = {}; ///< of one that was read from standard input
};

/// The command as a host of the component: it opens what the person named, and remembers the
/// gravest thing that happened on the way.
class Session {
public:
    /// `inputName`: what a deck from standard input is called.
    explicit Session(const std::string& inputName = {});

    /// The project in `file`, with all decks that could be loaded; none if it could not be read.
    /// What went wrong has been said on standard error.
    std::shared_ptr<tessaly::clProject> openProject(const std::string& file);

    /// Calls `visit` with each deck that one of `paths` stands for: a deck, the decks of a project,
    /// or every .wml file below a folder, in the order of their names; `-` is a deck from standard
    /// input. A deck on which `visit`
    /// fails, or that memory does not suffice for, is named, and the next ones are visited.
    void visitDecks(const std::vector<std::string>& paths,
                    const std::function<void(const Deck&)>& visit);

    /// Says of a project that `init` could not open in full which deck stopped it and why, or what
    /// else it lacks.
    void tellWhyInPart(const std::string& file, tessaly::clProject& project);

    /// The names that a project file lists; none if it cannot be read, which has been said.
    std::vector<std::u16string> listed(const std::string& file);

    /// The text in `file` as the component reads it; none if it could not be read, which has been
    /// said.
    std::optional<std::u16string> readText(const std::string& file);
    /// The same with what its author should hear of how it was read.
    std::optional<tessaly::FileText> readFile(const std::string& file);

    /// A project that knows where the command's data lies.
    static std::shared_ptr<tessaly::clProject> newProject();

    /// The decks of a project that was opened from `file`.
    static std::vector<Deck> decksOf(tessaly::clProject& project, const std::string& file);

    /// Says on standard error what is wrong with `file`, and raises the status.
    void complain(ExitStatus status, const std::string& file, const std::string& what);

    /// What could not be read, or not be dealt with in full, so far.
    struct Unread {
        std::string file;
        std::string why;
    };
    const std::vector<Unread>& unread() const { return m_unread; }

    void raiseStatus(ExitStatus status);
    ExitStatus status() const { return m_status; }

    /// False, and said, if `file` cannot be opened.
    bool readable(const std::string& file);

private:
    void visitPath(const std::string& path, const std::function<void(const Deck&)>& visit);
    void visitFiles(const std::vector<std::string>& files,
                    const std::function<void(const Deck&)>& visit);
    void visitText(const std::string& file, tessaly::FileText text,
                   const std::function<void(const Deck&)>& visit);
    void visitDeck(const std::string& file, const std::function<void(const Deck&)>& visit);
    void visitProject(const std::string& file, const std::function<void(const Deck&)>& visit);
    void visitFolder(const std::string& folder, const std::function<void(const Deck&)>& visit);

    void visitInput(const std::function<void(const Deck&)>& visit);

    std::string m_inputName;
    std::shared_ptr<tessaly::FileSystemObject> m_files;
    std::shared_ptr<tessaly::clProject> m_decks; ///< holds one deck at a time
    std::vector<Unread> m_unread;
    ExitStatus m_status = ExitStatus::Fine;
};

/// Why a deck could not be dealt with, for a sentence that begins with its file.
std::string reasonOf(const tessaly::Failure& failure);

/// What the command's `bin` lies in; its data and the library lie there too, as they are built and
/// as they are installed.
std::string installationFolder();

/// The file of the deck `name` beside a project file, as the person would name it.
std::string deckBeside(const std::string& projectFile, const std::u16string& name);

/// What `-` is called in what is printed.
inline constexpr char standardInput[] = "<stdin>";
std::string readStandardInput();

/// By the extension, in whatever case.
bool isProject(const std::string& path);
bool isDeck(const std::string& path);

/// The `id` of each card of `document`, in order; empty where a card has none.
std::vector<std::string> cardIds(tessaly::WirelessDocument& document);

std::int32_t cardCount(tessaly::WirelessDocument& document);

} // namespace cli
