#pragma once

#include "platform/files/FileText.h"
#include "ravikit/validity/Dtd.h"
#include "ravikit/xml/Tree.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace cli {

/// Reads files in a thread of its own while those before them are worked on: half of the time that
/// a small deck takes is the disk's and the decoder's. It holds a few texts at a time.
class ReadAhead {
public:
    struct Read {
        tessaly::FileText file;
        std::shared_ptr<const ravikit::Tree> tree; ///< of its text, without a byte-order mark
    };

    /// `files`, paths of the system, are read in their order and parsed with the entities of `dtd`.
    ReadAhead(std::vector<std::string> files, std::shared_ptr<const ravikit::Dtd> dtd);
    ReadAhead(const ReadAhead&) = delete;
    ReadAhead& operator=(const ReadAhead&) = delete;
    ReadAhead(ReadAhead&&) = delete;
    ReadAhead& operator=(ReadAhead&&) = delete;
    /// Waits for the file that is being read.
    ~ReadAhead();

    /// The next file. Fails as reading it failed.
    Read next();

private:
    struct Result {
        Read read;
        std::exception_ptr failure;
    };
    void run();
    Result read(const std::string& file) const;
    bool hasRoom() const;

    std::vector<std::string> m_files;
    std::shared_ptr<const ravikit::Dtd> m_dtd;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Result> m_results;
    std::size_t m_units = 0; ///< of all results
    bool m_isFull = false;   ///< until enough of them have been taken
    bool m_isOver = false;
    std::thread m_thread;
};

} // namespace cli
