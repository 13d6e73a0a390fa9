#include "Platform/Linux/RouteTable.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <net/if.h>
#include <optional>
#include <sys/ioctl.h>
#include <sys/socket.h>

namespace quillorn {

namespace {

constexpr std::size_t roomForMessages = 32 * 1024; // what the kernel sends at once

using Buffer = std::array<std::byte, roomForMessages>;

FileDescriptor openNetlink(unsigned groups) {
    FileDescriptor socket(::socket(AF_NETLINK, SOCK_RAW | SOCK_NONBLOCK | SOCK_CLOEXEC, NETLINK_ROUTE));
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_groups = groups;
    if (socket && ::bind(socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        return {};
    return socket;
}

bool isRunning(int interface) {
    ifreq request{};
    const FileDescriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    if (!socket || ::if_indextoname(static_cast<unsigned>(interface), request.ifr_name) == nullptr ||
        ::ioctl(socket.number(), SIOCGIFFLAGS, &request) != 0)
        return false;
    constexpr int needed = IFF_UP | IFF_RUNNING;
    return (request.ifr_flags & needed) == needed;
}

/// Of a route with several ways.
bool hasRunningWay(const rtattr* attribute) {
    auto left = RTA_PAYLOAD(attribute);
    for (auto* way = static_cast<const rtnexthop*>(RTA_DATA(attribute)); RTNH_OK(way, static_cast<int>(left));
         left -= RTNH_ALIGN(way->rtnh_len), way = RTNH_NEXT(way))
        if (isRunning(way->rtnh_ifindex))
            return true;
    return false;
}

bool isUsableDefault(const nlmsghdr* header) {
    const auto* route = static_cast<const rtmsg*>(NLMSG_DATA(header));
    if (header->nlmsg_type != RTM_NEWROUTE || route->rtm_dst_len != 0 || route->rtm_type != RTN_UNICAST ||
        route->rtm_table != RT_TABLE_MAIN)
        return false;
    auto left = RTM_PAYLOAD(header);
    for (const rtattr* each = RTM_RTA(route); RTA_OK(each, left); each = RTA_NEXT(each, left)) {
        int interface = 0;
        if (each->rta_type == RTA_OIF && RTA_PAYLOAD(each) >= sizeof interface) {
            std::memcpy(&interface, RTA_DATA(each), sizeof interface);
            if (isRunning(interface))
                return true;
        } else if (each->rta_type == RTA_MULTIPATH && hasRunningWay(each)) {
            return true;
        }
    }
    return false;
}

bool askForRoutes(const FileDescriptor& socket, unsigned char family) {
    struct {
        nlmsghdr header;
        rtmsg route;
    } request{};
    request.header.nlmsg_len = sizeof request;
    request.header.nlmsg_type = RTM_GETROUTE;
    request.header.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
    request.route.rtm_family = family;
    return ::send(socket.number(), &request, sizeof request, 0) == static_cast<ssize_t>(sizeof request);
}

/// Absent where the kernel doesn't say.
std::optional<bool> hasDefaultRoute(unsigned char family) {
    const FileDescriptor socket = openNetlink(0);
    if (!socket || !askForRoutes(socket, family))
        return std::nullopt;
    bool found = false;
    alignas(nlmsghdr) Buffer buffer;
    for (ssize_t size = 0; (size = ::recv(socket.number(), buffer.data(), buffer.size(), 0)) > 0;) {
        auto left = static_cast<unsigned>(size);
        for (auto* header = reinterpret_cast<const nlmsghdr*>(buffer.data()); NLMSG_OK(header, left);
             header = NLMSG_NEXT(header, left)) {
            if (header->nlmsg_type == NLMSG_DONE)
                return found;
            if (header->nlmsg_type == NLMSG_ERROR)
                return std::nullopt;
            found = found || isUsableDefault(header);
        }
    }
    return std::nullopt;
}

} // namespace

FileDescriptor openRouteSocket() {
    return openNetlink(RTMGRP_LINK | RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_ROUTE);
}

void drainRouteSocket(const FileDescriptor& socket) {
    Buffer buffer;
    while (::recv(socket.number(), buffer.data(), buffer.size(), 0) > 0) {
    }
}

bool hasDefaultRoute() {
    const auto four = hasDefaultRoute(AF_INET);
    if (four.value_or(false))
        return true;
    const auto six = hasDefaultRoute(AF_INET6);
    return six.value_or(false) || (!four && !six);
}

} // namespace quillorn
