#include "apps/cli/project/ReplacingStream.h"

#include "platform/files/FileText.h"
#include "util/Attempt.h"

#include <utility>

namespace cli {

using tessaly::Failure;
using tessaly::FailureCode;

ReplacingStream::ReplacingStream(const std::string& file, OnFailure onFailure)
    : m_file(file)
    , m_onFailure(std::move(onFailure)) {}

ReplacingStream::~ReplacingStream() {
    // Whoever wants to hear of a failure calls Close.
    tessaly::attempt([this] { Close(); });
}

void ReplacingStream::refuse() const {
    throw Failure(m_state == State::Closed ? FailureCode::ObjectNotSet : FailureCode::BadFileMode);
}

template <class Step>
void ReplacingStream::run(Step&& step) {
    if (const auto failed = tessaly::attempt(step)) {
        m_state = State::Failed;
        m_onFailure(*failed);
        throw Failure(*failed);
    }
}

void ReplacingStream::Write(const std::u16string& text) {
    if (m_state == State::Closed) {
        throw Failure(FailureCode::ObjectNotSet);
    }
    run([&] { m_file.write(tessaly::encodeFile(text)); });
}

void ReplacingStream::Close() {
    if (m_state == State::Open) {
        run([&] { m_file.commit(); });
    }
    m_state = State::Closed;
}

} // namespace cli
