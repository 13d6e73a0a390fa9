#pragma once

#include "Platform/Bus.h"
#include "Platform/Linux/BusMessages.h"
#include "Platform/MainQueue.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quillorn {

/// Something that a SystemdBus was asked for, which lasts as long as its token. Callbacks of the library only post:
/// handlers run from the main queue, where they may do as they please, to the bus as well.
class BusRegistration : public std::enable_shared_from_this<BusRegistration> {
  public:
    explicit BusRegistration(MainQueue& queue) : m_queue(queue) {}
    virtual ~BusRegistration() = default;
    BusRegistration(const BusRegistration&) = delete;
    BusRegistration& operator=(const BusRegistration&) = delete;

    /// Asks a fresh connection. Throws BusError for what can't be asked.
    virtual void attach(sd_bus& bus) = 0;
    /// The connection goes.
    virtual void detach() = 0;

  protected:
    /// Runs `work` on the main queue while the token is there.
    void post(std::function<void()> work);

    /// A callback of the library, which knows no exceptions.
    template <typename Self, void (Self::*handle)(sd_bus_message*), typename Error>
    static int callback(sd_bus_message* message, void* self, Error*) {
        try {
            (static_cast<Self*>(self)->*handle)(message);
        } catch (const std::exception&) {
            // What can't be read was not for us.
        }
        return 1;
    }

  private:
    MainQueue& m_queue;
};

class BusPendingCall final : public BusRegistration {
  public:
    BusPendingCall(MainQueue& queue, Bus::ReplyHandler handler)
        : BusRegistration(queue),
          m_handler(std::move(handler)) {}

    void start(sd_bus& bus, const BusCall& call);
    void fail(const BusError& error);
    void attach(sd_bus&) override {}
    void detach() override;

  private:
    void take(sd_bus_message* reply);
    void finish(BusReply reply);

    Bus::ReplyHandler m_handler;
    BusSlot m_slot;
    bool m_isFinished = false;
};

class BusSignalMatch final : public BusRegistration {
  public:
    BusSignalMatch(MainQueue& queue, BusSignalRule rule, Bus::SignalHandler handler)
        : BusRegistration(queue),
          m_rule(std::move(rule)),
          m_handler(std::move(handler)) {}

    void attach(sd_bus& bus) override;
    void detach() override { m_slot.reset(); }

  private:
    void take(sd_bus_message* message);

    const BusSignalRule m_rule;
    const Bus::SignalHandler m_handler;
    BusSlot m_slot;
};

/// Tells a changing yes or no.
class BusPresence : public BusRegistration {
  public:
    BusPresence(MainQueue& queue, std::string name, Bus::PresenceHandler handler)
        : BusRegistration(queue),
          m_name(std::move(name)),
          m_handler(std::move(handler)) {}

    void detach() override;

  protected:
    const std::string& name() const { return m_name; }
    void tell(bool present);
    void add(BusSlot slot) { m_slots.push_back(std::move(slot)); }

  private:
    const std::string m_name;
    const Bus::PresenceHandler m_handler;
    std::optional<bool> m_isPresent;
    std::vector<BusSlot> m_slots;
};

class BusServiceWatch final : public BusPresence {
  public:
    using BusPresence::BusPresence;
    void attach(sd_bus& bus) override;

  private:
    void takeOwnerChange(sd_bus_message* message);
    void takeOwner(sd_bus_message* reply);
};

class BusOwnedName final : public BusPresence {
  public:
    using BusPresence::BusPresence;
    ~BusOwnedName() override;
    void attach(sd_bus& bus) override;
    void detach() override;

  private:
    void takeReply(sd_bus_message* reply);
    void takeAcquired(sd_bus_message* signal);
    void takeLost(sd_bus_message* signal);
    bool isAbout(sd_bus_message* signal) const;

    sd_bus* m_bus = nullptr;
};

class BusExport final : public BusRegistration {
  public:
    /// `answered` runs after each answer.
    BusExport(MainQueue& queue, std::string path, BusInterface interface, std::function<void()> answered);
    ~BusExport() override;

    void attach(sd_bus& bus) override;
    void detach() override { m_slot.reset(); }

  private:
    /// A method with its description in the library's form.
    struct Method {
        BusMethod method;
        std::string in;
        std::string out;
        std::string names; // each ends with a zero byte
    };

    void take(sd_bus_message* call);
    void handle(const Method& method, const BusMessage& message, const BusMethod::Responder& answer) const;

    const std::string m_path;
    const std::string m_name;
    std::vector<Method> m_methods;
    struct Table;
    std::unique_ptr<const Table> m_table;
    const std::function<void()> m_answered;
    BusSlot m_slot;
};

} // namespace quillorn
