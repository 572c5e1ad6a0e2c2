#include "BackendTestSupport.h"

#include "tests/support/RawSocket.h"
#include "tests/support/TempDir.h"

#include <VXMesh/Json.h>

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <json/writer.h>

#include <zip.h>

#include <cstdlib>
#include <fstream>

namespace VX::Test
{

std::filesystem::path fakeConverter()
{
    return QX_FAKE_CONVERTER;
}

std::string zipOf(const std::vector<std::pair<std::string, std::string>>& entries)
{
    const TempDir folder;
    const auto file = folder.path() / "archive.zip";
    zip_t* zip = zip_open(file.c_str(), ZIP_CREATE | ZIP_TRUNCATE, nullptr);
    for (const auto& [name, content] : entries)
    {
        if (name.ends_with('/'))
            zip_dir_add(zip, name.c_str(), 0);
        else
            zip_file_add(zip, name.c_str(), zip_source_buffer(zip, content.data(), content.size(), 0), 0);
    }
    if (zip_close(zip) != 0)
        std::abort();
    return readFile(file);
}

std::vector<std::string> readLines(const std::filesystem::path& file)
{
    std::ifstream stream(file);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

ClaimedJob claimJob(JobQueue& queue)
{
    const std::optional<ClaimedJob> job = queue.claim().value_or(std::nullopt);
    EXPECT_TRUE(job) << "no job is to be had";
    return job.value_or(ClaimedJob{});
}

Json::Value ClientAnswer::json() const
{
    return deserializeJsonValue(body).value_or(Json::Value());
}

std::string ClientAnswer::errorMessage() const
{
    const Json::Value document = json();
    const bool isError = document.isObject() && document["result"].isNull() && document["error"].isObject();
    return isError ? document["error"]["message"].asString() : std::string();
}

ClientAnswer Client::send(std::string_view method, std::string target, std::string_view body,
                          std::string_view headers) const
{
    if (const auto host = target.find("://"); host != std::string::npos)
        target.erase(0, target.find('/', host + 3));
    auto socket = RawSocket::connect(port_);
    if (!socket.isOpen())
        return {};
    socket.send(fmt::format("{} {} HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\nContent-Length: {}\r\n{}\r\n",
                            method, target, body.size(), headers));
    socket.send(body);
    const std::string text = socket.receiveAll();
    const auto headEnd = text.find("\r\n\r\n");
    if (headEnd == std::string::npos)
        return {};
    return {.status = std::atoi(text.c_str() + text.find(' ')),
            .head = text.substr(0, headEnd + 2),
            .body = text.substr(headEnd + 4)};
}

ClientAnswer Client::post(const std::string& path, const Json::Value& body) const
{
    return send("POST", path, Json::writeString(Json::StreamWriterBuilder(), body));
}

Json::Value converterBody(const std::string& requestId)
{
    Json::Value body;
    body["input_format"] = "step";
    body["compress_input"] = "zip";
    if (!requestId.empty())
    {
        body["request_id"] = requestId;
        body["output_format"] = "vxu";
    }
    return body;
}

std::string Client::upload(const std::string& input) const
{
    const Json::Value context = post("/converter/v2/request", converterBody()).json()["result"];
    const auto answer = send("PUT", context["url"].asString(), zipOf({{"input", input}}));
    return answer.status == 200 ? context["request_id"].asString() : std::string();
}

ClientAnswer Client::convert(const std::string& id) const
{
    return post("/converter/v2/convert", converterBody(id));
}

ClientAnswer Client::status(const std::string& id) const
{
    return send("GET", "/converter/v2/status?request_id=" + id);
}

ClientAnswer Client::waitForEnd(const std::string& id) const
{
    ClientAnswer answer;
    const bool ended = waitUntil(
        [&]
        {
            answer = status(id);
            const Json::Value result = answer.json()["result"];
            return answer.status != 200 || !result.isObject() || result["state"] == "finished";
        });
    return ended ? answer : ClientAnswer{};
}

std::string Client::run(const std::string& input) const
{
    const std::string id = upload(input);
    if (const auto accepted = convert(id); accepted.status != 200)
        return "error: " + accepted.errorMessage();
    const ClientAnswer end = waitForEnd(id);
    if (!end.errorMessage().empty())
        return "error: " + end.errorMessage();
    return send("GET", end.json()["result"]["url"].asString()).body;
}

} // namespace VX::Test
