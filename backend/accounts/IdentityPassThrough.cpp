#include "IdentityPassThrough.h"

#include "IdentityRequest.h"

#include <VXMesh/Json.h>

#include <curl/curl.h>
#include <json/writer.h>
#include <spdlog/spdlog.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>
#include <utility>

namespace VX
{

namespace
{

// Each waits for the provider most of the time.
constexpr unsigned senderThreads = 8;
constexpr std::size_t senderQueue = 256;
constexpr long timeoutSeconds = 30;
constexpr std::size_t longestAnswer = 1U << 20U;

constexpr std::array<std::string_view, 6> operations = {
    "InitiateAuth", "SignUp", "ConfirmSignUp", "ForgotPassword", "ConfirmForgotPassword", "ResendConfirmationCode"};

struct CurlDeleter
{
    void operator()(CURL* handle) const noexcept { curl_easy_cleanup(handle); }

    void operator()(curl_slist* list) const noexcept { curl_slist_free_all(list); }
};

using CurlList = std::unique_ptr<curl_slist, CurlDeleter>;

std::size_t appendBody(char* bytes, std::size_t, std::size_t size, void* body)
{
    auto& text = *static_cast<std::string*>(body);
    if (text.size() + size > longestAnswer)
        return 0;
    text.append(bytes, size);
    return size;
}

/// Called at least once a second. @return 1 to give up
int checkStop(void* stopping, curl_off_t, curl_off_t, curl_off_t, curl_off_t)
{
    return *static_cast<const std::atomic<bool>*>(stopping) ? 1 : 0;
}

CurlList headerList(const std::string& operation)
{
    CurlList list;
    // Nobody asks for leave to send a body this small, which would cost a round trip.
    for (const std::string& line : {"X-Amz-Target: AWSCognitoIdentityProviderService." + operation,
                                    std::string("Content-Type: application/x-amz-json-1.1"), std::string("Expect:")})
        if (curl_slist* longer = curl_slist_append(list.get(), line.c_str()))
        {
            [[maybe_unused]] curl_slist* const extended = list.release();
            list.reset(longer);
        }
    return list;
}

} // namespace

IdentityPassThrough::IdentityPassThrough(Settings settings)
    : settings_(std::move(settings))
    , senders_(senderThreads, senderQueue)
{
    curl_global_init(CURL_GLOBAL_DEFAULT);
}

IdentityPassThrough::~IdentityPassThrough()
{
    stopping_ = true;
}

void IdentityPassThrough::call(const IdentityCall& call, Respond respond)
{
    auto document = deserializeJsonValue(call.body);
    if (!document || !document->isObject())
        return respond(identityAnswer(
            IdentityError{.type = "SerializationException", .message = "The request must be a JSON object."}));
    if (std::ranges::find(operations, call.operation) == operations.end())
        return respond(identityAnswer(
            IdentityError{.type = "UnknownOperationException", .message = "This operation is not known."}));
    (*document)["ClientId"] = settings_.clientId;
    std::string body = Json::writeString(Json::StreamWriterBuilder(), *document);
    const bool queued = senders_.run([this, operation = call.operation, body = std::move(body), respond]
                                     { respond(send_(operation, body)); });
    if (!queued)
        respond(identityAnswer(IdentityError{.type = "TooManyRequestsException", .message = "Too many requests"}));
}

IdentityAnswer IdentityPassThrough::send_(const std::string& operation, const std::string& body) const
{
    const std::unique_ptr<CURL, CurlDeleter> curl(curl_easy_init());
    const CurlList headers = headerList(operation);
    IdentityAnswer answer;
    curl_easy_setopt(curl.get(), CURLOPT_URL, settings_.endpoint.c_str());
    curl_easy_setopt(curl.get(), CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(curl.get(), CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(curl.get(), CURLOPT_TIMEOUT, timeoutSeconds);
    curl_easy_setopt(curl.get(), CURLOPT_HTTPHEADER, headers.get());
    curl_easy_setopt(curl.get(), CURLOPT_POSTFIELDS, body.c_str());
    curl_easy_setopt(curl.get(), CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
    curl_easy_setopt(curl.get(), CURLOPT_WRITEFUNCTION, appendBody);
    curl_easy_setopt(curl.get(), CURLOPT_WRITEDATA, &answer.body);
    curl_easy_setopt(curl.get(), CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(curl.get(), CURLOPT_XFERINFOFUNCTION, checkStop);
    curl_easy_setopt(curl.get(), CURLOPT_XFERINFODATA, &stopping_);
    const CURLcode code = curl ? curl_easy_perform(curl.get()) : CURLE_FAILED_INIT;
    if (code != CURLE_OK)
    {
        spdlog::warn("The identity provider cannot be reached: {}", curl_easy_strerror(code));
        return identityAnswer(IdentityError{.type = "ServiceUnavailableException",
                                            .message = "The account service cannot be reached: try again later.",
                                            .status = 503});
    }
    long status = 0;
    curl_easy_getinfo(curl.get(), CURLINFO_RESPONSE_CODE, &status);
    answer.status = static_cast<int>(status);
    return answer;
}

} // namespace VX
