#include "Views/APISettingsView.h"

#include "API/APIServer.h"
#include "Models/Settings.h"
#include "Platform/Background.h"
#include "Platform/Crypto.h"
#include "Platform/SettingsStore.h"
#include "Platform/Text.h"
#include "Services/TaskAgentClipboard.h"

#include <array>
#include <charconv>
#include <fmt/core.h>

namespace quillorn {

namespace {

std::string storedPort(SettingsStore& store) {
    return fmt::format("{}", Settings(store).integer(setting("apiPort")));
}

} // namespace

APISettingsView::APISettingsView(Environment environment, std::string machineName)
    : SettingsPane(environment.settings, environment.mainQueue),
      m_server(environment.server),
      m_random(environment.random),
      m_queue(environment.mainQueue),
      m_machineName(std::move(machineName)),
      m_port(storedPort(settings())),
      m_keptPort(m_port),
      m_serverChanges(m_server.observe([this] { tell(); })),
      // What others keep shows in the field; what was typed and is no port stays until then.
      m_portChanges(settings().observe(m_queue, [this] {
          if (const std::string kept = storedPort(settings()); kept != m_keptPort) {
              m_port = m_keptPort = kept;
              tell();
          }
      })) {}

bool APISettingsView::startsAtLaunch() const {
    return Settings(settings()).boolean(setting("apiAutoStart"));
}
void APISettingsView::setStartsAtLaunch(bool starts) {
    keep(setting("apiAutoStart"), starts);
}
bool APISettingsView::allowsExternalAccess() const {
    return Settings(settings()).boolean(setting("apiExternalAccess"));
}
void APISettingsView::setAllowsExternalAccess(bool allows) {
    keep(setting("apiExternalAccess"), allows);
}
bool APISettingsView::requiresAuthLocal() const {
    return Settings(settings()).boolean(setting("apiRequireAuthLocal"));
}
void APISettingsView::setRequiresAuthLocal(bool isRequired) {
    keep(setting("apiRequireAuthLocal"), isRequired);
}

std::optional<std::uint16_t> APISettingsView::portNumber() const {
    const std::string_view text = trimBlanks(m_port);
    std::uint16_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isWhole = error == std::errc() && end == text.data() + text.size();
    return isWhole && number != 0 ? std::optional(number) : std::nullopt;
}

void APISettingsView::setPort(std::string text) {
    if (m_port == text)
        return;
    m_port = std::move(text);
    if (const auto number = portNumber()) {
        m_keptPort = fmt::format("{}", *number); // which is no news when it comes back
        keep(setting("apiPort"), std::int64_t{*number});
    }
    tell();
}

std::string APISettingsView::key() const {
    return Settings(settings()).text(setting("apiAuthKey"));
}
void APISettingsView::setKey(const std::string& key) {
    keep(setting("apiAuthKey"), key);
}
void APISettingsView::generateKey() {
    std::array<std::uint8_t, 32> bytes{};
    m_random.fill(bytes);
    setKey(hexString(bytes));
}

std::optional<std::string_view> APISettingsView::keyWarning() const {
    return needsKey() && key().empty() ? std::optional(keyIsMissing) : std::nullopt;
}

std::string_view APISettingsView::status() const {
    return isRunning() ? "Running" : "Stopped";
}
bool APISettingsView::isRunning() const {
    return m_server.isRunning();
}
std::optional<std::string> APISettingsView::lastError() const {
    return m_server.lastError();
}

void APISettingsView::toggle() {
    if (m_server.isRunning())
        return m_server.stop();
    const auto number = portNumber();
    if (!number)
        return m_server.setLastError(std::string(portIsWrong));
    if (keyWarning())
        return m_server.setLastError(std::string(keyIsMissing));
    m_server.stop();
    m_server.start(number, allowsExternalAccess(), key(), requiresAuthLocal());
}

std::string APISettingsView::endpoint() const {
    // Of a server that runs, where it really listens.
    const bool isExternal = isRunning() ? m_server.isExternalAccess() : allowsExternalAccess();
    const std::string number = isRunning() ? fmt::format("{}", m_server.port()) : storedPort(settings());
    return fmt::format("http://{}:{}", isExternal ? "0.0.0.0" : "localhost", number);
}

std::string APISettingsView::copyConfig() {
    m_hasCopied = true;
    m_copied.cancel();
    m_copied.start(forgetCopied(*this));
    tell();
    return TaskAgentClipboard::settingsSnippet(APIConfig::fromSettings(settings(), m_machineName, isRunning()));
}

Task<> APISettingsView::forgetCopied(APISettingsView& view) {
    Pause pause(view.m_queue, copiedTime);
    co_await pause;
    view.m_hasCopied = false;
    view.tell();
}

std::string_view APISettingsView::copyDirective() {
    return TaskAgentClipboard::directive();
}

} // namespace quillorn
