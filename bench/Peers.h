#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace bench {

/// libxml2 doing the same work. Every answer is checked by the caller before it is measured.
class LibXml {
public:
    /// Parses the DTD in the file `dtdPath`, which the whole run shares.
    explicit LibXml(const std::string& dtdPath);
    ~LibXml();
    LibXml(const LibXml&) = delete;
    LibXml& operator=(const LibXml&) = delete;
    LibXml(LibXml&&) = delete;
    LibXml& operator=(LibXml&&) = delete;

    /// Parses `text` in UTF-8, judges it, and drops the tree: true if it is valid.
    bool parseAndJudge(std::string_view text) const;

    /// A parsed text, of an opaque type.
    static std::shared_ptr<void> parse(std::string_view text);

    /// Selects all cards and takes the markup of each: its length in bytes, all cards together.
    static std::size_t cardsMarkup(void* document);

    static std::string version();

private:
    void* m_dtd;
};

/// pugixml, which parses and does not judge.
class Pugi {
public:
    /// How much of the text the tree keeps: all but white space between tags (`parse_full`), or
    /// that as well, as the lossless tree does.
    enum class Kept { Full, FullAndBlanks };

    /// Parses `text` in UTF-8: a tree of an opaque type, or none if it is refused.
    static std::shared_ptr<void> parse(std::string_view text, Kept kept);

    static std::string version();
};

} // namespace bench
