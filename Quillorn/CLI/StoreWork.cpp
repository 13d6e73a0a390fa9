#include "CLI/StoreWork.h"

namespace quillorn {

ExitStatus withStore(const ProcessInfo& process, ModelContext::Intent intent,
                     const std::function<ExitStatus(StoreWork& work)>& work) {
    Session session(process);
    if (session.hasFailed())
        return ExitStatus::failure;
    ModelContext context(session.app().container(), intent);
    StoreWork all{session, context, session.clock().now()};
    return work(all);
}

} // namespace quillorn
