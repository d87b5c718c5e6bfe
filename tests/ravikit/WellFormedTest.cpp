// Our verdict on the niceties of XML, and libxml2's on the same texts.

#include "ravikit/Parser.h"
#include "tests/ravikit/LibXml.h"
#include "tests/ravikit/Tiling.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

struct Nicety {
    std::u16string_view text;
    bool good;
    const char* whyLibXmlDiffers = nullptr;
};

using namespace std::string_view_literals;

constexpr Nicety niceties[] = {
    // Elements and their names.
    {u"<a/>", true},
    {u"<a></a>", true},
    {u"<a ></a >", true},
    {u"<a\n\t/>", true},
    {u"<_/>", true},
    {u"<:/>", true},
    {u"<a:b:c/>", true},
    {u"<a-1.2\u00B7/>", true},
    {u"<\u00E9l\u00E9ment/>", true},
    {u"<\u0531\u0300\u203F/>", true},
    {u"<\u0221/>", true}, // a letter since the fifth edition
    {u"<\U00010000/>", true},
    {u"<\U000EFFFF></\U000EFFFF>", true},
    {u"<\U000F0000/>", false},
    {u"<a\u00D7/>", false},
    {u"<a\u2190/>", false},
    {u"<\u0300/>", false},
    {u"<1/>", false},
    {u"<-a/>", false},
    {u"< a/>", false},
    {u"<a><b></a></b>", false},
    {u"<\u8A9E>\u8A9E</\u8A9E>", true},
    {u"<a b='\u8A9E' c='\u8A9E&lt;'>\u8A9E<b/>\u8A9E&lt;</a>", true},
    {u"<a>\u8A9E]]></a>", false},
    {u"<a b='\u8A9E<'/>", false},
    {u"<a></A>", false},
    {u"<a></a", false},
    {u"<a></ a>", false},
    {u"<a></a b>", false},
    {u"<a></a/>", false},
    {u"<a/ >", false},
    {u"<a", false},
    {u"<a>", false},
    {u"<a><b/>", false},
    {u"</a>", false},
    {u"<a><</a>", false},
    {u"<>x</>", false},
    {u"<averylongnameindeedofmorethansixteen/>", true},
    {u"<averylongnameindeedofmorethansixteen></averylongnameindeedofmorethansixteem>", false},

    // Attributes.
    {u"<a b='c' d=\"e\"/>", true},
    {u"<a b = 'c'\n/>", true},
    {u"<a b='\"' c=\"'\"/>", true},
    {u"<a b='>'/>", true},
    {u"<a b=''/>", true},
    {u"<a b='c'd='e'/>", false},
    {u"<a b='<'/>", false},
    {u"<a b=c/>", false},
    {u"<a b/>", false},
    {u"<a b=/>", false},
    {u"<a 'c'/>", false},
    {u"<a b='c/>", false},
    {u"<a b='c' b='d'/>", false},
    {u"<a b='c' B='d'/>", true},
    {u"<a b='1' c='2' d='3' e='4' b='5'/>", false},
    {u"<a b='c&d'/>", false},
    {u"<a b='&#10;&lt;&#x9;'/>", true},
    {u"<a xml:lang='x y'/>", true},
    {u"<a xmlns:b='' b:c='' d:e=''/>", true},

    // Characters.
    {u"<a>\t\n\r \u007F\u0085\u2028</a>", true},
    {u"<a>\u0001</a>", false},
    {u"<a>\u000C</a>", false},
    {u"<a b='\u001F'/>", false},
    {u"<a><!--\u0008--></a>", false},
    {u"<a><?p \u0008?></a>", false},
    {u"<a><![CDATA[\u0008]]></a>", false},
    {u"<a>\u7FFF\u8000\uD7FF\uE000\uFFFD</a>", true},
    {u"<a>\uFFFE</a>", false},
    {u"<a>\uFFFF</a>", false},
    {u"<a>\U0001F600\U0010FFFF</a>", true},
    {u"<a>\xD800</a>", false},
    {u"<a>\xDC00\xD800</a>", false},
    {u"<a>\xD800\xD800\xDC00</a>", false},
    {u"<a b='\xDFFF'/>", false},
    {u"\uFEFF<a/>", true},
    {u" \uFEFF<a/>", false},
    {u"<a>\0</a>"sv, false},

    // Text and what interrupts it.
    {u"<a>]]></a>", false},
    {u"<a>]] ></a>", true},
    {u"<a>]]]></a>", false},
    {u"<a>></a>", true},
    {u"<a b=']]>'/>", true},
    {u"<a><![CDATA[<&]]]]></a>", true},
    {u"<a><![CDATA[]]]]]></a>", true},
    {u"<a><![CDATA[]]></a>", true},
    {u"<a><![CDATA[x]></a>", false},
    {u"<a><![cdata[x]]></a>", false},
    {u"<a><![CDATA [x]]></a>", false},
    {u"<![CDATA[x]]><a/>", false},
    {u"<a><!----></a>", true},
    {u"<a><!-- - -></a>", false},
    {u"<a><!-- -- --></a>", false},
    {u"<a><!-- ---></a>", false},
    {u"<a><!---></a>", false},
    {u"<a><!--></a>", false},
    {u"<a><!- x --></a>", false},
    {u"<a><!-- x</a>", false},
    {u"<a><?p?></a>", true},
    {u"<a><?p ?x?></a>", true},
    {u"<a><?p<&?></a>", false},
    {u"<a><?p x></a>", false},
    {u"<a><? p?></a>", false},
    {u"<a><?xml version='1.0'?></a>", false},
    {u"<a><?XML x?></a>", false},
    {u"<a><?xmlx x?></a>", true},
    {u"<a><?p:q x?></a>", true},
    {u"<a><!x></a>", false},

    // References.
    {u"<a>&lt;&gt;&amp;&apos;&quot;</a>", true},
    {u"<a>&</a>", false},
    {u"<a>& </a>", false},
    {u"<a>&amp</a>", false},
    {u"<a>&amp ;</a>", false},
    {u"<a>&#x41;&#65;&#x1F600;</a>", true},
    {u"<a>&#X41;</a>", false},
    {u"<a>&#;</a>", false},
    {u"<a>&#x;</a>", false},
    {u"<a>&#65</a>", false},
    {u"<a>&#6g;</a>", false},
    {u"<a>&#0;</a>", false},
    {u"<a>&#8;</a>", false},
    {u"<a>&#9;&#10;&#13;</a>", true},
    {u"<a>&#xD800;</a>", false},
    {u"<a>&#xFFFE;</a>", false},
    {u"<a>&#x10FFFF;</a>", true},
    {u"<a>&#x110000;</a>", false},
    {u"<a>&#99999999999999999999;</a>", false},
    {u"<a>&#x00000000000000000000041;</a>", true},
    {u"<a>&nbsp;</a>", false},
    {u"<a b='&nbsp;'/>", false},

    // What stands around the root.
    {u"", false},
    {u" ", false},
    {u"<!-- x -->", false},
    {u"<a/><b/>", false},
    {u"<a/>x", false},
    {u"x<a/>", false},
    {u"<a/>&#32;", false},
    {u"<a/>\n<!-- x --><?p?>\n", true},
    {u"\n<a/>", true},
    {u"<a/><!DOCTYPE a>", false},
    {u"<!DOCTYPE a><!DOCTYPE a><a/>", false},
    {u"<a/></a>", false},

    // The XML declaration.
    {u"<?xml version='1.0'?><a/>", true},
    {u"<?xml version=\"1.0\" encoding='UTF-8' standalone='no' ?><a/>", true},
    {u"<?xml version = '1.0' standalone = 'yes'?><a/>", true},
    {u"<?xml version='1.9'?><a/>", true},
    {u"<?xml version='2.0'?><a/>", false},
    {u"<?xml version='1.0a'?><a/>", false},
    {u"<?xml version='1.'?><a/>", false, "it asks for no digit behind the point"},
    {u"<?xml version=''?><a/>", false},
    {u"<?xml version=1.0?><a/>", false},
    {u"<?xml encoding='UTF-8'?><a/>", false},
    {u"<?xml?><a/>", false},
    {u"<?xml version='1.0' standalone='yes' encoding='UTF-8'?><a/>", false},
    {u"<?xml version='1.0' standalone='maybe'?><a/>", false},
    {u"<?xml version='1.0' encoding=''?><a/>", false},
    {u"<?xml version='1.0' encoding='8bit'?><a/>", false},
    {u"<?xml version='1.0' encoding='latin 1'?><a/>", false},
    {u"<?xml version='1.0'encoding='UTF-8'?><a/>", false},
    {u"<?xml version='1.0' x='y'?><a/>", false},
    {u"<?xml version='1.0'><a/>", false},
    {u"<?XML version='1.0'?><a/>", false},
    {u" <?xml version='1.0'?><a/>", false},
    {u"<?xml-stylesheet href='x'?><a/>", true},

    // The DOCTYPE.
    {u"<!DOCTYPE a><a/>", true},
    {u"<!DOCTYPE b ><a/>", true},
    {u"<!DOCTYPE a SYSTEM 's'><a/>", true},
    {u"<!DOCTYPE a PUBLIC '-//X' \"s's\"><a/>", true},
    {u"<!DOCTYPE a PUBLIC '-//X'><a/>", false},
    {u"<!DOCTYPE a PUBLIC '-//{}' 's'><a/>", false},
    {u"<!DOCTYPE a PUBLIC '-//X''s'><a/>", false},
    {u"<!DOCTYPE a SYSTEM's'><a/>", false},
    {u"<!DOCTYPE a SYSTEM s><a/>", false},
    {u"<!DOCTYPE><a/>", false},
    {u"<!DOCTYPEa><a/>", false, "it asks for no blank there"},
    {u"<!doctype a><a/>", false},
    {u"<!DOCTYPE a [ ] ><a/>", true},
    {u"<!DOCTYPE a [><a/>", false},
    {u"<!DOCTYPE a [<!-- ]> --><?p ]>?>]><a/>", true},
    {u"<!DOCTYPE a [x]><a/>", false},
    {u"<!DOCTYPE a [<a/>]><a/>", false},
    {u"<!DOCTYPE a [<!ELEMENT a (b,c)*><!ELEMENT b EMPTY>]><a/>", true},
    {u"<!DOCTYPE a [<!ELEMENT a (b,c|d)>]><a/>", false},
    {u"<!DOCTYPE a [<!ELEMENT a (#PCDATA|b)>]><a/>", false},
    {u"<!DOCTYPE a [<!ELEMENT a(b)>]><a/>", false},
    {u"<!DOCTYPE a [<!ATTLIST a b CDATA 'c' d (e|f) #IMPLIED>]><a/>", true},
    {u"<!DOCTYPE a [<!ATTLIST a b CDATA '<'>]><a/>", false},
    {u"<!DOCTYPE a [<!ATTLIST a b cdata #IMPLIED>]><a/>", false},
    {u"<!DOCTYPE a [<!NOTATION n PUBLIC 'p'>]><a/>", true},
    {u"<!DOCTYPE a [<![INCLUDE[<!ELEMENT a ANY>]]>]><a/>", false},

    // Entities.
    {u"<!DOCTYPE a [<!ENTITY e 'x'>]><a b='&e;'>&e;</a>", true},
    {u"<!DOCTYPE a [<!ENTITY e 'x'>]><a>&f;</a>", false},
    {u"<!DOCTYPE a [<!ENTITY e '&f;'><!ENTITY f 'x'>]><a b='&e;'>&e;</a>", true},
    {u"<!DOCTYPE a [<!ENTITY e '&f;'>]><a>&e;</a>", false},
    {u"<!DOCTYPE a [<!ENTITY e '&f;'>]><a/>", true},
    {u"<!DOCTYPE a [<!ENTITY e '&e;'>]><a>&e;</a>", false},
    {u"<!DOCTYPE a [<!ENTITY e '&f;'><!ENTITY f '&e;'>]><a b='&e;'/>", false},
    {u"<!DOCTYPE a [<!ENTITY e '<b>x</b>'>]><a>&e;</a>", true},
    {u"<!DOCTYPE a [<!ENTITY e '<b>x</b>'>]><a b='&e;'/>", false},
    {u"<!DOCTYPE a [<!ENTITY e '&#60;'>]><a b='&e;'/>", false},
    {u"<!DOCTYPE a [<!ENTITY e '&#38;#60;'>]><a b='&e;'>&e;</a>", true},
    {u"<!DOCTYPE a [<!ENTITY e '&#38;'>]><a>&e;</a>", false},
    {u"<!DOCTYPE a [<!ENTITY e '<b>'>]><a>&e;</b></a>", false},
    {u"<!DOCTYPE a [<!ENTITY e '</a><a>'>]><a>&e;</a>", false},
    {u"<!DOCTYPE a [<!ENTITY e '<!--'>]><a>&e; --></a>", false},
    {u"<!DOCTYPE a [<!ENTITY e '<!-- x --><?p?><![CDATA[<]]>'>]><a>&e;</a>", true},
    {u"<!DOCTYPE a [<!ENTITY e '<b c=\"&f;\"/>'><!ENTITY f '<'>]><a>&e;</a>", false},
    {u"<!DOCTYPE a [<!ENTITY e SYSTEM 's'>]><a>&e;</a>", true},
    {u"<!DOCTYPE a [<!ENTITY e SYSTEM 's'>]><a b='&e;'/>", false},
    {u"<!DOCTYPE a [<!ENTITY e SYSTEM 's' NDATA n>]><a>&e;</a>", false},
    {u"<!DOCTYPE a [<!ENTITY e 'x'><!ENTITY e '<'>]><a>&e;</a>", true},
    {u"<!DOCTYPE a [<!ENTITY % p '<!ENTITY e \"x\">'>%p;]><a>&e;</a>", true},
    {u"<!DOCTYPE a [<!ENTITY % p 'x'><!ENTITY e '%p;'>]><a/>", false},
    {u"<!DOCTYPE a [%p;]><a/>", false},
    {u"<!DOCTYPE a [<!ENTITY % p SYSTEM 's'>%p;]><a>&f;</a>", true,
     "it takes no note of a reference to a parameter entity that it does not fetch"},
    {u"<!DOCTYPE a SYSTEM 's'><a>&f;</a>", true},
    {u"<!DOCTYPE a SYSTEM 's'><a b='&f;'/>", true},
    {u"<?xml version='1.0' standalone='yes'?><!DOCTYPE a SYSTEM 's'><a>&f;</a>", false},
    {u"<!DOCTYPE a SYSTEM 's' [<!ENTITY e '&f;'>]><a>&e;</a>", true,
     "inside an entity's text it forgets that the external subset may declare more"},
    {u"<!DOCTYPE a [<!ENTITY e 'x'>]><a/>&e;", false},
};

TEST(WellFormed, NicetiesAsXmlAndLibXmlSay) {
    for (const Nicety& nicety : niceties) {
        const std::string utf8 = libxml::utf8(nicety.text);
        const auto tree = ravikit::parse(std::u16string(nicety.text));
        EXPECT_EQ(tree->wellFormed(), nicety.good) << utf8;
        EXPECT_EQ(tiling::faultOf(*tree), "") << utf8;
        const bool agrees = libxml::verdict(utf8).wellFormed == nicety.good;
        EXPECT_EQ(agrees, nicety.whyLibXmlDiffers == nullptr) << utf8;
    }
}

} // namespace
