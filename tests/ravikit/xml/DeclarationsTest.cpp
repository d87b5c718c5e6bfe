// What a DOCTYPE or a DTD declares, and when it is not well-formed; libxml2 says the same of each.

#include "ravikit/xml/declarations/Declarations.h"
#include "ravikit/xml/Parser.h"
#include "support/Test.h"
#include "tests/ravikit/xml/LibXml.h"

namespace {

using ravikit::Declarations;
using ravikit::ProblemKind;
using ravikit::Problems;

Declarations read(const std::u16string& text, Problems& problems, bool internalSubset = false) {
    return ravikit::readDeclarations(text, 0, static_cast<std::uint32_t>(text.size()),
                                     internalSubset, problems);
}

/// The replacement text of `name`; problems fail the test.
std::u16string replacement(const std::u16string& text, const std::u16string& name) {
    Problems problems;
    const Declarations declarations = read(text, problems);
    EXPECT_TRUE(problems.empty()) << libxml::utf8(text);
    const auto entity = declarations.entities.find(name);
    return entity == declarations.entities.end() ? u"(none)" : entity->second.replacement;
}

// What stands between [ and ].
constexpr std::u16string_view good[] = {
    u"<!ATTLIST a><!ATTLIST a ><!ATTLIST a x IDREFS #REQUIRED y ENTITIES #IMPLIED>",
    u"<!ATTLIST a x ID #IMPLIED  y CDATA #FIXED '1' z NOTATION (n | m) #IMPLIED>",
    u"<!ELEMENT a (a, (b|c)?,d*)+><!ELEMENT b ( #PCDATA | c | c )*><!ELEMENT c (#PCDATA)*>",
    u"<!ELEMENT a:b:c EMPTY ><?a ?x?><?xml-a?><!---->",
    u"<!NOTATION n PUBLIC 'a'  ><!NOTATION m PUBLIC 'a' 'b{'><!NOTATION o SYSTEM 'x#y'>",
    u"<!ENTITY e '&#38;#60;&lt;'><!ATTLIST a b CDATA '&e;'>",
    // In a parameter entity, others can stand anywhere between words.
    u"<!ENTITY % x 'a'><!ENTITY % y '<!ELEMENT a (&#37;x;)>'>%y;",
    u"<!ENTITY % x '(a'><!ENTITY % y '<!ATTLIST a b &#37;x;) #IMPLIED>'>%y;",
    u"<!ENTITY % x ''><!ENTITY % y '<!ELEMENT&#37;x;a EMPTY>'>%y;",
    u"<!ENTITY % y '<!ENTITY &#37; p \"d\">'>%y;%p2;<!ATTLIST a b CDATA '&unknown;'>",
    u"<!ENTITY % e \"<!ATTLIST a b CDATA '&#37;e;'>\">%e; ",
};
constexpr std::u16string_view bad[] = {

    // Elements.
    u"<!ELEMENT a (a,)>", u"<!ELEMENT a ()>", u"<!ELEMENT a (a +)>", u"<!ELEMENT a ANYx>",
    u"<!ELEMENT a (#PCDATA)+>", u"<!ELEMENT a ((#PCDATA)*)>", u"<!ELEMENTa EMPTY>",

    // Attributes.
    u"<!ATTLIST a x (a|b)'a'>", u"<!ATTLIST a x NOTATION(a) #IMPLIED>",
    u"<!ATTLIST a x NOTATION (1) #IMPLIED>", u"<!ATTLIST a x CDATA #FIXED'1'>",
    u"<!ATTLIST a x CDATA '1'y CDATA '2'>", u"<!ATTLIST a x CDATA '&amp'>",
    u"<!ATTLIST a x CDATA '&#1;'>", u"<!ATTLIST a x CDATA '&e;'><!ENTITY e '1'>",
    u"<!ENTITY e '&x;'><!ATTLIST a b CDATA '&e;'>",
    u"<!ENTITY e SYSTEM 'x'><!ATTLIST a b CDATA '&e;'>",
    u"<!ENTITY e '&#38;#0;'><!ATTLIST a b CDATA '&e;'>",

    // Notations, entities and the rest.
    u"<!NOTATION n PUBLIC 'a{'>", u"<!NOTATION n PUBLIC 'a''b'>", u"<!ENTITY n PUBLIC 'a' >",
    u"<!ENTITY n SYSTEM 'a'NDATA x>", u"<!ENTITY % n SYSTEM 'a' NDATA x>",
    u"<!ENTITY n SYSTEM 'a#b'>", u"<!ENTITY n 'a%'>", u"<!ENTITY n 'a& b'>", u"<!ENTITY n '&#0;'>",
    u"<?XML x?>", u"<?a/?>", u"<!-- a--->", u"%x;", u"<!ENTITY % x ''>%x",
    u"<!ENTITY % x ''>%x;<!ELEMENT %x; a EMPTY>", u"<!ENTITY % x ']'>%x;",
    // A declaration, a group and a literal each begin and end in the same entity.
    u"<!ENTITY % x '<!ELEMENT a '>%x; EMPTY>",
    u"<!ENTITY % x 'a)'><!ENTITY % y '<!ELEMENT a (&#37;x;>'>%y;",
    u"<!ENTITY % x '#PCDATA)'><!ENTITY % y '<!ELEMENT a (&#37;x;>'>%y;",
    u"<!ENTITY % x '\"a'><!ENTITY % y '<!ENTITY b &#37;x;\">'>%y;", u"<!ENTITY % b '<!-- '>%b; -->",
    // Entities that lead back to themselves.
    u"<!ENTITY % a '&#37;b;'><!ENTITY % b '&#37;a;'> %a;",
    u"<!ENTITY % y \"<!ENTITY b '&#37;y;'>\">%y;"};

TEST(Declarations, AreWellFormedWhereLibXmlSaysSo) {
    const auto expect = [](std::u16string_view subset, bool expected) {
        const std::u16string text = u"<!DOCTYPE a [" + std::u16string(subset) + u"]><a/>";
        EXPECT_EQ(ravikit::parse(text)->wellFormed(), expected) << libxml::utf8(text);
        EXPECT_EQ(libxml::verdict(libxml::utf8(text)).wellFormed, expected) << libxml::utf8(text);
    };
    for (const std::u16string_view subset : good) {
        expect(subset, true);
    }
    for (const std::u16string_view subset : bad) {
        expect(subset, false);
    }
}

TEST(Declarations, UndeclaredEntitiesMayStandElsewhereOnlyIfThereIsAnElsewhere) {
    const std::u16string subset = u" [%x;<!ATTLIST a b CDATA '&y;'>]><a/>";
    const std::u16string standalone = u"<?xml version='1.0' standalone='yes'?>";
    EXPECT_TRUE(ravikit::parse(u"<!DOCTYPE a SYSTEM 's'" + subset)->wellFormed());
    EXPECT_FALSE(ravikit::parse(u"<!DOCTYPE a" + subset)->wellFormed());
    EXPECT_FALSE(ravikit::parse(standalone + u"<!DOCTYPE a SYSTEM 's'" + subset)->wellFormed());
}

TEST(Declarations, EntityValuesResolveWhatTheyMustAndNothingElse) {
    EXPECT_EQ(replacement(u"<!ENTITY e '&#65;&b;&#38;\r\n\r&#13;'>", u"e"), u"A&b;&\n\n\r");
    EXPECT_EQ(replacement(u"<!ENTITY % p '&#38;#66;'><!ENTITY e '%p;%p;'>", u"e"), u"BB");
    EXPECT_EQ(replacement(u"<!ENTITY e 'first'><!ENTITY e 'second'>", u"e"), u"first");
    // XML knows this one itself.
    EXPECT_EQ(replacement(u"<!ENTITY lt 'x'>", u"lt"), u"(none)");
}

TEST(Declarations, DefaultsAreNormalisedByTheirType) {
    Problems problems;
    const Declarations declarations =
        read(u"<!ENTITY e ' &#38;lt; '><!ATTLIST a b CDATA '\tx&e;&#10;' c NMTOKENS ' x\r\n y '"
             u" b CDATA 'z'>",
             problems);
    ASSERT_EQ(declarations.attributes.size(), 2U);
    EXPECT_EQ(declarations.attributes[0].defaultValue, u" x < \n");
    EXPECT_EQ(declarations.attributes[1].defaultValue, u"x y");
}

TEST(Declarations, OfADtdFileMayUseSectionsAndReferencesAnywhere) {
    Problems problems;
    const Declarations declarations =
        read(u"<?xml encoding='UTF-8'?>"
             u"<!ENTITY % use 'INCLUDE'><!ENTITY % a 'x, y'>"
             u"<![%use;[ <!ELEMENT one (%a;)> <![IGNORE[ <![INCLUDE[ < ]]> <!ELEMENT two EMPTY> ]]>"
             u"]]><!ELEMENT one EMPTY>",
             problems);
    EXPECT_TRUE(problems.empty());
    ASSERT_EQ(declarations.elements.size(), 1U);
    EXPECT_EQ(declarations.elements[0].model.children.size(), 2U);

    for (const std::u16string_view text : {u"<![INCLUDE[", u"<![IGNORE[ <![ ]]>", u"]]>",
                                           u"<![OTHER[]]>", u"<?xml version='1.0'?>"}) {
        Problems found;
        read(std::u16string(text), found);
        EXPECT_EQ(found.list().size(), 1U) << libxml::utf8(text);
    }
}

TEST(Declarations, EachBadDeclarationIsToldOnceAndTheNextOneIsRead) {
    const std::u16string text = u"<!ELEMENT a (b,)> junk <!ELEMENT c EMPTY> <!ENTITY % p "
                                u"'<!ATTLIST c x>'> %p; <!ATTLIST c y CDATA 'z'>";
    Problems problems;
    const Declarations declarations = read(text, problems, true);
    ASSERT_EQ(problems.list().size(), 3U);
    EXPECT_EQ(problems.list()[0].begin, text.find(u')'));
    EXPECT_EQ(problems.list()[1].begin, text.find(u"junk"));
    EXPECT_EQ(problems.list()[2].begin, text.find(u"%p;")); // the place of what is inside
    EXPECT_EQ(declarations.elements.size(), 1U);
    EXPECT_EQ(declarations.attributes.size(), 1U);
}

TEST(Declarations, ABombEndsWithOneProblem) {
    std::u16string text = u"<!ENTITY % a0 ''>";
    for (int i = 1; i < 30; ++i) {
        text += u"<!ENTITY % a" + support::u16(std::to_string(i)) + u" '";
        text +=
            support::repeated(u"&#37;a" + support::u16(std::to_string(i - 1)) + u";", 10) + u"'>";
    }
    for (const std::u16string_view use :
         {u"%a29;", u"<!ENTITY % e \"<!ENTITY x '&#37;a29;'>\">%e;"}) {
        Problems problems;
        read(text + std::u16string(use) + u"<!ELEMENT a EMPTY>", problems, true);
        ASSERT_EQ(problems.list().size(), 1U);
        EXPECT_EQ(problems.list()[0].kind, ProblemKind::EntityTooLarge);
    }
}

TEST(Declarations, TheInternalSubsetEndsAtTheBracketThatIsNoneOfItsText) {
    const std::u16string text =
        u"<!ENTITY e ']>'><!-- ]> ' --><?p ]> \" ?><!ENTITY f \"'\"> ]><wml>";
    EXPECT_EQ(ravikit::internalSubsetEnd(text, 0), text.find(u"]><wml"));
    // What is opened and never closed hides nothing.
    const std::u16string broken = u"<!-- <!ENTITY e 'x> ]><wml/>";
    EXPECT_EQ(ravikit::internalSubsetEnd(broken, 0), broken.find(u']'));
    EXPECT_EQ(ravikit::internalSubsetEnd(u"<!ENTITY e ']'>", 0), 15U);
}

} // namespace
