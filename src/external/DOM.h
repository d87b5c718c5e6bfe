#pragma once

#include "util/Object.h"

#include <cstdint>
#include <memory>
#include <string>

namespace tessaly {

class IXMLDOMNodeList;

/// A node of a parsed deck. It keeps the whole document alive.
class IXMLDOMNode : public virtual Object {
public:
    /// The node as markup text: the slice of the source that it stands in. Empty for an empty
    /// document.
    virtual std::u16string xml() = 0;

    /// The nodes that the location path `pattern` selects, starting here, in document order: names,
    /// `*`, `.`, `..`, `@`, `/`, `//`, `|`, `[n]`, `[@a='v']`. Any other pattern fails with
    /// InvalidArgument.
    virtual std::shared_ptr<IXMLDOMNodeList> selectNodes(const std::u16string& pattern) = 0;

    /// The nodes directly inside this one, attributes not counted.
    virtual std::shared_ptr<IXMLDOMNodeList> childNodes() = 0;
};

/// An ordered list of nodes, fixed when it was made.
class IXMLDOMNodeList : public virtual Object {
public:
    virtual std::int32_t length() = 0;

    /// The node at `index`, from 0; none, without a failure, outside the list.
    virtual std::shared_ptr<IXMLDOMNode> item(std::int32_t index) = 0;
};

/// A parsed deck. It never changes, so that it may remember answers.
class IXMLDOMDocument2 : public IXMLDOMNode {
public:
    /// All elements of this name, exact in case, in document order; "*" means every element.
    virtual std::shared_ptr<IXMLDOMNodeList> getElementsByTagName(const std::u16string& name) = 0;
};

} // namespace tessaly
