#include "tests/ravikit/convert/PageMaker.h"

#include "tests/ravikit/convert/Pages.h"
#include "tests/ravikit/validity/DeckGenerator.h"
#include "tests/ravikit/validity/WmlDtd.h"

#include <algorithm>
#include <array>
#include <vector>

namespace convert_test {

namespace {

constexpr std::array<const char16_t*, 5> decks{
    u"<wml><card id=\"c\" title=\"t\"><p id=\"q\">a <b>b</b> <a href=\"x\">l</a> <anchor>n<prev/>"
    u"</anchor> <table columns=\"1\"><tr><td>d</td></tr></table> <select><option>o</option>"
    u"</select> <fieldset>f</fieldset><input name=\"i\"/></p><pre>p</pre></card></wml>",
    u"<?xml version=\"1.0\"?>\n<wml>\n  <head><meta name=\"n\" content=\"c\"/></head>\n  <template>"
    u"<do type=\"prev\"><prev/></do></template>\n  <card id=\"one\">\n    <onevent "
    u"type=\"ontimer\">"
    u"<noop/></onevent>\n    <timer value=\"5\"/>\n    <do type=\"accept\" label=\"go\"><go "
    u"href=\"#two\"><setvar name=\"v\" value=\"1\"/></go></do>\n    <!-- c -->\n    <p "
    u"align=\"center\">x &lt; <i>y</i></p>\n    <p>z</p>\n  </card>\n  <card id=\"two\"/>\n</wml>",
    u"<wml><card><p><select name=\"s\"><optgroup title=\"g\"><option onpick=\"#x\">one</option>"
    u"<option><onevent type=\"onpick\"><noop/></onevent>two</option></optgroup></select><do "
    u"type=\"x\"><noop/></do><img alt=\"p\" src=\"q\"/><br/>end</p></card><card><p/></card></wml>",
    u"<wml><card><p><big><b>x <i>y <small>z</small></i></b></big><em><strong><u>w</u></strong></em>"
    u"</p><pre>a\n <b>b</b> <a href=\"u\">c<br/>d</a></pre></card></wml>",
    u"<wml><card><p><table columns=\"2\" align=\"LR\"><tr><td>a<b>b</b></td><td/></tr><tr><td>"
    u"<anchor title=\"t\">g<go href=\"h\"/></anchor></td><td>e<br/>f</td></tr></table> <fieldset "
    u"title=\"t\">in <select><option>q</option></select> <input name=\"n\" value=\"v\"/></fieldset>"
    u"</p></card></wml>"};

constexpr std::array pieces{
    // Blocks and formats.
    u"<p>", u"</p>", u"<P align=center>", u"<div>", u"</div>", u"<div align=right>", u"<b>",
    u"</b>", u"<i>", u"</i>", u"<u>", u"</u>", u"<em>", u"</em>", u"<strong>", u"<big>", u"</big>",
    u"<small>", u"</small>",

    // Links, tables, lists and fields.
    u"<a href=x>", u"<a name=n id=c>", u"</a>", u"<A HREF=\"javascript:x\">", u"<table>",
    u"</table>", u"<tbody>", u"<tr>", u"</tr>", u"<td>", u"</td>", u"<th>", u"<caption>", u"<ul>",
    u"</ul>", u"<ol>", u"<li>", u"<dl>", u"<dd>", u"<pre>", u"</pre>", u"<select name=s>",
    u"</select>", u"<optgroup label=g>", u"<option>", u"</option>",

    // Sizes, and what stands alone.
    u"<font size=3>", u"<FONT size=+2 color=red>", u"</font>", u"<h1>", u"</h1>", u"<h4>", u"<br>",
    u"<hr>", u"<input name=n>", u"<input type=password name=n value=v>",
    u"<input type=hidden name=h>", u"<img src=s alt=t>", u"<IMG alt='o'>",

    // Text, and styles.
    u"text ", u" w", u"\n ", u"&lt;", u"&nbsp;", u"&eacute;", u"x<>",
    u"<span style='font-weight:bold;font-size:small'>",
    u"<span style=\"text-decoration:underline;text-align:right\">", u"</span>", u"<center>",
    u"</center>",

    // What a deck does not know.
    u"<fieldset>", u"</fieldset>", u"<legend>", u"<foo>", u"</foo>", u"<card>", u"<timer value=1>",
    u"<textarea>", u"</textarea>", u"<button>", u"<form>", u"</form>", u"<script>s</script>",
    u"<style>y</style>", u"<!-- c -->", u"<![CDATA[k]]>", u"<?php q ?>", u"<svg><p>", u"<math>",
    u"<template>", u"<body bgcolor=w>", u"<html>", u"</body>", u"<frameset>",

    // Marks, and what is never seen.
    u"<p data-part=1>", u"<p data-part=2>", u"<h2 data-text=title>", u"<nobr>", u"<marquee>",
    u"<object>", u"<applet>", u"<ins>", u"<xmp>", u"<plaintext>", u"\xD800", u"\xFFFE", u"<p id=q>",
    u"<span data-mark=AAAAAAAAAAAAA>", u"<div class=deck>"};

/// The numbers that decide, from the bytes; zeros when they are used up.
class Choices {
public:
    Choices(const std::uint8_t* data, std::size_t size)
        : m_at(data)
        , m_end(data + size) {}

