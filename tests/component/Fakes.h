#pragma once

// Everything that the component asks of the outside, as fakes that log each call into the world.

#include "FakeDisk.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace fakes {

class NodeList : public IXMLDOMNodeList {
public:
    std::int32_t length() override { return static_cast<std::int32_t>(nodes.size()) + unseen; }
    std::shared_ptr<IXMLDOMNode> item(std::int32_t index) override {
        const bool inside = index >= 0 && index < static_cast<std::int32_t>(nodes.size());
        return inside ? nodes[static_cast<std::size_t>(index)] : nullptr;
    }
    std::vector<std::shared_ptr<IXMLDOMNode>> nodes;
    std::int32_t unseen = 0; // a longer list without the nodes
};

/// Text with tags, cut up by plain search: enough to count elements and to slice them out.
class Node : public IXMLDOMDocument2 {
public:
    explicit Node(std::u16string text)
        : m_text(std::move(text)) {}
    std::u16string xml() override { return m_text; }
    std::shared_ptr<IXMLDOMNodeList> selectNodes(const std::u16string& pattern) override {
        call("selectNodes", pattern);
        return getElementsByTagName(pattern.substr(2));
    }
    std::shared_ptr<IXMLDOMNodeList> childNodes() override {
        auto list = std::make_shared<NodeList>();
        if (m_text.find(u'>') + 1 < m_text.rfind(u'<')) {
            list->nodes.push_back(std::make_shared<Node>(u"content"));
        }
        return list;
    }
    std::shared_ptr<IXMLDOMNodeList> getElementsByTagName(const std::u16string& name) override {
        auto list = std::make_shared<NodeList>();
        const std::u16string open = u"<" + name + u">";
        const std::u16string close = u"</" + name + u">";
        for (auto at = m_text.find(open); at != m_text.npos; at = m_text.find(open, at + 1)) {
            const std::size_t end = m_text.find(close, at) + close.size();
            list->nodes.push_back(std::make_shared<Node>(m_text.substr(at, end - at)));
        }
        return list;
    }

private:
    std::u16string m_text;
};

/// Text that holds ILLFORMED gives the empty document.
class FakeRavik : public Ravik {
public:
    std::shared_ptr<IXMLDOMDocument2> parseMarkup(const std::u16string& text, bool validate,
                                                  bool flagB) override {
        call("parseMarkup", text, validate, flagB);
        return std::make_shared<Node>(text.find(u"ILLFORMED") == text.npos ? text : u"");
    }
    void setDtdPath(std::int32_t kind, const std::u16string& path) override {
        call("setDtdPath", kind, path);
    }
    void setSchemaPath(std::int32_t kind, const std::u16string& path) override {
        call("setSchemaPath", kind, path);
    }
    std::u16string importDoctypedText(const std::u16string& text) override {
        return got("importDoctypedText", u"imported:" + text);
    }
    std::u16string exportText(const std::u16string& text) override {
        return got("exportText", u"exported:" + text);
    }
    std::u16string importBareText(const std::u16string& text) override {
        return got("importBareText", text);
    }
};

class FakeParseError : public ParseError {
public:
    std::int32_t number() const override { return 1; }
    std::int32_t line() const override { return 1; }
    std::int32_t column() const override { return 1; }
    std::int32_t position() const override { return 0; }
    std::int32_t length() const override { return 0; }
    std::u16string sourceLine() const override { return {}; }
    std::u16string reason() const override { return u"refused"; }
    std::shared_ptr<ParseError> next() const override { return nullptr; }
};

