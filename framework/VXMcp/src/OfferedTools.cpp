#include "Offers.h"
#include "Page.h"
#include "Replies.h"
#include "SchemaCheck.h"
#include "ToolRun.h"
#include "Wire.h"

#include <algorithm>
#include <utility>

namespace VX::Mcp
{

namespace
{

using RequestPtr = std::shared_ptr<const ClientRequest>;
using SharedPtr = std::shared_ptr<Shared>;

/// A call that ends before the tool has run, in a way that the agent should read.
void refuseCall(Shared& shared, const ClientRequest& request, const std::string& tool, std::string text)
{
    shared.activity.addCall(tool, request.clientName, true);
    reply(request, shared.registry.info(), toWire(ToolResult::error(std::move(text))));
}

bool areResponses(const Json::Value& value)
{
    return value.isObject() &&
           std::all_of(value.begin(), value.end(), [](const Json::Value& response) { return response.isObject(); });
}

} // namespace

void listTools(const SharedPtr& shared, const RequestPtr& request)
{
    auto page = makePage(shared->registry.tools(), "tools", request->message.params["cursor"]);
    if (!page)
        return replyInvalidParams(*request, "The cursor is none that this server has given.");
    replyCacheable(*request, shared->registry.info(), std::move(*page), {.ttlMs = 60'000, .isPublic = true});
}

void callTool(const SharedPtr& shared, const RequestPtr& request)
{
    const Json::Value& params = request->message.params;
    if (!params["name"].isString())
        return replyInvalidParams(*request, "The member \"name\" must be the name of a tool.");
    const std::string name = shared->registry.toolNameOf(params["name"].asString());
    if (auto allowed = shared->registry.validate(name); !allowed)
        return refuseCall(*shared, *request, name, std::move(allowed).error());
    auto tool = shared->registry.findTool(name);
    if (!tool)
        return replyInvalidParams(*request,
                                  "There is no tool \"" + name + "\"; \"tools/list\" names those that there are.");
    if (params.isMember("arguments") && !params["arguments"].isObject())
        return replyInvalidParams(*request, "The member \"arguments\" must be an object.");
    Json::Value arguments = params.isMember("arguments") ? params["arguments"] : Json::Value(Json::objectValue);
    if (auto fits = checkSchema(arguments, tool->inputSchema); !fits)
        return refuseCall(*shared, *request, name, std::move(fits).error());

    std::string state;
    if (params.isMember("requestState"))
    {
        const Json::Value& sealed = params["requestState"];
        auto opened = sealed.isString() ? shared->seal.open("tool " + name, sealed.asString()) : std::nullopt;
        if (!opened)
            return replyInvalidParams(*request, "The member \"requestState\" is not as this server gave it.");
        state = std::move(*opened);
    }
    if (params.isMember("inputResponses") && !areResponses(params["inputResponses"]))
        return replyInvalidParams(*request, "The member \"inputResponses\" must be an object of objects.");
    std::make_shared<ToolRun>(shared, request, std::move(tool), std::move(arguments))
        ->start(params["inputResponses"], std::move(state));
}

} // namespace VX::Mcp
