"""The classes of edits: where each is made, what is done, and what may change in the source.

`tags` names the elements whose tags may come and go: "b" both, "+p" only come, "-p" only go,
"card@title" a start tag that changes in this attribute alone, "*" any. `text` says what the page's
text must be afterwards: "typed", what was selected replaced by what was typed; "same"; "moved", the
same characters elsewhere; "any".
"""

from dataclasses import dataclass


@dataclass(frozen=True)
class Edit:
    name: str
    place: str
    steps: tuple
    tags: str = ""
    text: str = "typed"
    removes: bool = False  # what is selected may hold things that are not seen
    copies: bool = False   # what was selected is there twice
    loose: str = ""

    @property
    def typed(self):
        """What must be in the result once."""
        return [step[1:] for step in self.steps if step.startswith("=") and self.text != "same"]


FORMATS = "b i u em strong big small"
NO_FORMATS = "-b -i -u -em -strong -big -small"
CAPTIONS = "card@title table@title fieldset@title"
LINKS = "+a +anchor +go +prev +refresh +setvar +postfield +noop"
ALIGNED = f"p@align br +p {LINKS}"

TYPING = [
    Edit("type-middle", "wordMiddle", ("=Zq",)),
    Edit("type-word-start", "wordStart", ("=Zq",)),
    Edit("type-word-end", "wordEnd", ("=Zq",)),
    Edit("type-words", "wordEnd", ("= Zq wy",)),
    Edit("type-line-start", "lineStart", ("=Zq",)),
    Edit("type-line-start-words", "lineStart", ("=Zq ",)),
    Edit("type-line-end", "lineEnd", ("=Zq",)),
    Edit("type-line-end-words", "lineEnd", ("= Zq wy",)),
    Edit("type-before-inline", "beforeInline", ("=Zq",)),
    Edit("type-after-inline", "afterInline", ("=Zq",)),
    Edit("type-in-link", "linkMiddle", ("=Zq",)),
    Edit("type-in-cell", "cellMiddle", ("=Zq",)),
    Edit("type-in-pre", "preMiddle", ("=Zq",)),
    Edit("type-in-title", "titleMiddle", ("=Zq",), CAPTIONS),
    Edit("type-in-label", "labelMiddle", ("=Zq",), "do@label"),
    Edit("type-in-empty-paragraph", "emptyParagraph", ("=Zq",), "p"),
    Edit("type-in-empty-card", "emptyCard", ("=Zq",), "card +p"),
    Edit("type-signs", "wordEnd", ("= Zq<&>\"'ж€",)),
    Edit("type-by-mouse", "word", ("Click", "=Zq"), text="any"),
    Edit("type-and-erase", "wordMiddle", ("=Z", "Backspace"), text="same"),
    Edit("two-words", "firstOfWords", ("=Zq", "@lastOfWords", "=Wk"), text="any"),
    Edit("replace-word", "word", ("DoubleClick", "=Zq"), FORMATS, text="any"),
    Edit("replace-word-dragged", "word", ("Drag", "=Zq"), f"{FORMATS} p br"),
    Edit("replace-line", "line", ("=Zq",), "-*", removes=True),
]