/// Text that holds REFUSED or ILLFORMED is neither valid nor converted.
class FakeTolmek : public Tolmek {
public:
    bool convertText(std::int32_t fromKind, std::int32_t toKind, std::u16string& text,
                     bool strict) override {
        call("convertText", fromKind, toKind, text, strict);
        if (!isGood(text)) {
            return false;
        }
        text = (toKind == kindPlain ? u"html:" : u"wml:") + text;
        return true;
    }
    Value loadDtd(std::int32_t kind, const std::u16string& path) override {
        call("loadDtd", kind, path);
        return true;
    }
    std::shared_ptr<ParseError> lastError() override {
        return got("lastError", std::make_shared<FakeParseError>());
    }
    bool isValidText(const std::u16string& text) override {
        call("isValidText", text);
        return isGood(text);
    }

private:
    static bool isGood(const std::u16string& text) {
        return text.find(u"REFUSED") == text.npos && text.find(u"ILLFORMED") == text.npos;
    }
};

class FakeRtb : public RichTextControl {
public:
    std::u16string Text() override { return got("rtb.Text", text); }
    void Text(const std::u16string& value) override { text = put("rtb.Text", value); }
    bool Visible() override { return visible; }
    void Visible(bool value) override { visible = put("rtb.Visible", value); }
    std::int32_t SelStart() override { return start; }
    void SelStart(std::int32_t value) override { start = put("rtb.SelStart", value); }
    std::int32_t SelLength() override { return length; }
    void SelLength(std::int32_t value) override { length = put("rtb.SelLength", value); }
    std::u16string SelText() override {
        return text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(length));
    }
    void SelText(const std::u16string& value) override {
        text.replace(static_cast<std::size_t>(start), static_cast<std::size_t>(length),
                     put("rtb.SelText", value));
    }

    std::u16string text;
    bool visible = false;
    std::int32_t start = 0;
    std::int32_t length = 0;
};

class FakeElement : public IHTMLElement {
public:
    explicit FakeElement(std::u16string tag, std::u16string id = {})
        : m_tag(std::move(tag))
        , m_id(std::move(id)) {}
    std::u16string tagName() override { return m_tag; }
    void setAttribute(const std::u16string& name, const Value& value, std::int32_t flags) override {
        call("setAttribute", m_id, name, std::get<std::u16string>(value), flags);
    }
    std::u16string uniqueID() override { return m_id; }
    std::shared_ptr<IHTMLElementCollection> all() override;
    std::shared_ptr<IHTMLElement> parentElement() override { return parent; }
    std::u16string innerText() override { return got("innerText", text); }
    std::u16string innerHTML() override { return got("innerHTML", html); }
    void innerHTML(const std::u16string& value) override { html = put("innerHTML", value); }
    std::u16string outerHTML() override { return got("outerHTML", u"[" + html + u"]"); }

    std::u16string text;
    std::u16string html;
    std::vector<std::shared_ptr<FakeElement>> inside;
    std::shared_ptr<FakeElement> parent;

private:
    std::u16string m_tag;
    std::u16string m_id;
};

class FakeElements : public IHTMLElementCollection {
public:
    explicit FakeElements(std::vector<std::shared_ptr<FakeElement>> elements)
        : m_elements(std::move(elements)) {}
    std::int32_t length() override { return static_cast<std::int32_t>(m_elements.size()); }
    std::shared_ptr<IHTMLElement> item(std::int32_t index) override {
        return m_elements.at(static_cast<std::size_t>(index));
    }

private:
    std::vector<std::shared_ptr<FakeElement>> m_elements;
};

inline std::shared_ptr<IHTMLElementCollection> FakeElement::all() {
    return std::make_shared<FakeElements>(inside);
}

/// A text range and a control range in one, with the element that either leads to.
class FakeRange : public IHTMLTxtRange, public IHTMLControlRange {
public:
    std::u16string text() override { return selected; }
    void pasteHTML(const std::u16string& html) override { call("pasteHTML", html); }
    std::shared_ptr<IHTMLElement> parentElement() override { return element; }
    std::shared_ptr<IHTMLElement> Item(const Value&) override { return control; }

    std::u16string selected;
    std::shared_ptr<FakeElement> element;
    std::shared_ptr<FakeElement> control;
};

class FakeSelection : public IHTMLSelectionObject {
public:
    std::u16string type() override { return kind; }
    ObjectRef createRange() override { return range; }

