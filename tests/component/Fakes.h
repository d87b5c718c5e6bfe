#pragma once

// Everything that the component asks of the outside, as fakes that log each call into the world.

#include "FakeDisk.h"
#include "support/EventLog.h"
#include "support/TextBox.h"

namespace fakes {

/// A list of nodes or of elements.
template <class List, class Listed>
struct FakeList : List {
    std::int32_t length() override { return static_cast<std::int32_t>(members.size()); }
    std::shared_ptr<Listed> item(std::int32_t index) override {
        const bool inside = index >= 0 && index < length();
        return inside ? members[static_cast<std::size_t>(index)] : nullptr;
    }
    std::vector<std::shared_ptr<Listed>> members;
};
using FakeNodes = FakeList<IXMLDOMNodeList, IXMLDOMNode>;
using FakeElements = FakeList<IHTMLElementCollection, IHTMLElement>;

/// Text with tags, cut up by plain search: enough to count elements and to slice them out.
class Node : public IXMLDOMDocument2 {
public:
    explicit Node(Text text)
        : m_text(std::move(text)) {}
    Text xml() override { return m_text; }
    std::shared_ptr<IXMLDOMNodeList> selectNodes(const Text& pattern) override {
        call("selectNodes", pattern);
        return getElementsByTagName(pattern.substr(2));
    }
    std::shared_ptr<IXMLDOMNodeList> childNodes() override {
        auto list = std::make_shared<FakeNodes>();
        if (m_text.find(u'>') + 1 < m_text.rfind(u'<')) {
            list->members.push_back(std::make_shared<Node>(u"content"));
        }
        return list;
    }
    std::shared_ptr<IXMLDOMNodeList> getElementsByTagName(const Text& name) override {
        auto list = std::make_shared<FakeNodes>();
        const Text open = u"<" + name + u">";
        const Text close = u"</" + name + u">";
        for (auto at = m_text.find(open); at != m_text.npos; at = m_text.find(open, at + 1)) {
            const std::size_t end = m_text.find(close, at) + close.size();
            list->members.push_back(std::make_shared<Node>(m_text.substr(at, end - at)));
        }
        return list;
    }

private:
    Text m_text;
};

/// Text that holds ILLFORMED gives the empty document.
class FakeRavik : public Ravik {
public:
    std::shared_ptr<IXMLDOMDocument2> parseMarkup(const Text& text, bool validate,
                                                  bool flagB) override {
        call("parseMarkup", text, validate, flagB);
        return std::make_shared<Node>(text.find(u"ILLFORMED") == text.npos ? text : u"");
    }
    void setDtdPath(std::int32_t kind, const Text& path) override {
        call("setDtdPath", kind, path);
    }
    void setSchemaPath(std::int32_t kind, const Text& path) override {
        call("setSchemaPath", kind, path);
    }
    Text importDoctypedText(const Text& text) override {
        return got("importDoctypedText", u"imported:" + text);
    }
    Text exportText(const Text& text) override { return got("exportText", u"exported:" + text); }
    Text importBareText(const Text& text) override { return got("importBareText", text); }
};

class FakeParseError : public ParseError {
public:
    std::int32_t number() const override { return 1; }
    std::int32_t line() const override { return 1; }
    std::int32_t column() const override { return 1; }
    std::int32_t position() const override { return 0; }
    std::int32_t length() const override { return 0; }
    Text sourceLine() const override { return {}; }
    Text reason() const override { return u"refused"; }
    std::shared_ptr<ParseError> next() const override { return nullptr; }
};

/// Text that holds REFUSED or ILLFORMED is neither valid nor converted.
class FakeTolmek : public Tolmek {
public:
    bool convertText(std::int32_t fromKind, std::int32_t toKind, Text& text, bool strict) override {
        call("convertText", fromKind, toKind, text, strict);
        if (!isGood(text)) {
            return false;
        }
        text = (toKind == kindPlain ? u"html:" : u"wml:") + text;
        return true;
    }
    Value loadDtd(std::int32_t kind, const Text& path) override {
        call("loadDtd", kind, path);
        return true;
    }
    std::shared_ptr<ParseError> lastError() override {
        return got("lastError", std::make_shared<FakeParseError>());
    }
    bool isValidText(const Text& text) override {
        call("isValidText", text);
        return isGood(text);
    }

private:
    static bool isGood(const Text& text) {
        return text.find(u"REFUSED") == text.npos && text.find(u"ILLFORMED") == text.npos;
    }
};

class FakeRtb : public support::TextBox {
    void called(const std::string& name, const std::u16string& value) override {
        name.ends_with('=') ? call("rtb." + name, value) : call("rtb." + name);
    }
};

class FakeElement : public IHTMLElement {
public:
    explicit FakeElement(Text tag)
        : m_tag(std::move(tag)) {}
    Text tagName() override { return m_tag; }
    void setAttribute(const Text&, const Value&, std::int32_t) override {}
    Text uniqueID() override { return {}; }
    std::shared_ptr<IHTMLElementCollection> all() override { return nullptr; }
    std::shared_ptr<IHTMLElement> parentElement() override { return nullptr; }
    Text innerText() override { return got("innerText", text); }
    Text innerHTML() override { return got("innerHTML", html); }
    void innerHTML(const Text& value) override { html = (call("innerHTML=", value), value); }
    Text outerHTML() override { return got("outerHTML", u"[" + html + u"]"); }

