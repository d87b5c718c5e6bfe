#include "apps/cli/project/Watch.h"

#include "apps/cli/project/ReplacingStream.h"
#include "platform/files/FileLookup.h"
#include "util/Attempt.h"

#include <utility>

namespace cli {

Watch::Operation::Operation(Watch& watch, const std::string& doing, Counts counts,
                            std::size_t total)
    : m_watch(watch) {
    watch.m_counts = counts;
    watch.m_progress.emplace(doing, total);
}

Watch::Operation::~Operation() {
    m_watch.m_progress.reset();
}

void Watch::clearLine() {
    if (m_progress) {
        m_progress->clear();
    }
}

void Watch::beforeLook() const {
    if (m_progress && m_interrupt.isRequested()) {
        throw tessaly::Failure(tessaly::FailureCode::DeviceError, u"Interrupted");
    }
}

void Watch::afterDeck(Counts what) {
    if (m_progress && what == m_counts) {
        m_progress->step();
    }
}

namespace {

/// True if a file is there, or can be made.
bool isPlaceOfFile(const tessaly::Found& found) {
    return found.isFile() ||
           (found.state == tessaly::Found::State::NameMissing && !found.namesFolder);
}

} // namespace

WatchedFileSystem::WatchedFileSystem(std::shared_ptr<Watch> watch)
    : m_watch(std::move(watch)) {}

bool WatchedFileSystem::FileExists(const std::u16string& path) {
    m_watch->beforeLook();
    m_watch->m_lastAsked = path;
    return PosixFileSystem::FileExists(path);
}

bool WatchedFileSystem::FolderExists(const std::u16string& path) {
    m_watch->beforeLook();
    return PosixFileSystem::FolderExists(path);
}

std::shared_ptr<tessaly::File> WatchedFileSystem::GetFile(const std::u16string& path) {
    m_watch->beforeLook();
    auto file = PosixFileSystem::GetFile(path);
    m_watch->afterDeck(Watch::Counts::Reads);
    return file;
}

/// Remembers a failure on its way to the component, which says nothing of most.
template <class Step>
void WatchedFileSystem::writing(const std::u16string& path, Step&& step) {
    if (const auto failed = tessaly::attempt(step)) {
        m_watch->m_refusal = {path, failed->description()};
        throw tessaly::Failure(*failed);
    }
}

/// A stream that replaces the file that was found at `path`.
std::shared_ptr<tessaly::TextStream> WatchedFileSystem::replacing(const std::u16string& path,
                                                                  const std::string& file) {
    const auto remember = [watch = m_watch, path](const tessaly::Failure& failure) {
        watch->m_refusal = {path, failure.description()};
    };
    return std::make_shared<ReplacingStream>(file, remember);
}

std::shared_ptr<tessaly::TextStream> WatchedFileSystem::OpenTextFile(const std::u16string& path,
                                                                     tessaly::IOMode mode,
                                                                     bool create,
                                                                     std::int32_t format) {
    std::shared_ptr<tessaly::TextStream> stream;
    writing(path, [&] {
        const tessaly::Found found = tessaly::lookUp(path);
        const bool replaces = mode == tessaly::IOMode::ForWriting && isPlaceOfFile(found) &&
                              (create || found.exists());
        stream = replaces ? replacing(path, found.path)
                          : PosixFileSystem::OpenTextFile(path, mode, create, format);
    });
    m_watch->afterDeck(Watch::Counts::Writes);
    return stream;
}

std::shared_ptr<tessaly::TextStream>
WatchedFileSystem::CreateTextFile(const std::u16string& path, bool overwrite, bool unicode) {
    std::shared_ptr<tessaly::TextStream> stream;
    writing(path, [&] {
        const tessaly::Found found = tessaly::lookUp(path);
        stream = overwrite && isPlaceOfFile(found)
                     ? replacing(path, found.path)
                     : PosixFileSystem::CreateTextFile(path, overwrite, unicode);
    });
    m_watch->m_lastBegun = path;
    return stream;
}

void WatchedFileSystem::CopyFile(const std::u16string& from, const std::u16string& to,
                                 bool overwrite) {
    writing(to, [&] {
        const tessaly::Found target = tessaly::lookUp(to);
        if (!overwrite || !isPlaceOfFile(target) || isSameFile(from, to)) {
            PosixFileSystem::CopyFile(from, to, overwrite);
            return;
        }
        auto source = tessaly::FileHandle::forReading(tessaly::lookUpFile(from).path);
        tessaly::FileReplacement copy(target.path);
        std::string buffer;
        while (source.read(buffer)) {
            copy.write(buffer);
        }
        copy.commit();
        m_watch->m_lastCopy = target.exists() ? std::string() : target.path;
    });
}

void WatchedFileSystem::DeleteFile(const std::u16string& path, bool force) {
    PosixFileSystem::DeleteFile(path, force);
    m_watch->afterDeck(Watch::Counts::Deletions);
}

} // namespace cli
