#include "util/EventSource.h"

#include <algorithm>
#include <utility>

namespace tessaly {

SinkList::Token SinkList::add(void* sink) {
    m_entries.push_back({++m_lastToken, sink});
    return m_lastToken;
}

void SinkList::remove(Token token) {
    for (Entry& entry : m_entries) {
        if (entry.token == token) {
            entry.sink = nullptr;
        }
    }
    tidy();
}

void SinkList::removeSink(const void* sink) {
    for (Entry& entry : m_entries) {
        if (entry.sink == sink) {
            entry.sink = nullptr;
        }
    }
    tidy();
}

void SinkList::tidy() {
    if (m_walks > 0) {
        return;
    }
    const auto gone = [](const Entry& entry) { return entry.sink == nullptr; };
    m_entries.erase(std::remove_if(m_entries.begin(), m_entries.end(), gone), m_entries.end());
}

SinkList::Walk::~Walk() {
    --m_list.m_walks;
    m_list.tidy();
}

Subscription& Subscription::operator=(Subscription&& other) noexcept {
    if (this != &other) {
        end();
        m_sinks = std::exchange(other.m_sinks, {});
        m_token = other.m_token;
    }
    return *this;
}

void Subscription::end() {
    if (const std::shared_ptr<SinkList> sinks = std::exchange(m_sinks, nullptr)) {
        sinks->remove(m_token);
    }
}

} // namespace tessaly
