#include "Platform/Bus.h"

namespace quillorn {

const BusMessage& BusReply::message() const {
    if (const BusError* failure = error())
        throw BusError(*failure);
    return std::get<BusMessage>(m_reply);
}

} // namespace quillorn
