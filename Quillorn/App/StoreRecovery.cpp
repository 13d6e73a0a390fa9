#include "App/StoreRecovery.h"

#include <fmt/core.h>

namespace quillorn {

std::string StoreRecovery::text() const {
    return fmt::format("Quillorn couldn't open your data\n"
                       "\n"
                       "Your data hasn't been changed or deleted. This usually means the app needs an update to read a "
                       "newer database format.\n"
                       "\n"
                       "{}\n"
                       "\n"
                       "Your hourly backups are safe here:\n"
                       "{}\n",
                       message, backupsFolder.string());
}

} // namespace quillorn
