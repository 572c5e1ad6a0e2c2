#include "CurlTransfer.h"

#include "RequestUrl.h"
#include "WebAnswer.h"

#include <VXMesh/StringConvert.h>

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <span>
#include <string_view>
#include <utility>

namespace VX
{

namespace
{

constexpr long pieceSize = 256L << 10L;
constexpr long connectTimeoutMs = 30'000;
constexpr long mostRedirections = 10;

/// Whether both are the same but for the case of their letters.
bool isSameName(std::string_view a, std::string_view b)
{
    return toLower(std::string(a)) == toLower(std::string(b));
}

bool isHeaderName(std::string_view name)
{
    constexpr std::string_view separators = "\"(),/:;<=>?@[\\]{}";
    const auto isAllowed = [&](char c)
    { return c > ' ' && c < '\x7F' && separators.find(c) == std::string_view::npos; };
    return !name.empty() && std::ranges::all_of(name, isAllowed);
}

bool isHeaderValue(std::string_view value)
{
    return value.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos;
}

bool isLoopbackHost(std::string_view host)
{
    return host == "localhost" || host.ends_with(".localhost") || host == "[::1]" || host.starts_with("127.");
}

std::string urlPart(CURLU* url, CURLUPart part)
{
    char* text = nullptr;
    if (curl_url_get(url, part, &text, 0) != CURLUE_OK)
        return {};
    std::string out = text;
    curl_free(text);
    return out;
}

const char* methodName(WebMethod method)
{
    constexpr std::array names{"GET", "POST", "DELETE", "PUT"};
    return names[static_cast<std::size_t>(method)];
}

} // namespace

CurlTransfer::CurlTransfer(WebRequestData request, const std::filesystem::path& caFile)
    : request_(std::move(request))
    , uploadProgress_(std::move(request_.uploadProgress))
    , downloadProgress_(std::move(request_.downloadProgress))
    , handle_(curl_easy_init())
{
    failure_ = handle_ ? readUrl_() : "There is not enough memory for the request.";
    if (failure_.empty())
        failure_ = openFiles_();
    if (failure_.empty())
        failure_ = makeHeaders_();
    if (failure_.empty())
        setOptions_(caFile);
}

std::string CurlTransfer::readUrl_()
{
    request_.url = urlWithParameters(request_.url, request_.parameters);
    const std::unique_ptr<CURLU, decltype(&curl_url_cleanup)> url(curl_url(), &curl_url_cleanup);
    if (url && curl_url_set(url.get(), CURLUPART_URL, request_.url.c_str(), CURLU_NON_SUPPORT_SCHEME) == CURLUE_OK)
    {
        host_ = urlPart(url.get(), CURLUPART_HOST);
        const std::string scheme = urlPart(url.get(), CURLUPART_SCHEME);
        isSecure_ = scheme == "https";
        isLoopback_ = isLoopbackHost(host_);
        if (!host_.empty() && (isSecure_ || scheme == "http"))
            return {};
    }
    return "The address of the request is not a valid http or https address.";
}

std::string CurlTransfer::openFiles_()
{
    if (!request_.inputPath.empty())
    {
        auto source = UploadSource::open(request_.inputPath);
        if (!source)
            return source.error();
        source_ = std::move(*source);
    }
    else if (request_.body)
    {
        source_ = UploadSource(std::move(*request_.body));
    }
    if (!request_.outputPath.empty())
    {
        auto sink = DownloadSink::create(request_.outputPath);
        if (!sink)
            return sink.error();
        sink_ = std::move(*sink);
    }
    return {};
}

void CurlTransfer::addHeader_(const std::string& line)
{
    curl_slist* const old = headers_.release();
    curl_slist* const longer = curl_slist_append(old, line.c_str());
    headers_.reset(longer ? longer : old);
}

std::string CurlTransfer::makeHeaders_()
{
    bool hasContentType = false;
    for (const auto& [name, value] : request_.headers)
    {
        if (!isHeaderName(name) || !isHeaderValue(value))
            return "The request has a header that cannot be sent.";
        hasContentType = hasContentType || isSameName(name, "Content-Type");
        addHeader_(value.empty() ? name + ';' : fmt::format("{}: {}", name, value));
    }
    if (!hasContentType)
        // Without a value: libcurl would call the body of a POST a form.
        addHeader_(request_.body && request_.inputPath.empty() ? "Content-Type: application/json" : "Content-Type:");
    addHeader_("Expect:"); // a server that does not know "100-continue" would cost a second
    return {};
}

void CurlTransfer::setOptions_(const std::filesystem::path& caFile)
{
    CURL* const curl = handle_.get();
    const bool isTransfer = !request_.outputPath.empty() || !request_.inputPath.empty();
    curl_easy_setopt(curl, CURLOPT_URL, request_.url.c_str());
    curl_easy_setopt(curl, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(curl, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(curl, CURLOPT_MAXREDIRS, mostRedirections);
    curl_easy_setopt(curl, CURLOPT_REDIR_PROTOCOLS_STR, isSecure_ ? "https" : "http,https");
    curl_easy_setopt(curl, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_2TLS));
    curl_easy_setopt(curl, CURLOPT_SSL_VERIFYPEER, 1L);
    curl_easy_setopt(curl, CURLOPT_SSL_VERIFYHOST, 2L);
    if (!caFile.empty())
        curl_easy_setopt(curl, CURLOPT_CAINFO, caFile.string().c_str());
    if (isLoopback_)
        curl_easy_setopt(curl, CURLOPT_PROXY, "");
    curl_easy_setopt(curl, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
    // A name server that does not answer must not hold the end of the application.
    curl_easy_setopt(curl, CURLOPT_QUICK_EXIT, 1L);
    curl_easy_setopt(curl, CURLOPT_TIMEOUT_MS, static_cast<long>(request_.timeout.count()));
    curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT_MS, connectTimeoutMs);
    curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, errorBuffer_.data());
    curl_easy_setopt(curl, CURLOPT_HTTPHEADER, headers_.get());
    if (isTransfer)
    {
        curl_easy_setopt(curl, CURLOPT_BUFFERSIZE, pieceSize);
        curl_easy_setopt(curl, CURLOPT_UPLOAD_BUFFERSIZE, pieceSize);
    }
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, &CurlTransfer::onReceive_);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, this);
    curl_easy_setopt(curl, CURLOPT_HEADERFUNCTION, &CurlTransfer::onHeader_);
    curl_easy_setopt(curl, CURLOPT_HEADERDATA, this);
    if (hasProgress())
    {
        curl_easy_setopt(curl, CURLOPT_NOPROGRESS, 0L);
        curl_easy_setopt(curl, CURLOPT_XFERINFOFUNCTION, &CurlTransfer::onProgress_);
        curl_easy_setopt(curl, CURLOPT_XFERINFODATA, this);
    }
    setMethod_();
}