DELETING = [
    Edit("backspace-letter", "wordEnd", ("Backspace",), text="any"),
    Edit("delete-letter", "wordStart", ("Delete",), text="any"),
    Edit("backspace-word", "wordEnd", ("Ctrl+Backspace",), f"{NO_FORMATS} -a -anchor", text="any", removes=True),
    Edit("delete-word", "word", ("Delete",), f"{NO_FORMATS} -a -anchor", removes=True),
    Edit("delete-format", "format", ("Delete",), "-* +br", removes=True),
    Edit("delete-link", "link", ("Delete",), "-*", removes=True),
    Edit("delete-field", "field", ("Delete",), "-*", text="any", removes=True),
    Edit("backspace-field", "afterField", ("Backspace",), "-*", text="any", removes=True),
    Edit("delete-cell", "cell", ("Delete",), "-* +br", removes=True),
    Edit("delete-pre-word", "preWord", ("Delete",)),
    Edit("delete-paragraph", "paragraph", ("Delete",), "-*", removes=True),
    Edit("delete-first-paragraph", "firstParagraph", ("Delete", "Backspace"), f"-* {CAPTIONS}", text="any", removes=True),
    Edit("delete-title", "title", ("Delete",), CAPTIONS),
    Edit("retype-title", "title", ("=Zq",), CAPTIONS),
    Edit("delete-label", "label", ("Delete",), "do@label", text="any", loose="label"),
    Edit("retype-label", "label", ("=Zq",), "do@label"),
    Edit("delete-lines", "twoLines", ("Delete",), "-*", removes=True),
    Edit("delete-paragraphs", "twoParagraphs", ("Delete",), "-*", removes=True),
    Edit("delete-cards", "twoCards", ("Delete",), f"-* {CAPTIONS}", text="any", removes=True),
    Edit("delete-all-type", "body", ("Ctrl+A", "=Zq"), "*", text="any", removes=True),
]

STRUCTURE = [
    Edit("backspace-join", "join", ("Backspace",), "-p -fieldset br", text="same"),
    Edit("delete-join", "joinAhead", ("Delete",), "-p -fieldset br", text="same"),
    Edit("backspace-after-box", "afterBox", ("Backspace",), f"-* {CAPTIONS} do@label", text="any", removes=True),
    Edit("delete-before-box", "beforeBox", ("Delete",), f"-* {CAPTIONS}", text="any", removes=True),
    Edit("backspace-break", "afterBreak", ("Backspace",), "-br", text="same"),
    Edit("enter-middle", "wordMiddle", ("Enter",), f"+p +br +fieldset {FORMATS} {LINKS}", text="same"),
    Edit("enter-start", "lineStart", ("Enter",), f"+p +br {FORMATS} {LINKS}", text="same"),
    Edit("enter-end-type", "paragraphEnd", ("Enter", "=Zq"), f"+p +br {FORMATS} {LINKS}"),
    Edit("enter-twice-type", "paragraphEnd", ("Enter", "Enter", "=Zq"), f"+p +br {FORMATS} {LINKS}"),
    Edit("enter-in-title", "titleMiddle", ("Enter",), CAPTIONS, text="same", loose="title"),
    Edit("enter-in-label", "labelMiddle", ("Enter",), "do@label", text="same", loose="label"),
    Edit("enter-in-cell", "cellMiddle", ("Enter", "=Zq"), f"+br {FORMATS} {LINKS}"),
    Edit("enter-in-pre", "preMiddle", ("Enter",), "+br", text="same"),
    Edit("enter-in-link", "linkMiddle", ("Enter",), f"+p +br {FORMATS} {LINKS}", text="same"),
    Edit("break-middle", "wordMiddle", ("Shift+Enter",), "+br", text="same"),
    Edit("break-end-type", "lineEnd", ("Shift+Enter", "=Zq"), "+br"),
]

