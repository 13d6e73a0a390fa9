#include "Platform/Linux/DescriptorWatch.h"
#include "Platform/Linux/RouteTable.h"
#include "Platform/NetworkPath.h"

#include <poll.h>

namespace quillorn {

namespace {

class RouteNetworkPath final : public NetworkPath {
  public:
    explicit RouteNetworkPath(MainQueue& queue)
        : m_socket(openRouteSocket()),
          m_isSatisfied(hasDefaultRoute()),
          m_watch(queue, [this] { update(); }) {
        wait();
    }

    bool isSatisfied() const override { return m_isSatisfied; }
    Observation observe(std::function<void(bool)> handler) override { return m_observers.add(std::move(handler)); }

  private:
    void wait() {
        if (m_socket)
            m_watch.waitFor({m_socket.number(), POLLIN});
    }

    void update() {
        drainRouteSocket(m_socket);
        m_isSatisfied = hasDefaultRoute();
        wait();
        m_observers.tell(m_isSatisfied);
    }

    FileDescriptor m_socket;
    bool m_isSatisfied;
    Observers<bool> m_observers;
    DescriptorWatch m_watch;
};

} // namespace

std::unique_ptr<NetworkPath> systemNetworkPath(MainQueue& queue) {
    return std::make_unique<RouteNetworkPath>(queue);
}

} // namespace quillorn
