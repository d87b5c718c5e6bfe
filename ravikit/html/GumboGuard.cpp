#include "ravikit/html/GumboGuard.h"

#include "ravikit/html/AttributeCost.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>
#include <type_traits>

namespace ravikit {

namespace {

// A tag costs a few units for each level that it stands at, so that a page of 50 levels stays below
// 50 units a byte.
constexpr std::size_t workForAll = 300'000'000;
constexpr std::size_t workPerByte = 50;

// A tag of three letters becomes a node of some two hundred bytes.
constexpr std::size_t bytesForAll = 64 << 20;
constexpr std::size_t bytesPerByte = 300;

// Often enough for a good estimate, seldom enough to cost nothing beside the parser's own walks.
constexpr std::size_t nodesBetweenMeasures = 32;

} // namespace

/// Stands in front of each piece of memory that the parser has.
struct alignas(std::max_align_t) GumboGuard::Block {
    Block* previous;
    Block* next;
    std::size_t size;
};

GumboGuard::GumboGuard(std::string_view html, GumboTag context, GumboNamespaceEnum contextNamespace)
    : m_workAllowed(workForAll + workPerByte * html.size())
    , m_bytesAllowed(bytesForAll + bytesPerByte * html.size()) {
    if (const auto tag = costlyTag(html, m_workAllowed)) {
        throw PageTooCostly(*tag);
    }
    GumboOptions options = kGumboDefaultOptions;
    options.allocator = allocate;
    options.deallocator = release;
    options.userdata = this;
    options.max_errors = 0;
    options.fragment_context = context;
    options.fragment_namespace = contextNamespace;
    try {
        // The parser holds nothing but this memory, so that a failure may pass through it.
        m_output = gumbo_parse_with_options(&options, html.data(), html.size());
    } catch (...) {
        freeAll();
        throw;
    }
}

GumboGuard::~GumboGuard() {
    freeAll();
}

void GumboGuard::freeAll() {
    while (m_blocks != nullptr) {
        Block* const block = m_blocks;
        m_blocks = block->next;
        std::free(block);
    }
}

void GumboGuard::measureDepth() {
    ++m_unmeasured;
    if (m_newest == nullptr || m_unmeasured < nodesBetweenMeasures) {
        return;
    }
    // The block may be a string or a table of pointers of the same size. Pointers are larger than
    // the number of a kind, and the parser keeps no zeros in strings: one that begins like a number
    // is of one unit, with nothing but zeros after it.
    std::underlying_type_t<GumboNodeType> kind = 0;
    std::memcpy(&kind, m_newest, sizeof kind);
    const bool isText = kind == GUMBO_NODE_TEXT || kind == GUMBO_NODE_WHITESPACE;
    if (kind != GUMBO_NODE_ELEMENT && !isText) {
        return;
    }
    // An element that a text is before comes into being before that text does, and has no place.
    const auto& node = *static_cast<const GumboNode*>(m_newest);
    if (node.parent == nullptr) {
        return;
    }
    m_unmeasured = 0;
    const GumboSourcePosition& start = isText ? node.v.text.start_pos : node.v.element.start_pos;
    m_offset = std::max<std::size_t>(m_offset, start.offset);
    m_depth = 0;
    for (const GumboNode* at = &node; at != nullptr; at = at->parent) {
        ++m_depth;
    }
}

void GumboGuard::charge(std::size_t size) {
    if (size == sizeof(GumboNode)) {
        measureDepth(); // by the node before, which mostly has its place in the tree by now
        m_attributes = 0;
    } else if (size == sizeof(GumboAttribute)) {
        ++m_attributes;
    }
    m_work += m_depth + m_attributes;
    m_bytes += size;
    if (m_work > m_workAllowed || m_bytes > m_bytesAllowed) {
        throw PageTooCostly(m_offset);
    }
}

void* GumboGuard::allocate(void* guard, std::size_t size) {
    auto& self = *static_cast<GumboGuard*>(guard);
    self.charge(size);
    // Zeros, so that a block can be looked at before the parser has filled it.
    void* const memory = std::calloc(1, sizeof(Block) + size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    auto* const block = new (memory) Block{nullptr, self.m_blocks, size};
    if (self.m_blocks != nullptr) {
        self.m_blocks->previous = block;
    }
    self.m_blocks = block;
    if (size == sizeof(GumboNode)) {
        self.m_newest = block + 1;
    }
    return block + 1;
}

void GumboGuard::release(void* guard, void* memory) {
    if (memory == nullptr) {
        return;
    }
    auto& self = *static_cast<GumboGuard*>(guard);
    Block* const block = static_cast<Block*>(memory) - 1;
    if (memory == self.m_newest) {
        self.m_newest = nullptr;
    }
    self.m_bytes -= block->size;
    (block->previous != nullptr ? block->previous->next : self.m_blocks) = block->next;
    if (block->next != nullptr) {
        block->next->previous = block->previous;
    }
    std::free(block);
}

} // namespace ravikit
