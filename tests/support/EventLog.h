#pragma once

#include "support/Text.h"
#include "tessaly.h"

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace support {

/// Writes down the events of a document or a project. `hooks` run inside the event of that name.
class EventLog : public tessaly::__WirelessDocument, public tessaly::__clProject {
public:
    explicit EventLog(std::vector<std::string>& lines)
        : m_lines(lines) {}
    void OnRefresh() override { heard("OnRefresh"); }
    void OnSetCurrentDocument() override { heard("OnSetCurrentDocument"); }
    void OnViewChange() override { heard("OnViewChange"); }
    void OnParseError(std::shared_ptr<tessaly::ParseError>& err) override {
        heard("OnParseError", " " + ascii(err->reason()));
    }
    void OnClearErrors() override { heard("OnClearErrors"); }
    void OnDocDirty() override { heard("OnDocDirty"); }
    void OnDocAdd(std::u16string& name) override { heard("OnDocAdd", " " + ascii(name)); }
    void OnUTag(std::u16string& name) override {
        heard("OnUTag", " " + ascii(std::exchange(name, u"changed")));
    }
    void OnAdd2UndoStack(std::int32_t& lStart, std::u16string& txt, std::u16string& delText,
                         std::int32_t& action) override {
        heard("OnAdd2UndoStack", " " + std::to_string(lStart) + " [" + ascii(txt) + "] [" +
                                     ascii(delText) + "] " + std::to_string(action));
    }

    std::map<std::string, std::function<void()>> hooks;

private:
    void heard(const std::string& event, const std::string& details = {}) {
        m_lines.push_back(event + details);
        if (const auto hook = hooks.find(event); hook != hooks.end()) {
            const std::function<void()> run = hook->second; // it may replace itself
            run();
        }
    }
    std::vector<std::string>& m_lines;
};

} // namespace support
