#include "ravikit/path/LocationPath.h"
#include "ravikit/xml/Parser.h"
#include "support/Test.h"

#include <libxml/parser.h>
#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

namespace {

using ravikit::LocationPath;
using ravikit::NodeKind;
using ravikit::Tree;
using support::ascii;
using Signs = std::vector<std::string>;

/// Where a node begins tells it apart from all others, in both libraries: each start tag carries
/// its own number.
Signs select(const Tree& tree, Tree::Id context, const std::string& pattern) {
    std::u16string reason;
    const auto path = LocationPath::compile(support::u16(pattern), reason);
    EXPECT_TRUE(path.has_value()) << pattern << ": " << ascii(reason);
    Signs signs;
    for (const Tree::Id id : path->select(tree, context)) {
        switch (tree.kind(id)) {
        case NodeKind::Element:
            signs.push_back(ascii(tree.value(tree.attribute(id, u"n"))));
            break;
        case NodeKind::Attribute:
            signs.push_back(ascii(tree.name(id)).append("=").append(ascii(tree.value(id))));
            break;
        case NodeKind::Document:
            signs.emplace_back("/");
            break;
        default:
            signs.push_back(ascii(tree.source(id)));
        }
    }
    return signs;
}

std::string content(const xmlNode* node) {
    xmlChar* text = xmlNodeGetContent(node);
    std::string copy(reinterpret_cast<const char*>(text));
    xmlFree(text);
    return copy;
}

Signs selectByOracle(xmlDoc* document, xmlNode* context, const std::string& pattern) {
    Signs signs;
    xmlXPathContext* evaluation = xmlXPathNewContext(document);
    evaluation->node = context;
    // In brackets, since libxml2 evaluates a bare path by streaming, and then loses nodes of `//.`.
    const std::string whole = std::string("(").append(pattern).append(")");
    xmlXPathObject* found =
        xmlXPathEval(reinterpret_cast<const xmlChar*>(whole.c_str()), evaluation);
    EXPECT_NE(found, nullptr) << pattern;
    const int count = found->nodesetval == nullptr ? 0 : found->nodesetval->nodeNr;
    xmlXPathNodeSetSort(found->nodesetval);
    for (int i = 0; i < count; ++i) {
        xmlNode* node = found->nodesetval->nodeTab[i];
        if (node->type == XML_ELEMENT_NODE) {
            xmlChar* number = xmlGetProp(node, reinterpret_cast<const xmlChar*>("n"));
            signs.emplace_back(reinterpret_cast<const char*>(number));
            xmlFree(number);
        } else if (node->type == XML_ATTRIBUTE_NODE) {
            signs.emplace_back(reinterpret_cast<const char*>(node->name));
            signs.back().append("=").append(content(node));
        } else {
            signs.push_back(node->type == XML_DOCUMENT_NODE ? "/" : content(node));
        }
    }
    xmlXPathFreeObject(found);
    xmlXPathFreeContext(evaluation);
    return signs;
}

class Dice {
public:
    explicit Dice(unsigned seed)
        : m_random(seed) {}
    unsigned below(unsigned n) { return static_cast<unsigned>(m_random() % n); }
    template <std::size_t N>
    const char* one(const std::array<const char*, N>& of) {
        return of[below(N)];
    }

private:
    std::mt19937 m_random;
};

std::string randomDeck(Dice& dice) {
    constexpr std::array names{"a", "b", "c"};
    std::string text;
    std::vector<std::string> open;
    unsigned number = 0;
    const auto start = [&] {
        const std::string name = dice.one(names);
        text.append("<").append(name).append(" n='").append(std::to_string(number++)).append("'");
        text += dice.below(3) == 0 ? " b='x'" : "";
        text += dice.below(3) == 0 ? " c='&#x79;'>" : ">";
        open.push_back(name);
    };
    start();
    for (int i = 0; i < 40; ++i) {
        if (dice.below(2) == 0) {
            start();
        } else if (open.size() > 1) {
            text.append("</").append(open.back()).append(">t").append(std::to_string(i));
            open.pop_back();
        }
    }
    for (; !open.empty(); open.pop_back()) {
        text.append("</").append(open.back()).append(">");
    }
    return text;
}

std::string randomPattern(Dice& dice) {
    constexpr std::array tests{"a", "b", "*", "*", "b", "c", "@b", "@*", ".", "..", "..", "."};
    constexpr std::array predicates{"[1]", "[2]", "[@b]", "[@c='y']", "[@b = \"x\" ]", "[ 3 ]"};
    constexpr std::array links{"/", "//", " / "};
    std::string pattern;
    const unsigned alternatives = 1 + dice.below(2);
    for (unsigned i = 0; i < alternatives; ++i) {
        pattern += i == 0 ? "" : " | ";
        pattern += dice.one(std::array{"", "/", "//"});
        const unsigned steps = 1 + dice.below(4);
        for (unsigned step = 0; step < steps; ++step) {
            pattern += step == 0 ? "" : dice.one(links);
            const std::string test = dice.one(tests);
            pattern += test;
            for (unsigned count = test[0] == '.' ? 0 : dice.below(3); count > 0; --count) {
                pattern += dice.one(predicates);
            }
        }
    }
    return pattern;
}

TEST(LocationPath, SelectsWhatTheOracleSelects) {
    Dice dice(4711);
    std::size_t selected = 0;
    for (int round = 0; round < 200; ++round) {
        const std::string text = randomDeck(dice);
        const auto tree = ravikit::parse(support::u16(text));
        xmlDoc* document =
            xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, 0);
        ASSERT_NE(document, nullptr) << text;
        // From the document, and from the first element inside the root.
        Tree::Id inner = tree->firstContent(tree->documentElement());
        xmlNode* oracleInner = xmlDocGetRootElement(document)->children;
        for (int i = 0; i < 30; ++i) {
            const std::string pattern = randomPattern(dice);
            SCOPED_TRACE(text);
            SCOPED_TRACE(pattern);
            const Signs signs = select(*tree, Tree::document, pattern);
            selected += signs.size();
            ASSERT_EQ(signs,
                      selectByOracle(document, reinterpret_cast<xmlNode*>(document), pattern));
            if (oracleInner != nullptr) {
                ASSERT_EQ(select(*tree, inner, pattern),
                          selectByOracle(document, oracleInner, pattern));
            }
        }
        xmlFreeDoc(document);
    }
    EXPECT_GT(selected, 10000U);
}