void CurlTransfer::setMethod_()
{
    CURL* const curl = handle_.get();
    const bool hasBody = request_.body || !request_.inputPath.empty();
    const auto size = static_cast<curl_off_t>(source_.size());
    curl_easy_setopt(curl, CURLOPT_READFUNCTION, &CurlTransfer::onSend_);
    curl_easy_setopt(curl, CURLOPT_READDATA, this);
    curl_easy_setopt(curl, CURLOPT_SEEKFUNCTION, &CurlTransfer::onSeek_);
    curl_easy_setopt(curl, CURLOPT_SEEKDATA, this);
    if (request_.method == WebMethod::Post)
    {
        curl_easy_setopt(curl, CURLOPT_POST, 1L);
        curl_easy_setopt(curl, CURLOPT_POSTFIELDSIZE_LARGE, size);
        return;
    }
    if (hasBody || request_.method == WebMethod::Put)
    {
        curl_easy_setopt(curl, CURLOPT_UPLOAD, 1L);
        curl_easy_setopt(curl, CURLOPT_INFILESIZE_LARGE, size);
    }
    if (request_.method == WebMethod::Delete || (request_.method == WebMethod::Get && hasBody))
        curl_easy_setopt(curl, CURLOPT_CUSTOMREQUEST, methodName(request_.method));
}

WebResult CurlTransfer::finish(CURLcode code)
{
    if (code != CURLE_OK)
        return fail(errorText_(code));
    long status = 0;
    curl_easy_getinfo(handle_.get(), CURLINFO_RESPONSE_CODE, &status);
    if (status < 400)
    {
        if (!uploadProgress_.report(1, 1) || !downloadProgress_.report(1, 1))
            return fail(operationCanceledText());
        if (const auto committed = sink_.commit(); !committed)
            return fail(committed.error());
    }
    return result_(makeAnswer(static_cast<int>(status), reason_, sink_.text()));
}

WebResult CurlTransfer::fail(std::string_view error)
{
    return result_(makeFailedAnswer(error));
}