    Text text;
    Text html;

private:
    Text m_tag;
};

class FakePage : public HTMLDocument {
public:
    std::shared_ptr<IHTMLElement> body() override { return theBody; }
    bool execCommand(const Text& command) override {
        return got("execCommand " + ascii(command), false);
    }
    bool execCommand(const Text&, bool, const Value&) override { return false; }
    std::shared_ptr<IHTMLElementCollection> getElementsByTagName(const Text& name) override {
        call("getElementsByTagName", name);
        auto list = std::make_shared<FakeElements>();
        std::copy_if(
            elements.begin(), elements.end(), std::back_inserter(list->members),
            [&](const auto& element) { return equalIgnoringCase(element->tagName(), name); });
        return list;
    }
    std::shared_ptr<IHTMLSelectionObject> selection() override { return nullptr; }

    std::shared_ptr<FakeElement> theBody = std::make_shared<FakeElement>(u"BODY");
    std::vector<std::shared_ptr<FakeElement>> elements;
};

class FakeBrowser : public BrowserControl {
public:
    std::shared_ptr<HTMLDocument> Document() override { return page; }
    void Visible(bool visible) override { call("browser.Visible=", visible); }
    EventSource<BrowserControlEvents>& events() override { return m_events; }

    std::shared_ptr<FakePage> page = std::make_shared<FakePage>();

private:
    EventSource<BrowserControlEvents> m_events;
};

class FakePictures : public PictureStore {
public:
    ObjectRef picture(const Value& name, PictureKind kind) override {
        call("picture", std::get<Text>(name), static_cast<std::int32_t>(kind));
        return std::make_shared<FakeRtb>();
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
    Text text(const Text& control) override { return texts[control]; }
    void text(const Text& control, const Text& text) override {
        if (std::exchange(texts[control], text) != text) {
            m_events.raise(&ModalFormEvents::OnChange, control);
        }
    }
    void visible(const Text& control, bool visible) override { shown[control] = visible; }
    void enabled(const Text& control, bool enabled) override { open[control] = enabled; }
    EventSource<ModalFormEvents>& events() override { return m_events; }

    void click(const Text& control) {
        EXPECT_TRUE(shown[control]) << ascii(control);
        m_events.raise(&ModalFormEvents::OnClick, control);
    }

    FormLayout layout;
    std::map<Text, Text> texts;
    std::map<Text, bool> shown;
    std::map<Text, bool> open;

private:
    EventSource<ModalFormEvents> m_events;
};

class FakePlatform : public Platform {
    template <class Interface, class Fake, class... Arguments>
    static std::shared_ptr<Interface> make(const std::string& name, Arguments&&... arguments) {
        call(name);
        return world.makesNothing ? nullptr
                                  : std::make_shared<Fake>(std::forward<Arguments>(arguments)...);
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
    MsgBoxAnswer MsgBox(const Text& text, MsgBoxFlags flags, const Text& caption) override {
        call("MsgBox", static_cast<std::int32_t>(flags), u"[" + caption + u"]", text);
        return flags == MsgBoxFlags::ExclamationYesNo ? next(world.answers, MsgBoxAnswer::No)
                                                      : MsgBoxAnswer::Ok;
    }
    Text InputBox(const Text& prompt, const Text& title, const Text& defaultText) override {
        call("InputBox", u"[" + title + u"]", prompt, u"[" + defaultText + u"]");
        return next(world.typed, Text());
    }
    void DoEvents() override {
        call("DoEvents");
        if (world.onDoEvents) {
            world.onDoEvents();
        }
    }
    Text temporaryFolder() override { return u"C:\\Temp\\"; }
    Date now() override { return 40000; }
    std::int32_t textWidth(std::int32_t, const Text&) override { return 0; }
    std::shared_ptr<PictureStore> pictures() override {
        return world.makesNothing ? nullptr : std::make_shared<FakePictures>();
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
    std::shared_ptr<WirelessDocument> build(Text deck) {
        project->Documents()->Clear();
        auto doc = project->Documents()->Add(u"C:\\App", u"deck", deck, browser, rtb, nullptr,
                                             project->Ravik());
        subscription = doc->events().advise(sink);
        doc->wbPlain(browser);
        doc->MuRtb(rtb);
        world.take();
        return doc;
    }

    support::EventLog sink{world.log};
    Subscription subscription;
    std::shared_ptr<clProject> project;
    std::shared_ptr<FakeRtb> rtb = std::make_shared<FakeRtb>();
    std::shared_ptr<FakeBrowser> browser = std::make_shared<FakeBrowser>();
};

} // namespace fakes
