#include <quorvix/converter/S3.h>
#include <quorvix/converter/WebAnswer.h>

#include <utility>

namespace VX::S3
{

namespace
{

constexpr int transferTimeoutMs = 600'000;

WebRequest makeTransfer(const std::string& url, WebRequest::Method method)
{
    WebRequest request(url);
    request.setMethod(method);
    request.setTimeout(transferTimeoutMs);
    request.setLogName("S3");
    return request;
}

} // namespace

WebRequest uploadWithPresignedUrl(const std::string& url, const std::filesystem::path& file,
                                  std::function<bool(float)> progress)
{
    WebRequest request = makeTransfer(url, WebRequest::Method::Put);
    request.setInputPath(file);
    request.setUploadProgressCallback(std::move(progress));
    return request;
}

WebRequest downloadWithPresignedUrl(const std::string& url, const std::filesystem::path& file,
                                    std::function<bool(float)> progress)
{
    WebRequest request = makeTransfer(url, WebRequest::Method::Get);
    request.setOutputPath(file);
    request.setDownloadProgressCallback(std::move(progress));
    return request;
}

tl::expected<void, std::string> parseResponse(const Json::Value& answer)
{
    const int code = WebAnswer::code(answer);
    if (code == 0)
        return tl::unexpected<std::string>("Connection error");
    if (code < 400)
        return {};
    return tl::unexpected(WebAnswer::text(answer, "error").value_or(""));
}

} // namespace VX::S3
