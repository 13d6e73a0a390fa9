#pragma once

#include "Platform/OnDeviceModel.h"

#include <string_view>

namespace quillorn {

class HttpClient;
class SettingsStore;

/// The model of a server on this machine that speaks the wire that OpenAI made common, as the setting
/// voiceRoutingEndpoint names it; without one there is no model. Nothing leaves the machine: an address that is none of
/// the loopback is refused, and neither a proxy nor a redirect is followed.
class LoopbackModel final : public OnDeviceModel {
  public:
    LoopbackModel(HttpClient& client, SettingsStore& settings) : m_client(client), m_settings(settings) {}

    bool isAvailable() const override;
    std::optional<std::size_t> contextSize() const override { return std::nullopt; }
    /// A quarter of the characters.
    std::optional<std::size_t> tokenCount(const std::string& text) const override;
    Task<std::optional<std::string>> respond(std::string prompt, Choice choice) override;

  private:
    HttpClient& m_client;
    SettingsStore& m_settings;
};

/// Whether the URL is one of http or https whose host is this machine: "localhost", 127.0.0.0/8 or ::1.
bool isLoopbackURL(std::string_view url);

} // namespace quillorn
