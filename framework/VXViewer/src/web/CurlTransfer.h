#pragma once

#include "DownloadSink.h"
#include "ProgressReporter.h"
#include "UploadSource.h"

#include <VXViewer/WebTransport.h>

#include <curl/curl.h>
#include <json/value.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace VX
{

/// What became of a request.
struct WebResult
{
    Json::Value answer;
    std::string logLine; ///< names neither the path nor the query of the URL
};

/// One request on its way through libcurl.
/// @threads one at a time
class CurlTransfer
{
public:
    CurlTransfer(WebRequestData request, const std::filesystem::path& caFile);

    CurlTransfer(const CurlTransfer&) = delete;
    CurlTransfer& operator=(const CurlTransfer&) = delete;

    /// Empty where the transfer can start; otherwise why it cannot, for `fail`.
    [[nodiscard]] const std::string& failure() const { return failure_; }

    [[nodiscard]] CURL* handle() const { return handle_.get(); }

    /// Whether somebody waits for calls even while nothing moves.
    [[nodiscard]] bool hasProgress() const { return uploadProgress_.isWanted() || downloadProgress_.isWanted(); }

    /// Ends a transfer that libcurl has ended with `code`.
    [[nodiscard]] WebResult finish(CURLcode code);

    /// Ends a transfer that has not ended by itself.
    [[nodiscard]] WebResult fail(std::string_view error);

private:
    struct HandleDeleter
    {
        void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
    };

    struct ListDeleter
    {
        void operator()(curl_slist* list) const { curl_slist_free_all(list); }
    };

    [[nodiscard]] std::string readUrl_();
    [[nodiscard]] std::string openFiles_();
    [[nodiscard]] std::string makeHeaders_();
    void setOptions_(const std::filesystem::path& caFile);
    void setMethod_();
    void addHeader_(const std::string& line);
    [[nodiscard]] std::string errorText_(CURLcode code) const;
    [[nodiscard]] WebResult result_(Json::Value answer);

    std::size_t receive_(std::string_view bytes);
    std::size_t send_(std::span<char> out);
    int progress_(curl_off_t downloadTotal, curl_off_t downloaded, curl_off_t uploadTotal, curl_off_t uploaded);
    void receiveHeader_(std::string_view line);

    static std::size_t onReceive_(char* bytes, std::size_t size, std::size_t count, void* self);
    static std::size_t onSend_(char* out, std::size_t size, std::size_t count, void* self);
    static int onSeek_(void* self, curl_off_t offset, int origin);
    static int onProgress_(void* self, curl_off_t downloadTotal, curl_off_t downloaded, curl_off_t uploadTotal,
                           curl_off_t uploaded);
    static std::size_t onHeader_(char* bytes, std::size_t size, std::size_t count, void* self);

    WebRequestData request_;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    std::unique_ptr<curl_slist, ListDeleter> headers_;
    std::array<char, CURL_ERROR_SIZE> errorBuffer_{};
    std::string host_;
    bool isSecure_ = false;
    bool isLoopback_ = false;
    UploadSource source_;
    DownloadSink sink_;
    ProgressReporter uploadProgress_;
    ProgressReporter downloadProgress_;
    std::string reason_;                          ///< the words of the status line
    std::string failure_;                         ///< what went wrong on this side
    std::unique_ptr<CURL, HandleDeleter> handle_; ///< last, because it points to the others
};

} // namespace VX
