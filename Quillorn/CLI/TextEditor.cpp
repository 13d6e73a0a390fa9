#include "CLI/TextEditor.h"

#include "CLI/Words.h"
#include "Platform/AtomicFile.h"
#include "Platform/Crypto.h"
#include "Platform/FileContent.h"
#include "Platform/TemporaryDirectory.h"
#include "Platform/Text.h"
#include "Platform/UUID.h"

#include <cstdlib>
#include <fmt/core.h>
#include <stdexcept>
#include <sys/stat.h>

namespace quillorn {

namespace {

constexpr std::size_t longestText = 10'000'000;

std::string editorOfUser() {
    for (const char* name : {"VISUAL", "EDITOR"})
        if (const char* value = std::getenv(name); value != nullptr && *value != '\0') // NOLINT(concurrency-mt-unsafe)
            return value;
    throw std::runtime_error("there is no editor: set VISUAL or EDITOR, or use --content");
}

std::string readText(const std::filesystem::path& file) {
    struct stat status{};
    const FileDescriptor opened = openFile(file, status);
    if (static_cast<std::size_t>(status.st_size) > longestText)
        throw std::runtime_error("the text is too long; nothing was changed");
    std::string text = readWhole(opened, static_cast<std::size_t>(status.st_size));
    if (!isValidUTF8(text))
        throw std::runtime_error("what the editor left is no text in UTF-8; nothing was changed. " +
                                 wordsForKept(text));
    return text;
}

} // namespace

std::string editedText(const std::string& text) {
    const std::string editor = editorOfUser();
    SystemRandom random;
    const TemporaryDirectory folder(random);
    const std::filesystem::path file = folder / "note.md";
    replaceFile(file, text);
    // The setting may have arguments, so it is the shell's to read. It waits with Ctrl-C left to the editor.
    const std::string command = editor + " " + quotedForShell(file.string());
    const int status = std::system(command.c_str()); // NOLINT(cert-env33-c,concurrency-mt-unsafe): see above
    if (status != 0)
        throw std::runtime_error("the editor failed; nothing was changed");
    std::string edited = readText(file);
    // Editors end the last line, whether or not it was.
    if (edited.ends_with('\n') && !text.ends_with('\n'))
        edited.pop_back();
    return edited;
}

std::string wordsForKept(std::string_view text) {
    SystemRandom random;
    const std::filesystem::path file = std::filesystem::temp_directory_path() /
                                       fmt::format("quillorn-note-{}.md", UUID::random(random).string().substr(0, 8));
    try {
        if (createFile(file, text))
            return fmt::format("Your text is in {}", file.string());
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): said below
    }
    return "Your text could not be kept";
}

} // namespace quillorn