WebResult CurlTransfer::result_(Json::Value answer)
{
    // Nothing of the files is left when the callback runs.
    sink_ = {};
    source_ = {};
    curl_off_t sent = 0;
    curl_off_t received = 0;
    if (handle_)
    {
        curl_easy_getinfo(handle_.get(), CURLINFO_SIZE_UPLOAD_T, &sent);
        curl_easy_getinfo(handle_.get(), CURLINFO_SIZE_DOWNLOAD_T, &received);
    }
    const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start_);
    auto line = fmt::format("{}: {} {}: {} after {} ms, {} bytes sent, {} received", request_.logName,
                            methodName(request_.method), host_, answer["code"].asInt(), time.count(), sent, received);
    return {.answer = std::move(answer), .logLine = std::move(line)};
}

std::string CurlTransfer::errorText_(CURLcode code) const
{
    if (!failure_.empty())
        return failure_;
    switch (code)
    {
    case CURLE_COULDNT_RESOLVE_HOST:
        return host_ + " was not found. Check the network connection.";
    case CURLE_COULDNT_CONNECT:
        return "Cannot connect to " + host_ + ". Check the network connection.";
    case CURLE_OPERATION_TIMEDOUT:
        return host_ + " did not answer in time.";
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CACERT_BADFILE:
        return fmt::format("{} cannot be trusted: {}", host_, errorBuffer_.data());
    case CURLE_TOO_MANY_REDIRECTS:
        return host_ + " sends the request in circles.";
    case CURLE_UNSUPPORTED_PROTOCOL:
        return host_ + " sends the request to an address that is not allowed.";
    case CURLE_GOT_NOTHING:
    case CURLE_PARTIAL_FILE:
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
        return "The connection to " + host_ + " broke off.";
    default:
        return curl_easy_strerror(code);
    }
}

std::size_t CurlTransfer::receive_(std::string_view bytes)
{
    long status = 0;
    curl_easy_getinfo(handle_.get(), CURLINFO_RESPONSE_CODE, &status);
    if (auto written = sink_.write(bytes, status >= 400); !written)
    {
        failure_ = written.error().empty() ? "The answer of " + host_ + " is larger than 256 MiB."
                                           : std::move(written.error());
        return CURL_WRITEFUNC_ERROR;
    }
    return bytes.size();
}

std::size_t CurlTransfer::send_(std::span<char> out)
{
    auto size = source_.read(out);
    if (size)
        return *size;
    failure_ = std::move(size.error());
    return CURL_READFUNC_ABORT;
}

int CurlTransfer::progress_(curl_off_t downloadTotal, curl_off_t downloaded, curl_off_t uploadTotal,
                            curl_off_t uploaded)
{
    const auto number = [](curl_off_t value) { return static_cast<std::uint64_t>(std::max<curl_off_t>(value, 0)); };
    if (uploadProgress_.report(number(uploaded), number(uploadTotal)) &&
        downloadProgress_.report(number(downloaded), number(downloadTotal)))
        return 0;
    failure_ = operationCanceledText();
    return 1;
}

/// Keeps the words of a status line; HTTP/2 has none.
void CurlTransfer::receiveHeader_(std::string_view line)
{
    if (!line.starts_with("HTTP/"))
        return;
    constexpr std::size_t longest = 64;
    reason_.clear();
    const auto code = line.find(' ');
    const auto words = line.find(' ', std::min(code, line.size() - 1) + 1);
    if (code == std::string_view::npos || words == std::string_view::npos)
        return;
    for (const char c : line.substr(words + 1, longest))
        if (c >= ' ' && c < '\x7F')
            reason_ += c;
}

std::size_t CurlTransfer::onReceive_(char* bytes, std::size_t size, std::size_t count, void* self)
{
    return static_cast<CurlTransfer*>(self)->receive_({bytes, size * count});
}

std::size_t CurlTransfer::onSend_(char* out, std::size_t size, std::size_t count, void* self)
{
    return static_cast<CurlTransfer*>(self)->send_({out, size * count});
}

int CurlTransfer::onSeek_(void* self, curl_off_t offset, int origin)
{
    const bool isDone = origin == SEEK_SET && offset >= 0 &&
                        static_cast<CurlTransfer*>(self)->source_.seek(static_cast<std::uint64_t>(offset));
    return isDone ? CURL_SEEKFUNC_OK : CURL_SEEKFUNC_FAIL;
}

int CurlTransfer::onProgress_(void* self, curl_off_t downloadTotal, curl_off_t downloaded, curl_off_t uploadTotal,
                              curl_off_t uploaded)
{
    return static_cast<CurlTransfer*>(self)->progress_(downloadTotal, downloaded, uploadTotal, uploaded);
}

std::size_t CurlTransfer::onHeader_(char* bytes, std::size_t size, std::size_t count, void* self)
{
    static_cast<CurlTransfer*>(self)->receiveHeader_({bytes, size * count});
    return size * count;
}

} // namespace VX
