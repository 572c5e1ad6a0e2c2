#include <net/HttpBodyCollector.h>

#include <cerrno>
#include <utility>

namespace VX
{

namespace
{

int statusOf(std::error_code error)
{
    if (!error)
        return 0;
    const bool isFull = error == std::errc::no_space_on_device || error == std::errc::file_too_large ||
                        error == std::error_code(EDQUOT, std::generic_category());
    return isFull ? 507 : 500;
}

} // namespace

int HttpBodyCollector::begin(const HttpBodySink& sink)
{
    sink_ = sink;
    return sink.file.empty() ? 0 : statusOf(file_.open(sink.file));
}

int HttpBodyCollector::append(std::span<const char> bytes)
{
    if (bytes.size() > sink_.limit - size_)
        return 413;
    size_ += bytes.size();
    if (file_.isOpen())
        return statusOf(file_.write(bytes));
    memory_.append(bytes.data(), bytes.size());
    return 0;
}

int HttpBodyCollector::finish(HttpRequest& request)
{
    if (!file_.isOpen())
    {
        request.body = std::move(memory_);
        return 0;
    }
    request.bodyFile = sink_.file;
    return statusOf(file_.commit());
}

} // namespace VX
