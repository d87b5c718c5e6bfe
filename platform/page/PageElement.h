#pragma once

#include "external/HTMLDocument.h"
#include "platform/page/dom/Dom.h"
#include "platform/page/dom/PageWriter.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tessaly::page {

/// What the objects that a page hands out share.
struct PageState {
    std::shared_ptr<Dom> dom;
    Writing writing = Writing::Modern;
};

/// An element that a page hands out. Removed from the page, it lives on with all that it holds.
class PageElement : public IHTMLElement {
public:
    PageElement(const PageState& page, Node& node);

    std::u16string tagName() override;
    /// A number is written in decimal, a Boolean as `true` or `false`, no value as the empty
    /// string; an object fails with TypeMismatch. A name that HTML cannot write fails with
    /// InvalidArgument. Bit 0 of `flags` makes the name exact in case.
    void setAttribute(const std::u16string& name, const Value& value, std::int32_t flags) override;
    std::u16string uniqueID() override;
    std::shared_ptr<IHTMLElementCollection> all() override;
    std::shared_ptr<IHTMLElement> parentElement() override;
    std::u16string innerText() override;
    std::u16string innerHTML() override;
    /// The body takes over the attributes of a BODY tag that the text begins with, and keeps those
    /// that the tag does not name. Text that is nested too deeply fails, and nothing has changed.
    void innerHTML(const std::u16string& html) override;
    std::u16string outerHTML() override;

    Dom& dom() const { return m_pin.dom(); }
    Node& node() const { return m_pin.node(); }

private:
    PageState state() const { return {m_pin.sharedDom(), m_writing}; }

    Pin m_pin;
    Writing m_writing;
};

/// The elements inside a node, or from it on, that have a name, as they are at each call: a change
/// of the page shows in the list.
class PageElements : public IHTMLElementCollection {
public:
    enum class Root : std::uint8_t { Excluded, Included };

    /// No name stands for every name.
    PageElements(const PageState& page, Node& node, Root root, std::optional<std::u16string> name);

    std::int32_t length() override;
    std::shared_ptr<IHTMLElement> item(std::int32_t index) override;

private:
    const std::vector<Node*>& members();

    Pin m_root;
    Writing m_writing;
    Root m_withRoot;
    std::optional<std::u16string> m_name;
    std::vector<Node*> m_members;
    std::optional<std::uint64_t> m_version;
};

/// The element for `node`, none for null.
std::shared_ptr<IHTMLElement> elementFor(const PageState& page, Node* node);

} // namespace tessaly::page