FORMATTING = [
    Edit("bold-word", "word", ("Ctrl+B",), f"b strong {LINKS}", text="same"),
    Edit("italic-word", "word", ("Ctrl+I",), f"i em {LINKS}", text="same"),
    Edit("underline-word", "word", ("Ctrl+U",), f"u {LINKS}", text="same"),
    Edit("bold-twice", "plainWord", ("Ctrl+B", "Ctrl+B"), "", text="same"),
    Edit("bold-part-of-bold", "formatPart", ("Ctrl+B",), "b strong", text="same"),
    Edit("bold-part-of-link", "linkPart", ("Ctrl+B",), f"b {LINKS}", text="same"),
    Edit("bold-link", "link", ("Ctrl+B",), "b", text="same"),
    Edit("bold-line", "line", ("Ctrl+B",), f"b strong {LINKS}", text="same"),
    Edit("bold-paragraphs", "twoParagraphs", ("Ctrl+B",), f"b strong {LINKS}", text="same"),
    Edit("bold-cell", "cellWord", ("Ctrl+B",), f"b {LINKS}", text="same"),
    Edit("bold-then-type", "wordEnd", ("Ctrl+B", "=Zq"), f"b strong {LINKS}"),
    Edit("big-word", "plainWord", ("#const t = getSelection().toString(); document.execCommand("
                              "'insertHTML', false, `<big>${t}</big>`)",), "+big", text="same"),
    Edit("normal-font", "format", ("!fontSize 3",), FORMATS, text="same"),
    Edit("remove-format", "format", ("!removeFormat",), f"{FORMATS} br", text="same"),
    Edit("all-bold", "body", ("Ctrl+A", "Ctrl+B"), f"b strong {LINKS}", text="same"),
]

ALIGN = "#let p = getSelection().anchorNode; p = (p.closest ? p : p.parentNode).closest('p');" \
        " if (p) p.setAttribute('align', 'right')"
ALIGNING = [
    Edit("align-by-attribute", "paragraph", (ALIGN,), "p@align +p", text="same"),
    Edit("center-one-line", "oneLine", ("!justifyCenter",), "p@align", text="same"),
    Edit("center-several-lines", "severalLines", ("!justifyCenter",), ALIGNED, text="same"),
    Edit("right-several-lines", "severalLines", ("!justifyRight",), ALIGNED, text="same"),
    Edit("center-line-of-several", "line", ("!justifyCenter",), f"p br {LINKS}", text="same"),
    Edit("center-paragraphs", "twoParagraphs", ("!justifyCenter",), ALIGNED, text="same"),
    Edit("center-and-left", "oneLine", ("!justifyCenter", "!justifyLeft"), ALIGNED, text="same"),
]

CLIPBOARD = [
    Edit("cut-paste-paragraph", "paragraph", ("Ctrl+X", "Ctrl+V"), f"p {FORMATS} {LINKS}", text="same"),
    Edit("move-paragraph", "paragraph", ("Ctrl+X", "@lastParagraphEnd", "Ctrl+V"), "*", text="moved", removes=True),
    # Chromium ends the paragraph where it pastes at the end of a line.
    Edit("cut-paste-word", "word", ("Ctrl+X", "Ctrl+V"), "p br", text="same"),
    Edit("copy-paste-word", "word", ("Ctrl+C", "@lastParagraphEnd", "Ctrl+V"), f"+p {FORMATS} {LINKS}", text="any", copies=True),
    Edit("copy-paste-link", "link", ("Ctrl+C", "@lastParagraphEnd", "Ctrl+V"), f"+p {FORMATS} {LINKS}", text="any", copies=True),
    Edit("cut-paste-link", "link", ("Ctrl+X", "Ctrl+V"), "", text="same"),
    Edit("cut-paste-field", "field", ("Ctrl+X", "Ctrl+V"), f"p br {LINKS}", text="same"),
    Edit("copy-paste-field", "field", ("Ctrl+C", "@lastParagraphEnd", "Ctrl+V"), "*", text="any", copies=True),
    Edit("paste-lines", "wordEnd", ("!insertText  Zq\nWk",), "+p +br +a +anchor +fieldset", text="any"),
    Edit("paste-html", "wordEnd", ("!insertHTML <b>Zq</b> <i>wy</i>",), f"+b +i {LINKS}", text="any"),
    Edit("copy-paste-all", "body", ("Ctrl+A", "Ctrl+C", "Ctrl+V"), "+card", text="same"),
]

SEQUENCE = Edit("sequence", "", (), "*", text="any", removes=True, copies=True)
EDITS = [*TYPING, *DELETING, *STRUCTURE, *FORMATTING, *ALIGNING, *CLIPBOARD]
