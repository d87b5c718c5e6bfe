#pragma once

#include "util/EventSource.h"
#include "util/Object.h"

#include <cstdint>
#include <string>

namespace tessaly {

/// The events of a clWMLEventProxy. The four values of a change record keep their order and names
/// on their whole way; see __WirelessDocument::OnAdd2UndoStack.
class __clWMLEventProxy {
public:
    virtual ~__clWMLEventProxy() = default;

    virtual void OnAdd2Undo(std::int32_t& lStart, std::u16string& txt, std::u16string& delText,
                            std::int32_t& action) = 0;
    virtual void OnDirty() = 0;
};

/// The go-between through which a formatter, which knows no document, reports its changes.
class clWMLEventProxy : public Object {
public:
    void raiseAdd2Undo(std::int32_t& lStart, std::u16string& txt, std::u16string& delText,
                       std::int32_t& action) {
        m_events.raise(&__clWMLEventProxy::OnAdd2Undo, lStart, txt, delText, action);
    }
    void raiseDirty() { m_events.raise(&__clWMLEventProxy::OnDirty); }

    EventSource<__clWMLEventProxy>& events() { return m_events; }

private:
    EventSource<__clWMLEventProxy> m_events;
};

} // namespace tessaly
