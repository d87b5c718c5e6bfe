#pragma once

#include "external/Controls.h"
#include "platform/controls/MessageLoop.h"

#include <memory>

namespace tessaly {

/// A browser control without a window. What it shows is the host's: there is no document until the
/// host gives it one.
class HeadlessBrowser : public BrowserControl,
                        public std::enable_shared_from_this<HeadlessBrowser> {
public:
    /// Navigations end in `loop`.
    explicit HeadlessBrowser(std::shared_ptr<MessageLoop> loop);

    std::shared_ptr<HTMLDocument> Document() override { return m_document; }

    /// Puts `document` in at once, without a navigation. None takes the old one away.
    void Document(std::shared_ptr<HTMLDocument> document);

    /// Raises BeforeNavigate2 at once. The message loop then puts `document` in and raises
    /// NavigateComplete2. A control that nobody holds any more raises nothing.
    void navigate(std::shared_ptr<HTMLDocument> document);

    void Visible(bool visible) override { m_visible = visible; }
    bool Visible() const { return m_visible; }

    EventSource<BrowserControlEvents>& events() override { return m_events; }

private:
    std::shared_ptr<MessageLoop> m_loop;
    std::shared_ptr<HTMLDocument> m_document;
    EventSource<BrowserControlEvents> m_events;
    bool m_visible = false;
};

} // namespace tessaly
