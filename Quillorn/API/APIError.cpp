#include "API/APIError.h"

#include "API/JsonResponse.h"
#include "Records/Lookup.h"

#include <utility>

namespace quillorn {

namespace {

template <class... Visitors>
struct Overloaded : Visitors... {
    using Visitors::operator()...;
};
template <class... Visitors>
Overloaded(Visitors...) -> Overloaded<Visitors...>;

std::string messageOf(const APIError::Case& kind) {
    return std::visit(Overloaded{
                          [](const APIError::NotFound& fault) {
                              return fault.resource + " with id " + fault.id.string() + " not found";
                          },
                          [](const APIError::BadRequest& fault) { return fault.message; },
                          [](const APIError::MissingField& fault) { return "Missing required field: " + fault.name; },
                          [](const APIError::InvalidUUID& fault) { return "Invalid UUID format: " + fault.text; },
                          [](const APIError::InternalError& fault) { return fault.message; },
                          [](const APIError::InvalidJSON&) { return std::string("Invalid JSON in request body"); },
                      },
                      kind);
}

} // namespace

APIError::APIError(Case kind) : m_kind(std::move(kind)), m_message(messageOf(m_kind)) {}

const RecordType& APIErrorResponse::recordType() {
    static constexpr auto fields = wireFields<APIErrorResponse>(
        wireField<&APIErrorResponse::error>("error", {.description = "A short word for programs.",
                                                      .choices = R"(["bad_request", "not_found", "internal_error"])"}),
        wireField<&APIErrorResponse::message>("message", "The reason in words."),
        wireField<&APIErrorResponse::code>("code", "The HTTP status once more."),
        wireField<&APIErrorResponse::details>(
            "details", "Every rule that the request breaks; there when the message is \"Validation failed\"."));
    static constexpr RecordType type{"APIErrorResponse", fields};
    return type;
}

HttpResponse errorResponse(const APIError& error) {
    APIErrorResponse body{.error = "bad_request", .message = error.what(), .code = 400};
    if (std::holds_alternative<APIError::NotFound>(error.kind())) {
        body.error = "not_found";
        body.code = 404;
    } else if (std::holds_alternative<APIError::InternalError>(error.kind())) {
        body.error = "internal_error";
        body.code = 500;
    } else if (const auto* fault = std::get_if<APIError::BadRequest>(&error.kind())) {
        body.details = fault->details;
    }
    return jsonResponse(body, static_cast<int>(body.code));
}

HttpResponse answer(const std::function<HttpResponse()>& operation) {
    try {
        return operation();
    } catch (const APIError& error) {
        return errorResponse(error);
    } catch (const RecordNotFound& error) {
        return errorResponse(APIError::notFound(error.resource(), error.id()));
    } catch (const std::exception& error) {
        return errorResponse(APIError::internalError(error.what()));
    } catch (...) {
        return errorResponse(APIError::internalError("Unknown error"));
    }
}

} // namespace quillorn
