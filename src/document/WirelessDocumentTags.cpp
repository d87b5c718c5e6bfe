// The search for elements that the host names.

#include "document/WirelessDocument.h"
#include "util/Attempt.h"

#include <algorithm>
#include <vector>

namespace tessaly {

namespace {

std::vector<std::u16string> splitAtCommas(const std::u16string& list) {
    std::vector<std::u16string> parts;
    std::size_t start = 0;
    while (start <= list.size()) {
        const std::size_t comma = std::min(list.find(u',', start), list.size());
        parts.push_back(list.substr(start, comma - start));
        start = comma + 1;
    }
    return parts;
}

} // namespace

void WirelessDocument::validateSupportedTags(const std::u16string& strElementList) {
    const auto alive = keepAlive();
    const std::vector<std::u16string> tagNames = splitAtCommas(strElementList);
    const bool inMarkup = m_View == vMarkup;
    for (const std::u16string& tagName : tagNames) {
        if (tagName.empty()) {
            continue;
        }
        if (inMarkup) {
            findTagInMarkup(tagName);
        } else {
            findTagInPage(tagName);
        }
    }
}

void WirelessDocument::findTagInMarkup(const std::u16string& tagName) {
    std::shared_ptr<IXMLDOMNodeList> found;
    // A failed step takes back what was found, and the next step runs.
    const auto step = [&](auto&& action) {
        if (attempt(action)) {
            found.reset();
        }
    };
    bool parsed = false;
    step([&] {
        m_DOM = require(m_Ravik).parseMarkup(require(m_MuRtb).Text(), false, false);
        parsed = true;
    });
    step([&] {
        // Without a tree of the control's text the tag counts as not found.
        found = parsed ? require(m_DOM).getElementsByTagName(tagName) : nullptr;
    });
    step([&] { DOM(require(m_Ravik).parseMarkup(m_Content, true, false)); });
    step([&] { require(m_Display).DOM(m_DOM); });
    step([&] { raiseOnUTag(tagName, found ? found->length() : 0); });
}

void WirelessDocument::findTagInPage(const std::u16string& tagName) {
    attempt([&] {
        const auto found = require(page()).getElementsByTagName(tagName);
        raiseOnUTag(tagName, require(found).length());
    });
}

void WirelessDocument::raiseOnUTag(const std::u16string& tagName, std::int32_t count) {
    for (std::int32_t i = 0; i < count; ++i) {
        std::u16string strTagName = tagName; // a handler may change it
        m_events.raise(&__WirelessDocument::OnUTag, strTagName);
    }
}

} // namespace tessaly
