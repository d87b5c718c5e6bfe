"""How many wrong cases a class may have over the decks of the repository, and why."""

KNOWN = {
    # Groups of options in one another, which HTML cannot have: shown as text in boxes.
    "cut-paste-field": 1, "copy-paste-field": 1, "all-bold": 1,
    # The end of a paragraph that joins one of another card is written new: it left its card.
    "delete-cards": 1,
    # A format around a table, which WML cannot take off in one cell.
    "bold-part-of-bold": 1, "bold-cell": 1, "delete-cell": 1,
    # Chromium drops `big`, mark and all, where it aligns exactly what it holds.
    "right-several-lines": 1,
    # Chromium pastes the copy of a `pre` into a paragraph, and its text without blanks.
    "copy-paste-all": 2,
}
# Where a format holds a table, lines that a phone shows as one stand apart on the page.
NOT_IN_SEQUENCES = {"v-table-in-format.wml"}
