#pragma once

#include "PresignedUrl.h"
#include "StatusWaiters.h"

#include <net/HttpServer.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

namespace VX
{

class BlobStore;

/// The three operations of the conversion protocol: a client announces a file and gets a link to upload it to, asks
/// for the conversion, and asks how far it is until it gets a link to the result. Every answer is a JSON object with a
/// "result", or {"result":null,"error":{"message":TEXT}} with a text for the user.
/// @threads any
class ConverterApi
{
public:
    struct Settings
    {
        /// Whether a request with this access token, which may be empty, is served.
        std::function<bool(const std::string& accessToken)> mayConvert;
        std::uint64_t uploadLimit = 0;
        std::chrono::seconds linkLifetime{3600};
        std::chrono::milliseconds statusHold{5000};
        /// What links begin with: scheme and host; asked for once an operation needs it.
        std::function<std::string()> publicUrl;
    };

    /// All of what it refers to must outlive it.
    ConverterApi(JobQueue& queue, const BlobStore& blobs, const PresignedUrl& links, Settings settings);

    /// POST: {"result":{"request_id","url"}}
    void request(const HttpRequest& request, const HttpHandler::Respond& respond);

    /// POST: {"result":{}}; once accepted, asking again changes nothing.
    void convert(const HttpRequest& request, const HttpHandler::Respond& respond);

    /// GET with the parameter "request_id": {"result":{"state","url"}}, where the state is "not_started" until the
    /// conversion was asked for, then "in_progress", then "finished", with the link; or the error of a conversion that
    /// failed. The answer is held while the state stays as it is, at most for the time of the settings.
    void status(const HttpRequest& request, const HttpHandler::Respond& respond);

    /// Tells those who wait for the status of a job that one has changed.
    void jobsChanged();

private:
    [[nodiscard]] std::string link_(const std::string& method, const std::string& key, std::uint64_t limit) const;
    [[nodiscard]] HttpResponse statusAnswer_(const JobStatus& status) const;

    JobQueue& queue_;
    const BlobStore& blobs_;
    const PresignedUrl& links_;
    const Settings settings_;
    StatusWaiters waiters_; ///< last, because its thread uses the others
};

} // namespace VX