    std::size_t below(std::size_t limit) {
        std::size_t number = next();
        if (limit > 256) {
            number = number << 8 | next();
        }
        return limit == 0 ? 0 : number % limit;
    }
    bool isEmpty() const { return m_at == m_end; }
    const std::uint8_t* take(std::size_t& count) {
        count = std::min(count, static_cast<std::size_t>(m_end - m_at));
        m_at += count;
        return m_at - count;
    }

private:
    std::size_t next() { return m_at == m_end ? 0 : *m_at++; }
    const std::uint8_t* m_at;
    const std::uint8_t* m_end;
};

using Tokens = std::vector<std::u16string>;

/// The tags of a page and the texts between them.
Tokens tokensOf(std::u16string_view page) {
    Tokens tokens;
    for (std::size_t at = 0; at < page.size();) {
        const std::size_t end = page[at] == u'<' ? page.find(u'>', at) : page.find(u'<', at) - 1;
        const std::size_t length = std::min(end, page.size() - 1) + 1 - at;
        tokens.emplace_back(page.substr(at, length));
        at += length;
    }
    return tokens;
}

std::u16string deckFrom(Choices& choices) {
    static DeckGenerator generator(wmlDtd()->declarations());
    const std::size_t kind = choices.below(decks.size() + 4);
    if (kind < decks.size()) {
        return decks[kind];
    }
    if (kind > decks.size() + 1) {
        return {};
    }
    std::size_t size = 8 + choices.below(120);
    const std::uint8_t* const bytes = choices.take(size);
    return generator.deck(bytes, size);
}

void change(Tokens& tokens, Choices& choices) {
    const auto place = [&](std::size_t at) {
        return tokens.begin() + static_cast<std::ptrdiff_t>(at);
    };
    const std::size_t at = choices.below(tokens.size() + 1);
    const std::size_t kind = choices.below(8);
    const std::size_t length = std::min(1 + choices.below(6), tokens.size() - at);
    const Tokens range(place(at), place(at + length));
    if (kind == 0) {
        tokens.erase(place(at), place(at + length));
    } else if (kind == 1 && tokens.size() < 500) {
        const std::size_t to = choices.below(tokens.size() + 1);
        tokens.insert(place(to), range.begin(), range.end());
    } else if (kind == 2) {
        tokens.erase(place(at), place(at + length));
        const std::size_t to = choices.below(tokens.size() + 1);
        tokens.insert(place(to), range.begin(), range.end());
    } else if (kind == 3) {
        std::size_t count = 1 + choices.below(8);
        const std::uint8_t* const bytes = choices.take(count);
        tokens.insert(place(at), std::u16string(bytes, bytes + count));
    } else {
        tokens.insert(place(at), pieces[choices.below(pieces.size())]);
    }
}

} // namespace

MadePage makePage(const std::uint8_t* data, std::size_t size) {
    Choices choices(data, size);
    const std::u16string deck = deckFrom(choices);
    MadePage made{.html = pageOf(deck).value_or(u"")};
    made.isOfValidDeck = made.html.empty() || faultOf(deck).empty();
    if (choices.below(4) == 0) {
        const auto dom = browse(made.html);
        made.html = dom ? written(*dom, Writing::Older) : u"";
    }
    Tokens tokens = tokensOf(made.html);
    while (!choices.isEmpty()) {
        change(tokens, choices);
    }
    made.html.clear();
    for (const std::u16string& token : tokens) {
        made.html += token;
    }
    return made;
}

} // namespace convert_test
