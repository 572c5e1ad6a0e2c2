#include "Offers.h"
#include "Page.h"
#include "Replies.h"

#include <algorithm>
#include <utility>

namespace VX::Mcp
{

namespace
{

using RequestPtr = std::shared_ptr<const ClientRequest>;
using SharedPtr = std::shared_ptr<Shared>;

/// As the protocol limits them.
constexpr std::size_t maxSuggestions = 100;

/// @return what is wrong with the arguments; empty for nothing
std::string checkArguments(const Prompt& prompt, const Json::Value& arguments)
{
    if (!arguments.isObject() ||
        !std::all_of(arguments.begin(), arguments.end(), [](const Json::Value& value) { return value.isString(); }))
        return "The member \"arguments\" must be an object of strings.";
    for (const auto& argument : prompt.arguments)
        if (argument.required && !arguments.isMember(argument.name))
            return "The argument \"" + argument.name + "\" is missing.";
    return {};
}

tl::expected<Json::Value, Inquiry> messagesOf(const Prompt& prompt, const Json::Value& arguments,
                                              const Json::Value& inputResponses)
{
    if (prompt.inquire)
        return prompt.inquire(arguments, inputResponses);
    return prompt.messages(arguments);
}

} // namespace

void listPrompts(const SharedPtr& shared, const RequestPtr& request)
{
    auto page = makePage(shared->registry.prompts(), "prompts", request->message.params["cursor"]);
    if (!page)
        return replyInvalidParams(*request, "The cursor is none that this server has given.");
    replyCacheable(*request, shared->registry.info(), std::move(*page), {.ttlMs = 60'000, .isPublic = true});
}

void getPrompt(const SharedPtr& shared, const RequestPtr& request)
{
    const Json::Value& params = request->message.params;
    const auto prompt = params["name"].isString() ? shared->registry.findPrompt(params["name"].asString()) : nullptr;
    if (!prompt)
        return replyInvalidParams(*request, "There is no such prompt; \"prompts/list\" names those that there are.");
    const Json::Value arguments = params.isMember("arguments") ? params["arguments"] : Json::Value(Json::objectValue);
    if (auto wrong = checkArguments(*prompt, arguments); !wrong.empty())
        return replyInvalidParams(*request, std::move(wrong));

    auto messages = messagesOf(*prompt, arguments, params["inputResponses"]);
    if (!messages && !request->isModern)
        return replyInvalidParams(*request, "This prompt is for clients of the revision 2026-07-28.");
    if (!messages)
        return replyInputRequired(*request, shared->registry.info(), messages.error(), {});
    Json::Value result(Json::objectValue);
    if (!prompt->description.empty())
        result["description"] = prompt->description;
    result["messages"] = std::move(*messages);
    reply(*request, shared->registry.info(), std::move(result));
}

void completeArgument(const SharedPtr& shared, const RequestPtr& request)
{
    const Json::Value& params = request->message.params;
    const Json::Value& ref = params["ref"];
    const Json::Value& argument = params["argument"];
    if (!ref.isObject() || !argument.isObject() || !argument["name"].isString() || !argument["value"].isString())
        return replyInvalidParams(*request, "The members \"ref\" and \"argument\" must say what is to be completed.");
    std::vector<std::string> found;
    if (ref["type"] == "ref/prompt")
    {
        const auto prompt = ref["name"].isString() ? shared->registry.findPrompt(ref["name"].asString()) : nullptr;
        if (!prompt)
            return replyInvalidParams(*request, "There is no such prompt.");
        if (prompt->complete)
            found = prompt->complete(argument["name"].asString(), argument["value"].asString());
    }
    Json::Value result(Json::objectValue);
    Json::Value& completion = result["completion"];
    completion["values"] = Json::Value(Json::arrayValue);
    for (std::size_t i = 0; i < std::min(found.size(), maxSuggestions); ++i)
        completion["values"].append(found[i]);
    completion["total"] = static_cast<Json::UInt64>(found.size());
    completion["hasMore"] = found.size() > maxSuggestions;
    reply(*request, shared->registry.info(), std::move(result));
}

} // namespace VX::Mcp
