#pragma once

#include "Platform/Bus.h"
#include "Platform/GlobalShortcut.h"
#include "Platform/Task.h"

#include <cstdint>

namespace quillorn {

/// By the desktop's portal, org.freedesktop.portal.GlobalShortcuts, which may come and go. It is not started for this,
/// and asks the user but for a key that it doesn't know.
class PortalShortcut final : public GlobalShortcut {
  public:
    struct Definition {
        std::string id;
        /// For people.
        std::string description;
        /// A proposal, as the portal writes keys: "CTRL+ALT+a".
        std::string preferredTrigger;
    };

    /// The bus must outlive it.
    PortalShortcut(Bus& sessionBus, Definition definition);

    /// The key was pressed.
    std::function<void()> onActivated;
    /// The user, asked by the desktop, does not want it.
    std::function<void()> onRefused;

    bool isAvailable() const override { return m_isAvailable; }
    const std::string& trigger() const override { return m_trigger; }
    void setWanted(bool isWanted) override;
    Observation observe(std::function<void()> handler) override { return m_observers.add(std::move(handler)); }

  private:
    /// What the portal says in the end to something that it asks the user about.
    struct Response {
        enum Code : std::int64_t { success = 0, cancelled = 1, other = 2 };
        std::int64_t code = other;
        BusValue::Dictionary results{};

        static Response of(const BusMessage& message);
    };

    void portalCameOrWent(bool isPresent);
    Task<> look();
    Task<> bind();
    Task<Response> request(BusCall call);
    BusMessage wish() const;
    /// False where ours is not among them.
    bool takeTrigger(const BusValue* shortcuts);
    void wasActivated(const BusSignal& signal);
    void wereChanged(const BusSignal& signal);
    void closeSession();
    bool isOurs(const BusSignal& signal, std::size_t values) const;

    Bus& m_bus;
    const Definition m_definition;
    bool m_isAvailable = false;
    bool m_isWanted = false;
    /// By a question that has had no answer.
    bool m_isAsked = false;
    std::string m_session;
    std::string m_trigger;
    std::uint64_t m_requests = 0;
    Observers<> m_observers;
    TaskScope m_work;
    Observation m_presence;
    Observation m_activations;
    Observation m_changes;
};

} // namespace quillorn
