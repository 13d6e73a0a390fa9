#include "Store/BulkWrite.h"

#include "Store/ContextSave.h"

namespace quillorn {

void writeInBulk(ModelContainer& container, const std::function<bool(ModelContext& context)>& write) {
    ModelContext context(container, ModelContext::Intent::update);
    ContextSave(context, WriteLock::usualPatience).runStatements([&] { return write(context); });
}

} // namespace quillorn
