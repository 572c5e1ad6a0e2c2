#pragma once

#include <VXMcp/Export.h>

#include <json/value.h>
#include <tl/expected.hpp>

#include <string>

namespace VX::Mcp
{

/// The codes of errors that a client may get.
enum class RpcCode
{
    ParseError = -32700,
    InvalidRequest = -32600,
    MethodNotFound = -32601,
    InvalidParams = -32602,
    InternalError = -32603,
    SessionNotFound = -32001,
    ResourceNotFound = -32002,
    HeaderMismatch = -32020,
    MissingClientCapability = -32021,
    UnsupportedVersion = -32022,
};

struct RpcError
{
    RpcCode code = RpcCode::InternalError;
    std::string message{};
    Json::Value data{}; ///< null: none
};

/// One message of JSON-RPC 2.0, as clients of the protocol send it.
struct RpcMessage
{
    enum class Kind
    {
        Request,
        Notification,
        Response,
    };

    Kind kind = Kind::Request;
    Json::Value id{};     ///< a string or an integer; null in a notification
    std::string method{}; ///< empty in a response
    Json::Value params{Json::objectValue};
    Json::Value result{}; ///< of a response; null where it is an error
    Json::Value error{};  ///< of a response; an object where it is one
};

/// Why a text is no such message, with the id to answer to, null where there is none.
struct RpcRefusal
{
    RpcError error;
    Json::Value id{};
};

/// Reads one message; a batch is refused.
/// @threads any
[[nodiscard]] VXMCP_API tl::expected<RpcMessage, RpcRefusal> parseRpcMessage(const std::string& text);

[[nodiscard]] VXMCP_API Json::Value makeRpcResult(const Json::Value& id, Json::Value result);
[[nodiscard]] VXMCP_API Json::Value makeRpcError(const Json::Value& id, const RpcError& error);
[[nodiscard]] VXMCP_API Json::Value makeRpcNotification(const std::string& method, Json::Value params);

} // namespace VX::Mcp
