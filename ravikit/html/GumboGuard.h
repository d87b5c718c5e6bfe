#pragma once

#include <gumbo.h>

#include <cstddef>
#include <exception>
#include <string_view>

namespace ravikit {

/// Thrown where a page costs more to read than its size allows.
class PageTooCostly : public std::exception {
public:
    explicit PageTooCostly(std::size_t offset)
        : m_offset(offset) {}
    /// About where the reading stood: the offset, in bytes, of one of the last elements read.
    std::size_t offset() const { return m_offset; }
    const char* what() const noexcept override { return "The page is nested too deeply"; }

private:
    std::size_t m_offset;
};

/// One run of the HTML parser under guard, and the memory of its tree.
///
/// The parser walks its stack of open elements for most tags, compares each attribute with all
/// others of its tag, and gives its tree back by recursion: a million nested `div`s would keep it
/// busy for many minutes, and end in a stack overflow. So it gets its memory from here. The blocks
/// are listed, and the list is freed without a look at the tree; and each request for memory is a
/// step of the parser that is charged by how deep it stands. A page that costs more than its size
/// allows ends the run.
class GumboGuard {
public:
    /// Parses `html`, which is UTF-8 and stays alive as long as this object. With a context of
    /// GUMBO_TAG_LAST it is a whole document, otherwise the content of such an element. A page
    /// that costs too much throws PageTooCostly.
    GumboGuard(std::string_view html, GumboTag context, GumboNamespaceEnum contextNamespace);
    GumboGuard(const GumboGuard&) = delete;
    GumboGuard& operator=(const GumboGuard&) = delete;
    GumboGuard(GumboGuard&&) = delete;
    GumboGuard& operator=(GumboGuard&&) = delete;
    ~GumboGuard();

    /// The `html` element; of a fragment the element that holds its nodes.
    const GumboNode& root() const { return *m_output->root; }

private:
    struct Block;

    static void* allocate(void* guard, std::size_t size);
    static void release(void* guard, void* memory);
    void charge(std::size_t size);
    void measureDepth();
    void freeAll();

    Block* m_blocks = nullptr;
    const void* m_newest = nullptr; // of the size of a node
    std::size_t m_unmeasured = 0;
    std::size_t m_offset = 0; // of an element that was measured
    std::size_t m_depth = 0;
    std::size_t m_attributes = 0;
    std::size_t m_work = 0;
    std::size_t m_workAllowed;
    std::size_t m_bytes = 0;
    std::size_t m_bytesAllowed;
    const GumboOutput* m_output = nullptr;
};

} // namespace ravikit
