#pragma once

#include "HTTP/HttpResponse.h"
#include "Records/WireRecord.h"

#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace quillorn {

/// Why a request of the REST API fails; thrown by its operations.
class APIError : public std::exception {
  public:
    struct NotFound {
        std::string resource;
        UUID id;
    };
    struct BadRequest {
        std::string message;
        std::optional<std::vector<std::string>> details{};
    };
    struct MissingField {
        std::string name;
    };
    struct InvalidUUID {
        std::string text;
    };
    struct InternalError {
        std::string message;
    };
    struct InvalidJSON {};
    using Case = std::variant<NotFound, BadRequest, MissingField, InvalidUUID, InternalError, InvalidJSON>;

    explicit APIError(Case kind);

    static APIError notFound(std::string resource, const UUID& id) {
        return APIError(NotFound{std::move(resource), id});
    }
    static APIError badRequest(std::string message, std::optional<std::vector<std::string>> details = {}) {
        return APIError(BadRequest{std::move(message), std::move(details)});
    }
    static APIError missingField(std::string name) { return APIError(MissingField{std::move(name)}); }
    static APIError invalidUUID(std::string text) { return APIError(InvalidUUID{std::move(text)}); }
    static APIError internalError(std::string message) { return APIError(InternalError{std::move(message)}); }
    static APIError invalidJSON() { return APIError(InvalidJSON{}); }

    const Case& kind() const { return m_kind; }
    /// The text for humans.
    const char* what() const noexcept override { return m_message.c_str(); }

  private:
    Case m_kind;
    std::string m_message;
};

/// The body of every answer that reports an error.
struct APIErrorResponse {
    /// A short word for programs.
    std::string error;
    /// A text for humans.
    std::string message;
    /// The HTTP status.
    std::int64_t code = 500;
    std::optional<std::vector<std::string>> details{};

    static const RecordType& recordType();
};

HttpResponse errorResponse(const APIError& error);

/// Runs one operation; whatever it throws becomes the API's answer.
HttpResponse answer(const std::function<HttpResponse()>& operation);

} // namespace quillorn
