// Opening a project. No failure reaches the caller: a failed step is dropped and the next one runs,
// except where a line says otherwise.

#include "external/Platform.h"
#include "project/ProjectFile.h"
#include "project/clProject.h"
#include "util/Attempt.h"

namespace tessaly {

namespace {

bool isBlank(const std::u16string& text) {
    return text.find_first_not_of(u' ') == text.npos;
}

} // namespace

/// The lines of a stream. Where it cannot be read it ends: it would fail the same way for ever.
class clProject::Lines {
public:
    explicit Lines(std::shared_ptr<TextStream> stream)
        : m_stream(std::move(stream)) {
        next();
    }

    /// None at the end, and none where reading failed.
    const std::optional<std::u16string>& line() const { return m_line; }
    bool failed() const { return m_failed; }

    void next() {
        m_line.reset();
        const auto failure = attempt([&] {
            if (!require(m_stream).AtEndOfStream()) {
                m_line = m_stream->ReadLine();
            }
        });
        m_failed = failure.has_value();
    }

private:
    std::shared_ptr<TextStream> m_stream;
    std::optional<std::u16string> m_line;
    bool m_failed = false;
};

bool clProject::init(const std::u16string& strProjectFilePath) {
    const auto alive = keepAlive();
    std::shared_ptr<FileSystemObject> fso;
    attempt([&] { fso = Platform::current()->newFileSystemObject(); });

    bool exists = true; // a question that fails is dropped like any other step
    attempt([&] { exists = require(fso).FileExists(strProjectFilePath); });
    if (!exists) {
        return false;
    }
    std::shared_ptr<File> file;
    std::shared_ptr<TextStream> stream;
    attempt([&] { file = require(fso).GetFile(strProjectFilePath); });
    attempt([&] { stream = require(file).OpenAsTextStream(IOMode::ForReading, formatAnsi); });

    // Of a file that cannot be read nothing is known: the open project stays as it is, with its
    // unsaved text, and is not mixed with another one's path.
    Lines lines(stream);
    if (lines.failed()) {
        return false;
    }
    attempt([&] { require(mvarDocuments).Clear(); });
    attempt([&] { projectFile(strProjectFilePath); });

    if (!readLines(fso, lines, strProjectFilePath)) {
        return false;
    }
    attempt([&] { require(stream).Close(); });
    attempt([&] { CreationDate(require(file).DateCreated()); });
    return hasNameAndPath(strProjectFilePath);
}

bool clProject::readLines(const std::shared_ptr<FileSystemObject>& fso, Lines& lines,
                          const std::u16string& strProjectFilePath) {
    for (; lines.line(); lines.next()) {
        bool loaded = true;
        attempt([&] {
            if (const std::optional<ProjectRecord> record = splitRecord(*lines.line())) {
                loaded = applyRecord(*record);
            }
        });
        if (!loaded) {
            return false;
        }
        attempt([&] {
            ProjectPath(
                withoutTrailingBackslash(require(fso).GetParentFolderName(strProjectFilePath)));
        });
    }
    return !lines.failed();
}

bool clProject::applyRecord(const ProjectRecord& record) {
    const std::u16string value(record.value);
    if (record.key == keyDocument) {
        if (!addDocument(value)) {
            return false;
        }
        m_NeedSave = false;
        const colDocuments& documents = require(mvarDocuments);
        documents.Item(documents.Count())->added(false);
    } else if (record.key == keySite) {
        ProjectName(value);
    } else if (record.key == keyNotes) {
        notes(value);
    } else if (record.key == keyOwner) {
        Owner(value);
    } else if (record.key == keyDescription) {
        description(value);
    }
    return true;
}

bool clProject::hasNameAndPath(const std::u16string& strProjectFilePath) {
    const bool noName = isBlank(ProjectName());
    const bool noPath = isBlank(ProjectPath()); // read in any case: the getter trims what is stored
    if (!noName && !noPath) {
        return true;
    }
    attempt([&] {
        Platform::current()->MsgBox(u"The project file " + strProjectFilePath +
                                        u" appears to be corrupt. Cannot initialise project",
                                    MsgBoxFlags::Critical, u"Project Initialisation Failed!");
    });
    return false;
}

bool clProject::addDocument(const std::u16string& strName, const Value& bTellApp) {
    if (strName.empty()) {
        return false;
    }
    const auto alive = keepAlive();
    const std::u16string path = mvarProjectPath + u"\\" + strName + u".wml";
    bool result = false;
    // Runs a step; a failure makes the result False, and a missing file is shown to the user.
    const auto step = [&](auto&& action) {
        const std::optional<Failure> failure = attempt(action);
        if (!failure) {
            return true;
        }
        result = false;
        if (failure->code() == FailureCode::FileNotFound) {
            attempt([&] {
                Platform::current()->MsgBox(u"An error occurred while accessing the document " +
                                                path +
                                                u"\nPlease verify that the project file is not "
                                                u"corrupt",
                                            MsgBoxFlags::Critical, u"Error Opening Document");
            });
        }
        return false;
    };

    std::shared_ptr<FileSystemObject> fso;
    std::shared_ptr<File> file;
    step([&] { fso = Platform::current()->newFileSystemObject(); });
    step([&] { file = require(fso).GetFile(path); });
    if (file) {
        std::shared_ptr<TextStream> stream;
        step([&] { stream = file->OpenAsTextStream(IOMode::ForReading, formatAnsi); });
        if (!stream) {
            return false;
        }
        std::u16string content;
        result = step([&] { content = stream->AtEndOfStream() ? u"" : stream->ReadAll(); });
        // A deck that could not be read is not added: saving it would empty its file.
        if (result) {
            step([&] {
                require(mvarDocuments)
                    .Add(m_AppPath, strName, content, m_wbPlain, m_MuRtb, m_ListBar, m_Ravik, {});
            });
            if (isTrue(bTellApp)) {
                step([&] {
                    std::u16string strDocName = strName;
                    m_events.raise(&__clProject::OnDocAdd, strDocName);
                });
            }
        }
    }
    m_NeedSave = true;
    return result;
}

std::u16string clProject::getFirstDocument(const std::u16string& strProjectFileName) const {
    std::u16string first;
    const std::optional<Failure> failure = attempt([&] {
        const auto fso = Platform::current()->newFileSystemObject();
        const auto file = require(fso).GetFile(strProjectFileName);
        const auto stream = require(file).OpenAsTextStream(IOMode::ForReading, formatAnsi);
        while (!require(stream).AtEndOfStream()) {
            Platform::current()->DoEvents();
            const std::u16string line = stream->ReadLine();
            const std::optional<ProjectRecord> record = splitRecord(line);
            if (record && record->key == keyDocument) {
                first = record->value;
                return;
            }
        }
    });
    return failure ? cannotAccessDocument : first;
}

} // namespace tessaly
