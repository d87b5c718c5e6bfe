#pragma once

#include "external/DOM.h"
#include "external/ParseError.h"
#include "util/Value.h"

#include <cstdint>
#include <memory>
#include <string>

namespace tessaly {

/// The two kinds of text that a deck has.
inline constexpr std::int32_t kindPlain = 0;  ///< the HTML of the plain view
inline constexpr std::int32_t kindMarkup = 1; ///< WML source

/// The markup object of a project: makes DOMs from text, and prepares text for loading and saving.
/// A call that cannot be carried out fails.
class Ravik : public virtual Object {
public:
    /// Always gives a DOM document; for text that is not well-formed an empty one, whose `xml` is
    /// the empty string, without a failure. `validate` and `flagB` change nothing about that.
    virtual std::shared_ptr<IXMLDOMDocument2> parseMarkup(const std::u16string& text, bool validate,
                                                          bool flagB) = 0;

    /// Takes the full paths of the DTD and of the schema for texts of `kind`. Neither file is
    /// looked at here.
    virtual void setDtdPath(std::int32_t kind, const std::u16string& path) = 0;
    virtual void setSchemaPath(std::int32_t kind, const std::u16string& path) = 0;

    /// The text that a document is to hold for a deck text as it was read: the first for a text
    /// that holds the word DOCTYPE, the second for any other.
    virtual std::u16string importDoctypedText(const std::u16string& text) = 0;

    /// The text that goes into the deck file.
    virtual std::u16string exportText(const std::u16string& text) = 0;

    virtual std::u16string importBareText(const std::u16string& text) = 0;
};

/// The checker and converter of one document.
class Tolmek : public virtual Object {
public:
    /// Converts `text` in place from one kind to the other. False leaves it unchanged, and
    /// `lastError` then says why. `strict` refuses what could not be taken over as it is.
    virtual bool convertText(std::int32_t fromKind, std::int32_t toKind, std::u16string& text,
                             bool strict) = 0;

    /// Takes the DTD that texts of `kind` are judged by: True if the file was there and could be
    /// used, False if the built-in DTD stands in.
    virtual Value loadDtd(std::int32_t kind, const std::u16string& path) = 0;

    /// The first error of the last `convertText` or `isValidText` that gave False; none before.
    virtual std::shared_ptr<ParseError> lastError() = 0;

    /// True when `text` is well-formed and valid.
    virtual bool isValidText(const std::u16string& text) = 0;
};

} // namespace tessaly
