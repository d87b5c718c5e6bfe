// The nine formatting commands, in the markup view and in the page.

#include "document/DocumentType.h"
#include "external/Platform.h"
#include "format/cWMLFormat.h"
#include "util/Integers.h"

#include <iterator>
#include <string>
#include <string_view>

namespace tessaly {

namespace {

enum class InPage { BrowserCommand, Align, Paste, NormalFontSize };

} // namespace

struct FormatCommand {
    std::u16string_view key;
    InPage inPage;
    std::u16string_view openTag; // empty: the markup view does not have the command
    std::u16string_view closeTag;
    std::u16string_view alignment;
};

namespace {

constexpr FormatCommand commands[] = {
    {u"Bold", InPage::BrowserCommand, u"<b>", u"</b>", {}},
    {u"Italic", InPage::BrowserCommand, u"<i>", u"</i>", {}},
    {u"Underline", InPage::BrowserCommand, u"<u>", u"</u>", {}},
    {u"Align Left", InPage::Align, u"<p align=\"left\">", u"</p>", u"left"},
    {u"Align Center", InPage::Align, u"<p align=\"center\">", u"</p>", u"center"},
    {u"Align Right", InPage::Align, u"<p align=\"right\">", u"</p>", u"right"},
    {u"Big Font", InPage::Paste, u"<big>", u"</big>", {}},
    {u"Small Font", InPage::Paste, u"<small>", u"</small>", {}},
    {u"Normal Font", InPage::NormalFontSize, {}, {}, {}},
};

/// The kind of change in every undo record of a formatter.
constexpr std::int32_t undoAction = 2;

} // namespace

void cWMLFormat::exec(const std::u16string& strFormatting) {
    for (const FormatCommand& command : commands) {
        if (command.key == strFormatting) {
            if (m_view == vPLain) {
                execInPage(command);
            } else {
                execInMarkup(command);
            }
            return;
        }
    }
}

void cWMLFormat::execInMarkup(const FormatCommand& command) {
    if (command.openTag.empty()) {
        Platform::current()->MsgBox(
            u"This function is only available in PLAIN View. To revert back to \n"
            u"normal font size please remove any <big> or <small> tags manually.",
            MsgBoxFlags::Exclamation, u"\"Font Normal\" not supported in WML View");
        return;
    }
    std::u16string delText = require(m_MuRtb).SelText();
    std::int32_t lStart = require(m_MuRtb).SelStart();
    const std::int32_t length = require(m_MuRtb).SelLength();
    std::u16string txt(command.openTag);
    txt += delText;
    txt += command.closeTag;
    require(m_MuRtb).SelText(txt);
    require(m_MuRtb).SelStart(toInteger<std::int32_t>(lStart + std::ssize(command.openTag)));
    require(m_MuRtb).SelLength(length);
    std::int32_t action = undoAction;
    require(m_Proxy).raiseAdd2Undo(lStart, txt, delText, action);
}

void cWMLFormat::execInPage(const FormatCommand& command) {
    switch (command.inPage) {
    case InPage::BrowserCommand:
        require(page()).execCommand(std::u16string(command.key));
        break;
    case InPage::Align:
        alignParagraph(std::u16string(command.alignment));
        break;
    case InPage::Paste:
        pasteIntoSelection(command);
        break;
    case InPage::NormalFontSize:
        require(page()).execCommand(u"FontSize", false, u"3");
        break;
    }
}

void cWMLFormat::pasteIntoSelection(const FormatCommand& command) {
    const std::shared_ptr<IHTMLSelectionObject> selection = require(page()).selection();
    if (!selection) {
        return;
    }
    if (selection->type() == u"Control") {
        return;
    }
    const auto range = narrow<IHTMLTxtRange>(selection->createRange());
    std::u16string html(command.openTag);
    html += require(range).text();
    html += command.closeTag;
    range->pasteHTML(html);
}

void cWMLFormat::alignParagraph(const std::u16string& alignment) {
    const std::shared_ptr<IHTMLSelectionObject> selection = require(page()).selection();
    if (!selection) {
        return; // nothing to act on, as for the commands that paste
    }
    const std::u16string type = selection->type();
    const ObjectRef range = selection->createRange();
    const std::shared_ptr<IHTMLElement> selected =
        type == u"Control"
            ? require(require(narrow<IHTMLControlRange>(range)).Item()).parentElement()
            : require(narrow<IHTMLTxtRange>(range)).parentElement();
    if (require(selected).tagName() == u"P") {
        selected->setAttribute(u"align", alignment, 0);
        return;
    }

    // Elements are recognised by their identity: a page may hand out a new object at every call.
    const std::u16string uniqueID = selected->uniqueID();
    const auto paragraphs = require(page()).getElementsByTagName(u"P");
    const std::int32_t paragraphCount = require(paragraphs).length();
    for (std::int32_t i = 0; i < paragraphCount; ++i) {
        const std::shared_ptr<IHTMLElement> paragraph = paragraphs->item(i);
        const auto inside = require(paragraph).all();
        const std::int32_t insideCount = require(inside).length();
        for (std::int32_t j = 0; j < insideCount; ++j) {
            if (require(inside->item(j)).uniqueID() == uniqueID) {
                paragraph->setAttribute(u"align", alignment, 0);
            }
        }
    }
}

std::shared_ptr<HTMLDocument> cWMLFormat::page() const {
    return require(m_browser).Document();
}

} // namespace tessaly
