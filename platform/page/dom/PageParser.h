#pragma once

#include "platform/page/dom/Dom.h"

#include <string>

namespace tessaly::page {

/// Parses a whole page and returns its `html` element, which has a body. A half surrogate pair
/// becomes U+FFFD. Fails for a page that is nested too deeply or too large.
Node& parsePage(Dom& dom, const std::u16string& html);

/// Parses what is to stand inside `context`, and returns an element in no tree that holds it.
/// Fails as `parsePage`.
Node& parseFragment(Dom& dom, const std::u16string& html, const Node& context);

} // namespace tessaly::page
