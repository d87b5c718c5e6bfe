#include "platform/controls/HeadlessRichText.h"

#include "platform/files/TextCodec.h"
#include "util/Integers.h"

#include <algorithm>

namespace tessaly {

namespace {

std::size_t clamp(std::int32_t value, std::size_t most) {
    return std::min(static_cast<std::size_t>(std::max(value, 0)), most);
}

} // namespace

void HeadlessRichText::Text(const std::u16string& text) {
    m_text = text;
    m_start = 0;
    m_length = 0;
}

std::int32_t HeadlessRichText::SelStart() {
    return toInteger<std::int32_t>(m_start);
}

void HeadlessRichText::SelStart(std::int32_t start) {
    m_start = clamp(start, m_text.size());
    m_start -= static_cast<std::size_t>(cutsPair(m_start));
    m_length = 0;
}

std::int32_t HeadlessRichText::SelLength() {
    return toInteger<std::int32_t>(m_length);
}

void HeadlessRichText::SelLength(std::int32_t length) {
    m_length = clamp(length, m_text.size() - m_start);
    m_length += static_cast<std::size_t>(cutsPair(m_start + m_length));
}

void HeadlessRichText::SelText(const std::u16string& text) {
    m_text.replace(m_start, m_length, text);
    m_start += text.size();
    m_start += static_cast<std::size_t>(cutsPair(m_start)); // halves that came to stand together
    m_length = 0;
}

bool HeadlessRichText::cutsPair(std::size_t place) const {
    return place > 0 && place < m_text.size() && isHighSurrogate(m_text[place - 1]) &&
           isLowSurrogate(m_text[place]);
}

} // namespace tessaly
