#pragma once

#include <functional>

namespace quillorn {

class ModelContainer;
class ModelContext;

/// Writes many rows by statements of one's own, in one transaction under the write lock and without an object for any
/// of them. The context is an updating one, in which nothing else is changed. Nothing is written where `write` returns
/// false or throws. Whoever follows the store learns that anything may have changed. Throws StoreError.
void writeInBulk(ModelContainer& container, const std::function<bool(ModelContext& context)>& write);

} // namespace quillorn
