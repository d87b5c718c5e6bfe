#pragma once

#include "ravikit/validity/Dtd.h"
#include "ravikit/xml/Tree.h"

#include <memory>
#include <string>

namespace tessaly {

/// The tree of `text`, with the entities of `dtd`. The last tree of the process is remembered by
/// its text: to judge a text, to make a DOM of it and to convert it takes one parse. A tree is
/// never changed, so that any number of threads may hold it. A text of many megabytes is not kept
/// alive for the sake of this.
std::shared_ptr<const ravikit::Tree> treeOf(const std::u16string& text,
                                            const std::shared_ptr<const ravikit::Dtd>& dtd);

/// Remembers a tree that somebody parsed with the entities of `dtd` and is about to use.
void rememberTree(std::shared_ptr<const ravikit::Tree> tree,
                  const std::shared_ptr<const ravikit::Dtd>& dtd);

} // namespace tessaly
