#include "ConversionRun.h"

#include "BlobStore.h"
#include "ChildProcess.h"
#include "DiskFull.h"
#include "StopEvent.h"
#include "UploadUnpacker.h"

#include <fmt/format.h>
#include <spdlog/spdlog.h>

#include <algorithm>
#include <system_error>
#include <thread>
#include <utility>

namespace VX
{

namespace
{

using Clock = std::chrono::steady_clock;

/// Of the identifier, which opens the way to a job's result, the log gets a part that tells jobs apart.
std::string_view shortId(const ClaimedJob& job)
{
    return std::string_view(job.id).substr(0, 8);
}

} // namespace

ConversionRun::ConversionRun(ClaimedJob job, JobQueue& queue, const BlobStore& blobs,
                             const ConversionSettings& settings, const StopEvent& stop)
    : job_(std::move(job))
    , queue_(queue)
    , blobs_(blobs)
    , settings_(settings)
    , stop_(stop)
    , folder_(settings.workFolder / job_.leaseToken)
    , renewal_(Clock::now() + settings.lease / 3)
    , leaseEnd_(Clock::now() + settings.lease)
{
}

std::string ConversionRun::uploadKey(const std::string& id)
{
    return "uploads/" + id;
}

std::string ConversionRun::resultKey(const ClaimedJob& job)
{
    return fmt::format("results/{}.{}", job.id, job.leaseToken);
}

void ConversionRun::run()
{
    const auto start = Clock::now();
    const MaybeOutcome outcome = convert_();
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
    if (!outcome)
    {
        // Where the lease is lost, this changes nothing.
        if (auto returned = queue_.giveBack(job_); !returned)
            spdlog::warn("Conversion {}: {}", shortId(job_), returned.error());
        return;
    }

    const auto owned = report_(*outcome);
    if (!owned)
        spdlog::error("Conversion {}: {}", shortId(job_), owned.error());
    // A result that the queue does not refer to is in nobody's way, but it takes room.
    if (outcome->kind == ConversionOutcome::Kind::Finished && !(owned && *owned))
        blobs_.remove(resultKey(job_));
    removeUploadIfEnded_();

    static constexpr std::array results{"finished", "failed", "the converter died"};
    const std::chrono::duration<double> seconds = Clock::now() - start;
    spdlog::info("Conversion {}: {} after {:.2f} s", shortId(job_), results.at(static_cast<std::size_t>(outcome->kind)),
                 seconds.count());
}

tl::expected<bool, std::string> ConversionRun::report_(const ConversionOutcome& outcome)
{
    switch (outcome.kind)
    {
    case ConversionOutcome::Kind::Finished:
        return queue_.finish(job_, resultKey(job_));
    case ConversionOutcome::Kind::Failed:
        return queue_.fail(job_, outcome.message);
    case ConversionOutcome::Kind::Died:
        break;
    }
    return queue_.retry(job_, outcome.message);
}

void ConversionRun::removeUploadIfEnded_()
{
    const std::optional<JobStatus> status = queue_.status(job_.id).value_or(std::nullopt);
    if (status && (status->state == JobState::Finished || status->state == JobState::Failed))
        blobs_.remove(uploadKey(job_.id));
}

/// @return nothing where the run was stopped or lost its lease
ConversionRun::MaybeOutcome ConversionRun::convert_()
{
    using Kind = ConversionOutcome::Kind;
    if (!blobs_.size(uploadKey(job_.id)))
        return ConversionOutcome{Kind::Failed, "The uploaded file is not there any more: open the file again."};

    // Under a second name the archive stays as it is, whatever becomes of the upload, and messages can name it.
    const std::filesystem::path archive = folder_ / "upload.zip";
    std::error_code error;
    std::filesystem::create_directory(folder_, error);
    if (!error)
        std::filesystem::permissions(folder_, std::filesystem::perms::owner_all, error);
    if (!error)
        std::filesystem::create_hard_link(blobs_.path(uploadKey(job_.id)), archive, error);
    if (error)
        return ConversionOutcome{
            Kind::Failed, isDiskFull(error) ? diskFullText()
                                            : fmt::format("The conversion could not be started: {}.", error.message())};

    bool goOn = true;
    const auto input = unpackUpload(archive, folder_ / "upload", settings_.limits.input,
                                    [&](float) { return goOn = keepLease_() && !stop_.isSet(); });
    if (!goOn)
        return std::nullopt;
    if (!input)
        return ConversionOutcome{Kind::Failed, input.error()};
    return runConverter_(*input);
}

ConversionRun::MaybeOutcome ConversionRun::runConverter_(const std::filesystem::path& input)
{
    // The threads of the worker may use the processor at the same time.
    const auto cores = std::max(1U, std::thread::hardware_concurrency());
    auto process = ChildProcess::start(settings_.converter, {input.string(), (folder_ / "output.vxu").string()},
                                       {.memory = settings_.limits.memory, .cpuTime = settings_.limits.time * cores});
    if (!process)
        return ConversionOutcome{ConversionOutcome::Kind::Died, process.error()};
    MaybeOutcome outcome = waitForConverter_(*process);
    if (outcome && outcome->kind == ConversionOutcome::Kind::Finished)
        outcome = storeResult_();
    return outcome;
}

ConversionRun::MaybeOutcome ConversionRun::waitForConverter_(ChildProcess& process)
{
    const auto deadline = Clock::now() + settings_.limits.time;
    for (;;)
    {
        if (const auto end = process.wait(std::min(deadline, renewal_), stop_))
        {
            spdlog::debug("Conversion {}: the converter ended with code {}, signal {}, {} MiB: {}", shortId(job_),
                          end->exitCode, end->signal, end->peakMemory >> 20U, end->errorOutput);
            return readProcessEnd(*end, settings_.limits);
        }
        if (stop_.isSet() || !keepLease_())
            return std::nullopt;
        if (Clock::now() >= deadline)
            return timeLimitOutcome(settings_.limits);
    }
}

ConversionOutcome ConversionRun::storeResult_()
{
    const auto output = folder_ / "output.vxu";
    std::error_code missing;
    if (!std::filesystem::is_regular_file(output, missing))
        return accidentOutcome();
    if (auto stored = blobs_.put(output, resultKey(job_)); !stored)
        return {ConversionOutcome::Kind::Failed, stored.error()};
    return {};
}

/// Renews the lease where it is time to. @return false where somebody else has, or may have, the job by now
bool ConversionRun::keepLease_()
{
    const auto now = Clock::now();
    if (now < renewal_)
        return true;
    renewal_ = now + settings_.lease / 3;
    const auto renewed = queue_.renew(job_);
    if (!renewed)
    {
        // A full disk or a busy database may be over before the lease is.
        spdlog::warn("Conversion {}: {}", shortId(job_), renewed.error());
        return now < leaseEnd_;
    }
    if (*renewed)
        leaseEnd_ = now + settings_.lease;
    return *renewed;
}

} // namespace VX
