#pragma once

#include "PresignedUrl.h"

#include <net/HttpServer.h>

#include <optional>

namespace VX
{

class BlobStore;

/// Uploads to and downloads from the store by presigned links; bodies go straight from and to the disk.
/// A link that is forged, expired or for something else is answered with status 403, a blob that is not there with 404,
/// an upload that is larger than the link allows with 413, one that the disk has no room for with 507.
/// @threads any
class StorageApi
{
public:
    /// Both must outlive it.
    StorageApi(const BlobStore& blobs, const PresignedUrl& links);

    /// Decides about an upload before its body is read.
    [[nodiscard]] tl::expected<HttpBodySink, HttpResponse> acceptUpload(const HttpRequest& head) const;

    /// PUT: stores the body that `acceptUpload` accepted. Uploading once more replaces the blob.
    void upload(const HttpRequest& request, const HttpHandler::Respond& respond) const;

    /// GET and HEAD.
    void download(const HttpRequest& request, const HttpHandler::Respond& respond) const;

private:
    [[nodiscard]] std::optional<PresignedUrl::Grant> grant_(const HttpRequest& request) const;

    const BlobStore& blobs_;
    const PresignedUrl& links_;
};

} // namespace VX
