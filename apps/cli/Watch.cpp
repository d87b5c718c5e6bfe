#include "apps/cli/Watch.h"

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
template <class Open>
std::shared_ptr<tessaly::TextStream> WatchedFileSystem::opened(const std::u16string& path,
                                                               Open&& open) {
    std::shared_ptr<tessaly::TextStream> stream;
    if (const auto failed = tessaly::attempt([&] { stream = open(); })) {
        m_watch->m_refusal = {path, failed->description()};
        throw tessaly::Failure(*failed);
    }
    return stream;
}

std::shared_ptr<tessaly::TextStream> WatchedFileSystem::OpenTextFile(const std::u16string& path,
                                                                     tessaly::IOMode mode,
                                                                     bool create,
                                                                     std::int32_t format) {
    auto stream =
        opened(path, [&] { return PosixFileSystem::OpenTextFile(path, mode, create, format); });
    m_watch->afterDeck(Watch::Counts::Writes);
    return stream;
}

std::shared_ptr<tessaly::TextStream>
WatchedFileSystem::CreateTextFile(const std::u16string& path, bool overwrite, bool unicode) {
    auto stream =
        opened(path, [&] { return PosixFileSystem::CreateTextFile(path, overwrite, unicode); });
    m_watch->m_lastBegun = path;
    return stream;
}

void WatchedFileSystem::DeleteFile(const std::u16string& path, bool force) {
    PosixFileSystem::DeleteFile(path, force);
    m_watch->afterDeck(Watch::Counts::Deletions);
}

} // namespace cli
