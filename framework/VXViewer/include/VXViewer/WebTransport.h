#pragma once

#include <VXMesh/Progress.h>
#include <VXViewer/Export.h>

#include <json/forwards.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <unordered_map>

namespace VX
{

enum class WebMethod
{
    Get = 0,
    Post = 1,
    Delete = 2,
    Put = 3
};

/// Everything that a `WebRequest` was told, as its transport gets it.
struct WebRequestData
{
    WebMethod method = WebMethod::Get;
    std::string url{};                                         ///< as set: it may have a query and a fragment
    std::unordered_map<std::string, std::string> parameters{}; ///< of the query, not encoded
    std::unordered_map<std::string, std::string> headers{};
    std::optional<std::string> body{};
    std::filesystem::path inputPath{};  ///< the file that is the body; empty: none
    std::filesystem::path outputPath{}; ///< the file that gets the body of the answer; empty: the answer's "text" does
    std::chrono::milliseconds timeout{60'000};
    std::string logName{};
    bool async = true;
    ProgressCallback uploadProgress{};
    ProgressCallback downloadProgress{};
};

/// Takes the answer of a request: an object with the members "code", "text" and "error" (see `WebRequest::send`).
using WebCallback = std::function<void(const Json::Value&)>;

/// Carries requests out. The one in use is libcurl's unless `WebRequests::setTransport` names another.
class VXVIEWER_API WebTransport
{
public:
    virtual ~WebTransport() = default;

    /// Sends `request` and calls `callback` once with the answer: before it returns where `request.async` is false,
    /// otherwise later on a thread of the transport.
    /// @threads any
    virtual void send(WebRequestData request, WebCallback callback) = 0;
};

} // namespace VX
