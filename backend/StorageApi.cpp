#include "StorageApi.h"

#include "AnnouncedLength.h"
#include "BlobStore.h"
#include "DiskFull.h"
#include "JsonAnswer.h"

#include <system_error>

namespace VX
{

namespace
{

HttpResponse forbiddenAnswer()
{
    return errorAnswer(403, "This link is not valid or has expired: open the file again.");
}

} // namespace

StorageApi::StorageApi(const BlobStore& blobs, const PresignedUrl& links)
    : blobs_(blobs)
    , links_(links)
{
}

std::optional<PresignedUrl::Grant> StorageApi::grant_(const HttpRequest& request) const
{
    return links_.verify(request.method, request.path, request.query, std::chrono::system_clock::now());
}

tl::expected<HttpBodySink, HttpResponse> StorageApi::acceptUpload(const HttpRequest& head) const
{
    const auto grant = grant_(head);
    if (!grant)
        return tl::unexpected(forbiddenAnswer());
    // Told now, the client need not send what cannot be kept.
    const std::uint64_t length = announcedLength(head).value_or(0);
    if (length > grant->limit)
        return tl::unexpected(errorAnswer(413, "The file is too large for the conversion service: split it into "
                                               "smaller ones."));
    if (length > blobs_.freeSpace().value_or(length))
        return tl::unexpected(failureAnswer(diskFullText()));
    return HttpBodySink{.limit = grant->limit, .file = blobs_.incomingFile()};
}

void StorageApi::upload(const HttpRequest& request, const HttpHandler::Respond& respond) const
{
    // Once there is a body, its link was valid when the upload began, and may expire during it. Without a body nobody
    // has looked at the link yet.
    const bool checked = !request.bodyFile.empty();
    const auto grant = links_.verify(request.method, request.path, request.query,
                                     checked ? PresignedUrl::anyTime : std::chrono::system_clock::now());
    if (!grant)
        return respond(forbiddenAnswer());
    if (!checked)
        return respond(errorAnswer(400, "The uploaded file is empty."));
    if (auto stored = blobs_.put(request.bodyFile, grant->key); !stored)
    {
        std::error_code ignored;
        std::filesystem::remove(request.bodyFile, ignored);
        return respond(failureAnswer(stored.error()));
    }
    respond(HttpResponse{});
}

void StorageApi::download(const HttpRequest& request, const HttpHandler::Respond& respond) const
{
    const auto grant = grant_(request);
    if (!grant)
        return respond(forbiddenAnswer());
    if (!blobs_.size(grant->key))
        return respond(errorAnswer(404, "The file is not there any more: open the file again."));
    HttpResponse response;
    response.headers["Content-Type"] = "application/octet-stream";
    response.headers["Cache-Control"] = "no-store";
    response.file = blobs_.path(grant->key);
    respond(std::move(response));
}

} // namespace VX
