#pragma once

#include "Store/ModelContext.h"

#include <vector>

namespace quillorn {

/// Lets a context that lives long go of its objects, but for those that somebody holds, that have changes to be saved,
/// and that one of these has loaded as a relation.
class ContextRelease {
  public:
    explicit ContextRelease(ModelContext& context) : m_context(context) {}

    void run();

  private:
    void keep(Entity* object);
    void keepWithRelations(Entity& object);
    void unloadWhatGoes(Entity& object) const;
    void dropTheRest(ModelContext::Registry& registry) const;

    ModelContext& m_context;
};

} // namespace quillorn
