#pragma once

#include "external/Controls.h"

#include <cstddef>
#include <string>

namespace tessaly {

/// A rich-text control without a window. The selection always lies inside the text and never cuts a
/// surrogate pair: a start or length that would is moved to the nearest place that takes the pair
/// in. A place outside the text means its nearer end.
class HeadlessRichText : public RichTextControl {
public:
    std::u16string Text() override { return m_text; }
    /// Puts the selection, empty, at the start.
    void Text(const std::u16string& text) override;

    bool Visible() override { return m_visible; }
    void Visible(bool visible) override { m_visible = visible; }

    std::int32_t SelStart() override;
    /// Makes the selection empty.
    void SelStart(std::int32_t start) override;

    std::int32_t SelLength() override;
    void SelLength(std::int32_t length) override;

    std::u16string SelText() override { return m_text.substr(m_start, m_length); }
    /// Puts the selection, empty, after what was written.
    void SelText(const std::u16string& text) override;

private:
    bool cutsPair(std::size_t place) const;

    std::u16string m_text;
    std::size_t m_start = 0;
    std::size_t m_length = 0;
    bool m_visible = false;
};

} // namespace tessaly
