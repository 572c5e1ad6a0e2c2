#include <quorvix/converter/ConversionContext.h>
#include <quorvix/converter/ServiceFolder.h>

#include <VXMesh/StringConvert.h>
#include <VXMesh/Zip.h>

#include <spdlog/spdlog.h>

#include <exception>
#include <new>
#include <utility>

namespace VX::ConverterService
{

namespace
{

std::string formatOf(const std::filesystem::path& path)
{
    const std::string extension = utf8string(path.extension());
    return extension.empty() ? extension : extension.substr(1);
}

std::filesystem::path serviceFile(const std::filesystem::path& input, const std::string& extension)
{
    return serviceOutputDirectory() / input.filename().replace_extension(extension);
}

tl::unexpected<std::string> failed(const std::error_code& error)
{
    return tl::unexpected(errnoText(error));
}

/// The service chooses the request id. It must not lead out of the output directory, whose other folders are packed
/// and uploaded otherwise.
bool isFileName(const std::string& text)
{
    return !text.empty() && text != "." && text != ".." && text.find('\0') == std::string::npos &&
           std::filesystem::path(text).filename() == text;
}

} // namespace

ConversionContext::ConversionContext(const std::filesystem::path& path, ProgressCallback progressCallback)
    : inputFormat(formatOf(path))
    , outputFormat("vxu")
    , inputPath(path)
    , payloadPath(serviceFile(path, ".input.zip"))
    , outputPath(serviceFile(path, "." + outputFormat))
    , progress(std::move(progressCallback))
{
}

tl::expected<void, std::string> ConversionContext::prepare() const
{
    if (const auto error = createServiceOutputDirectory())
        return failed(error);
    if (inputFormat == outputFormat)
        return tl::unexpected<std::string>("Input and output formats are equal");
    std::error_code error;
    std::filesystem::remove(outputPath, error);
    if (error)
        return failed(error);
    spdlog::info("STEP loader: connecting to the converter service");
    return {};
}

tl::expected<void, std::string> ConversionContext::packInput() const
{
    if (!isFileName(requestId))
        return failed(std::make_error_code(std::errc::invalid_argument));
    const std::filesystem::path folder = serviceOutputDirectory() / requestId;
    const std::filesystem::path copy = folder / "input";
    std::error_code error;
    if (!std::filesystem::exists(folder, error) && !error)
    {
        spdlog::info("STEP loader: creating a temporary directory");
        error = createPrivateFolder(folder);
    }
    if (error)
        return failed(error);
    spdlog::info("STEP loader: copying the file to the temporary directory");
    if (error = copyPrivately(inputPath, copy); error)
        return failed(error);
    spdlog::info("STEP loader: compressing the file");
    if (auto compressed = compressZip(payloadPath, folder, CompressZipSettings{}); !compressed)
        return compressed;
    spdlog::info("STEP loader: removing the temporary copy");
    std::filesystem::remove(copy, error);
    if (error)
        return failed(error);
    return {};
}

tl::expected<void, std::string> ConversionContext::removePayload() const
{
    spdlog::info("STEP loader: removing the temporary payload file");
    std::error_code error;
    std::filesystem::remove(payloadPath, error);
    if (error)
        return failed(error);
    return {};
}

tl::expected<LoadedObjects, std::string> ConversionContext::loadOutput() const
{
    spdlog::info("STEP loader: processing the file");
    auto loaded = loadObjectFromFile(outputPath, subprogress(progress, 0.75F, 1.0F));
    std::error_code ignored;
    std::filesystem::remove(outputPath, ignored);
    return loaded;
}

tl::expected<void, std::string> ConversionContext::report(float fraction) const
{
    if (reportProgress(progress, fraction))
        return {};
    return tl::unexpected(operationCanceledText());
}

std::string errnoText(const std::error_code& error)
{
    return "errno " + std::to_string(error.value());
}

std::string currentExceptionText()
{
    try
    {
        throw;
    }
    catch (const std::system_error& error)
    {
        return errnoText(error.code());
    }
    catch (const std::bad_alloc&)
    {
        return errnoText(std::make_error_code(std::errc::not_enough_memory));
    }
    catch (const std::exception& error)
    {
        return error.what();
    }
    catch (...)
    {
        return "Unknown error";
    }
}

} // namespace VX::ConverterService
