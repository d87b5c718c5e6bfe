#include "platform/files/TextStreams.h"

#include "platform/files/FileText.h"
#include "util/Attempt.h"
#include "util/Failure.h"

#include <string_view>
#include <utility>

namespace tessaly {

namespace {

constexpr std::size_t bufferSize = 1U << 16U;

class ReadingStream final : public TextStream {
public:
    explicit ReadingStream(FileHandle file)
        : m_file(std::move(file)) {}

    bool AtEndOfStream() override {
        load();
        return m_at == m_text.size();
    }

    std::u16string ReadLine() override {
        requireMore();
        const std::size_t lineFeed = m_text.find(u'\n', m_at);
        const bool ended = lineFeed != m_text.npos;
        std::u16string line = m_text.substr(m_at, ended ? lineFeed - m_at : m_text.npos);
        if (ended && line.ends_with(u'\r')) {
            line.pop_back();
        }
        m_at = ended ? lineFeed + 1 : m_text.size();
        return line;
    }

    std::u16string ReadAll() override {
        requireMore();
        std::u16string rest = m_at == 0 ? std::move(m_text) : m_text.substr(m_at);
        m_text.clear();
        m_at = 0;
        return rest;
    }

    void Write(const std::u16string& /*text*/) override { refuse(); }
    void WriteLine(const std::u16string& /*text*/) override { refuse(); }

    void Close() override {
        m_state = State::Closed;
        m_file.close();
        m_text = {};
    }

private:
    enum class State { Unread, Read, Closed };

    void requireOpen() const {
        if (m_state == State::Closed) {
            throw Failure(FailureCode::ObjectNotSet);
        }
    }

    [[noreturn]] void refuse() const {
        requireOpen();
        throw Failure(FailureCode::BadFileMode);
    }

    void load() {
        requireOpen();
        if (m_state == State::Unread) {
            // The file ends here in any case: one that broke off must not be read on from there.
            FileHandle file = std::move(m_file);
            m_text = decodeFile(file.readAll()).text;
            m_state = State::Read;
        }
    }

    void requireMore() {
        if (AtEndOfStream()) {
            throw Failure(FailureCode::PastEndOfFile);
        }
    }

    FileHandle m_file;
    State m_state = State::Unread;
    std::u16string m_text;
    std::size_t m_at = 0;
};

class WritingStream final : public TextStream {
public:
    explicit WritingStream(FileHandle file)
        : m_file(std::move(file)) {}

    WritingStream(const WritingStream&) = delete;
    WritingStream& operator=(const WritingStream&) = delete;
    WritingStream(WritingStream&&) = delete;
    WritingStream& operator=(WritingStream&&) = delete;

    ~WritingStream() override {
        // Whoever wants to hear of a failure calls Close.
        attempt([this] { Close(); });
    }

    bool AtEndOfStream() override { refuse(); }
    std::u16string ReadLine() override { refuse(); }
    std::u16string ReadAll() override { refuse(); }

    void Write(const std::u16string& text) override {
        requireOpen();
        m_pending += encodeFile(text);
        if (m_pending.size() >= bufferSize) {
            flush();
        }
    }

    /// A line goes to the disk at once, so that whoever writes lines hears of a full disk there.
    void WriteLine(const std::u16string& text) override {
        Write(text + u"\r\n");
        flush();
    }

    void Close() override {
        if (m_file.isOpen()) {
            const auto failed = attempt([this] { flush(); });
            m_file.close();
            if (failed) {
                throw Failure(*failed);
            }
        }
    }

private:
    void requireOpen() const {
        if (!m_file.isOpen()) {
            throw Failure(FailureCode::ObjectNotSet);
        }
    }

    [[noreturn]] void refuse() const {
        requireOpen();
        throw Failure(FailureCode::BadFileMode);
    }

    /// What a failed write leaves over is dropped: to write it later would leave a hole before it.
    void flush() {
        const std::string bytes = std::exchange(m_pending, {});
        m_file.write(bytes);
    }

    FileHandle m_file;
    std::string m_pending;
};

} // namespace

std::shared_ptr<TextStream> makeReadingStream(FileHandle file) {
    return std::make_shared<ReadingStream>(std::move(file));
}

std::shared_ptr<TextStream> makeWritingStream(FileHandle file) {
    return std::make_shared<WritingStream>(std::move(file));
}

} // namespace tessaly
