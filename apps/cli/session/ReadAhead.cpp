#include "apps/cli/session/ReadAhead.h"

#include "platform/files/PathName.h"
#include "ravikit/deck/DeckText.h"
#include "ravikit/xml/Parser.h"

#include <utility>

namespace cli {

namespace {

constexpr std::size_t mostResults = 16;
constexpr std::size_t mostUnits = std::size_t{1} << 20U;

} // namespace

ReadAhead::ReadAhead(std::vector<std::string> files, std::shared_ptr<const ravikit::Dtd> dtd)
    : m_files(std::move(files))
    , m_dtd(std::move(dtd))
    , m_thread([this] { run(); }) {}

ReadAhead::~ReadAhead() {
    {
        const std::lock_guard lock(m_mutex);
        m_isOver = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

ReadAhead::Read ReadAhead::next() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return !m_results.empty(); });
    Result result = std::move(m_results.front());
    m_results.pop_front();
    m_units -= result.read.file.text.size();
    // Not for each file: to wake the other thread costs as much as to read one.
    const bool wakes = m_isFull && m_results.size() <= mostResults / 4;
    m_isFull = m_isFull && !wakes;
    lock.unlock();
    if (wakes) {
        m_changed.notify_all();
    }
    if (result.failure) {
        std::rethrow_exception(result.failure);
    }
    return std::move(result.read);
}

void ReadAhead::run() {
    for (const std::string& file : m_files) {
        Result result = read(file);
        std::unique_lock lock(m_mutex);
        m_units += result.read.file.text.size();
        m_results.push_back(std::move(result));
        const bool isAwaited = m_results.size() == 1;
        m_isFull = !hasRoom();
        lock.unlock();
        if (isAwaited) {
            m_changed.notify_all();
        }
        lock.lock();
        m_changed.wait(lock, [this] { return !m_isFull || m_isOver; });
        if (m_isOver) {
            return;
        }
    }
}

ReadAhead::Result ReadAhead::read(const std::string& file) const {
    try {
        Read read{tessaly::readFile(tessaly::toComponentPath(file)), nullptr};
        read.tree = ravikit::parse(ravikit::importDeck(read.file.text), &m_dtd->declarations());
        return {std::move(read), nullptr};
    } catch (...) { // it is the taker's, whatever it is
        return {{}, std::current_exception()};
    }
}

bool ReadAhead::hasRoom() const {
    return m_results.size() < mostResults && m_units < mostUnits;
}

} // namespace cli