TEST(LocationPath, RefusesWhatIsNoSimplePathAndSaysWhere) {
    for (const char* const pattern :
         {"",      " ",     "a[",     "a[]",      "a[@b=]", "a[@b='x]", "a[last()]", "a[1.5]",
          "a[-1]", "a/",    "a//",    "//",       "///a",   "a|",       "|a",        "@",
          "@@a",   "a b",   "text()", "child::a", "a:*",    ":a",       "a:",        "$x",
          "a[b]",  "..[1]", ".[1]",   "/ /a",     "a]",     "...",      "1"}) {
        std::u16string reason;
        EXPECT_FALSE(LocationPath::compile(support::u16(pattern), reason)) << pattern;
        EXPECT_NE(reason.find(support::u16(pattern)), std::u16string::npos) << pattern;
    }
    std::u16string reason;
    LocationPath::compile(u"//card[first]", reason);
    EXPECT_EQ(reason, u"In the location path `//card[first]`, a number, `@name` or "
                      u"`@name='value'` should stand in front of `first]`");
}

TEST(LocationPath, ComparesPrefixedNamesAsWrittenAndValuesAsRead) {
    const auto tree = ravikit::parse(u"<w:a n='1'><A n='2' b='1&lt;2'/><\x00E4 n='3'/></w:a>");
    EXPECT_EQ(select(*tree, Tree::document, "w:a"), (Signs{"1"}));
    EXPECT_EQ(select(*tree, Tree::document, "//a"), Signs{});
    EXPECT_EQ(select(*tree, Tree::document, "//A[@b='1<2']"), (Signs{"2"}));
    EXPECT_EQ(select(*tree, Tree::document, "*/*[4294967297]"), Signs{});
    EXPECT_EQ(select(*tree, Tree::document, "*/*[0]"), Signs{});
    std::u16string reason;
    EXPECT_EQ(LocationPath::compile(u"//\x00E4", reason)->select(*tree, Tree::document).size(), 1U);
}

} // namespace
