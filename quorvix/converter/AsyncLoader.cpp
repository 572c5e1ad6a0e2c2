#include <quorvix/converter/AsyncLoader.h>
#include <quorvix/converter/ConverterServiceV2.h>
#include <quorvix/converter/S3.h>

#include <spdlog/spdlog.h>

#include <atomic>
#include <thread>
#include <utility>

namespace VX::ConverterService
{

AsyncLoader::AsyncLoader(const std::filesystem::path& path, Callback callback, ProgressCallback progress)
    : context_(path, std::move(progress))
    , callback_(std::move(callback))
{
}

std::shared_ptr<StateMachine> AsyncLoader::makeStateMachine(const std::shared_ptr<AsyncLoader>& loader)
{
    const auto makeStep = [&loader](Step step)
    { return [loader, step](const Resume& resume) -> int { return loader->runStep_(step, resume); }; };
    std::unordered_map<int, std::function<int(const Resume&)>> states;
    states[Connect] = makeStep(&AsyncLoader::connect_);
    states[Upload] = makeStep(&AsyncLoader::upload_);
    states[StartConvert] = makeStep(&AsyncLoader::startConvert_);
    states[ConvertStarted] = makeStep(&AsyncLoader::convertStarted_);
    states[CheckStatus] = makeStep(&AsyncLoader::checkStatus_);
    states[StatusReceived] = makeStep(&AsyncLoader::statusReceived_);
    states[Process] = makeStep(&AsyncLoader::process_);
    return std::make_shared<ResumableStateMachine>(std::move(states), Connect, Wait, Done);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): a builder's result is handed over
AsyncLoader::State AsyncLoader::fetch(WebRequest request, State next, const Resume& resume)
{
    // A second answer would run the machine twice at a time.
    const auto answered = std::make_shared<std::atomic_flag>();
    request.send(
        [self = shared_from_this(), next, resume, answered](const Json::Value& answer)
        {
            if (answered->test_and_set())
                return;
            self->response_ = answer;
            resume(next);
        });
    return Wait;
}

AsyncLoader::State AsyncLoader::finish_(tl::expected<LoadedObjects, std::string> result)
{
    // Called once, also where an exception follows the end of a nested run.
    if (const Callback callback = std::exchange(callback_, {}))
        callback(std::move(result));
    return Done;
}

AsyncLoader::State AsyncLoader::fail_(const std::string& error)
{
    return finish_(tl::unexpected(error));
}

AsyncLoader::State AsyncLoader::runStep_(Step step, const Resume& resume)
{
    try
    {
        return (this->*step)(resume);
    }
    catch (...)
    {
        if (!callback_)
            spdlog::error("STEP loader: the completion callback failed");
        return fail_(currentExceptionText());
    }
}

AsyncLoader::State AsyncLoader::connect_(const Resume& resume)
{
    if (const auto prepared = context_.prepare(); !prepared)
        return fail_(prepared.error());
    return fetch(V2::requestConvertContext(context_.inputFormat), Upload, resume);
}

AsyncLoader::State AsyncLoader::upload_(const Resume& resume)
{
    auto result = V2::RequestConvertContextResult::parseResponse(response_);
    if (!result)
        return fail_(result.error());
    context_.requestId = std::move(result->requestId);
    context_.url = std::move(result->url);
    if (const auto goOn = context_.report(0.0F); !goOn)
        return fail_(goOn.error());
    if (const auto packed = context_.packInput(); !packed)
        return fail_(packed.error());
    spdlog::info("STEP loader: uploading the file to the converter service");
    return fetch(S3::uploadWithPresignedUrl(context_.url, context_.payloadPath, {}), StartConvert, resume);
}

AsyncLoader::State AsyncLoader::startConvert_(const Resume& resume)
{
    if (const auto uploaded = S3::parseResponse(response_); !uploaded)
        return fail_(uploaded.error());
    if (const auto goOn = context_.report(0.25F); !goOn)
        return fail_(goOn.error());
    if (const auto removed = context_.removePayload(); !removed)
        return fail_(removed.error());
    spdlog::info("STEP loader: waiting for the converter process to finish");
    return fetch(V2::startConvert(context_.requestId, context_.inputFormat, context_.outputFormat), ConvertStarted,
                 resume);
}

AsyncLoader::State AsyncLoader::convertStarted_(const Resume& /*resume*/)
{
    if (const auto started = V2::StartConvertResult::parseResponse(response_); !started)
        return fail_(started.error());
    if (const auto goOn = context_.report(0.25F); !goOn)
        return fail_(goOn.error());
    return CheckStatus;
}

AsyncLoader::State AsyncLoader::checkStatus_(const Resume& resume)
{
    return fetch(V2::checkConvertStatus(context_.requestId), StatusReceived, resume);
}

AsyncLoader::State AsyncLoader::statusReceived_(const Resume& resume)
{
    const auto status = V2::CheckConvertStatusResult::parseResponse(response_);
    if (!status)
        return fail_(status.error());
    const bool finished = status->state == V2::CheckConvertStatusResult::State::Finished;
    if (const auto goOn = context_.report(finished ? 0.5F : 0.25F); !goOn)
        return fail_(goOn.error());
    if (!finished)
    {
        std::this_thread::sleep_for(statusPause);
        return CheckStatus;
    }
    spdlog::info("STEP loader: downloading the converted file");
    return fetch(S3::downloadWithPresignedUrl(status->url.value_or(""), context_.outputPath, {}), Process, resume);
}

AsyncLoader::State AsyncLoader::process_(const Resume& /*resume*/)
{
    if (const auto downloaded = S3::parseResponse(response_); !downloaded)
        return fail_(downloaded.error());
    if (const auto goOn = context_.report(0.75F); !goOn)
        return fail_(goOn.error());
    return finish_(context_.loadOutput());
}

} // namespace VX::ConverterService
