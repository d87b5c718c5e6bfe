#pragma once

#include "apps/cli/project/Watch.h"
#include "platform/DefaultPlatform.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cli {

/// What is to happen where a file's name is taken.
enum class OnConflict { Ask, Overwrite, Rename, Stop };

/// The platform of the commands that write: the questions of the component go to the person at the
/// terminal, or are answered as was said beforehand.
class CommandPlatform final : public tessaly::DefaultPlatform {
public:
    /// Puts a new one in force. `answer` answers in place of the person; without it, and without a
    /// terminal, every conflict stops.
    static std::shared_ptr<CommandPlatform> install(std::optional<OnConflict> answer);

    CommandPlatform(std::optional<OnConflict> answer, std::shared_ptr<Watch> watch);

    Watch& watch() { return *m_watch; }
    OnConflict onConflict() const { return m_onConflict; }

    /// Paths below `folder`, a full path of the component, are shown as the system writes them.
    void speakOf(const std::u16string& folder) { m_folders.push_back(folder); }
    std::u16string spoken(std::u16string text) const;

    /// Makes the question whether to overwrite `file` go away: it is the one to be copied.
    void keep(const std::u16string& file) { m_kept = file; }

    /// Asks a question of the command's own. No without a terminal.
    bool confirm(const std::u16string& question, const std::u16string& caption);

    /// The file that stood in the way when an answer given beforehand stopped the work, and why.
    struct Obstacle {
        std::string file;
        std::string why;
    };
    const std::optional<Obstacle>& obstacle() const { return m_obstacle; }
    void stopAtLastAsked(const std::string& why);

    /// True once the component has reported that no name was settled for a deck.
    bool hasGivenUp() const { return m_givenUp; }

    std::shared_ptr<tessaly::FileSystemObject> newFileSystemObject() override;
    std::shared_ptr<tessaly::ModalForm> newModalForm(const tessaly::FormLayout& layout) override;
    tessaly::MsgBoxAnswer MsgBox(const std::u16string& text, tessaly::MsgBoxFlags flags,
                                 const std::u16string& caption) override;
    std::u16string InputBox(const std::u16string& prompt, const std::u16string& title,
                            const std::u16string& defaultText) override;

    /// No folder at all, so that whoever works in the real one is asked like anywhere else.
    std::u16string temporaryFolder() override { return u"\\dev\\null\\"; }

private:
    bool isKept(const std::u16string& file);
    tessaly::MsgBoxAnswer answer();

    tessaly::Terminal m_terminal;
    std::shared_ptr<Watch> m_watch;
    OnConflict m_onConflict;
    std::vector<std::u16string> m_folders;
    std::u16string m_kept;
    std::optional<Obstacle> m_obstacle;
    bool m_givenUp = false;
};

inline constexpr char takenAlready[] =
    "is there already; --on-conflict overwrite or rename says what to do";
inline constexpr char readOnly[] = "is read-only and not overwritten";

} // namespace cli
