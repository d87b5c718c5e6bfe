#include "support/Test.h"
#include "tests/ravikit/convert/Decks.h"

#include "ravikit/convert/page/Carrier.h"
#include "ravikit/text/Chars.h"
#include "tests/ravikit/validity/WmlDtd.h"

/// A page that was changed in one place: the deck changes there and nowhere else, and stays valid.
namespace {

using namespace convert_test;

/// Offsets in a deck.
struct Range {
    std::size_t begin = 0;
    std::size_t end = 0;
};

bool isMarked(const Node& node) {
    return node.isElement() && findAttribute(node, ravikit::markAttribute) != nullptr;
}

/// The nearest element of one of these names around `node`, itself included; null if there is none.
const Node* around(const Node* node, std::initializer_list<std::u16string_view> names) {
    while (node != nullptr &&
           std::none_of(names.begin(), names.end(),
                        [&](std::u16string_view name) { return node->is(name); })) {
        node = node->parent;
    }
    return node;
}

/// Where the element stands that `node`, or the nearest marked one around it, was made from.
Range rangeOf(const Node* node, const std::u16string& deck) {
    while (!isMarked(*node)) {
        node = node->parent;
    }
    const auto mark = ravikit::readMark(*findAttribute(*node, ravikit::markAttribute));
    const auto tree = ravikit::parse(deck, &wmlDtd()->declarations());
    for (ravikit::Tree::Id id = 1; id < tree->size(); ++id) {
        if (tree->kind(id) == ravikit::NodeKind::Element && (*tree)[id].begin == mark->begin) {
            return {mark->begin, (*tree)[id].end};
        }
    }
    return {};
}

/// Thrown where the page has no place for an edit.
struct NoPlace {};

/// An edit, and what of the deck it may change.
struct Edit {
    std::string name;
    Range touched;
};

class Editor {
public:
    Editor(const std::u16string& deck, std::mt19937& random)
        : m_deck(deck)
        , m_random(random)
        , m_page(browse(plainOf(deck))) {}

    const Dom& page() const { return *m_page; }

    /// Makes one edit at random.
    Edit edit() {
        static constexpr Edit (Editor::*kinds[])() = {&Editor::type, &Editor::wrap, &Editor::style,
                                                      &Editor::align, &Editor::remove};
        return (this->*kinds[below(5)])();
    }

    /// Types `letter` at two places of one line of text; false if the page has no such line.
    bool typeTwice(char16_t letter) {
        const auto lineOf = [](const Node& text) {
            const Node* const line = around(&text, {u"p", u"td", u"div", u"pre", u"span"});
            const bool isCaption = line->is(u"span") && findAttribute(*line, u"data-text");
            return isCaption ? nullptr : around(&text, {u"p", u"td", u"div", u"pre"});
        };
        std::vector<Node*> good = all([&](const Node& node) {
            return node.isText() && !letters(node.text).empty() && lineOf(node);
        });
        if (good.empty()) {
            return false;
        }
        const Node* const line = lineOf(*good[below(good.size())]);
        std::erase_if(good, [&](const Node* node) { return lineOf(*node) != line; });
        for (int i = 0; i < 2; ++i) {
            std::u16string& text = good[below(good.size())]->text;
            std::size_t at = below(text.size());
            while (ravikit::isBlank(text[at])) {
                at = below(text.size()); // at a word, whichever blanks count
            }
            at += below(2);
            text.insert(at - (isLow(text, at) ? 1 : 0), 1, letter);
        }
        return true;
    }

    /// Takes a format off as browsers do from an element with attributes.
    Edit takeOff() {
        Node& format = pick([](const Node& node) {
            return isMarked(node) && (node.is(u"b") || node.is(u"em") || node.is(u"big"));
        });
        format.text = u"span";
        return {"take off", rangeOf(format.parent, m_deck)};
    }

private:
    static bool isLow(const std::u16string& text, std::size_t at) {
        return at < text.size() && (text[at] & 0xFC00) == 0xDC00;
    }

