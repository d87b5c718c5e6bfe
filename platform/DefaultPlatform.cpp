#include "platform/DefaultPlatform.h"

#include "format/ComponentPictures.h"
#include "platform/files/LocalDate.h"
#include "platform/files/PathName.h"
#include "platform/files/PosixFileSystem.h"
#include "platform/files/TextCodec.h"
#include "platform/terminal/TerminalForm.h"
#include "ravikit/component/Objects.h"
#include "util/Attempt.h"
#include "util/Integers.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>

namespace tessaly {

namespace {

constexpr std::size_t pixelsPerCharacter = 8;

} // namespace

DefaultPlatform::DefaultPlatform()
    : DefaultPlatform(Terminal(STDIN_FILENO, STDERR_FILENO)) {}

DefaultPlatform::DefaultPlatform(Terminal terminal)
    : m_terminal(terminal)
    , m_dialogs(terminal)
    , m_loop(std::make_shared<MessageLoop>())
    , m_pictures(componentPictures()) {}

std::shared_ptr<IXMLDOMDocument2> DefaultPlatform::newDOMDocument() {
    return makeEmptyDOMDocument();
}

std::shared_ptr<Ravik> DefaultPlatform::newRavik() {
    return makeRavik(newFileSystemObject());
}

std::shared_ptr<Tolmek> DefaultPlatform::newTolmek() {
    return makeTolmek(newFileSystemObject());
}

std::shared_ptr<FileSystemObject> DefaultPlatform::newFileSystemObject() {
    m_dialogs.workGoesOn();
    return std::make_shared<PosixFileSystem>();
}

std::shared_ptr<ModalForm> DefaultPlatform::newModalForm(const FormLayout& layout) {
    m_dialogs.workGoesOn();
    return std::make_shared<TerminalForm>(layout, m_terminal);
}

MsgBoxAnswer DefaultPlatform::MsgBox(const std::u16string& text, MsgBoxFlags flags,
                                     const std::u16string& caption) {
    return m_dialogs.MsgBox(text, flags, caption);
}

std::u16string DefaultPlatform::InputBox(const std::u16string& prompt, const std::u16string& title,
                                         const std::u16string& defaultText) {
    return m_dialogs.InputBox(prompt, title, defaultText);
}

void DefaultPlatform::DoEvents() {
    m_dialogs.workGoesOn();
    m_loop->DoEvents();
}

std::u16string DefaultPlatform::temporaryFolder() {
    const char* variable = std::getenv("TMPDIR");
    std::u16string folder;
    attempt([&] {
        folder = toComponentPath(variable != nullptr && *variable != '\0' ? variable : "/tmp");
    });
    if (!folder.empty() && !folder.ends_with(u'\\')) {
        folder += u'\\';
    }
    return folder;
}

Date DefaultPlatform::now() {
    return localDate(std::time(nullptr));
}

std::int32_t DefaultPlatform::textWidth(std::int32_t /*hdc*/, const std::u16string& text) {
    std::size_t characters = 0;
    for (std::size_t at = 0; at < text.size(); at += unitsOfCharacter(text, at)) {
        ++characters;
    }
    return toInteger<std::int32_t>(characters * pixelsPerCharacter);
}

std::shared_ptr<PictureStore> DefaultPlatform::pictures() {
    return m_pictures;
}

std::shared_ptr<Platform> makeDefaultPlatform() {
    return std::make_shared<DefaultPlatform>();
}

} // namespace tessaly
