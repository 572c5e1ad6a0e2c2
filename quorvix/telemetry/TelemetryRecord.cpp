#include <quorvix/telemetry/TelemetryRecord.h>

#include <VXMesh/UserFolders.h>

#include <fmt/chrono.h>
#include <json/writer.h>
#include <spdlog/sinks/rotating_file_sink.h>

#include <memory>

namespace VX
{

namespace
{

constexpr std::size_t maxFileSize = 1U << 20U;
constexpr std::size_t oldFiles = 2;

spdlog::sink_ptr openFile(const std::filesystem::path& path)
{
    if (!createUserFolder(path.parent_path()))
        return nullptr;
    try
    {
        auto file = std::make_shared<spdlog::sinks::rotating_file_sink_st>(path.native(), maxFileSize, oldFiles);
        file->set_pattern("%v");
        return file;
    }
    catch (const spdlog::spdlog_ex&)
    {
        return nullptr;
    }
}

std::string lineOf(const Json::Value& body, std::chrono::system_clock::time_point time)
{
    Json::Value line(Json::objectValue);
    line["time"] = fmt::format("{:%FT%TZ}", std::chrono::floor<std::chrono::seconds>(time));
    line["sent"] = body;
    Json::StreamWriterBuilder writer;
    writer["indentation"] = "";
    return Json::writeString(writer, line);
}

} // namespace

std::filesystem::path TelemetryRecord::file()
{
    return getUserStateDir() / "log" / "telemetry.jsonl";
}

void TelemetryRecord::add(const Json::Value& body, std::chrono::system_clock::time_point time)
{
    // Asked without the lock: the answer may write a line of the log.
    std::filesystem::path path = file();
    const std::string line = lineOf(body, time);
    const MutexLock lock(mutex_);
    if (path != path_)
    {
        lines_ = openFile(path);
        path_ = std::move(path);
    }
    if (!lines_)
        return;
    try
    {
        lines_->log(spdlog::details::log_msg("", spdlog::level::info, line));
        lines_->flush();
    }
    catch (const spdlog::spdlog_ex&)
    {
        lines_.reset();
    }
}

} // namespace VX
