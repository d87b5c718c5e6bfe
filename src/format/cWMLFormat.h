#pragma once

#include "external/Controls.h"
#include "format/IFormat.h"

#include <memory>

namespace tessaly {

struct FormatCommand;

/// The formatter of a WML document, made by the document alone.
class cWMLFormat final : public IFormat {
public:
    ~cWMLFormat() override;
    cWMLFormat(const cWMLFormat&) = delete;
    cWMLFormat& operator=(const cWMLFormat&) = delete;
    cWMLFormat(cWMLFormat&&) = delete;
    cWMLFormat& operator=(cWMLFormat&&) = delete;

    void exec(const std::u16string& strFormatting) override;
    void MuRtb(const ObjectRef& rtb) override;
    void browser(const ObjectRef& browser) override;
    std::shared_ptr<colWMLFormats> formats() override { return m_formats; }
    void view(std::int16_t vw) override { m_view = vw; }
    ObjectRef icon(const Value& strFormat) override;
    ObjectRef iconSmall(const Value& strFormat) override;
    void init(const std::shared_ptr<clWMLEventProxy>& proxy) override { m_Proxy = proxy; }
    EventSource<IFormatEvents>& events() override { return m_events; }

private:
    friend class WirelessDocument;
    cWMLFormat();

    void execInMarkup(const FormatCommand& command);
    void execInPage(const FormatCommand& command);
    void pasteIntoSelection(const FormatCommand& command);
    void alignParagraph(const std::u16string& alignment);

    /// The page in the browser control, fetched again for each use: a navigation replaces it.
    std::shared_ptr<HTMLDocument> page() const;

    std::shared_ptr<RichTextControl> m_MuRtb;
    std::shared_ptr<BrowserControl> m_browser;
    std::shared_ptr<colWMLFormats> m_formats;
    std::int32_t m_view = 0;
    std::shared_ptr<clWMLEventProxy> m_Proxy;
    EventSource<IFormatEvents> m_events;
};

} // namespace tessaly
