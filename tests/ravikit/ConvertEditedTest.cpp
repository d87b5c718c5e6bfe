#include "ravikit/ConvertSupport.h"
#include "support/Test.h"

#include "ravikit/WmlDtd.h"
#include "ravikit/text/Chars.h"

/// A page that was changed in one place: the deck changes there and nowhere else, and stays valid.
namespace {

using namespace convert_test;

/// Offsets in a deck.
struct Range {
    std::size_t begin = 0;
    std::size_t end = 0;
};

/// Where the element stands that `node`, or the nearest marked one around it, was made from.
Range rangeOf(const PageElement* node, const std::u16string& deck) {
    while (!node->isMarked()) {
        node = node->parent;
    }
    const auto mark = ravikit::readMark(*node->attribute(ravikit::markAttribute));
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
        , m_body(browse(plainOf(deck))) {
        m_body->collect(m_all);
    }

    PageElement& body() { return *m_body; }

    /// Makes one edit at random.
    Edit edit() {
        switch (below(9)) {
        case 0:
            return type();
        case 1:
            return wrap({u"b", u"i", u"u", u"strong", u"em"});
        case 2:
            return wrap({u"big", u"small"});
        case 3:
            return style();
        case 4:
            return align();
        case 5:
            return split();
        case 6:
            return add();
        case 7:
            return remove();
        default:
            return normalSize();
        }
    }

    /// Types `letter` at two places of one line of text; false if the page has no such line.
    bool typeTwice(char16_t letter) {
        const auto lineOf = [](const PageElement* text) -> const PageElement* {
            for (const PageElement* line = text->parent; line != nullptr; line = line->parent) {
                if (line->attribute(u"data-text") != nullptr) {
                    return nullptr; // it is an attribute's
                }
                if (line->tag == u"p" || line->tag == u"td" || line->tag == u"div" ||
                    line->tag == u"pre") {
                    return line;
                }
            }
            return nullptr;
        };
        std::vector<PageElement*> good;
        std::copy_if(m_all.begin(), m_all.end(), std::back_inserter(good),
                     [&](const PageElement* e) { return !letters(e->text).empty() && lineOf(e); });
        if (good.empty()) {
            return false;
        }
        const PageElement* const line = lineOf(good[below(good.size())]);
        std::erase_if(good, [&](const PageElement* e) { return lineOf(e) != line; });
        for (int i = 0; i < 2; ++i) {
            std::u16string& text = good[below(good.size())]->text;
            std::size_t at = below(text.size());
            while (ravikit::isBlank(text[at])) {
                at = below(text.size()); // at a word, whichever blanks count
            }
            at += below(2);
            text.insert(at - (at < text.size() && (text[at] & 0xFC00) == 0xDC00 ? 1 : 0), 1,
                        letter);
        }
        return true;
    }

    /// Takes a format off as browsers do from an element with attributes.
    Edit takeOff() {
        PageElement* const format = pick([](const PageElement& e) {
            return e.isMarked() && (e.tag == u"b" || e.tag == u"em" || e.tag == u"big");
        });
        format->tag = u"span";
        return {"take off", rangeOf(format->parent, m_deck)};
    }

private:
    unsigned below(std::size_t limit) {
        return static_cast<unsigned>(m_random() % static_cast<unsigned>(limit));
    }

    template <class Test>
    PageElement* pick(const Test& test) {
        std::vector<PageElement*> good;
        std::copy_if(m_all.begin(), m_all.end(), std::back_inserter(good),
                     [&](PageElement* e) { return test(*e); });
        if (good.empty()) {
            throw NoPlace{};
        }
        return good[below(good.size())];
    }

    PageElement* pickText() {
        return pick([](const PageElement& e) {
            return e.tag.empty() && !letters(e.text).empty() && e.parent->tag != u"option";
        });
    }
    PageElement* pickParagraph() {
        return pick([](const PageElement& e) { return e.tag == u"p"; });
    }

    Edit type() {
        PageElement* const text = pickText();
        const std::size_t at = below(text->text.size());
        text->text.insert(at, u"typed <&\u00A0\"> $(new)");
        return {"type", rangeOf(text, m_deck)};
    }

    /// Puts `element` around a part of a text.
    Edit enclose(std::unique_ptr<PageElement> element) {
        PageElement* const text = pickText();
        const std::string name = "wrap in " + toUtf8(element->tag);
        const PageElement* outer = text;
        while (outer->parent->tag == u"span" || outer->parent->parent->tag == u"span") {
            outer = outer->parent; // a link is inside of what is in it
        }
        const Range touched = rangeOf(outer, m_deck);
        const std::size_t begin = below(text->text.size());
        const std::size_t length = 1 + below(text->text.size() - begin);
        const auto isLow = [text](std::size_t at) {
            return at < text->text.size() && (text->text[at] & 0xFC00) == 0xDC00;
        };
        if (isLow(begin) || isLow(begin + length)) {
            throw NoPlace{};
        }
        PageElement* const parent = text->parent;
        const std::size_t at = text->index();
        const std::u16string whole = text->take()->text;
        if (begin + length < whole.size()) {
            parent->insert(at, makeText(whole.substr(begin + length)));
        }
        element->insert(0, makeText(whole.substr(begin, length)));
        parent->insert(at, std::move(element));
        if (begin > 0) {
            parent->insert(at, makeText(whole.substr(0, begin)));
        }
        return {name, touched};
    }

    Edit wrap(std::initializer_list<const char16_t*> tags) {
        return enclose(makeElement(*(tags.begin() + below(tags.size()))));
    }

    Edit style() {
        static constexpr const char16_t* styles[] = {u"font-weight: bold", u"FONT-STYLE: italic",
                                                     u"text-decoration: underline",
                                                     u"color: red; font-size: x-large"};
        auto span = makeElement(u"span");
        span->set(u"style", styles[below(4)]);
        return enclose(std::move(span));
    }

    Edit normalSize() {
        auto font = makeElement(u"font");
        font->set(u"size", u"3");
        PageElement* const made = font.get();
        Edit edit = enclose(std::move(font));
        // A size around it, however far up in the line of text, is closed for as long.
        PageElement* line = made;
        while (line->tag != u"p" && line->tag != u"td" && line->tag != u"div" &&
               line->tag != u"pre" && line->tag != u"h2") {
            line = line->parent;
        }
        edit.touched = rangeOf(line, m_deck);
        return edit;
    }

    Edit align() {
        PageElement* const paragraph = pickParagraph();
        static constexpr const char16_t* values[] = {u"left", u"center", u"right"};
        paragraph->set(u"align", values[below(3)]);
        return {"align", rangeOf(paragraph, m_deck)};
    }

    /// Enter: the paragraph is there twice, marks and all, each with a part of what it held.
    Edit split() {
        PageElement* const paragraph = pickParagraph();
        if (paragraph->children.empty()) {
            throw NoPlace{};
        }
        const Range touched = rangeOf(paragraph, m_deck);
        auto second = makeElement(u"p");
        second->attributes = paragraph->attributes;
        const std::size_t from = 1 + below(paragraph->children.size());
        while (paragraph->children.size() > from) {
            second->insert(0, paragraph->children.back()->take());
        }
        if (letters(paragraph->innerText()).empty()) {
            throw NoPlace{}; // then the second is the old one, and the first is new
        }
        paragraph->parent->insert(paragraph->index() + 1, std::move(second));
        return {"split", touched};
    }

    Edit add() {
        PageElement* const paragraph =
            pick([](const PageElement& e) { return e.tag == u"p" && e.isMarked(); });
        if (paragraph->parent->attribute(u"class") == nullptr) {
            throw NoPlace{};
        }
        const std::size_t end = rangeOf(paragraph, m_deck).end;
        auto added = makeElement(u"p");
        added->insert(0, makeText(u"added"));
        paragraph->parent->insert(paragraph->index() + 1, std::move(added));
        return {"add", {end, end}};
    }

    Edit remove() {
        PageElement* const element = pick([](const PageElement& e) {
            const std::u16string* const kind = e.attribute(u"class");
            return e.isMarked() && (kind == nullptr || *kind != u"deck");
        });
        const std::u16string* const style = element->attribute(u"style");
        if (element->tag == u"td" || element->tag == u"tr" ||
            (style != nullptr && style->starts_with(u"display:block")) ||
            (element->parent->children.size() == 1 && element->parent->tag != u"p")) {
            throw NoPlace{};
        }
        const Range touched = withBlanks(rangeOf(element, m_deck));
        element->take();
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
    std::unique_ptr<PageElement> m_body;
    std::vector<PageElement*> m_all;
};

unsigned edits = 0;

void expectOneChange(const std::u16string& deck, unsigned seed, Edit (Editor::*make)()) try {
    std::mt19937 random(seed);
    Editor editor(deck, random);
    const Edit edit = (editor.*make)();
    ++edits;
    const Browser browser = seed % 2 == 0 ? Browser::Modern : Browser::Old;
    const std::u16string page = serialise(editor.body(), browser);
    SCOPED_TRACE("seed " + std::to_string(seed) + ", " + edit.name + " in " + toUtf8(deck) + "\n" +
                 toUtf8(page));
    const std::u16string changed = markupOf(page);
    const std::size_t behind = deck.size() - edit.touched.end;
    ASSERT_GE(changed.size(), edit.touched.begin + behind) << toUtf8(changed);
    EXPECT_EQ(toUtf8(changed.substr(0, edit.touched.begin)),
              toUtf8(deck.substr(0, edit.touched.begin)));
    EXPECT_EQ(toUtf8(changed.substr(changed.size() - behind)),
              toUtf8(deck.substr(edit.touched.end)));
    if (faultOf(deck).empty()) {
        EXPECT_EQ(faultOf(changed), "") << toUtf8(changed);
    }
    const std::u16string again = plainOf(changed);
    EXPECT_EQ(toUtf8(letters(browse(again)->innerText())),
              toUtf8(letters(editor.body().innerText())));
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
    std::cout << "tried: " << edits << " edits of written decks\n";
}

TEST(ConvertEdited, OneChangeOfAGeneratedDeck) {
    edits = 0;
    for (unsigned seed = 1; seed <= 7300 && !HasFailure(); ++seed) {
        std::mt19937 random(seed);
        expectOneChange(generatedDeck(random, seed % 3 != 0), seed,
                        seed > 300 ? &Editor::edit : &Editor::takeOff);
    }
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
        const std::u16string page = serialise(editor.body(), Browser::Modern);
        std::u16string changed = markupOf(page);
        SCOPED_TRACE(std::to_string(seed) + "\n" + toUtf8(page) + "\n" + toUtf8(changed));
        EXPECT_EQ(toUtf8(collapsed(browse(plainOf(changed))->innerText())),
                  toUtf8(collapsed(editor.body().innerText())));
        std::erase(changed, letter);
        EXPECT_EQ(toUtf8(changed), toUtf8(deck));
    }
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
        // The normal size, in all that a size holds.
        {u"<p>a <big>b</big> c</p>", u">b</big>", u"><font size=\"3\">b</font></big>",
         u"<p>a b c</p>"},
        {u"<p>a <big>b</big> c</p>", u"a ", u"<span style=\"font-size: 19.2px\">a</span> ",
         u"<p><big>a</big> <big>b</big> c</p>"},
        // A line break taken out: no blank of the source shows in its place.
        {u"<p>\n  one<br/>\n  two</p>", u"one<br>\n  ", u"one", u"<p>\n  onetwo</p>"},
        {u"<p><b>a</b><br/>\n  <i>b</i></p>", u"</b><br>\n  ", u"</b>", u"<p><b>a</b><i>b</i></p>"},
        // A format at the begin of a line stands after what leads the line.
        {u"<p>a<br/>\n  b c</p>", u"  b", u"  <b>b</b>", u"<p>a<br/>\n  <b>b</b> c</p>"},
        // What isn't seen goes with the words before it when a paragraph is split.
        {u"<p>a<!--1--> b<!--2--> c</p>", u"a b c",
         u"a</p><p data-mark=MARK><br></p><p data-mark=MARK>b c",
         u"<p>a<!--1--></p><p></p><p>b<!--2--> c</p>"},
        // A part of a paragraph that is aligned in its own way.
        {u"<p>a<fieldset>f</fieldset>b</p>", u"<p data-part=\"2\"",
         u"<p data-part=\"2\" align=\"right\"",
         u"<p>a<fieldset>f</fieldset></p><p align=\"right\">b</p>"},
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

/// A paragraph joined to the one before keeps its letters and what isn't seen in it; one that went
/// takes it along.
TEST(ConvertEdited, JoinedParagraphs) {
    const std::u16string first = u"<wml><card><p>a <i>c</i><!--1--></p>";
    const std::u16string deck = first + u"\n  <p>\n    8&#xB0;<!--2--> <b>d</b> e</p></card></wml>";
    const std::u16string page = plainOf(deck);
    const std::size_t end = page.find(u"</p><p");
    std::u16string joined = page;
    joined.erase(end, page.find(u'8', page.find(u'>', end + 5)) - end);
    EXPECT_EQ(toUtf8(markupOf(joined)),
              "<wml><card><p>a <i>c</i><!--1-->8&#xB0;<!--2--> <b>d</b> e</p></card></wml>");
    const std::u16string lines = u"<wml><card><p>a</p><p>8&#xB0;<!--1--> b<br/>c</p></card></wml>";
    std::u16string oneLine = plainOf(lines); // its first line alone went
    const std::size_t next = oneLine.find(u"</p><p");
    const std::u16string opened =
        oneLine.substr(next, oneLine.find(u'8', oneLine.find(u'>', next + 5)) - next);
    oneLine.erase(next, opened.size());
    oneLine.replace(oneLine.find(u"<br>"), 4, opened);
    EXPECT_EQ(toUtf8(markupOf(oneLine)),
              "<wml><card><p>a8&#xB0;<!--1--> b</p><p>c</p></card></wml>");
    std::u16string shorter = page;
    shorter.erase(end, page.find(u"</p>", end + 1) - end).insert(end, u"f");
    EXPECT_EQ(toUtf8(markupOf(shorter)), "<wml><card><p>a <i>c</i><!--1-->f</p></card></wml>");
}

} // namespace
