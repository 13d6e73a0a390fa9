#include "Desktop/SampleStore.h"

#include "App/AppSession.h"
#include "Models/Settings.h"
#include "Platform/FileContent.h"
#include "Services/SampleData.h"
#include "Services/StoreImport.h"

namespace quillorn {

namespace {

/// A home of its own; the program's files stay where they are.
class FolderPaths final : public Paths {
  public:
    explicit FolderPaths(std::filesystem::path folder) : m_folder(std::move(folder)) {}

    std::filesystem::path applicationSupport() const override { return m_folder / "data"; }
    std::filesystem::path configuration() const override { return m_folder / "config"; }
    std::optional<std::filesystem::path> home() const override { return m_folder; }
    std::optional<std::filesystem::path> accountHome() const override { return m_folder; }
    std::optional<std::filesystem::path> groupContainer(std::string_view) const override { return std::nullopt; }
    std::filesystem::path resources() const override { return m_system->resources(); }

  private:
    std::filesystem::path m_folder;
    std::unique_ptr<Paths> m_system = systemPaths();
};

} // namespace

std::unique_ptr<Paths> SampleStore::paths() const {
    return std::make_unique<FolderPaths>(m_folder.path());
}

void SampleStore::fill(AppSession& world) {
    // Nobody is to be reminded of what never was.
    Settings(world.settings()).set(setting("notificationsEnabled"), false);
    const std::string text = readWhole(openFile(world.paths().resources() / "sample.json"));
    importIntoStore(world.app().container(), exportMovedTo(world.clock().now(), world.calendar(), text),
                    ImportKind::real);
}

} // namespace quillorn
