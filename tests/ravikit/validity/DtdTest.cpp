// Content models as tables, and the files that ship beside the command.

#include "ravikit/validity/Dtd.h"
#include "ravikit/xml/Parser.h"
#include "support/File.h"
#include "support/Test.h"
#include "tests/ravikit/validity/WmlDtd.h"

#include <regex.h>

namespace {

using ravikit::Dtd;
using ravikit::NodeKind;
using ravikit::Problems;
using ravikit::Tree;
using support::u16;

/// A DTD in which `top` has this model, and a to d are empty.
std::shared_ptr<const Dtd> dtdOf(const std::string& model) {
    Problems problems;
    return Dtd::compile(u"<!ELEMENT top " + u16(model) +
                            u"><!ELEMENT a EMPTY><!ELEMENT b EMPTY>"
                            u"<!ELEMENT c EMPTY><!ELEMENT d EMPTY>",
                        problems);
}

bool accepts(const Dtd& dtd, const std::string& children) {
    std::u16string text = u"<top>";
    for (const char child : children) {
        text += {u'<', static_cast<char16_t>(child), u'/', u'>'};
    }
    Problems problems;
    dtd.judge(*ravikit::parse(text + u"</top>"), problems);
    return problems.empty();
}

/// The system's regular expressions, which take no more than linear time.
std::shared_ptr<regex_t> compiled(const std::string& pattern) {
    std::shared_ptr<regex_t> made(new regex_t, [](regex_t* r) { regfree(r), delete r; });
    EXPECT_EQ(regcomp(made.get(), pattern.c_str(), REG_EXTENDED | REG_NOSUB), 0);
    return made;
}

/// Makes random models, ambiguous ones too.
class ModelMaker {
public:
    std::size_t below(std::size_t limit) { return m_random() % limit; }

    std::string group(int depth) {
        const bool choice = below(2) == 0;
        std::string model = "(";
        for (std::size_t count = 1 + below(3); count > 0; --count) {
            model += depth < 3 && below(3) == 0 ? group(depth + 1)
                                                : std::string(1, "abcd"[below(4)]) + repeat();
            model += count == 1 ? "" : choice ? "|" : ",";
        }
        return model + ")" + repeat();
    }

private:
    std::string repeat() { return std::string("?*+...").substr(below(6), 1); }

    std::mt19937 m_random{7}; // NOLINT(cert-msc32-c,cert-msc51-cpp): the same models each time
};

TEST(Dtd, ContentModelsHoldWhatTheRegularExpressionOfTheSameFormHolds) {
    ModelMaker maker;
    int accepted = 0;
    int refused = 0;
    for (int i = 0; i < 300; ++i) {
        std::string model = maker.group(0);
        std::erase(model, '.');
        std::string pattern = model;
        std::erase(pattern, ',');
        const auto expression = compiled("^" + pattern + "$");
        const auto dtd = dtdOf(model);
        ASSERT_NE(dtd, nullptr) << model;
        for (int k = 0; k < 30; ++k) {
            std::string children;
            for (std::size_t length = maker.below(7); length > 0; --length) {
                children += "abcd"[maker.below(4)];
            }
            const bool expected = regexec(expression.get(), children.c_str(), 0, nullptr, 0) == 0;
            (expected ? accepted : refused) += 1;
            ASSERT_EQ(accepts(*dtd, children), expected) << model << " " << children;
        }
    }
    EXPECT_GT(accepted, 500);
    EXPECT_GT(refused, 500);
}

TEST(Dtd, ModelsThatWouldTakeNoEndAreRefused) {
    // The table of "the 16th from the end is an a" has 2 to the 16th states.
    std::string model = "((a|b)*,a";
    for (int i = 0; i < 16; ++i) {
        model += ",(a|b)";
    }
    EXPECT_EQ(dtdOf(model + ")"), nullptr);
    std::string large = "(a";
    for (int i = 0; i < 100000; ++i) {
        large += "|a";
    }
    EXPECT_EQ(dtdOf(large + ")*"), nullptr);
    EXPECT_EQ(dtdOf(std::string(100000, '(') + "a" + std::string(100000, ')')), nullptr);
}

TEST(Dtd, OnlyADtdIsOne) {
    for (const std::u16string_view text :
         {u"", u"<!-- nothing -->", u"<wml/>", u"<!ELEMENT a (b", u"<!ELEMENT a EMPTY> \xFFFF"}) {
        Problems problems;
        EXPECT_EQ(Dtd::compile(std::u16string(text), problems), nullptr);
        EXPECT_FALSE(problems.empty());
    }
}

using AttributesOf = std::map<std::u16string, std::set<std::u16string>>;

TEST(Dtd, TheSchemaNamesTheSameElementsAndAttributes) {
    const auto tree =
        ravikit::parse(u16(support::bytesOf(TESSALY_SOURCE_DIR "/ravikit/DTD/wml.xdr")));
    ASSERT_TRUE(tree->wellFormed());

    AttributesOf schema;
    std::u16string element;
    for (Tree::Id id = 1; id < tree->size(); ++id) {
        if (tree->kind(id) != NodeKind::Element) {
            continue;
        }
        if (tree->name(id) == u"ElementType") {
            element = tree->value(tree->attribute(id, u"name"));
            schema[element];
        } else if (tree->name(id) == u"attribute") {
            schema[element].insert(tree->value(tree->attribute(id, u"type")));
        }
    }
    AttributesOf declared;
    const auto& declarations = wmlDtd()->declarations();
    for (const auto& declaration : declarations.elements) {
        declared[declaration.name];
    }
    for (const auto& attribute : declarations.attributes) {
        declared[attribute.element].insert(attribute.name);
    }
    EXPECT_EQ(schema, declared);
}

} // namespace
