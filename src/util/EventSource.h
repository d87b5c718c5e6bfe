#pragma once

#include "util/Object.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace tessaly {

/// The sinks of one event source. It is held by count, so that it outlives a source that is
/// dropped inside a handler. It is an object that counts as alive, so that nobody unloads the code
/// that made it while a Subscription still refers to it.
class SinkList : public Object {
public:
    using Token = std::uint64_t;

    Token add(void* sink);
    void remove(Token token);
    void removeSink(const void* sink);

    /// Calls `call` with each sink that was there at the start and is still there at its turn.
    template <class Call>
    void forEach(Call&& call) {
        const Walk walk(*this);
        const std::size_t atStart = m_entries.size();
        for (std::size_t i = 0; i < atStart; ++i) {
            if (m_entries[i].sink != nullptr) {
                call(m_entries[i].sink);
            }
        }
    }

private:
    struct Entry {
        Token token;
        void* sink; // null once removed during a walk
    };

    /// While a walk is on, entries are blanked instead of erased.
    class Walk {
    public:
        explicit Walk(SinkList& list)
            : m_list(list) {
            ++m_list.m_walks;
        }
        ~Walk();
        Walk(const Walk&) = delete;
        Walk& operator=(const Walk&) = delete;
        Walk(Walk&&) = delete;
        Walk& operator=(Walk&&) = delete;

    private:
        SinkList& m_list;
    };

    void tidy();

    std::vector<Entry> m_entries;
    Token m_lastToken = 0;
    int m_walks = 0;
};

/// The bond between a source and a sink: it ends with this object, or when the source does.
class [[nodiscard]] Subscription {
public:
    Subscription() = default;
    Subscription(std::shared_ptr<SinkList> sinks, SinkList::Token token)
        : m_sinks(std::move(sinks))
        , m_token(token) {}
    Subscription(Subscription&& other) noexcept
        : m_sinks(std::move(other.m_sinks))
        , m_token(other.m_token) {}
    Subscription& operator=(Subscription&& other) noexcept;
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;
    ~Subscription() { end(); }

    /// Ends the bond now. A second call has no effect.
    void end();

private:
    std::shared_ptr<SinkList> m_sinks;
    SinkList::Token m_token = 0;
};

/// Raises the events of the interface `Sink` to every sink that has advised itself, in the order
/// of advising, synchronously on the caller's thread.
///
/// A sink may unadvise itself or others inside a handler, may advise more (they hear the next
/// event), and may drop the last reference to the source; the event in progress still reaches the
/// remaining sinks. An exception of a sink goes to whoever caused the event.
template <class Sink>
class EventSource {
public:
    /// Binds `sink`, which the caller keeps alive at least as long as the result.
    Subscription advise(Sink& sink) { return {m_sinks, m_sinks->add(&sink)}; }

    /// Ends every bond to `sink`.
    void unadvise(const Sink& sink) { m_sinks->removeSink(&sink); }

    /// `arguments` go by reference where the event takes references, so that a sink may change
    /// them and the next sink and the caller see that.
    template <class... Parameters, class... Arguments>
    void raise(void (Sink::*event)(Parameters...), Arguments&&... arguments) {
        const std::shared_ptr<SinkList> sinks = m_sinks;
        sinks->forEach([&](void* sink) { (static_cast<Sink*>(sink)->*event)(arguments...); });
    }

private:
    std::shared_ptr<SinkList> m_sinks = std::make_shared<SinkList>();
};

} // namespace tessaly