    std::u16string kind = u"Text";
    std::shared_ptr<FakeRange> range = std::make_shared<FakeRange>();
};

class FakePage : public HTMLDocument {
public:
    std::shared_ptr<IHTMLElement> body() override { return theBody; }
    bool execCommand(const std::u16string& command) override {
        return got("execCommand " + ascii(command), false);
    }
    bool execCommand(const std::u16string& command, bool show, const Value& value) override {
        call("execCommand", command, show, std::get<std::u16string>(value));
        return false;
    }
    std::shared_ptr<IHTMLElementCollection>
    getElementsByTagName(const std::u16string& name) override {
        call("getElementsByTagName", name);
        std::vector<std::shared_ptr<FakeElement>> found;
        std::copy_if(
            elements.begin(), elements.end(), std::back_inserter(found),
            [&](const auto& element) { return equalIgnoringCase(element->tagName(), name); });
        return std::make_shared<FakeElements>(found);
    }
    std::shared_ptr<IHTMLSelectionObject> selection() override { return theSelection; }

    std::shared_ptr<FakeElement> theBody = std::make_shared<FakeElement>(u"BODY");
    std::vector<std::shared_ptr<FakeElement>> elements;
    std::shared_ptr<FakeSelection> theSelection;
};

class FakeBrowser : public BrowserControl {
public:
    std::shared_ptr<HTMLDocument> Document() override { return page; }
    void Visible(bool visible) override { put("browser.Visible", visible); }
    EventSource<BrowserControlEvents>& events() override { return m_events; }

    std::shared_ptr<FakePage> page = std::make_shared<FakePage>();

private:
    EventSource<BrowserControlEvents> m_events;
};

class FakeListBar : public ListBarControl {};

class FakePictures : public PictureStore {
public:
    ObjectRef picture(const Value& name, PictureKind kind) override {
        call("picture", std::get<std::u16string>(name), static_cast<std::int32_t>(kind));
        return std::make_shared<FakeListBar>();
    }
};

/// The dialog's window. Showing it hands it to `world.onShow`; without that, the user closes it.
class FakeForm : public ModalForm {
public:
    explicit FakeForm(FormLayout window)
        : layout(std::move(window)) {}
    void show() override {
        world.log.emplace_back("show " + ascii(texts[u"lblReason"]));
        if (world.onShow) {
            world.onShow(*this);
        }
    }
    void hide() override { world.log.emplace_back("hide"); }
    std::u16string text(const std::u16string& control) override { return texts[control]; }
    void text(const std::u16string& control, const std::u16string& text) override {
        if (std::exchange(texts[control], text) != text) {
            m_events.raise(&ModalFormEvents::OnChange, control);
        }
    }
    void visible(const std::u16string& control, bool visible) override { shown[control] = visible; }
    void enabled(const std::u16string& control, bool enabled) override { open[control] = enabled; }
    EventSource<ModalFormEvents>& events() override { return m_events; }

    void click(const std::u16string& control) {
        EXPECT_TRUE(shown[control]) << ascii(control);
        m_events.raise(&ModalFormEvents::OnClick, control);
    }

    FormLayout layout;
    std::map<std::u16string, std::u16string> texts;
    std::map<std::u16string, bool> shown;
    std::map<std::u16string, bool> open;

private:
    EventSource<ModalFormEvents> m_events;
};

