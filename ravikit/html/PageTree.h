#pragma once

#include "ravikit/html/PageTags.h"
#include "ravikit/text/Problem.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ravikit {

/// A text or an element of a page. The nodes stand in document order.
struct PageNode {
    std::uint32_t next = 0; ///< the first node after the subtree
    PageTag tag = PageTag::None;
    std::uint32_t begin = 0; ///< of an element, where its tag is in the HTML; see PageTree::placeOf
    std::uint32_t firstAttribute = 0;
    std::uint32_t attributes = 0;
    std::u16string_view text; ///< of a text, its characters; of an element, its name
};

/// An HTML page, parsed: elements and texts, and what a deck can use of the attributes. Comments
/// and what stands in scripts and styles are left out.
class PageTree {
public:
    struct Attribute {
        std::u16string_view name; ///< in any case of letters
        std::u16string_view value;
    };

    const std::vector<PageNode>& nodes() const { return m_nodes; }
    std::uint32_t size() const { return static_cast<std::uint32_t>(m_nodes.size()); }
    const PageNode& operator[](std::uint32_t node) const { return m_nodes[node]; }

    /// The attribute at `index`, from 0, as written.
    const Attribute& attributeAt(std::uint32_t node, std::uint32_t index) const {
        return m_attributes[m_nodes[node].firstAttribute + index];
    }

    /// The attribute named `lower`; null if there is none.
    const Attribute* attribute(std::uint32_t node, std::u16string_view lower) const;
    std::u16string_view value(std::uint32_t node, std::u16string_view lower) const;

    /// What was left out first that a reader of the page could miss; null if nothing was.
    const PageNode* dropped() const { return m_dropped ? &*m_dropped : nullptr; }

    /// The offset in `html`, which the page was read from, of an element's `begin`, in units.
    std::uint32_t placeOf(std::uint32_t begin, std::u16string_view html) const;

    // For the readers.
    std::uint32_t open(PageTag tag, std::u16string_view name, std::uint32_t begin);
    void addAttribute(std::u16string_view name, std::u16string_view value);
    void addText(std::u16string_view text);
    void close(std::uint32_t node) { m_nodes[node].next = size(); }
    void noteDropped(std::u16string_view name, std::uint32_t begin) {
        m_dropped = m_dropped ? m_dropped : PageNode{.begin = begin, .text = name};
    }
    /// `begin` is counted in bytes of UTF-8 from here on.
    void countBytes() { m_countsBytes = true; }
    /// Keeps a copy of `text` as long as the tree.
    std::u16string_view keep(std::u16string_view text);
    void clear();
    void reserve(std::size_t nodes) {
        m_nodes.reserve(nodes);
        m_attributes.reserve(nodes);
    }

private:
    static constexpr std::size_t largestChunk = 1 << 16;
    std::vector<PageNode> m_nodes;
    std::vector<Attribute> m_attributes;
    std::vector<std::unique_ptr<char16_t[]>> m_chunks;
    std::size_t m_chunkUnits = 1 << 9; ///< of the last chunk
    char16_t* m_free = nullptr;
    std::size_t m_room = 0;
    std::optional<PageNode> m_dropped;
    bool m_countsBytes = false;
};

/// The attribute that a browser shows of an element in place of a content: `alt` of a picture,
/// `value` of a field, `label` of a group of options. Empty if there is none.
std::u16string_view shownOnPage(const PageTree& page, std::uint32_t node);

/// Reads `html` as it stands, which must outlive the tree: every tag is one, every element is
/// closed by its own end tag. False if it isn't so, and if a browser would read it in another way
/// for the sake of an element with rules of its own; the tree is then of no use.
bool readLiterally(std::u16string_view html, PageTree& page);

/// Reads `html` as a browser does. False, with the reason in `problems`, if it is nested beyond
/// what can be read in bounded time.
bool readAsBrowser(std::u16string_view html, PageTree& page, Problems& problems);

} // namespace ravikit
