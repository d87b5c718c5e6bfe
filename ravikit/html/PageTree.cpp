#include "ravikit/html/PageTree.h"

#include "ravikit/html/Style.h"
#include "ravikit/text/Chars.h"

#include <algorithm>

namespace ravikit {

const PageTree::Attribute* PageTree::attribute(std::uint32_t node,
                                               std::u16string_view lower) const {
    const PageNode& element = m_nodes[node];
    for (std::uint32_t i = 0; i < element.attributes; ++i) {
        const Attribute& attribute = m_attributes[element.firstAttribute + i];
        if (sameWord(attribute.name, lower)) {
            return &attribute;
        }
    }
    return nullptr;
}

std::u16string_view PageTree::value(std::uint32_t node, std::u16string_view lower) const {
    const Attribute* const found = attribute(node, lower);
    return found == nullptr ? std::u16string_view() : found->value;
}

std::uint32_t PageTree::open(PageTag tag, std::u16string_view name, std::uint32_t begin) {
    m_nodes.push_back({.next = size() + 1,
                       .tag = tag,
                       .begin = begin,
                       .firstAttribute = static_cast<std::uint32_t>(m_attributes.size()),
                       .attributes = 0,
                       .text = name});
    return size() - 1;
}

void PageTree::addAttribute(std::u16string_view name, std::u16string_view value) {
    m_attributes.push_back({name, value});
    ++m_nodes.back().attributes;
}

void PageTree::addText(std::u16string_view text) {
    if (!text.empty()) {
        m_nodes.push_back({.next = size() + 1, .text = text});
    }
}

std::u16string_view PageTree::keep(std::u16string_view text) {
    if (text.size() > m_room) {
        m_chunkUnits = std::min(m_chunkUnits * 2, largestChunk);
        m_room = std::max(text.size(), m_chunkUnits);
        m_chunks.push_back(std::make_unique_for_overwrite<char16_t[]>(m_room));
        m_free = m_chunks.back().get();
    }
    std::copy(text.begin(), text.end(), m_free);
    const std::u16string_view kept(m_free, text.size());
    m_free += text.size();
    m_room -= text.size();
    return kept;
}

std::uint32_t PageTree::placeOf(std::uint32_t begin, std::u16string_view html) const {
    if (!m_countsBytes) {
        return begin;
    }
    std::size_t at = 0;
    for (std::uint32_t bytes = 0; bytes < begin && at < html.size();) {
        const char32_t c = codePointAt(html, at);
        const bool isReplaced = c == 0 || (c >= 0xD800 && c <= 0xDFFF);
        bytes += c < 0x80 && !isReplaced    ? 1U
                 : c < 0x800 && !isReplaced ? 2U
                 : c < 0x10000              ? 3U
                                            : 4U;
        at += unitsOf(c);
    }
    return static_cast<std::uint32_t>(at);
}

void PageTree::clear() {
    m_nodes.clear();
    m_attributes.clear();
    m_dropped.reset();
    m_countsBytes = false;
}

std::u16string_view shownOnPage(const PageTree& page, std::uint32_t node) {
    switch (page[node].tag) {
    case PageTag::Img:
        return page.value(node, u"alt");
    case PageTag::Input:
        return page.value(node, u"value");
    case PageTag::Optgroup:
        return page.value(node, u"label");
    default:
        return {};
    }
}

} // namespace ravikit
