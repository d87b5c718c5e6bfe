#pragma once

#include "external/Platform.h"

#include <memory>
#include <string>
#include <utility>

namespace tessaly {

/// A platform that leaves everything to another one. A host that has windows of its own derives
/// from it, over the platform that was in force, and overrides what it does itself.
class ForwardingPlatform : public Platform {
public:
    explicit ForwardingPlatform(std::shared_ptr<Platform> other)
        : m_other(std::move(other)) {}

    std::shared_ptr<IXMLDOMDocument2> newDOMDocument() override {
        return m_other->newDOMDocument();
    }
    std::shared_ptr<Ravik> newRavik() override { return m_other->newRavik(); }
    std::shared_ptr<Tolmek> newTolmek() override { return m_other->newTolmek(); }
    std::shared_ptr<FileSystemObject> newFileSystemObject() override {
        return m_other->newFileSystemObject();
    }
    std::shared_ptr<ModalForm> newModalForm(const FormLayout& layout) override {
        return m_other->newModalForm(layout);
    }
    MsgBoxAnswer MsgBox(const std::u16string& text, MsgBoxFlags flags,
                        const std::u16string& caption) override {
        return m_other->MsgBox(text, flags, caption);
    }
    std::u16string InputBox(const std::u16string& prompt, const std::u16string& title,
                            const std::u16string& defaultText) override {
        return m_other->InputBox(prompt, title, defaultText);
    }
    void DoEvents() override { m_other->DoEvents(); }
    std::u16string temporaryFolder() override { return m_other->temporaryFolder(); }
    Date now() override { return m_other->now(); }
    std::int32_t textWidth(std::int32_t hdc, const std::u16string& text) override {
        return m_other->textWidth(hdc, text);
    }
    std::shared_ptr<PictureStore> pictures() override { return m_other->pictures(); }

private:
    std::shared_ptr<Platform> m_other;
};

} // namespace tessaly
