#pragma once

#include "util/Object.h"
#include "util/Value.h"

#include <cstdint>
#include <memory>
#include <string>

namespace tessaly {

class IHTMLElementCollection;

/// An element of the page in a browser control.
class IHTMLElement : public virtual Object {
public:
    /// In capital letters.
    virtual std::u16string tagName() = 0;

    /// `flags` 0: the name is taken without regard to case.
    virtual void setAttribute(const std::u16string& name, const Value& value,
                              std::int32_t flags) = 0;

    /// The same for an element at every call, and different between elements.
    virtual std::u16string uniqueID() = 0;

    /// All elements inside this one, at any depth.
    virtual std::shared_ptr<IHTMLElementCollection> all() = 0;

    virtual std::shared_ptr<IHTMLElement> parentElement() = 0;

    /// The text that a reader sees.
    virtual std::u16string innerText() = 0;

    /// Writing takes HTML text; on the body it may begin with a BODY tag.
    virtual std::u16string innerHTML() = 0;
    virtual void innerHTML(const std::u16string& html) = 0;

    virtual std::u16string outerHTML() = 0;
};

/// A list of elements in document order.
class IHTMLElementCollection : public virtual Object {
public:
    virtual std::int32_t length() = 0;

    /// The element at `index`, from 0; none outside the list.
    virtual std::shared_ptr<IHTMLElement> item(std::int32_t index) = 0;
};

/// A stretch of text in the page.
class IHTMLTxtRange : public virtual Object {
public:
    virtual std::u16string text() = 0;
    virtual void pasteHTML(const std::u16string& html) = 0;

    /// The innermost element that holds the whole range.
    virtual std::shared_ptr<IHTMLElement> parentElement() = 0;
};

/// Selected objects of the page, such as a picture.
class IHTMLControlRange : public virtual Object {
public:
    /// The object at `index`, from 0; without an index the first.
    virtual std::shared_ptr<IHTMLElement> Item(const Value& index = {}) = 0;
};

class IHTMLSelectionObject : public virtual Object {
public:
    /// "None", "Text" or "Control".
    virtual std::u16string type() = 0;

    /// An IHTMLControlRange where `type` is "Control", else an IHTMLTxtRange.
    virtual ObjectRef createRange() = 0;
};

/// The page in a browser control.
class HTMLDocument : public virtual Object {
public:
    /// None while the page is still empty.
    virtual std::shared_ptr<IHTMLElement> body() = 0;

    /// Acts on the selection: "Selectall", "Bold", "Italic", "Underline". False if the command
    /// could not be carried out.
    virtual bool execCommand(const std::u16string& command) = 0;

    /// The same with a value: "FontSize", False, "3".
    virtual bool execCommand(const std::u16string& command, bool showInterface,
                             const Value& value) = 0;

    /// By name, without regard to case.
    virtual std::shared_ptr<IHTMLElementCollection>
    getElementsByTagName(const std::u16string& name) = 0;

    virtual std::shared_ptr<IHTMLSelectionObject> selection() = 0;
};

} // namespace tessaly
