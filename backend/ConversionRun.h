#pragma once

#include "ConversionOutcome.h"
#include "JobQueue.h"
#include "ServerConfig.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

namespace VX
{

class BlobStore;
class ChildProcess;
class StopEvent;

/// What all conversions of a service have in common.
struct ConversionSettings
{
    std::filesystem::path converter;  ///< the worker program
    std::filesystem::path workFolder; ///< for the files of running conversions
    ConversionLimits limits{};
    std::chrono::milliseconds lease{10'000}; ///< as the queue's
};

/// One claimed job from its archive to its result: unpacks the upload, runs the converter, keeps the lease meanwhile
/// and tells the queue how it ended.
/// @threads one, which must live until the run is over
class ConversionRun
{
public:
    /// All of what it refers to must outlive it.
    ConversionRun(ClaimedJob job, JobQueue& queue, const BlobStore& blobs, const ConversionSettings& settings,
                  const StopEvent& stop);

    /// The keys of a job's blobs.
    [[nodiscard]] static std::string uploadKey(const std::string& id);
    [[nodiscard]] static std::string resultKey(const ClaimedJob& job);

    /// Leaves the job finished, failed or queued again; or to whoever owns it by now.
    void run();

private:
    using MaybeOutcome = std::optional<ConversionOutcome>;

    [[nodiscard]] MaybeOutcome convert_();
    [[nodiscard]] MaybeOutcome runConverter_(const std::filesystem::path& input);
    [[nodiscard]] MaybeOutcome waitForConverter_(ChildProcess& process);
    [[nodiscard]] ConversionOutcome storeResult_();
    [[nodiscard]] bool keepLease_();
    [[nodiscard]] tl::expected<bool, std::string> report_(const ConversionOutcome& outcome);
    void removeUploadIfEnded_();

    const ClaimedJob job_;
    JobQueue& queue_;
    const BlobStore& blobs_;
    const ConversionSettings& settings_;
    const StopEvent& stop_;
    const std::filesystem::path folder_;            ///< of this run, removed at its end
    std::chrono::steady_clock::time_point renewal_; ///< when the lease is to be renewed next
    std::chrono::steady_clock::time_point leaseEnd_;
};

} // namespace VX
