#pragma once

#include "external/Controls.h"
#include "support/Text.h"

#include <cstdint>
#include <string>

namespace support {

/// A text control that says what is done to it. `called` hears the name of a property that is read,
/// and with a `=` of one that is written; what it throws reaches the caller.
class TextBox : public tessaly::RichTextControl {
public:
    std::u16string Text() override { return called("Text", u""), text; }
    void Text(const std::u16string& value) override { called("Text=", text = value); }
    bool Visible() override { return visible; }
    void Visible(bool value) override {
        called("Visible=", (visible = value) ? u"True" : u"False");
    }
    std::int32_t SelStart() override { return start; }
    void SelStart(std::int32_t value) override { called("SelStart=", number(start = value)); }
    std::int32_t SelLength() override { return length; }
    void SelLength(std::int32_t value) override { called("SelLength=", number(length = value)); }
    std::u16string SelText() override {
        return text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(length));
    }
    void SelText(const std::u16string& value) override {
        called("SelText=", value);
        text.replace(static_cast<std::size_t>(start), static_cast<std::size_t>(length), value);
    }
    virtual void called(const std::string& /*name*/, const std::u16string& /*value*/) {}

    std::u16string text;
    bool visible = false;
    std::int32_t start = 0;
    std::int32_t length = 0;

private:
    static std::u16string number(std::int32_t value) { return u16(std::to_string(value)); }
};

} // namespace support
