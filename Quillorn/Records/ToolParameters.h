#pragma once

#include "Records/WireRecord.h"

#include <concepts>
#include <functional>
#include <initializer_list>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace quillorn {

/// A fault of the caller's in a call of a tool, in words for the model that called.
class ToolError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The schema of a value in that form; `more` is added to it.
Json::Object schemaOf(const WireShape& shape, const std::string& description, Json::Object more);
/// The schema of an object with these members.
Json::Object objectSchema(Json::Object properties, Json::Array required);

/// What schemas say beyond the form of a value.
Json::Object zeroToThree();
Json::Object zeroToThree(std::int64_t defaultValue);
Json::Object hexColor();
Json::Object hexColor(const std::string& defaultValue);

/// Read the argument of that name, null where there is none, and throw ToolError where it is missing or unfit.
void readRequired(const std::string& name, const Json* given, UUID& value);
void readRequired(const std::string& name, const Json* given, Date& value);
/// Blanks alone are unfit.
void readRequired(const std::string& name, const Json* given, std::string& value);
/// None at all is unfit.
void readRequired(const std::string& name, const Json* given, std::vector<UUID>& value);

/// One parameter of a tool, and the member of `Arguments` that holds what the caller gave for it. The type of the
/// member says what is needed: an optional one may be left out, a plain boolean is a switch that is off, any other is
/// required. An argument that may be left out and has another form counts as left out.
template <class Arguments>
class ToolParameter {
  public:
    template <class Value, class Owner>
        requires std::derived_from<Arguments, Owner>
    ToolParameter(std::string name, std::optional<Value> Owner::* member, const std::string& description,
                  Json::Object more = {})
        : ToolParameter(std::move(name), false, schemaOf(WireForm<Value>::shape, description, std::move(more)),
                        [member](const std::string&, const Json* given, Arguments& arguments) {
                            Value value{};
                            if (given != nullptr && WireForm<Value>::read(*given, value))
                                arguments.*member = std::move(value);
                        }) {}

    template <class Owner>
        requires std::derived_from<Arguments, Owner>
    ToolParameter(std::string name, bool Owner::* member, const std::string& description)
        : ToolParameter(std::move(name), false, schemaOf(WireForm<bool>::shape, description, {{"default", false}}),
                        [member](const std::string&, const Json* given, Arguments& arguments) {
                            if (given != nullptr)
                                WireForm<bool>::read(*given, arguments.*member);
                        }) {}

    template <class Value, class Owner>
        requires std::derived_from<Arguments, Owner>
    ToolParameter(std::string name, Value Owner::* member, const std::string& description, Json::Object more = {})
        : ToolParameter(std::move(name), true, schemaOf(WireForm<Value>::shape, description, std::move(more)),
                        [member](const std::string& nameOfIt, const Json* given, Arguments& arguments) {
                            readRequired(nameOfIt, given, arguments.*member);
                        }) {}

    const std::string& name() const { return m_name; }
    bool isRequired() const { return m_isRequired; }
    const Json::Object& schema() const { return m_schema; }
    void read(const Json::Object& given, Arguments& arguments) const {
        const auto argument = given.find(m_name);
        m_read(m_name, argument == given.end() ? nullptr : &argument->second, arguments);
    }

  private:
    using Read = std::function<void(const std::string& name, const Json* given, Arguments& arguments)>;

    ToolParameter(std::string name, bool isRequired, Json::Object schema, Read read)
        : m_name(std::move(name)),
          m_isRequired(isRequired),
          m_schema(std::move(schema)),
          m_read(std::move(read)) {}

    std::string m_name;
    bool m_isRequired;
    Json::Object m_schema;
    Read m_read;
};

/// The parameters of a tool: how models are told of them, and how calls are read.
template <class Arguments>
class ToolParameters {
  public:
    ToolParameters(std::initializer_list<ToolParameter<Arguments>> parameters) : m_parameters(parameters) {}

    friend ToolParameters operator+(ToolParameters first, const ToolParameters& second) {
        first.m_parameters.insert(first.m_parameters.end(), second.m_parameters.begin(), second.m_parameters.end());
        return first;
    }

    Json::Object schema() const {
        Json::Object properties;
        Json::Array required;
        for (const auto& parameter : m_parameters) {
            properties[parameter.name()] = parameter.schema();
            if (parameter.isRequired())
                required.emplace_back(parameter.name());
        }
        return objectSchema(std::move(properties), std::move(required));
    }

    /// Throws ToolError for the first one that is missing or unfit.
    Arguments read(const Json::Object& given) const {
        Arguments arguments{};
        for (const auto& parameter : m_parameters)
            parameter.read(given, arguments);
        return arguments;
    }

  private:
    std::vector<ToolParameter<Arguments>> m_parameters;
};

} // namespace quillorn
