#pragma once

#include "external/FileSystemObject.h"
#include "platform/runtime/FileReplacement.h"

#include <functional>
#include <string>

namespace cli {

/// A stream for writing whose file is replaced when the stream is closed, or goes, and only if
/// every write succeeded: a full disk leaves the old file or none.
class ReplacingStream final : public tessaly::TextStream {
public:
    /// Is called with the first failure, since the component says nothing of most.
    using OnFailure = std::function<void(const tessaly::Failure&)>;

    ReplacingStream(const std::string& file, OnFailure onFailure);
    ~ReplacingStream() override;
    ReplacingStream(const ReplacingStream&) = delete;
    ReplacingStream& operator=(const ReplacingStream&) = delete;
    ReplacingStream(ReplacingStream&&) = delete;
    ReplacingStream& operator=(ReplacingStream&&) = delete;

    bool AtEndOfStream() override { refuse(); }
    std::u16string ReadLine() override { refuse(); }
    std::u16string ReadAll() override { refuse(); }

    void Write(const std::u16string& text) override;
    void WriteLine(const std::u16string& text) override { Write(text + u"\r\n"); }
    void Close() override;

private:
    enum class State { Open, Failed, Closed };

    [[noreturn]] void refuse() const;

    template <class Step>
    void run(Step&& step);

    tessaly::FileReplacement m_file;
    OnFailure m_onFailure;
    State m_state = State::Open;
};

} // namespace cli
