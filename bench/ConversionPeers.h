#pragma once

#include <string>
#include <string_view>

namespace bench {

/// A stylesheet that libxslt runs.
class Stylesheet {
public:
    /// Reads the one in the file `path`.
    explicit Stylesheet(const std::string& path);
    ~Stylesheet();
    Stylesheet(const Stylesheet&) = delete;
    Stylesheet& operator=(const Stylesheet&) = delete;
    Stylesheet(Stylesheet&&) = delete;
    Stylesheet& operator=(Stylesheet&&) = delete;

    /// Parses `markup` in UTF-8, transforms it, and gives the page as text; empty if it failed.
    std::string apply(std::string_view markup) const;

    static std::string version();

private:
    void* m_stylesheet;
};

/// What libtidy makes of an HTML page in UTF-8: XHTML as text. Empty if it failed.
std::string tidied(std::string_view html);
std::string tidyVersion();

/// Reads an HTML page in UTF-8 with libxml2 and collects its texts in order and the names of its
/// elements.
struct HtmlWalk {
    explicit HtmlWalk(std::string_view html);

    std::string text;
    std::string names;
};

} // namespace bench