    unsigned below(std::size_t limit) {
        return static_cast<unsigned>(m_random() % static_cast<unsigned>(limit));
    }

    template <class Test>
    std::vector<Node*> all(const Test& test) {
        std::vector<Node*> good;
        for (Node* node = m_page->body(); node != nullptr; node = following(*node)) {
            if (test(*node)) {
                good.push_back(node);
            }
        }
        return good;
    }

    template <class Test>
    Node& pick(const Test& test) {
        const std::vector<Node*> good = all(test);
        if (good.empty()) {
            throw NoPlace{};
        }
        return *good[below(good.size())];
    }

    Node& pickText() {
        return pick([](const Node& node) {
            return node.isText() && !letters(node.text).empty() && !node.parent->is(u"option");
        });
    }

    Edit type() {
        Node& text = pickText();
        text.text.insert(below(text.text.size()), u"typed <&\u00A0\"> $(new)");
        return {"type", rangeOf(&text, m_deck)};
    }

    /// Puts `element` around a part of a text.
    Edit enclose(Node& element) {
        Node& text = pickText();
        const Node* outer = &text;
        while (outer->parent->is(u"span") || outer->parent->parent->is(u"span")) {
            outer = outer->parent; // a link is inside of what is in it
        }
        const Edit edit{"wrap in " + toUtf8(element.text), rangeOf(outer, m_deck)};
        const std::size_t begin = below(text.text.size());
        const std::size_t length = 1 + below(text.text.size() - begin);
        if (isLow(text.text, begin) || isLow(text.text, begin + length)) {
            throw NoPlace{};
        }
        Node& part = begin == 0 ? text : m_page->split(text, begin);
        if (length < part.text.size()) {
            m_page->split(part, length);
        }
        m_page->put(element, *part.parent, &part);
        m_page->put(part, element, nullptr);
        return edit;
    }

    Edit wrap() {
        static constexpr const char16_t* tags[] = {u"b",      u"i",  u"u",    u"big",
                                                   u"strong", u"em", u"small"};
        return enclose(m_page->newElement(tags[below(7)]));
    }

    Edit style() {
        static constexpr const char16_t* styles[] = {u"font-weight: bold", u"FONT-STYLE: italic",
                                                     u"text-decoration: underline",
                                                     u"color: red; font-size: x-large"};
        Node& span = m_page->newElement(u"span");
        writeAttribute(span, u"style", styles[below(4)]);
        return enclose(span);
    }

    Edit align() {
        Node& paragraph = pick([](const Node& node) { return node.is(u"p"); });
        static constexpr const char16_t* values[] = {u"left", u"center", u"right"};
        writeAttribute(paragraph, u"align", values[below(3)]);
        return {"align", rangeOf(&paragraph, m_deck)};
    }

    Edit remove() {
        Node& node = pick([](const Node& each) {
            return isMarked(each) && !findAttribute(each, u"data-deck") && !each.is(u"td") &&
                   !each.is(u"tr");
        });
        const std::u16string* const style = findAttribute(node, u"style");
        const std::u16string before = node.previous ? shownText(*node.previous) : u" ";
        const std::u16string after = node.next ? shownText(*node.next) : u" ";
        // Blanks at the end of a line go too; what isn't seen leaves a word that is joined.
        const bool endsInBlanks = node.next == nullptr && letters(before).empty();
        const bool isInWord = !before.empty() && !ravikit::isBlank(before.back()) &&
                              !after.empty() && !ravikit::isBlank(after.front());
        if ((style != nullptr && style->starts_with(u"display:block")) || isInWord ||
            (endsInBlanks && (node.previous || !node.parent->is(u"p")))) {
            throw NoPlace{};
        }
        const Range touched = withBlanks(rangeOf(&node, m_deck));
        m_page->remove(node);
        return {"remove", touched};
    }

