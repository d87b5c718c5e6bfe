"""Markup as a list of tokens, by a scanner of the suite's own."""

import html
import re
from collections import namedtuple

Token = namedtuple("Token", "kind text")  # kind: unseen, cdata, tag, reference, blank, word

_PATTERN = re.compile(r"""
    (?P<unseen> <!--.*?--> | <\?.*?\?> | <!DOCTYPE (?: [^\[>] | \[.*?\]\s* )* > )
  | (?P<section> <!\[CDATA\[.*?\]\]> )
  | (?P<tag> </? (?: [^<>"'] | "[^"]*" | '[^']*' )* > )
  | (?P<reference> &[^;\s<]*; )
  | (?P<blank> \s+ )
  | (?P<word> [^\s<&]+ | . )""", re.S | re.X)
# Elements that a page does not show: their tags count among what is unseen.
HIDDEN = {"head", "meta", "access", "template", "onevent", "timer", "go", "prev", "refresh", "noop",
          "setvar", "postfield"}
TASKS = ("go", "prev", "refresh", "noop", "setvar", "postfield")


def name_of(tag):
    return re.match(r"</?\s*([^\s/>]*)", tag).group(1)


def without(tag, attribute):
    """A start tag without this attribute."""
    return re.sub(rf"\s+{attribute}\s*=\s*(\"[^\"]*\"|'[^']*')", "", tag)


def tokens(text):
    found = []
    for match in _PATTERN.finditer(text):
        kind, part = match.lastgroup, match.group()
        if kind == "section":
            inner = re.findall(r"\s+|\S+", part[9:-3])
            found += [Token("cdata", "<![CDATA["),
                      *(Token("blank" if i.isspace() else "word", i) for i in inner), Token("cdata", "]]>")]
        elif kind == "tag" and name_of(part) in HIDDEN:
            found.append(Token("unseen", part))
        else:
            found.append(Token(kind, part))
    return found


def entities(source):
    """What the references to entities of a deck's own stand for, without tags."""
    return {f"&{name};": re.sub("<[^>]*>", "", value)
            for name, value in re.findall(r"<!ENTITY\s+(\S+)\s+\"([^\"]*)\"", source)}


def shown(token, own=None):
    """The characters that a word or a reference stands for."""
    if token.kind != "reference":
        return token.text
    return (own or {}).get(token.text) or html.unescape(token.text)
