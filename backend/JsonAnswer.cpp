#include "JsonAnswer.h"

#include "DiskFull.h"

#include <json/writer.h>

namespace VX
{

HttpResponse jsonAnswer(const Json::Value& document, int status)
{
    Json::StreamWriterBuilder writer;
    writer["indentation"] = "";
    HttpResponse response;
    response.status = status;
    response.headers["Content-Type"] = "application/json";
    response.headers["Cache-Control"] = "no-store";
    response.body = Json::writeString(writer, document);
    return response;
}

HttpResponse resultAnswer(const Json::Value& result)
{
    Json::Value document;
    document["result"] = result;
    return jsonAnswer(document);
}

HttpResponse errorAnswer(int status, const std::string& message)
{
    Json::Value document;
    document["result"] = Json::Value();
    document["error"]["message"] = message;
    return jsonAnswer(document, status);
}

HttpResponse failureAnswer(const std::string& message)
{
    return errorAnswer(message == diskFullText() ? 507 : 500, message);
}

} // namespace VX
