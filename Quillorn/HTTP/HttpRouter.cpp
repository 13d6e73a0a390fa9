#include "HTTP/HttpRouter.h"

#include "Platform/Text.h"

#include <utility>
#include <vector>

namespace quillorn {

namespace {

std::string_view stripQuery(std::string_view path) {
    return path.substr(0, path.find('?'));
}

void appendSegments(std::vector<std::string_view>& segments, std::string_view path) {
    while (!path.empty()) {
        const auto end = path.find('/');
        if (const auto segment = path.substr(0, end); !segment.empty())
            segments.push_back(segment);
        path = end == std::string_view::npos ? std::string_view{} : path.substr(end + 1);
    }
}

int hexDigit(char character) {
    if (character >= '0' && character <= '9')
        return character - '0';
    if (character >= 'a' && character <= 'f')
        return character - 'a' + 10;
    if (character >= 'A' && character <= 'F')
        return character - 'A' + 10;
    return -1;
}

/// Absent for a malformed escape and for escapes that don't make UTF-8.
std::optional<std::string> percentDecoded(std::string_view segment) {
    if (segment.find('%') == std::string_view::npos)
        return std::string(segment);
    std::string decoded;
    decoded.reserve(segment.size());
    for (std::size_t i = 0; i < segment.size(); ++i) {
        if (segment[i] != '%') {
            decoded += segment[i];
            continue;
        }
        const int high = i + 2 < segment.size() ? hexDigit(segment[i + 1]) : -1;
        const int low = high < 0 ? -1 : hexDigit(segment[i + 2]);
        if (low < 0)
            return std::nullopt;
        decoded += static_cast<char>(high * 16 + low);
        i += 2;
    }
    if (!isValidUTF8(decoded))
        return std::nullopt;
    return decoded;
}

} // namespace

struct HttpRouter::Node {
    std::map<std::string, std::unique_ptr<Node>, std::less<>> nodes;
    bool isEndOfRoute = false;
    HttpHandler handler;

    Node& childMadeIfMissing(std::string_view key) {
        auto& child = nodes[std::string(key)];
        if (!child)
            child = std::make_unique<Node>();
        return *child;
    }

    const Node* child(std::string_view key) const {
        const auto found = nodes.find(key);
        return found == nodes.end() ? nullptr : found->second.get();
    }

    auto firstVariable() const {
        const auto found = nodes.lower_bound(":");
        return found != nodes.end() && found->first.starts_with(':') ? found : nodes.end();
    }
};

/// One walk for one request. All branches are searched, also behind the first match, since they still write parameters.
/// Every step goes one level down the tree, so the depth of the recursion is that of the longest route, whatever the
/// request.
class HttpRouter::Search {
  public:
    explicit Search(std::vector<std::string_view> segments) : m_segments(std::move(segments)) {}

    std::optional<Match> run(const Node& root) {
        findHandler(root, 0);
        if (!m_firstMatch || !m_firstMatch->handler)
            return std::nullopt;
        return Match{std::move(m_params), m_firstMatch->handler};
    }

  private:
    void findHandler(const Node& node, std::size_t index) {
        if (index == m_segments.size()) {
            if (node.isEndOfRoute)
                matched(node);
            return;
        }
        const auto token = percentDecoded(m_segments[index]);
        if (!token)
            return;
        if (const auto variable = node.firstVariable(); variable != node.nodes.end()) {
            m_params.insert_or_assign(variable->first, *token);
            // A variable at the last segment beats literal text at the same place.
            if (index + 1 == m_segments.size() && variable->second->isEndOfRoute) {
                matched(*variable->second);
                return;
            }
            findHandler(*variable->second, index + 1);
        }
        if (const Node* literal = node.child(*token))
            findHandler(*literal, index + 1);
        if (const Node* any = node.child("*"))
            findHandler(*any, index + 1);
        if (const Node* run = node.child("**"))
            findBehindRun(*run, index);
    }

    /// "**" eats the segment it stands on and at least one more.
    void findBehindRun(const Node& run, std::size_t index) {
        for (std::size_t i = index + 2; i < m_segments.size(); ++i) {
            const auto token = percentDecoded(m_segments[i]);
            if (!token)
                return;
            if (const Node* next = run.child(*token))
                findHandler(*next, i + 1);
        }
    }

    void matched(const Node& node) {
        if (!m_firstMatch)
            m_firstMatch = &node;
    }

    std::vector<std::string_view> m_segments;
    Params m_params;
    const Node* m_firstMatch = nullptr;
};

HttpRouter::HttpRouter() : m_rootNode(std::make_unique<Node>()) {}

HttpRouter::~HttpRouter() = default;

void HttpRouter::registerRoute(const std::optional<std::string>& method, std::string_view path, HttpHandler handler) {
    std::vector<std::string_view> segments{method ? std::string_view(*method) : "*"};
    appendSegments(segments, stripQuery(path));
    Node* node = m_rootNode.get();
    for (const auto segment : segments)
        node = &node->childMadeIfMissing(segment);
    node->isEndOfRoute = true;
    node->handler = std::move(handler);
}

std::optional<HttpRouter::Match> HttpRouter::route(const std::optional<std::string>& method,
                                                   std::string_view path) const {
    const auto search = [&](std::string_view first) {
        std::vector<std::string_view> segments;
        appendSegments(segments, first);
        appendSegments(segments, stripQuery(path));
        return Search(std::move(segments)).run(*m_rootNode);
    };
    if (method) {
        if (auto match = search(*method))
            return match;
    }
    return search("*");
}

} // namespace quillorn
