#pragma once

namespace quillorn {

class JsonWriter;
class ModelContext;

/// Writes everything in the store, one record at a time, as the context's snapshot has it. Settings and keys are no
/// part of that. Throws StoreError.
void exportStore(ModelContext& context, JsonWriter& writer);

} // namespace quillorn
