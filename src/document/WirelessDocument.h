#pragma once

#include "display/IDisplay.h"
#include "document/DocumentType.h"
#include "document/IValidate.h"
#include "document/WirelessDocumentEvents.h"
#include "document/clWMLEventProxy.h"
#include "external/Controls.h"
#include "external/Ravikit.h"
#include "format/IFormat.h"
#include "util/EventSource.h"

#include <cstdint>
#include <memory>
#include <string>

namespace tessaly {

class FileSystemObject;
class TextStream;
class Steps;

/// One deck in memory: its text, the DOM built from it, the host's two controls that show it, and
/// the services that its type chooses. It is usable once colDocuments::Add has built it.
///
/// Make one with std::make_shared. Failures of an outside object or a control reach the caller with
/// the fields as the steps before the failure left them. A control that is needed and was not given
/// fails with ObjectNotSet.
class WirelessDocument : public Object,
                         public std::enable_shared_from_this<WirelessDocument>,
                         private __clWMLEventProxy,
                         private BrowserControlEvents {
public:
    WirelessDocument();
    ~WirelessDocument() override;
    WirelessDocument(const WirelessDocument&) = delete;
    WirelessDocument& operator=(const WirelessDocument&) = delete;
    WirelessDocument(WirelessDocument&&) = delete;
    WirelessDocument& operator=(WirelessDocument&&) = delete;

    /// False until colDocuments::Add sets it; then True until its project was loaded or it was
    /// saved.
    virtual void added(bool bAdded);
    virtual bool added() const;

    /// Selects the whole deck in the markup view, or in the browser in any other state.
    virtual void selectAll();

    /// These two are kept for the host and mean nothing to the document.
    virtual std::u16string CurrentElementID() const;
    virtual void CurrentElementID(const std::u16string& strID);
    virtual std::int16_t CurrentElementIndex() const;

    /// The length of the deck in UTF-16 units. In the plain view the page is first converted into
    /// the rich-text control.
    virtual std::int32_t size();

    virtual void CurrentElementIndex(std::int16_t Idx);

    /// The name of the type, which serves as a file extension; empty for dcHTML and unknown types.
    virtual std::u16string DocumentTypeName() const;

    /// Switches the view. If the text cannot be converted, OnParseError is raised and the document
    /// stays in the view that it had; one that had none yet stands in the markup view. No value is
    /// refused: one that is no view hides both controls. A value beyond 16 bits fails with Overflow
    /// when the formatter gets it.
    /// On its way to the plain view it first waits, without limit, for a navigation under way to
    /// end, and lets the host's messages run, which may call this document. A browser that is
    /// replaced meanwhile is no longer heard. A host that cannot wait any longer lets
    /// Platform::DoEvents fail: the failure comes out of this call, and the document stands in the
    /// view that it had, with its text where it was.
    virtual void view(enumView vView);
    virtual enumView view() const;

    /// The setter leaves the display on the DOM that it has.
    virtual std::shared_ptr<IXMLDOMDocument2> DOM() const;
    virtual void DOM(const std::shared_ptr<IXMLDOMDocument2>& oDOM);

    virtual std::shared_ptr<tessaly::Tolmek> Tolmek() const;

    virtual std::shared_ptr<tessaly::Ravik> Ravik() const;
    /// Takes a tessaly::Ravik; another object fails with TypeMismatch.
    virtual void Ravik(const ObjectRef& Ravik);

    virtual DocumentType DocType() const;
    virtual std::u16string DTDPath() const;

    /// The verdict of the last checkValidity; False before.
    virtual bool isValidXML() const;

    /// The host application's folder, without trailing `\`. For a dcWML document the DTD below it
    /// is loaded.
    virtual void AppPath(const std::u16string& strPath);
    virtual std::u16string AppPath() const;

    /// Replaces the services: dcWML makes new ones, every other type leaves none.
    virtual void DocType(DocumentType DT);

    virtual std::shared_ptr<RichTextControl> MuRtb() const;
    /// Takes a RichTextControl and fills it with Content; another object fails with TypeMismatch.
    /// Without a formatter the control is stored and ObjectNotSet follows.
    ///
    /// A document takes its text from its control whenever it is saved: it must not keep one that
    /// shows another document. A host with one editor for several documents hands it over:
    ///
    ///     old->view(vMarkup);     // the page's text goes to the text control
    ///     if (old->view() != vMarkup) return; // refused: OnParseError said why; it stays shown
    ///     old->Refresh();         // and from there into Content
    ///     old->MuRtb(nullptr);
    ///     old->wbPlain(nullptr);
    ///     next->wbPlain(browser);
    ///     next->MuRtb(text);      // Content goes to the text control
    ///     next->view(vPLain);     // or vMarkup
    virtual void MuRtb(const ObjectRef& rtb);

    /// Takes a BrowserControl, and fails like the setter of MuRtb, which says how one browser
    /// serves several documents.
    virtual void wbPlain(const ObjectRef& wb);
    virtual std::shared_ptr<BrowserControl> wbPlain() const;

    /// Takes a ListBarControl; another object fails with TypeMismatch.
    virtual void Listbar(const ObjectRef& lb);

    /// The deck's file name without folder and extension.
    virtual void Name(const std::u16string& strName);
    virtual std::u16string Name() const;

    /// The services; none for every type but dcWML.
    virtual std::shared_ptr<IDisplay> Display() const;
    virtual std::shared_ptr<IFormat> Format() const;
    virtual std::shared_ptr<IValidate> validate() const;

    /// The text as last taken over, which may be older than what the controls show. The setter
    /// clears isDirty without an event and judges the text; it neither parses it nor writes it to a
    /// control.
    virtual void Content(const std::u16string& strContent);
    virtual std::u16string Content() const;

    /// The document has changes that are not saved. Setting True raises OnDocDirty every time.
    virtual void isDirty(bool bDirty);
    virtual bool isDirty() const;

    /// Takes over a pending update, of which there is none as yet: nothing sets the flag.
    virtual void Update();

    /// Takes the text over from the control that is shown, judges it, and if it is valid parses it
    /// into a new DOM for the document and its display. Nothing happens without a rich-text
    /// control.
    virtual void Refresh();

    /// Writes the deck to the file at the full path `strDocFullPath`, as Ravik::exportText makes it
    /// of the text in the controls, and keeps that as Content. True if all of it was written. The
    /// user hears where permission is denied or the disk is not ready; no failure reaches the
    /// caller. isDirty, added and Name stay as they are.
    virtual bool Save(const std::u16string& strDocFullPath);

    /// Like Save, but a path that is taken is first settled with the user. False too if the user
    /// gave no other name: the user hears that the document is not saved, and it is dirty then,
    /// without an event. NewName says what name it got.
    virtual bool SaveAs(const std::u16string& strFullDocPath);

    /// Judges Content and raises OnClearErrors or OnParseError.
    virtual void checkValidity();

    /// Shows the DOM's text again in the rich-text control and, in the plain view or with no view
    /// yet, in the browser, waiting as `view` does; the DOM is then parsed again and Content takes
    /// the text over. A text that is refused raises OnParseError, and the view stays. The display
    /// gets the DOM. Nothing happens while isValidXML is False.
    virtual void reloadViewfromDOM();

    /// Raises OnUTag for each element whose name stands in `strElementList`, names joined by commas
    /// and not trimmed. Searches the rich-text control's text in the markup view, the page in any
    /// other state. In the markup view DOM and display hold a new parse of Content afterwards,
    /// which may be older than the text searched. No failure reaches the caller.
    virtual void validateSupportedTags(const std::u16string& strElementList);

    /// Raises OnAdd2UndoStack.
    virtual void raise_OnAdd2Undo(std::int32_t& lStart, std::u16string& txt,
                                  std::u16string& delText, std::int32_t& action);

    /// The name, without folder and extension, of the file last written by SaveAs; empty before.
    virtual std::u16string NewName() const;

    EventSource<__WirelessDocument>& events() { return m_events; }

private:
    void OnAdd2Undo(std::int32_t& lStart, std::u16string& txt, std::u16string& delText,
                    std::int32_t& action) override;
    void OnDirty() override {} // a formatter's change is no unsaved change until the host says so
    void BeforeNavigate2() override { m_wbPlain_BeforeNavigate2(); }
    void NavigateComplete2() override { m_wbPlain_NavigateComplete2(); }

    void m_Proxy_OnAdd2Undo(std::int32_t& lStart, std::u16string& txt, std::u16string& delText,
                            std::int32_t& action);
    void m_wbPlain_BeforeNavigate2() { m_Navigating = true; }
    void m_wbPlain_NavigateComplete2() { m_Navigating = false; }

    /// A reference for members that go on after host code has run: that may drop the last one.
    std::shared_ptr<WirelessDocument> keepAlive() { return weak_from_this().lock(); }

    void makeServices();
    void raiseParseError();

    void syncViews();
    bool plainToMarkup();
    /// Both put the view `shown` back in force if the host ends the wait by a failure.
    bool markupToPlain(std::int32_t shown);
    void waitWhileNavigating(std::int32_t shown);
    bool isBlankMarkup();
    void wrapPlainBody();

    /// What a deck is written with; each is none if it was not to be had.
    struct DeckFile {
        std::shared_ptr<FileSystemObject> fso;
        std::shared_ptr<TextStream> stream;
    };

    /// Brings the text up to date and writes it to the file `path`. `file` keeps what it used.
    void writeDeck(Steps& step, const std::u16string& path, DeckFile& file);

    /// The page in the browser control, and its body, fetched again for each use: a navigation
    /// replaces both.
    std::shared_ptr<HTMLDocument> page() const;
    std::shared_ptr<IHTMLElement> body() const;

    void findTagInMarkup(const std::u16string& tagName);
    void findTagInPage(const std::u16string& tagName);
    void raiseOnUTag(const std::u16string& tagName, std::int32_t count);

    std::shared_ptr<IDisplay> m_Display;
    std::shared_ptr<IFormat> m_Format;
    std::shared_ptr<IValidate> m_Validate;
    std::u16string m_AppPath;
    std::u16string m_DTDPath;
    std::shared_ptr<IXMLDOMDocument2> m_DOM;
    std::shared_ptr<tessaly::Tolmek> m_Tolmek;
    std::shared_ptr<tessaly::Ravik> m_Ravik;
    DocumentType m_DocType = dcWML;
    std::shared_ptr<RichTextControl> m_MuRtb;
    std::u16string m_Name;
    std::u16string m_NewName;
    std::int32_t m_View = 0;
    std::int32_t m_PrevView = 0;
    bool m_isValidXML = false;
    std::u16string m_Content;
    bool m_isDirty = false;
    bool m_updatePending = false;
    std::u16string m_CurrentElementID;
    bool m_Navigating = false;
    std::int16_t m_CurrentElementIndex = 0;
    bool m_added = false;
    std::shared_ptr<BrowserControl> m_wbPlain;
    std::shared_ptr<ListBarControl> m_ListBar;
    std::shared_ptr<clWMLEventProxy> m_Proxy;

    EventSource<__WirelessDocument> m_events;
    Subscription m_wbPlainEvents;
    Subscription m_ProxyEvents;
};

} // namespace tessaly
