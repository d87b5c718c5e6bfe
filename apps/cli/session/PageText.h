#pragma once

#include <string>

namespace cli {

/// The text that a reader of the HTML page `html` (UTF-8) would see: a line a block, table cells
/// parted by tabs, pictures by their alternative text, form fields by what they hold.
std::string pageText(const std::string& html);

} // namespace cli
