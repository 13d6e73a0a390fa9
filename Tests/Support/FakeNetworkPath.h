#pragma once

#include "Platform/NetworkPath.h"

namespace quillorn {

/// A network that is there as a test says.
class FakeNetworkPath final : public NetworkPath {
  public:
    bool isSatisfied() const override { return m_isSatisfied; }
    Observation observe(std::function<void(bool)> handler) override { return m_observers.add(std::move(handler)); }
    void update(bool isSatisfied) {
        m_isSatisfied = isSatisfied;
        m_observers.tell(isSatisfied);
    }

  private:
    bool m_isSatisfied = true;
    Observers<bool> m_observers;
};

} // namespace quillorn
