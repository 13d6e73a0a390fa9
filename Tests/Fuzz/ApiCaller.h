#pragma once

#include "API/ListCache.h"
#include "API/Routes.h"
#include "Fuzz/FuzzStore.h"
#include "HTTP/HttpRouter.h"
#include "Platform/Text.h"
#include "Support/FakeClock.h"
#include "Support/FakePaths.h"

#include <optional>
#include <string>

namespace quillorn {

/// Calls the REST API on a store without a server around it, and holds each answer against openapi.json.
class ApiCaller {
  public:
    explicit ApiCaller(ModelContainer& container);

    /// The status; absent where there is no such route. The target may have a query. Ends the program when the answer
    /// is not as described or speaks of a fault of the server's.
    std::optional<int> call(const std::string& method, std::string target, const std::string& body = "");

  private:
    ListCache m_lists;
    FakeClock m_clock;
    Text m_text{"en_US"};
    FakePaths m_paths{"/nowhere"};
    HttpRouter m_router;
    /// The one that was called last.
    Route m_route;
};

} // namespace quillorn
