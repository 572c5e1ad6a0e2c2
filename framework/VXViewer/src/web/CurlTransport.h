#pragma once

#include "CurlTransfer.h"
#include "RequestThreadPool.h"

#include <VXMesh/ThreadAnnotations.h>
#include <VXViewer/Export.h>
#include <VXViewer/WebTransport.h>

#include <curl/curl.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <thread>
#include <unordered_map>
#include <vector>

namespace VX
{

/// Carries requests out with libcurl: one thread moves the bytes of all of them, over connections that are kept for the
/// next ones; the callbacks run on a pool of request threads.
class CurlTransport final : public WebTransport
{
public:
    /// Initialises libcurl, once for the process, and starts the transfer thread.
    CurlTransport();

    /// Cancels what is under way and finishes.
    ~CurlTransport() override;

    CurlTransport(const CurlTransport&) = delete;
    CurlTransport& operator=(const CurlTransport&) = delete;

    void send(WebRequestData request, WebCallback callback) override;

    /// For the requests sent from now on; empty: the system's certificates.
    /// @threads any
    void setCaFile(std::filesystem::path file);

    /// Cancels the requests under way: they answer code 0.
    /// @threads any
    void cancelAll();

    /// Waits for the requests under way and for the callbacks, and ends the threads. Requests sent from now on answer
    /// code 0; once it has returned, on the thread that sends them.
    /// @threads one, not a callback's
    void finish();

private:
    struct Job
    {
        std::unique_ptr<CurlTransfer> transfer;
        std::function<void(WebResult)> deliver;
    };

    struct MultiDeleter
    {
        void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
    };

    void sendAndWait_(std::unique_ptr<CurlTransfer> transfer, const WebCallback& callback);
    void enqueue_(Job job);
    void deliverOnPool_(const WebCallback& callback, WebResult result);
    void run_();
    bool takeJobs_();
    void startJob_(Job job);
    bool collectDone_();
    [[nodiscard]] int pollTimeout_();

    std::unique_ptr<CURLM, MultiDeleter> multi_;
    RequestThreadPool pool_;

    Mutex mutex_;
    std::filesystem::path caFile_ VX_GUARDED_BY(mutex_);
    std::vector<Job> incoming_ VX_GUARDED_BY(mutex_);
    std::vector<Job> cancelled_ VX_GUARDED_BY(mutex_);
    bool cancelActive_ VX_GUARDED_BY(mutex_) = false;
    bool isFinishing_ VX_GUARDED_BY(mutex_) = false;

    std::unordered_map<CURL*, Job> active_; ///< the transfer thread's own
    std::thread thread_;
};

} // namespace VX
