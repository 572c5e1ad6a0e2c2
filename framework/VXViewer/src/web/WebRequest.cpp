#include "WebRequestSender.h"

#include <VXMesh/Secret.h>
#include <VXViewer/WebRequest.h>

#include <chrono>
#include <utility>

namespace VX
{

WebRequest::WebRequest(std::string url)
{
    data_.url = std::move(url);
}

WebRequest::~WebRequest()
{
    if (data_.body)
        wipe(*data_.body);
}

void WebRequest::setMethod(Method method)
{
    data_.method = method;
}

void WebRequest::setTimeout(int milliseconds)
{
    data_.timeout = milliseconds < 1 ? WebRequestData{}.timeout : std::chrono::milliseconds(milliseconds);
}

void WebRequest::setParameters(std::unordered_map<std::string, std::string> parameters)
{
    data_.parameters = std::move(parameters);
}

void WebRequest::setHeaders(std::unordered_map<std::string, std::string> headers)
{
    data_.headers = std::move(headers);
}

void WebRequest::setBody(std::string body)
{
    data_.body = std::move(body);
}

void WebRequest::setInputPath(std::filesystem::path path)
{
    data_.inputPath = std::move(path);
}

void WebRequest::setOutputPath(std::filesystem::path path)
{
    data_.outputPath = std::move(path);
}

void WebRequest::setUploadProgressCallback(ProgressCallback callback)
{
    data_.uploadProgress = std::move(callback);
}

void WebRequest::setDownloadProgressCallback(ProgressCallback callback)
{
    data_.downloadProgress = std::move(callback);
}

void WebRequest::setLogName(std::string name)
{
    data_.logName = std::move(name);
}

void WebRequest::setAsync(bool async)
{
    data_.async = async;
}

void WebRequest::send(Callback callback) const
{
    sendWebRequest(data_, std::move(callback));
}

void WebRequest::send(std::string url, std::string logName, Callback callback, bool async)
{
    data_.url = std::move(url);
    data_.logName = std::move(logName);
    data_.async = async;
    send(std::move(callback));
}

} // namespace VX