    Range withBlanks(Range range) const {
        while (range.begin > 0 && ravikit::isBlank(m_deck[range.begin - 1])) {
            --range.begin;
        }
        while (range.end < m_deck.size() && ravikit::isBlank(m_deck[range.end])) {
            ++range.end;
        }
        return range;
    }

    const std::u16string& m_deck;
    std::mt19937& m_random;
    std::unique_ptr<Dom> m_page;
};

unsigned edits = 0;

void expectOneChange(const std::u16string& deck, unsigned seed, Edit (Editor::*make)()) try {
    std::mt19937 random(seed);
    Editor editor(deck, random);
    const Edit edit = (editor.*make)();
    ++edits;
    const bool isValid = faultOf(deck).empty();
    // An older browser begins blocks on new lines, which a deck that is not valid may show.
    const Writing writing = isValid && seed % 2 == 0 ? Writing::Older : Writing::Modern;
    const std::u16string page = written(editor.page(), writing);
    SCOPED_TRACE("seed " + std::to_string(seed) + ", " + edit.name + " in " + toUtf8(deck) + "\n" +
                 toUtf8(page));
    const std::u16string changed = markupOf(page);
    const std::size_t behind = deck.size() - edit.touched.end;
    ASSERT_GE(changed.size(), edit.touched.begin + behind) << toUtf8(changed);
    EXPECT_EQ(toUtf8(changed.substr(0, edit.touched.begin)),
              toUtf8(deck.substr(0, edit.touched.begin)));
    EXPECT_EQ(toUtf8(changed.substr(changed.size() - behind)),
              toUtf8(deck.substr(edit.touched.end)));
    if (isValid) {
        EXPECT_EQ(faultOf(changed), "") << toUtf8(changed);
    }
    const std::u16string again = plainOf(changed);
    EXPECT_EQ(toUtf8(letters(shownText(*browse(again)->body()))),
              toUtf8(letters(shownText(*editor.page().body()))));
    EXPECT_EQ(toUtf8(markupOf(again)), toUtf8(changed));
} catch (const NoPlace&) {
}

TEST(ConvertEdited, OneChangeOfAWrittenDeck) {
    for (const Deck& deck : writtenDecks()) {
        SCOPED_TRACE(deck.name);
        for (unsigned seed = 1; seed <= 66 && !HasFailure(); ++seed) {
            expectOneChange(deck.text, seed, seed > 6 ? &Editor::edit : &Editor::takeOff);
        }
    }
    EXPECT_GT(edits, 3000U);
    std::cout << "tried: " << edits << " edits of written decks\n";
}

TEST(ConvertEdited, OneChangeOfAGeneratedDeck) {
    edits = 0;
    for (unsigned seed = 1; seed <= 7300 && !HasFailure(); ++seed) {
        std::mt19937 random(seed);
        expectOneChange(generatedDeck(random, seed % 3 != 0), seed,
                        seed > 300 ? &Editor::edit : &Editor::takeOff);
    }
    EXPECT_GT(edits, 3000U);
    std::cout << "tried: " << edits << " edits of generated decks\n";
}

/// One space for any number of blanks.
std::u16string collapsed(std::u16string_view text) {
    std::u16string result;
    for (const char16_t c : text) {
        if (!ravikit::isBlank(c)) {
            result += c;
        } else if (!result.ends_with(u' ')) {
            result += u' ';
        }
    }
    return result;
}

/// Letters typed at two places of a line: without them the deck is what it was, to the byte.
TEST(ConvertEdited, TwoPlacesOfALine) {
    unsigned tried = 0;
    const char16_t letter = u'\u2460'; // in no deck
    const auto decks = writtenDecks();
    for (unsigned seed = 1; seed <= 6000 && !HasFailure(); ++seed) {
        std::mt19937 random(seed);
        const std::u16string deck =
            seed % 2 == 0 ? decks[seed / 2 % decks.size()].text : generatedDeck(random, true);
        Editor editor(deck, random);
        // What is written in one piece is written again, and so is what is too deep for a browser.
        const bool isWhole =
            deck.find(u"<!ENTITY") != deck.npos || deck.find(u"<b><b><b>") != deck.npos;
        if (isWhole || !editor.typeTwice(letter)) {
            continue;
        }
        ++tried;
        const std::u16string page = written(editor.page(), Writing::Modern);
        std::u16string changed = markupOf(page);
        SCOPED_TRACE(std::to_string(seed) + "\n" + toUtf8(page) + "\n" + toUtf8(changed));
        EXPECT_EQ(toUtf8(collapsed(shownText(*browse(plainOf(changed))->body()))),
                  toUtf8(collapsed(shownText(*editor.page().body()))));
        std::erase(changed, letter);
        EXPECT_EQ(toUtf8(changed), toUtf8(deck));
    }
    EXPECT_GT(tried, 3000U);
    std::cout << "tried: " << tried << " double edits\n";
}

/// What real browsers make of an edit.
TEST(ConvertEdited, AsABrowserWritesIt) {
    struct Case {
        std::u16string deck;
        std::u16string from;
        std::u16string to;
        std::u16string changed;
    };
    const Case cases[] = {
        // The first line end of a pre is not the browser's.
        {u"<pre>\n a <i>b</i></pre>", u"\n\n a ", u"<b>\n a </b>",
         u"<pre>\n<b> a </b><i>b</i></pre>"},
        // What isn't seen between two words that were joined stands before the word.
        {u"<p>a<br/><!--1-->b <i>c</i></p>", u"<br>b", u"b", u"<p><!--1-->ab <i>c</i></p>"},
        // A format at the begin of a line stands after what leads the line.
        {u"<p>a<br/>\n  b c</p>", u"  b", u"  <b>b</b>", u"<p>a<br/>\n  <b>b</b> c</p>"},
        // Lines that are aligned become paragraphs, and what isn't seen after them makes none.
        {u"<p>a<br/>\n  <small>b</small><br/>\n  c\n</p>", u"<br>\n  c\n",
         u"<div align=\"right\">c</div>\n",
         u"<p>a<br/>\n  <small>b</small></p><p align=\"right\">\n  c\n</p>"},
        {u"<p>a<br/>\n  <b>b</b>\n</p>", u"b</b>", u"<div align=\"right\">b</div></b>",
         u"<p>a<br/>\n  </p><p align=\"right\"><b>b</b>\n</p>"},
        // A new line in a group, with an empty one before it.
        {u"<p>a<fieldset>f</fieldset></p>", u"f</p>",
         u"f</p><p data-part=\"1\"><br></p><p data-part=\"1\">g</p>",
         u"<p>a<fieldset>f<br/><br/>g</fieldset></p>"},
        // A copy of a paragraph that came with its room, or empty, or in itself.
        {u"<p>a</p>", u"</p>",
         u"</p><p data-mark=MARK></p><p data-mark=MARK><img data-room=\"\"></p>", u"<p>a</p>"},
        {u"<pre>a</pre>", u"a</pre>", u"<p>b</p><pre data-mark=MARK>a</pre></pre>",
         u"<p>b</p><pre>a</pre>"},
    };
    for (const Case& each : cases) {
        const std::u16string around = u"<wml><card>" + each.deck + u"</card></wml>";
        std::u16string page = plainOf(around);
        std::u16string to = each.to;
        const std::size_t at = page.find(each.from);
        ASSERT_NE(at, page.npos) << toUtf8(page);
        for (std::size_t mark = to.find(u"MARK"); mark != to.npos; mark = to.find(u"MARK")) {
            const std::size_t quote = page.rfind(u"data-mark=", at) + 10;
            to.replace(mark, 4, page.substr(quote, page.find(u'"', quote + 1) + 1 - quote));
        }
        page.replace(at, each.from.size(), to);
        EXPECT_EQ(toUtf8(markupOf(page)), toUtf8(u"<wml><card>" + each.changed + u"</card></wml>"))
            << toUtf8(page);
    }
}

} // namespace
