#pragma once

#include <VXViewer/WebTransport.h>

#include <json/value.h>
#include <tl/expected.hpp>

#include <filesystem>
#include <string>
#include <unordered_map>

namespace VX
{

/// An HTTP request: a value that is put together, sent, and may be gone before its answer arrives.
/// Without further settings it is an asynchronous GET with a time-out of 60 s and without headers of its own.
/// @threads one at a time
class VXVIEWER_API WebRequest
{
public:
    using Method = WebMethod;
    using Callback = WebCallback;

    WebRequest() = default;

    /// @param url  http or https; it may have a query and a fragment
    explicit WebRequest(std::string url);

    /// Overwrites the body, which may hold a password; whoever carries the request has one of their own.
    ~WebRequest();

    WebRequest(const WebRequest&) = default;
    WebRequest(WebRequest&&) = default;
    WebRequest& operator=(const WebRequest&) = default;
    WebRequest& operator=(WebRequest&&) = default;

    void setMethod(Method method);

    /// How long the whole request may take, the transfer of both bodies included. Below 1: the 60 s of the default.
    /// While the application shuts down no request takes longer than 1.5 s.
    void setTimeout(int milliseconds);

    /// Query parameters; they are percent-encoded and added to those of the URL.
    void setParameters(std::unordered_map<std::string, std::string> parameters);

    void setHeaders(std::unordered_map<std::string, std::string> headers);

    /// The body, in memory. Its Content-Type is application/json unless the headers name one.
    void setBody(std::string body);

    /// Sends this file as the body, in place of `setBody`, as it is when the request is sent, with a Content-Length and
    /// without a Content-Type of its own.
    void setInputPath(std::filesystem::path path);

    /// Writes the body of the answer to this file, whose folder must exist. The file appears under its name, with mode
    /// 0600, once it is complete and the status is below 400; otherwise nothing of it stays behind.
    void setOutputPath(std::filesystem::path path);

    /// Called with the fraction that is done, 0 to 1, several times a second even while nothing moves; false cancels
    /// the request. The calls come from the one thread that moves the bytes of all requests: they must be quick, and
    /// must not send a request that waits for its answer.
    void setUploadProgressCallback(ProgressCallback callback);

    /// The same for the body of the answer; the fraction stays 0 while the length of that is not known.
    void setDownloadProgressCallback(ProgressCallback callback);

    /// The name under which the log has the request.
    void setLogName(std::string name);

    /// Whether `send` returns at once and the answer arrives later, on a request thread (the default), or `send`
    /// returns once the callback has been called with the answer on the calling thread.
    void setAsync(bool async);

    /// Sends the request and calls `callback` exactly once with an object of these members:
    /// "code": int, the HTTP status; 0 where no complete answer arrived (no connection, time-out, cancelled, and
    /// whatever else went wrong on this side);
    /// "text": string, the body; there for every status but 0, also empty; with an output path it is empty for statuses
    /// below 400, and holds the first 64 KiB of the body for the others;
    /// "error": string, what went wrong; only there for status 0 and for statuses from 400 on ("HTTP 404: Not Found").
    /// The texts of status 0: "Operation was canceled" for a progress callback that returned false, "The application is
    /// closing.", "HOST was not found. Check the network connection.", "Cannot connect to HOST. Check the network
    /// connection.", "HOST did not answer in time.", "HOST cannot be trusted: REASON.", "The connection to HOST broke
    /// off.", "HOST sends the request in circles.", "HOST sends the request to an address that is not allowed."
    /// (another protocol, or from https to http), "The answer of HOST is larger than 256 MiB.", "The address of the
    /// request is not a valid http or https address.", "The request has a header that cannot be sent.", the sentences
    /// of `fileErrorText` about the two files, and those of libcurl for anything else.
    /// Redirections are followed, up to ten of them; the certificate of an https server is always checked.
    /// @threads any; a callback of an asynchronous request may block for as long as it likes, other answers arrive on
    /// other threads (up to 64)
    void send(Callback callback) const;

    /// The same with these three given at once; they stay set.
    void send(std::string url, std::string logName, Callback callback, bool async = true);

private:
    WebRequestData data_;
};

/// The body of an answer as JSON, or what went wrong:
/// code 0 (or none, or one that is no integer): the "error" of the answer, or "Connection error";
/// a "text" that is not a string: the "error", or "HTTP CODE" where there is none either;
/// a text that is not JSON: for codes below 400 what `deserializeJsonValue` says, else the "error", or "HTTP CODE";
/// codes from 400 on: of the body the string "message", else the string "error", else the string "message" in the
/// object "error", else "HTTP CODE". An empty text with a code below 400 is a success with null.
/// @threads any
[[nodiscard]] VXVIEWER_API tl::expected<Json::Value, std::string> parseResponse(const Json::Value& answer);

} // namespace VX
