#include "apps/cli/project/CommandPlatform.h"

#include "apps/cli/project/ConflictForm.h"
#include "apps/cli/project/DeckNames.h"
#include "platform/files/FileLookup.h"
#include "platform/files/PathName.h"
#include "platform/files/TextCodec.h"
#include "util/Attempt.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

namespace cli {

using tessaly::MsgBoxAnswer;
using tessaly::MsgBoxFlags;

std::shared_ptr<CommandPlatform> CommandPlatform::install(std::optional<OnConflict> answer) {
    auto platform = std::make_shared<CommandPlatform>(answer, std::make_shared<Watch>());
    Platform::install(platform);
    return platform;
}

CommandPlatform::CommandPlatform(std::optional<OnConflict> answer, std::shared_ptr<Watch> watch)
    : DefaultPlatform(
          tessaly::Terminal(STDIN_FILENO, STDERR_FILENO, watch->interrupt().descriptor()))
    , m_terminal(STDIN_FILENO, STDERR_FILENO, watch->interrupt().descriptor())
    , m_watch(std::move(watch))
    , m_onConflict(answer.value_or(m_terminal.isAttended() ? OnConflict::Ask : OnConflict::Stop)) {}

std::u16string CommandPlatform::spoken(std::u16string text) const {
    for (const std::u16string& folder : m_folders) {
        for (std::size_t at = text.find(folder); at != text.npos; at = text.find(folder, at + 1)) {
            // With the separator after it.
            const std::size_t end = std::min(at + folder.size() + 1, text.size());
            std::replace(text.begin() + static_cast<std::ptrdiff_t>(at),
                         text.begin() + static_cast<std::ptrdiff_t>(end), u'\\', u'/');
        }
    }
    return text;
}

bool CommandPlatform::confirm(const std::u16string& question, const std::u16string& caption) {
    return DefaultPlatform::MsgBox(question, MsgBoxFlags::ExclamationYesNo, caption) ==
           MsgBoxAnswer::Yes;
}

void CommandPlatform::stopAtLastAsked(const std::string& why) {
    // As it stands on the disk: the component may have looked for it in other letters.
    const std::u16string& asked = m_watch->lastAsked();
    std::string file = tessaly::encodeUtf8(asked);
    tessaly::attempt([&] { file = tessaly::lookUp(asked).path; });
    m_obstacle = {file, why};
}

std::shared_ptr<tessaly::FileSystemObject> CommandPlatform::newFileSystemObject() {
    DefaultPlatform::newFileSystemObject(); // work goes on, and a question is a new one
    return std::make_shared<WatchedFileSystem>(m_watch);
}

std::shared_ptr<tessaly::ModalForm>
CommandPlatform::newModalForm(const tessaly::FormLayout& layout) {
    return std::make_shared<ConflictForm>(layout, m_terminal, *this);
}

MsgBoxAnswer CommandPlatform::MsgBox(const std::u16string& text, MsgBoxFlags flags,
                                     const std::u16string& caption) {
    m_watch->clearLine();
    m_givenUp = m_givenUp || flags == MsgBoxFlags::Information;
    const bool question = flags == MsgBoxFlags::ExclamationYesNo;
    if (question && m_onConflict != OnConflict::Rename && isKept(m_watch->lastAsked())) {
        return MsgBoxAnswer::Yes;
    }
    return question && m_onConflict != OnConflict::Ask
               ? answer()
               : DefaultPlatform::MsgBox(spoken(text), flags, caption);
}

std::u16string CommandPlatform::InputBox(const std::u16string& prompt, const std::u16string& title,
                                         const std::u16string& defaultText) {
    const std::u16string& taken = m_watch->lastAsked();
    switch (m_onConflict) {
    case OnConflict::Ask:
        break;
    case OnConflict::Rename:
        return freeName(tessaly::baseNameOf(taken), taken);
    case OnConflict::Overwrite:
    case OnConflict::Stop:
        return {};
    }
    for (;;) {
        std::u16string name = DefaultPlatform::InputBox(prompt, title, defaultText);
        const std::string why = name.empty() ? "" : whyNotAName(name);
        if (why.empty()) {
            return name;
        }
        m_terminal.say(u"\"" + name + u"\" " + tessaly::decodeText(why) + u'\n');
    }
}

bool CommandPlatform::isKept(const std::u16string& file) {
    return !m_kept.empty() && tessaly::PosixFileSystem().isSameFile(file, m_kept);
}

/// To a question of the component: whether to overwrite, or, once that was declined without
/// another name, whether to give up.
MsgBoxAnswer CommandPlatform::answer() {
    const bool givesUp = m_obstacle.has_value();
    if (m_onConflict == OnConflict::Stop) {
        stopAtLastAsked(takenAlready);
    }
    return m_onConflict == OnConflict::Overwrite || givesUp ? MsgBoxAnswer::Yes : MsgBoxAnswer::No;
}

} // namespace cli
