#pragma once

#include <tl/expected.hpp>

#include <functional>
#include <map>
#include <string>

namespace VX::Mcp
{

/// Something that agents may read.
struct Resource
{
    using Answer = std::function<void(tl::expected<std::string, std::string>)>;

    std::string uri{}; ///< "viewer://scene"
    std::string name{};
    std::string title{};
    std::string description{};
    std::string mimeType{}; ///< what begins with "text/" or ends with "json" or "xml" is sent as text, else as bytes
    std::string tool{};     ///< that tells the same: where it may not be called, this may not be read; empty: none
    /// Called on a server thread. Answers exactly once, on any thread, with the content or the reason why there is
    /// none.
    std::function<void(Answer)> read{};
};

/// Resources whose URIs follow a pattern.
struct ResourceTemplate
{
    std::string uriTemplate{}; ///< "viewer://object/{id}"; each variable stands for at least one byte other than "/"
    std::string name{};
    std::string title{};
    std::string description{};
    std::string mimeType{};
    /// As `Resource::read`, with the URI that is asked for and the values of its variables.
    std::function<void(const std::string& uri, const std::map<std::string, std::string>& variables, Resource::Answer)>
        read{};
};

} // namespace VX::Mcp
