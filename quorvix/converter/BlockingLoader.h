#pragma once

#include <quorvix/converter/ConversionContext.h>

#include <json/value.h>

#include <atomic>
#include <memory>

namespace VX
{
class WebRequest;
}

namespace VX::ConverterService
{

/// The blocking form of `fromStep`: one call a stage, each with its name on the progress bar.
class BlockingLoader
{
public:
    BlockingLoader(const std::filesystem::path& path, ProgressCallback progress);

    /// Goes through the stages up to the first error. To be called once.
    [[nodiscard]] tl::expected<LoadedObjects, std::string> run();

private:
    [[nodiscard]] tl::expected<void, std::string> connect_();
    [[nodiscard]] tl::expected<void, std::string> upload_();

    /// @return the URL of the converted file
    [[nodiscard]] tl::expected<std::string, std::string> convert_();

    [[nodiscard]] tl::expected<void, std::string> download_(const std::string& url);
    [[nodiscard]] tl::expected<LoadedObjects, std::string> process_();

    /// Sends a request of a storage transfer and waits for its end.
    [[nodiscard]] tl::expected<void, std::string> transfer_(WebRequest request);

    /// The progress callback of a transfer, mapped onto `from` to `to` of the caller's, which remembers a cancel: all
    /// that the answer tells of one is that there is no answer.
    [[nodiscard]] ProgressCallback transferProgress_(float from, float to);

    ConversionContext context_;
    std::shared_ptr<std::atomic_bool> canceled_ = std::make_shared<std::atomic_bool>(false);
};

} // namespace VX::ConverterService
