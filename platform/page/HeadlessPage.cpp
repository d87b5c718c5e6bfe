#include "platform/page/HeadlessPage.h"

#include "platform/page/PageElement.h"
#include "platform/page/dom/FindText.h"
#include "platform/page/dom/PageParser.h"
#include "platform/page/editing/PageSelection.h"
#include "platform/page/editing/StyleCommand.h"
#include "util/Failure.h"
#include "util/LetterCase.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace tessaly {

namespace {

using page::Dom;
using page::InlineStyle;
using page::Place;
using page::Span;

/// The font size that a command is given, 1 to 7; nothing for any other value.
std::optional<int> fontSize(const Value& value) {
    int size = 0;
    if (const auto* text = std::get_if<std::u16string>(&value)) {
        size = text->size() == 1 ? text->front() - u'0' : 0;
    } else if (const auto* number = std::get_if<std::int32_t>(&value)) {
        size = *number;
    }
    return size >= 1 && size <= 7 ? std::optional(size) : std::nullopt;
}

class Page : public HeadlessPage {
public:
    Page(const std::u16string& html, PageWriting writing)
        : m_state{std::make_shared<Dom>(),
                  writing == PageWriting::Older ? page::Writing::Older : page::Writing::Modern} {
        dom().root(page::parsePage(dom(), html));
    }

    std::shared_ptr<IHTMLElement> body() override {
        return page::elementFor(m_state, dom().body());
    }

    bool execCommand(const std::u16string& command) override {
        return execCommand(command, false, {});
    }

    bool execCommand(const std::u16string& command, bool, const Value& value) override {
        if (equalIgnoringCase(command, u"SelectAll")) {
            return selectAll();
        }
        if (dom().selected() != Dom::Selected::Span) {
            return false;
        }
        if (equalIgnoringCase(command, u"FontSize")) {
            const std::optional<int> size = fontSize(value);
            if (size) {
                page::applyStyle(dom(), InlineStyle::FontSize, *size);
            }
            return size.has_value();
        }
        return toggle(command);
    }

    std::shared_ptr<IHTMLElementCollection>
    getElementsByTagName(const std::u16string& name) override {
        return std::make_shared<page::PageElements>(
            m_state, dom().root(), page::PageElements::Root::Included,
            name == u"*" ? std::nullopt : std::optional(name));
    }

    std::shared_ptr<IHTMLSelectionObject> selection() override {
        return std::make_shared<page::PageSelection>(m_state);
    }

    void select(const Position& from, const Position& to) override {
        const Place start = placeAt(from, false);
        const Place end = placeAt(to, true);
        const Span turned{placeAt(to, false), placeAt(from, true)};
        if (page::isInOrder(start, end)) {
            dom().select({start, end});
        } else if (page::isInOrder(turned.start, turned.end)) {
            dom().select(turned);
        } else { // one place, at the border of an element: its start and its end lie crosswise
            dom().select({start, start});
        }
    }

    void selectContents(const std::shared_ptr<IHTMLElement>& element) override {
        page::Node& node = ours(element);
        dom().select({Place::atStartOf(node), Place::atEndOf(node)});
    }

    void placeCaret(const Position& position) override {
        const Place place = placeAt(position, false);
        dom().select({place, place});
    }

    bool selectText(const std::u16string& text) override {
        return select(dom().body() != nullptr ? page::findText(*dom().body(), text) : std::nullopt);
    }

    bool selectText(const std::u16string& first, const std::u16string& last) override {
        return select(dom().body() != nullptr ? page::findText(*dom().body(), first, last)
                                              : std::nullopt);
    }

    void selectObject(const std::shared_ptr<IHTMLElement>& element) override {
        page::Node& node = ours(element);
        if (node.parent == nullptr) {
            throw Failure(FailureCode::InvalidArgument);
        }
        dom().selectObject(node);
    }

    void clearSelection() override { dom().selectNothing(); }

private:
    Dom& dom() const { return *m_state.dom; }

    page::Node& ours(const std::shared_ptr<IHTMLElement>& element) const {
        const auto* const mine = dynamic_cast<const page::PageElement*>(element.get());
        if (mine == nullptr || &mine->dom() != m_state.dom.get() ||
            !page::isInside(mine->node(), dom().root())) {
            throw Failure(FailureCode::InvalidArgument);
        }
        return mine->node();
    }

    Place placeAt(const Position& position, bool atEnd) const {
        if (position.offset < 0) {
            throw Failure(FailureCode::InvalidArgument);
        }
        return page::placeInText(ours(position.element), static_cast<std::size_t>(position.offset),
                                 atEnd);
    }

    bool select(const std::optional<Span>& span) {
        if (span) {
            dom().select(*span);
        }
        return span.has_value();
    }

    bool selectAll() {
        page::Node* const body = dom().body();
        if (body != nullptr) {
            dom().select({Place::atStartOf(*body), Place::atEndOf(*body)});
        }
        return body != nullptr;
    }

    bool toggle(const std::u16string& command) {
        constexpr std::pair<std::u16string_view, InlineStyle> commands[] = {
            {u"Bold", InlineStyle::Bold},
            {u"Italic", InlineStyle::Italic},
            {u"Underline", InlineStyle::Underline},
        };
        const auto* const found =
            std::find_if(std::begin(commands), std::end(commands), [&command](const auto& each) {
                return equalIgnoringCase(each.first, command);
            });
        if (found == std::end(commands)) {
            return false;
        }
        page::toggleStyle(dom(), found->second);
        return true;
    }

    page::PageState m_state;
};

} // namespace

std::shared_ptr<HeadlessPage> makePage(const std::u16string& html, PageWriting writing) {
    return std::make_shared<Page>(html, writing);
}

} // namespace tessaly
