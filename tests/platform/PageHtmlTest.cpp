#include "tests/platform/PageParts.h"

using namespace page_test;

TEST(PageHtml, IsWrittenAsBrowsersWriteIt) {
    const struct {
        std::u16string given;
        std::u16string modern;
        std::u16string older;
    } cases[] = {
        {u"<P ALIGN=center Title='a \"b\" <c>&nbsp;&amp;'>x<BR>y", //
         u"<p align=\"center\" title=\"a &quot;b&quot; <c>&nbsp;&amp;\">x<br>y</p>",
         u"<P align=center title=\"a &quot;b&quot; <c>&nbsp;&amp;\">x<BR>y</P>"},
        {u"a &lt; b &amp; c &gt; d &nbsp;\" <!-- n -->", //
         u"a &lt; b &amp; c &gt; d &nbsp;\" <!-- n -->",
         u"a &lt; b &amp; c &gt; d &nbsp;\" <!-- n -->"},
        {u"x<script>if (a<b&&c) d();</script><img src=x.png alt=''>",
         u"x<script>if (a<b&&c) d();</script><img src=\"x.png\" alt=\"\">",
         u"x<SCRIPT>if (a<b&&c) d();</SCRIPT><IMG src=x.png alt=\"\">"},
        {u"<p>a<p>b<pre>\n c</pre>", u"<p>a</p><p>b</p><pre> c</pre>",
         u"<P>a</P>\r\n<P>b</P><PRE> c</PRE>"},
        {u"<b><i>x</b>y</i>", u"<b><i>x</i></b><i>y</i>", u"<B><I>x</I></B><I>y</I>"},
        {u"<card ID=c>\U0001F600</card>", u"<card id=\"c\">\U0001F600</card>",
         u"<CARD id=c>\U0001F600</CARD>"},
        {u"<svg viewBox=x><foreignObject/><a xlink:href=u /></svg>",
         u"<svg viewBox=\"x\"><foreignObject></foreignObject><a xlink:href=\"u\"></a></svg>",
         u"<svg viewBox=x><foreignObject></foreignObject><a xlink:href=u></a></svg>"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(bodyOf(makePage(each.given)), each.modern);
        EXPECT_EQ(bodyOf(makePage(each.given, PageWriting::Older)), each.older);
        EXPECT_EQ(bodyOf(makePage(each.older)), bodyOf(makePage(bodyOf(makePage(each.older)))));
    }
}

TEST(PageHtml, BodyTakesOverABodyTagThatIsWrittenIntoIt) {
    const auto page = makePage(u"<body id=b text=red><p>old</p>");
    page->body()->innerHTML(u" <BODY text=#000000 bgColor=#ffffff><P><FONT face=Verdana></FONT>"
                            u"&nbsp;</P></BODY>");
    EXPECT_EQ(page->body()->outerHTML(), u"<body id=\"b\" text=\"#000000\" bgcolor=\"#ffffff\">"
                                         u"<p><font face=\"Verdana\"></font>&nbsp;</p></body>");

    page->body()->innerHTML(u"<bodyguard>x</bodyguard>");
    EXPECT_EQ(bodyOf(page), u"<bodyguard>x</bodyguard>");
}

TEST(PageHtml, FragmentIsParsedAsContentOfItsElement) {
    const auto page = makePage(u"<table><tr id=r><td>1</table><textarea></textarea><pre></pre>");
    first(page, u"tr")->innerHTML(u"<td>2<td>3");
    EXPECT_EQ(first(page, u"tr")->outerHTML(), u"<tr id=\"r\"><td>2</td><td>3</td></tr>");
    first(page, u"textarea")->innerHTML(u"<b>&amp;");
    EXPECT_EQ(first(page, u"textarea")->outerHTML(), u"<textarea>&lt;b&gt;&amp;</textarea>");
    first(page, u"pre")->innerHTML(u"\n\nx");
    EXPECT_EQ(first(page, u"pre")->innerHTML(), u"\n\nx");
    first(page, u"textarea")->parentElement()->innerHTML(u"<td>only text</td>");
    EXPECT_EQ(bodyOf(page), u"only text");
}

TEST(PageElements, AreFoundWithoutRegardToCaseAndFollowThePage) {
    const auto page = makePage(u"<p>a<b>c</b></p><DIV><p>d</p></DIV>");
    const auto paragraphs = page->getElementsByTagName(u"P");
    ASSERT_EQ(paragraphs->length(), 2);
    EXPECT_EQ(paragraphs->item(1)->tagName(), u"P");
    EXPECT_EQ(paragraphs->item(1)->parentElement()->tagName(), u"DIV");
    EXPECT_EQ(paragraphs->item(2), nullptr);
    EXPECT_EQ(paragraphs->item(-1), nullptr);
    EXPECT_EQ(page->getElementsByTagName(u"*")->length(), 7);
    EXPECT_EQ(page->getElementsByTagName(u"HTML")->item(0)->parentElement(), nullptr);
    EXPECT_EQ(page->body()->all()->length(), 4);
    EXPECT_EQ(page->body()->all()->item(1)->tagName(), u"B");

    page->body()->innerHTML(u"<p>x");
    EXPECT_EQ(paragraphs->length(), 1);
    EXPECT_EQ(paragraphs->item(0)->innerText(), u"x");
}

TEST(PageElements, SetAttributeMatchesItsNameWithoutRegardToCase) {
    const auto page = makePage(u"<p align=left>a</p>");
    const auto paragraph = first(page, u"p");
    paragraph->setAttribute(u"ALIGN", std::u16string(u"right"), 0);
    paragraph->setAttribute(u"Width", std::int32_t{12}, 0);
    paragraph->setAttribute(u"Nowrap", true, 1);
    EXPECT_EQ(bodyOf(page), u"<p align=\"right\" width=\"12\" Nowrap=\"true\">a</p>");
    EXPECT_THROW(paragraph->setAttribute(u"a b", std::u16string(u"x"), 0), Failure);
    EXPECT_THROW(paragraph->setAttribute(u"", std::u16string(u"x"), 0), Failure);
    EXPECT_THROW(paragraph->setAttribute(u"a", ObjectRef(page), 0), Failure);
}

TEST(PageElements, LiveOnWhenTheyHaveLeftThePage) {
    auto page = makePage(u"<div><p>a <b>bold</b></p></div>");
    const auto paragraph = first(page, u"p");
    const auto bold = first(page, u"b");
    for (int i = 0; i < 3000; ++i) { // enough to have what is no longer used freed
        page->body()->innerHTML(u"<p>1</p><p>2</p><p>3</p>");
    }
    EXPECT_EQ(paragraph->outerHTML(), u"<p>a <b>bold</b></p>");
    EXPECT_EQ(bold->parentElement()->uniqueID(), paragraph->uniqueID());
    EXPECT_NE(bold->uniqueID(), paragraph->uniqueID());
    EXPECT_THROW(page->selectObject(bold), Failure);
    page.reset();
    bold->innerHTML(u"<i>still</i>");
    EXPECT_EQ(paragraph->innerText(), u"a still");
}

TEST(PageText, IsWhatAReaderSees) {
    const struct {
        std::u16string html;
        std::u16string text;
    } cases[] = {
        {u"  <p> one\n two </p>\n<p>three</p> ", u"one two\n\nthree"},
        {u"<div>a<div>b</div>c</div>", u"a\nb\nc"},
        {u"a <br> b", u"a\nb"},
        {u"one <b> two</b> <i>three </i>four", u"one two three four"},
        {u"a<pre> x\n  y</pre>b", u"a\n x\n  y\nb"},
        {u"<div style='White-Space: pre-wrap'> x  y</div>", u" x  y"},
        {u"a&nbsp; &nbsp;b", u"a\u00A0 \u00A0b"},
        {u"a<script>b</script><style>c</style><!--d--><textarea>e</textarea>f", u"af"},
        {u"a<span hidden>b</span><div style='color:red; display:none'>c</div>d", u"ad"},
        {u"a<span style='visibility:hidden'>b<u style='visibility:visible'>c</u></span>", u"ac"},
        {u"a<span style='display:block'>b</span>c", u"a\nb\nc"},
        {u"<table><tr><td>a</td> <td>b</td></tr><tr><td>c</td><td>d</td></tr></table>e",
         u"a\tb\nc\td\ne"},
        {u"<select><option>x<option>y</select>", u"x\ny"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(makePage(each.html)->body()->innerText(), each.text);
    }
    EXPECT_EQ(first(makePage(u"<style>a  b</style>"), u"style")->innerText(), u"a  b");
}
