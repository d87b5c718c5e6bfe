#pragma once

#include "apps/cli/Interrupt.h"
#include "apps/cli/Progress.h"
#include "platform/files/PosixFileSystem.h"

#include <memory>
#include <optional>
#include <string>

namespace cli {

/// What the command sees of the component's dealings with files: how far it is, and the moments
/// between two decks at which it can be stopped.
class Watch {
public:
    /// By what the decks of an operation are counted.
    enum class Counts { Reads, Writes, Deletions };

    /// While it lives, decks are counted, and Ctrl-C makes the next look at a file fail. Outside an
    /// operation it does not: a look that fails must not be taken for a name that is free.
    class Operation {
    public:
        Operation(Watch& watch, const std::string& doing, Counts counts, std::size_t total);
        ~Operation();
        Operation(const Operation&) = delete;
        Operation& operator=(const Operation&) = delete;
        Operation(Operation&&) = delete;
        Operation& operator=(Operation&&) = delete;

    private:
        Watch& m_watch;
    };

    const Interrupt& interrupt() const { return m_interrupt; }

    /// The file that was last looked for, and the one that was last made with CreateTextFile, which
    /// is how a project file is begun; empty before.
    const std::u16string& lastAsked() const { return m_lastAsked; }
    const std::u16string& lastBegun() const { return m_lastBegun; }

    /// The file that was last made by a copy, a path of the system; empty before, and if the copy
    /// took the place of another file.
    const std::string& lastCopy() const { return m_lastCopy; }

    /// The file that could last not be written, and why; empty if all could.
    struct Refusal {
        std::u16string file;
        std::u16string why;
    };
    const Refusal& refusal() const { return m_refusal; }

    /// Takes the progress line away before something else is written.
    void clearLine();

private:
    friend class WatchedFileSystem;

    void beforeLook() const;
    void afterDeck(Counts what);

    Interrupt m_interrupt;
    std::optional<Progress> m_progress;
    Counts m_counts = Counts::Reads;
    std::u16string m_lastAsked;
    std::u16string m_lastBegun;
    std::string m_lastCopy;
    Refusal m_refusal;
};

/// The file service under a Watch. What it writes replaces the old file once it is whole.
class WatchedFileSystem final : public tessaly::PosixFileSystem {
public:
    explicit WatchedFileSystem(std::shared_ptr<Watch> watch);

    bool FileExists(const std::u16string& path) override;
    bool FolderExists(const std::u16string& path) override;
    std::shared_ptr<tessaly::File> GetFile(const std::u16string& path) override;
    std::shared_ptr<tessaly::TextStream> OpenTextFile(const std::u16string& path,
                                                      tessaly::IOMode mode, bool create,
                                                      std::int32_t format) override;
    std::shared_ptr<tessaly::TextStream> CreateTextFile(const std::u16string& path, bool overwrite,
                                                        bool unicode) override;
    void CopyFile(const std::u16string& from, const std::u16string& to, bool overwrite) override;
    void DeleteFile(const std::u16string& path, bool force) override;

private:
    template <class Step>
    void writing(const std::u16string& path, Step&& step);

    std::shared_ptr<tessaly::TextStream> replacing(const std::u16string& path,
                                                   const std::string& file);

    std::shared_ptr<Watch> m_watch;
};

} // namespace cli
