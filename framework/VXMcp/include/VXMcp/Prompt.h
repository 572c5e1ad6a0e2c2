#pragma once

#include <VXMcp/Tool.h>

#include <tl/expected.hpp>

#include <functional>
#include <string>
#include <vector>

namespace VX::Mcp
{

/// Messages that a user may have his agent begin with.
struct Prompt
{
    struct Argument
    {
        std::string name{};
        std::string description{};
        bool required = false;
    };

    std::string name{};
    std::string title{};
    std::string description{};
    std::vector<Argument> arguments{};
    /// Given an object with a string for each argument, gives back an array of the protocol's messages:
    /// `[{"role": "user", "content": {"type": "text", "text": …}}]`. Called on a server thread.
    std::function<Json::Value(const Json::Value& arguments)> messages{};
    /// The same for a prompt that has to ask the client something first; used in place of `messages` where not empty.
    /// `inputResponses` has the client's answers, null in a first call.
    std::function<tl::expected<Json::Value, Inquiry>(const Json::Value& arguments, const Json::Value& inputResponses)>
        inquire{};
    /// What an argument may be, given what has been typed of it; empty: no suggestions.
    std::function<std::vector<std::string>(const std::string& argument, const std::string& value)> complete{};
};

} // namespace VX::Mcp
