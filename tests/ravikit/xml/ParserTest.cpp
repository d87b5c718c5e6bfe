// What the parser makes of broken text: one good problem for one mistake, at its place, and a tree
// that still holds all of the text.

#include "ravikit/xml/Parser.h"
#include "ravikit/text/Lines.h"
#include "ravikit/xml/declarations/Declarations.h"
#include "support/Test.h"
#include "tests/ravikit/xml/Tiling.h"

namespace {

using ravikit::parse;
using ravikit::Problem;
using ravikit::ProblemKind;
using ravikit::Tree;
using support::repeated;

struct Mistake {
    const char16_t* text;
    const char16_t* place; ///< what the problem's range holds
    const char16_t* reason;
};

constexpr Mistake mistakes[] = {
    {u"<p>The <b>bold <i>and</b> the italic</i> cross.</p>", u"i",
     u"`i` is closed by `</b>`; write `</i>` first"},
    {u"<wml>\n<card>\n<p>\n</card>\n</wml>", u"p",
     u"`p` opened on line 3 is closed by `</card>` on line 4; write `</p>` first"},
    {u"<p><b>x</p>", u"b", u"`b` is closed by `</p>`; write `</b>` first"},
    {u"<wml><p>x</p>", u"wml", u"`wml` is never closed; write `</wml>`"},
    {u"<p>x</b></p>", u"</b>", u"`</b>` ends nothing: no `b` is open here"},
    {u"<P>x</p>", u"P", u"`P` is closed by `</p>`; did you mean `p`?"},
    {u"<p>x</ p>", u"</ ", u"no blank may stand after `</`"},
    {u"<p><b>x</></p>", u"</>", u"an end tag names its element; write `</b>`"},
    {u"<p>x</p", u"</p", u"the end tag `</p` has no `>`"},
    {u"<p <b>x</b></p>", u"<p ", u"the tag `<p` has no `>`"},
    {u"<p align=center>x</p>", u"align=center",
     u"the value of `align` must stand in quotes: write `align=\"center\"`"},
    {u"<p align>x</p>", u"align", u"attribute `align` has no value; write `align=\"...\"`"},
    {u"<p id='a' align='b' id='c'/>", u"id", u"attribute `id` stands twice in `p`"},
    {u"<a href=\"one title=\"two\">x</a>", u"href=\"one",
     u"the value of `href` has no closing quote"},
    {u"<p><a href=\"one>x</a><b c=\"d\"/></p>", u"href=\"one",
     u"the value of `href` has no closing quote"},
    {u"<img src='sun.wbmp/>", u"src='sun.wbmp", u"the value of `src` has no closing quote"},
    {u"<a b='x < y'/>", u"<", u"`<` cannot stand in the value of `b`; write `&lt;`"},
    {u"<a b='c'd='e'/>", u"", u"a blank is missing before `d`"},
    {u"<a / b='c'/>", u"/", u"`/` in the tag of `a` must stand directly before its `>`"},
    {u"<p>1 < 2</p>", u"<", u"`<` begins a tag; write `&lt;` for the character itself"},
    {u"<p>Fish & chips</p>", u"&",
     u"`&` starts a reference; write `&amp;` for the character itself"},
    {u"<p>a&nbsp b</p>", u"&nbsp",
     u"the reference `&nbsp` must end with `;`; for the character `&` itself write `&amp;`"},
    {u"<p>&bull;</p>", u"&bull;",
     u"`&bull;` is an entity of HTML; write `&#8226;` for its character"},
    {u"<p>x</p><p>y</p>", u"<p",
     u"`p` stands beside the root element `p`; a text has one root element, which holds "
     u"all others"},
    {u"<p>x<!-- y</p>", u"<!--", u"the comment has no end; write `-->`"},
    {u"<?xml version='1.0'>\n<p/>", u"<?xml version='1.0'>",
     u"the XML declaration must end with `?>`"},
    {u"<!DOCTYPE p [<!ENTITY e '<b>'>]><p>&e;&e;</p>", u"&e;",
     u"the text of the entity `e` cannot be used: `b` is never closed; write `</b>`"},
};

TEST(Parser, OneMistakeIsOneProblemAtItsPlace) {
    for (const Mistake& mistake : mistakes) {
        const auto tree = parse(mistake.text);
        const std::vector<Problem>& problems = tree->problems().list();
        ASSERT_EQ(problems.size(), 1U) << testing::PrintToString(std::u16string(mistake.text));
        const Problem& problem = problems.front();
        EXPECT_EQ(problem.reason, mistake.reason);
        EXPECT_EQ(tree->text().substr(problem.begin, problem.end - problem.begin), mistake.place);
        EXPECT_EQ(tiling::faultOf(*tree), "");
    }
}

/// The tree as a line: kinds by their first letters, elements and attributes by their names.
std::u16string shapeOf(const Tree& tree, Tree::Id id = Tree::document) {
    static constexpr char16_t letters[] = u"DEATBRKCPXYJ";
    std::u16string shape(1, letters[static_cast<int>(tree.kind(id))]);
    shape += tree.name(id);
    std::u16string inner;
    for (Tree::Id child = id + 1; child < tree[id].next; child = tree[child].next) {
        inner += (inner.empty() ? u"" : u" ") + shapeOf(tree, child);
    }
    return inner.empty() ? shape : shape + u"(" + inner + u")";
}

TEST(Tree, HoldsEveryKindOfNode) {
    const auto tree = parse(u"\uFEFF<?xml version='1.0'?>\n<!DOCTYPE a><a b='c&amp;d' e=''> "
                            u"f&#65;<g/><![CDATA[h]]><!--i--><?j k?></a>");
    EXPECT_EQ(shapeOf(*tree), u"D(B X B Y Ea(Ab(Ramp) Ae T R Eg K C Pj))");
    EXPECT_EQ(tiling::faultOf(*tree), "");
    EXPECT_EQ(shapeOf(*parse(u"<a>x & y<b></c>")), u"D(Ea(T Eb(J)))");
}

TEST(Tree, AnswersAboutElementsAndAttributes) {
    const auto tree =
        parse(u"<!DOCTYPE a [<!ENTITY e 'x\ty&#9;<b>z</b>'><!ENTITY f '1\r\n2&#38;lt;&e2;'>"
              u"<!ENTITY e2 '!'>]><a k = \" \r\n&f;\t&#9;&quot;\" l='m' ><c>&e;</c >\n</a>");
    ASSERT_TRUE(tree->wellFormed());
    const Tree::Id root = tree->documentElement();
    EXPECT_EQ(tree->rawValue(tree->attribute(root, u"k")), u" \r\n&f;\t&#9;&quot;");
    EXPECT_EQ(tree->value(tree->attribute(root, u"k")), u"  1 2<! \t\"");
    EXPECT_EQ(tree->value(tree->attribute(root, u"l")), u"m");
    EXPECT_EQ(tree->attribute(root, u"n"), Tree::none);
    const Tree::Id child = tree->firstContent(root);
    EXPECT_EQ(tree->parent(child), root);
    EXPECT_EQ(tree->parent(child + 1), child);
    EXPECT_EQ(tree->text().substr(tree->startTagEnd(root), 3), u"<c>");
    EXPECT_EQ(tree->text().substr(tree->endTagBegin(child), 5), u"</c >");
    EXPECT_EQ(tree->referenceText(child + 1), u"x\ty\tz");
    ASSERT_NE(tree->entityTree(child + 1), nullptr);
    EXPECT_EQ(shapeOf(*tree->entityTree(child + 1)), u"D(T Eb(T))");
}

TEST(Parser, InPlaceCopiesNothing) {
    const std::u16string text = u"<a b='&e;'>c</a>";
    const auto tree = ravikit::parseInPlace(text);
    EXPECT_EQ(tree->text().data(), text.data());
    EXPECT_EQ(tree->problems().list().size(), 1U);
    EXPECT_EQ(parse(text)->text(), text);
}

TEST(Parser, KnownEntitiesAreTheReadersOwn) {
    ravikit::Declarations known;
    known.entities[u"nbsp"] = {u"nbsp", false, false, u"\u00A0"};
    known.entities[u"far"] = {u"far", true, false, u""};
    EXPECT_TRUE(parse(u"<a b='&nbsp;'>&nbsp;</a>", &known)->wellFormed());
    // A document's own declaration goes ahead.
    const auto own = parse(u"<!DOCTYPE a [<!ENTITY nbsp '_'>]><a>&nbsp;</a>", &known);
    EXPECT_EQ(own->referenceText(own->documentElement() + 1), u"_");
    // Nothing is fetched, and nothing that is not fetched excuses an unknown name.
    const auto tree = parse(u"<!DOCTYPE a SYSTEM 's'><a>&far;&farther;</a>", &known);
    ASSERT_EQ(tree->problems().list().size(), 2U);
    EXPECT_EQ(tree->problems().list()[0].kind, ProblemKind::ExternalEntity);
    EXPECT_EQ(tree->problems().list()[1].kind, ProblemKind::UnknownEntity);
}

TEST(Parser, LimitsEndInAProblem) {
    const auto firstKind = [](const std::u16string& text, const ravikit::Limits& limits) {
        const auto tree = parse(text, nullptr, limits);
        EXPECT_EQ(tiling::faultOf(*tree), "");
        return tree->wellFormed() ? ProblemKind{} : tree->problems().list().front().kind;
    };
    EXPECT_EQ(firstKind(u"<a>12345</a>", {.units = 11}), ProblemKind::TooLarge);
    EXPECT_EQ(firstKind(u"<a><b><c x='y'>z</c><c/></b></a>", {.depth = 2}), ProblemKind::TooDeep);
    EXPECT_EQ(firstKind(u"<a><b><c/></b></a>", {.depth = 3}), ProblemKind{});
    EXPECT_EQ(
        firstKind(u"<!DOCTYPE a [<!ENTITY e '12345'>]><a b='&e;'>&e;</a>", {.entityUnits = 9}),
        ProblemKind::EntityTooLarge);
    std::u16string bomb = u"<!DOCTYPE a [<!ENTITY e0 'ha'>";
    for (int i = 1; i < 60; ++i) {
        const std::u16string below = u"&e" + support::u16(std::to_string(i - 1)) + u";";
        bomb +=
            u"<!ENTITY e" + support::u16(std::to_string(i)) + u" '" + repeated(below, 9) + u"'>";
    }
    EXPECT_EQ(firstKind(bomb + u"]><a>&e12;</a>", {}), ProblemKind::EntityTooLarge);
    EXPECT_EQ(firstKind(bomb + u"]><a b='&e12;'/>", {}), ProblemKind::EntityTooLarge);
    EXPECT_EQ(firstKind(bomb + u"]><a>&e59;</a>", {}), ProblemKind::EntityTooLarge);
}

// Each of these took quadratic time, or memory beyond all bounds, in a parser that recovers
// without care. The test's time limit is the judge.
TEST(Parser, HostileTextCostsNoMoreThanItsLength) {
    constexpr std::size_t many = 400'000;
    for (const char16_t* const piece :
         {u"<", u"&", u"<a>", u"</a>", u"<a b='", u"<a b=\"<", u"<?a ", u"<!x", u"<!DOCTYPE a [",
          u"<!DOCTYPE a '", u"]]", u"&e;", u"<a><b></a>", u"<a b=<", u"<!-- -- ", u"\xD800",
          u"<a b='c='"}) {
        const auto tree = parse(u"<r>" + repeated(piece, many));
        EXPECT_FALSE(tree->wellFormed());
        EXPECT_LE(tree->problems().list().size(), ravikit::Problems::limit + 1);
        EXPECT_EQ(tree->problems().list().back().kind == ProblemKind::TooManyProblems,
                  tree->problems().full());
        EXPECT_EQ(tiling::faultOf(*tree), "");
    }
    EXPECT_TRUE(parse(u"<a b='" + repeated(u"x&lt;\n", many) + u"'/>")->wellFormed());
}

// Cuts, copies and swaps pieces of decks, so that what recovery meets is near to real text.
TEST(Parser, LosesNothingOfMangledText) {
    std::mt19937 random(20);
    const auto upTo = [&random](std::size_t most) { return random() % (most + 1); };
    std::u16string pool;
    for (const Mistake& mistake : mistakes) {
        pool += mistake.text;
    }
    for (int round = 0; round < 20'000; ++round) {
        std::u16string text = pool.substr(upTo(pool.size()), upTo(200));
        for (std::size_t cuts = upTo(4); cuts > 0; --cuts) {
            text.erase(upTo(text.size()), upTo(5));
            text.insert(upTo(text.size()), pool, upTo(pool.size()), upTo(8));
        }
        ASSERT_EQ(tiling::faultOf(*parse(text)), "") << testing::PrintToString(text);
    }
}

TEST(Lines, EndAtEachKindOfLineEnd) {
    const std::u16string text = u"a\r\nb\rc\n\r\r\nd";
    const ravikit::Lines lines(text);
    const std::uint32_t places[][3] = {{0, 1, 1}, {2, 1, 3},  {3, 2, 1},  {5, 3, 1}, {7, 4, 1},
                                       {8, 5, 1}, {10, 6, 1}, {11, 6, 2}, {99, 6, 2}};
    for (const auto& [offset, line, column] : places) {
        EXPECT_EQ(lines.at(offset).line, line) << offset;
        EXPECT_EQ(lines.at(offset).column, column) << offset;
    }
    EXPECT_EQ(lines.lineAt(4), u"b");
    EXPECT_EQ(lines.lineAt(7), u"");
    EXPECT_EQ(lines.lineAt(11), u"d");
}

TEST(Lines, LongTextsAreNumberedLikeShortOnes) {
    std::u16string text;
    std::vector<std::uint32_t> begins;
    for (std::uint32_t i = 0; i < 3000; ++i) {
        begins.push_back(static_cast<std::uint32_t>(text.size()));
        text += std::u16string(i % 97, u'x') + (i % 3 == 0 ? u"\r\n" : u"\n");
    }
    const ravikit::Lines lines(text);
    for (std::uint32_t i = 0; i < begins.size(); ++i) {
        ASSERT_EQ(lines.at(begins[i]).line, i + 1);
        ASSERT_EQ(lines.at(begins[i] + i % 97).column, i % 97 + 1);
        ASSERT_EQ(lines.lineAt(begins[i]).size(), i % 97);
    }
}

} // namespace
