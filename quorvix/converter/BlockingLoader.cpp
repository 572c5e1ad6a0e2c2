#include <quorvix/async/WebRequestFuture.h>
#include <quorvix/converter/BlockingLoader.h>
#include <quorvix/converter/ConverterServiceV2.h>
#include <quorvix/converter/S3.h>

#include <VXViewer/Locale.h>
#include <VXViewer/ProgressBar.h>

#include <spdlog/spdlog.h>

#include <thread>
#include <utility>

namespace VX::ConverterService
{

namespace
{

void nameStage(const char* name)
{
    ProgressBar::forceSetTaskName(Locale::translate(name, Locale::findDomain("Quorvix")));
}

/// Gives the progress bar its own task name back at the end.
class TaskNameScope
{
public:
    TaskNameScope() = default;

    ~TaskNameScope() { ProgressBar::resetTaskName(); }

    TaskNameScope(const TaskNameScope&) = delete;
    TaskNameScope& operator=(const TaskNameScope&) = delete;
};

} // namespace

BlockingLoader::BlockingLoader(const std::filesystem::path& path, ProgressCallback progress)
    : context_(path, std::move(progress))
{
}

tl::expected<LoadedObjects, std::string> BlockingLoader::run()
{
    const TaskNameScope taskName;
    return connect_()
        .and_then([this] { return upload_(); })
        .and_then([this] { return convert_(); })
        .and_then([this](const std::string& url) { return download_(url); })
        .and_then([this] { return process_(); });
}

tl::expected<void, std::string> BlockingLoader::connect_()
{
    nameStage(translatable("Connecting to the converter service"));
    if (auto prepared = context_.prepare(); !prepared)
        return prepared;
    const Json::Value answer = WebRequestFuture(V2::requestConvertContext(context_.inputFormat)).get();
    auto result = V2::RequestConvertContextResult::parseResponse(answer);
    if (!result)
        return tl::unexpected(std::move(result.error()));
    context_.requestId = std::move(result->requestId);
    context_.url = std::move(result->url);
    return context_.report(0.0F);
}

tl::expected<void, std::string> BlockingLoader::upload_()
{
    nameStage(translatable("Uploading the file to the converter service"));
    if (auto packed = context_.packInput(); !packed)
        return packed;
    spdlog::info("STEP loader: uploading the file to the converter service");
    if (auto uploaded =
            transfer_(S3::uploadWithPresignedUrl(context_.url, context_.payloadPath, transferProgress_(0.0F, 0.25F)));
        !uploaded)
        return uploaded;
    return context_.report(0.25F);
}

tl::expected<std::string, std::string> BlockingLoader::convert_()
{
    using State = V2::CheckConvertStatusResult::State;

    nameStage(translatable("Converting the file"));
    if (const auto removed = context_.removePayload(); !removed)
        return tl::unexpected(removed.error());
    spdlog::info("STEP loader: waiting for the converter process to finish");
    const Json::Value answer =
        WebRequestFuture(V2::startConvert(context_.requestId, context_.inputFormat, context_.outputFormat)).get();
    if (const auto started = V2::StartConvertResult::parseResponse(answer); !started)
        return tl::unexpected(started.error());
    if (const auto goOn = context_.report(0.25F); !goOn)
        return tl::unexpected(goOn.error());
    while (true)
    {
        const Json::Value statusAnswer = WebRequestFuture(V2::checkConvertStatus(context_.requestId)).get();
        const auto status = V2::CheckConvertStatusResult::parseResponse(statusAnswer);
        if (!status)
            return tl::unexpected(status.error());
        if (status->state == State::Finished)
            return status->url.value_or("");
        if (const auto goOn = context_.report(0.25F); !goOn)
            return tl::unexpected(goOn.error());
        std::this_thread::sleep_for(statusPause);
    }
}

tl::expected<void, std::string> BlockingLoader::download_(const std::string& url)
{
    if (auto goOn = context_.report(0.5F); !goOn)
        return goOn;
    nameStage(translatable("Downloading the converted file"));
    spdlog::info("STEP loader: downloading the converted file");
    return transfer_(S3::downloadWithPresignedUrl(url, context_.outputPath, transferProgress_(0.5F, 0.75F)));
}

tl::expected<LoadedObjects, std::string> BlockingLoader::process_()
{
    if (const auto goOn = context_.report(0.75F); !goOn)
        return tl::unexpected(goOn.error());
    nameStage(translatable("Processing the file"));
    return context_.loadOutput();
}

tl::expected<void, std::string> BlockingLoader::transfer_(WebRequest request)
{
    const Json::Value answer = WebRequestFuture(std::move(request)).get();
    if (*canceled_)
        return tl::unexpected(operationCanceledText());
    return S3::parseResponse(answer);
}

ProgressCallback BlockingLoader::transferProgress_(float from, float to)
{
    if (!context_.progress)
        return {};
    return [inner = subprogress(context_.progress, from, to), canceled = canceled_](float fraction)
    {
        bool goOn = false;
        try
        {
            goOn = inner(fraction);
        }
        catch (...) // NOLINT(bugprone-empty-catch): it ends the transfer, on whose thread it must not get any further
        {
        }
        if (!goOn)
            *canceled = true;
        return goOn;
    };
}

} // namespace VX::ConverterService
