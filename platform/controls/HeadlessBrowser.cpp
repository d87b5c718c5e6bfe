#include "platform/controls/HeadlessBrowser.h"

#include <utility>

namespace tessaly {

HeadlessBrowser::HeadlessBrowser(std::shared_ptr<MessageLoop> loop)
    : m_loop(std::move(loop)) {}

void HeadlessBrowser::Document(std::shared_ptr<HTMLDocument> document) {
    m_document = std::move(document);
}

void HeadlessBrowser::navigate(std::shared_ptr<HTMLDocument> document) {
    m_events.raise(&BrowserControlEvents::BeforeNavigate2);
    m_loop->post([weak = weak_from_this(), document = std::move(document)] {
        if (const auto browser = weak.lock()) {
            browser->m_document = document;
            browser->m_events.raise(&BrowserControlEvents::NavigateComplete2);
        }
    });
}

} // namespace tessaly