class FakePlatform : public Platform {
    template <class Interface, class Fake, class... Arguments>
    static std::shared_ptr<Interface> make(const std::string& name, Arguments&&... arguments) {
        call(name);
        return std::make_shared<Fake>(std::forward<Arguments>(arguments)...);
    }

public:
    std::shared_ptr<IXMLDOMDocument2> newDOMDocument() override {
        return make<IXMLDOMDocument2, Node>("newDOMDocument", u"");
    }
    std::shared_ptr<Ravik> newRavik() override { return make<Ravik, FakeRavik>("newRavik"); }
    std::shared_ptr<Tolmek> newTolmek() override { return make<Tolmek, FakeTolmek>("newTolmek"); }
    std::shared_ptr<FileSystemObject> newFileSystemObject() override {
        return make<FileSystemObject, FakeFileSystem>("newFileSystemObject");
    }
    std::shared_ptr<ModalForm> newModalForm(const FormLayout& layout) override {
        return make<ModalForm, FakeForm>("newModalForm", layout);
    }
    MsgBoxAnswer MsgBox(const std::u16string& text, MsgBoxFlags flags,
                        const std::u16string& caption) override {
        call("MsgBox", static_cast<std::int32_t>(flags), u"[" + caption + u"]", text);
        return flags == MsgBoxFlags::ExclamationYesNo ? next(world.answers, MsgBoxAnswer::No)
                                                      : MsgBoxAnswer::Ok;
    }
    std::u16string InputBox(const std::u16string& prompt, const std::u16string& title,
                            const std::u16string& defaultText) override {
        call("InputBox", u"[" + title + u"]", prompt, u"[" + defaultText + u"]");
        return next(world.typed, std::u16string());
    }
    void DoEvents() override {
        call("DoEvents");
        if (world.onDoEvents) {
            world.onDoEvents();
        }
    }
    std::u16string temporaryFolder() override { return u"C:\\Temp\\"; }
    Date now() override { return 40000; }
    std::int32_t textWidth(std::int32_t, const std::u16string&) override { return 0; }
    std::shared_ptr<PictureStore> pictures() override { return std::make_shared<FakePictures>(); }
};

/// Logs the events of a document or a project. `hooks` run inside the event.
class Sink : public __WirelessDocument, public __clProject {
public:
    void OnRefresh() override { heard("OnRefresh"); }
    void OnSetCurrentDocument() override { heard("OnSetCurrentDocument"); }
    void OnViewChange() override { heard("OnViewChange"); }
    void OnParseError(std::shared_ptr<ParseError>& err) override {
        heard("OnParseError", err->reason());
    }
    void OnClearErrors() override { heard("OnClearErrors"); }
    void OnDocDirty() override { heard("OnDocDirty"); }
    void OnDocAdd(std::u16string& strDocName) override { heard("OnDocAdd", strDocName); }
    void OnUTag(std::u16string& strTagName) override {
        heard("OnUTag", std::exchange(strTagName, u"changed"));
    }
    void OnAdd2UndoStack(std::int32_t& lStart, std::u16string& txt, std::u16string& delText,
                         std::int32_t& action) override {
        heard("OnAdd2UndoStack", lStart, u"[" + txt + u"]", u"[" + delText + u"]", action);
    }

    std::map<std::string, std::function<void()>> hooks;

private:
    template <class... Arguments>
    void heard(const std::string& event, const Arguments&... arguments) {
        call(event, arguments...);
        const auto hook = hooks.find(event);
        if (hook != hooks.end()) {
            const std::function<void()> run = hook->second; // it may replace itself
            run();
        }
    }
};

/// A test in a new world, with a project that is not listened to yet.
class Component : public testing::Test {
protected:
    Component() {
        world = {};
        Platform::install(std::make_shared<FakePlatform>());
        project = std::make_shared<clProject>();
    }

    /// A document of the project with both controls, which is listened to.
    std::shared_ptr<WirelessDocument> build(std::u16string deck) {
        project->Documents()->Clear();
        auto doc = project->Documents()->Add(u"C:\\App", u"deck", deck, browser, rtb, nullptr,
                                             project->Ravik());
        subscription = doc->events().advise(sink);
        doc->wbPlain(browser);
        doc->MuRtb(rtb);
        world.take();
        return doc;
    }

    Sink sink;
    Subscription subscription;
    std::shared_ptr<clProject> project;
    std::shared_ptr<FakeRtb> rtb = std::make_shared<FakeRtb>();
    std::shared_ptr<FakeBrowser> browser = std::make_shared<FakeBrowser>();
};

} // namespace fakes
