#include "Fixtures.h"

#include <VXMesh/Json.h>

#include <functional>
#include <string>
#include <utility>

namespace VX::Test
{

namespace
{

using Mcp::Inquiry;
using Mcp::Tool;
using Mcp::ToolCall;
using Mcp::ToolResult;

ToolResult words(std::string text)
{
    return {.content = {{.text = std::move(text)}}};
}

Json::Value elicitation(const std::string& message, const char* schema)
{
    Json::Value out(Json::objectValue);
    out["method"] = "elicitation/create";
    out["params"]["message"] = message;
    out["params"]["requestedSchema"] = *deserializeJsonValue(schema);
    return out;
}

Json::Value askName()
{
    return elicitation("What is your name?",
                       R"({"type": "object", "properties": {"name": {"type": "string"}}, "required": ["name"]})");
}

Json::Value sampling(const std::string& prompt)
{
    Json::Value out = *deserializeJsonValue(R"({"method": "sampling/createMessage", "params": {"maxTokens": 100,
        "messages": [{"role": "user", "content": {"type": "text", "text": ""}}]}})");
    out["params"]["messages"][0]["content"]["text"] = prompt;
    return out;
}

Json::Value roots()
{
    Json::Value out(Json::objectValue);
    out["method"] = "roots/list";
    out["params"] = Json::Value(Json::objectValue);
    return out;
}

ToolResult ask(const std::string& key, Json::Value request, std::string state = {})
{
    Inquiry inquiry{.state = std::move(state)};
    inquiry.requests[key] = std::move(request);
    return {.inquiry = std::move(inquiry)};
}

bool hasAnswer(const ToolCall& call, const char* key)
{
    return call.inputResponses().isObject() && call.inputResponses().isMember(key);
}

void add(Mcp::Server& server, const char* name, const char* description, std::function<ToolResult(ToolCall&)> run,
         const char* schema = R"({"type": "object"})")
{
    Tool tool{.name = name, .description = description, .inputSchema = *deserializeJsonValue(schema)};
    tool.run = [run = std::move(run)](const std::shared_ptr<ToolCall>& call, const Tool::Answer& answer)
    { answer(run(*call)); };
    server.addTool(std::move(tool));
}

/// A tool that asks one question and answers with what it has heard.
void addQuestion(Mcp::Server& server, const char* name, const char* key, Json::Value request, std::string state = {})
{
    add(server, name, "Asks the client something",
        [key, request = std::move(request), state = std::move(state)](ToolCall& call)
        {
            if (!hasAnswer(call, key) || call.requestState() != state)
                return ask(key, request, state);
            return words("Received " + call.inputResponses()[key].toStyledString() + ", state-ok");
        });
}

void addToolsOfSessions(Mcp::Server& server)
{
    add(
        server, "test_sampling", "Asks the client's model",
        [](ToolCall& call)
        {
            return hasAnswer(call, "answer")
                       ? words("LLM response: " + call.inputResponses()["answer"]["content"]["text"].asString())
                       : ask("answer", sampling(call.arguments()["prompt"].asString()));
        },
        R"({"type": "object", "properties": {"prompt": {"type": "string"}}, "required": ["prompt"]})");
    add(
        server, "test_elicitation", "Asks the user",
        [](ToolCall& call)
        {
            return hasAnswer(call, "answer")
                       ? words("User response: " + call.inputResponses()["answer"].toStyledString())
                       : ask("answer", elicitation(call.arguments()["message"].asString(),
                                                   R"({"type": "object", "required": ["username", "email"],
                                "properties": {"username": {"type": "string", "description": "User's response"},
                                               "email": {"type": "string", "description": "User's email address"}}})"));
        },
        R"({"type": "object", "properties": {"message": {"type": "string"}}, "required": ["message"]})");
    addQuestion(server, "test_elicitation_sep1034_defaults", "answer",
                elicitation("Please review", R"({"type": "object", "required": [], "properties": {
        "name": {"type": "string", "default": "John Doe"},
        "age": {"type": "integer", "default": 30},
        "score": {"type": "number", "default": 95.5},
        "status": {"type": "string", "enum": ["active", "inactive", "pending"], "default": "active"},
        "verified": {"type": "boolean", "default": true}}})"));
    addQuestion(server, "test_elicitation_sep1330_enums", "answer",
                elicitation("Please select", R"({"type": "object", "required": [], "properties": {
        "untitledSingle": {"type": "string", "enum": ["option1", "option2", "option3"]},
        "titledSingle": {"type": "string", "oneOf": [{"const": "value1", "title": "First Option"},
            {"const": "value2", "title": "Second Option"}, {"const": "value3", "title": "Third Option"}]},
        "legacyEnum": {"type": "string", "enum": ["opt1", "opt2", "opt3"],
            "enumNames": ["Option One", "Option Two", "Option Three"]},
        "untitledMulti": {"type": "array", "items": {"type": "string", "enum": ["option1", "option2", "option3"]}},
        "titledMulti": {"type": "array", "items": {"anyOf": [{"const": "value1", "title": "First Choice"},
            {"const": "value2", "title": "Second Choice"}, {"const": "value3", "title": "Third Choice"}]}}}})"));
}

/// Two questions, the second after the answer to the first.
ToolResult askTwice(ToolCall& call)
{
    if (call.requestState() == "second" && hasAnswer(call, "step2"))
        return words("Both rounds are complete");
    if (call.requestState() == "first" && hasAnswer(call, "step1"))
        return ask("step2",
                   elicitation("Step 2: What is your favorite color?",
                               R"({"type": "object", "properties": {"color": {"type": "string"}}})"),
                   "second");
    return ask("step1", askName(), "first");
}

ToolResult askAll(ToolCall& call)
{
    if (hasAnswer(call, "user_name") && hasAnswer(call, "greeting") && hasAnswer(call, "client_roots"))
        return words("All answers are here");
    Inquiry inquiry{.state = "all"};
    inquiry.requests["user_name"] = askName();
    inquiry.requests["greeting"] = sampling("Generate a greeting");
    inquiry.requests["client_roots"] = roots();
    return {.inquiry = std::move(inquiry)};
}

/// Asks for what the client says it can answer, and for nothing else.
ToolResult askWhatIsOffered(ToolCall& call)
{
    Inquiry inquiry{.state = "offered"};
    if (call.clientCapabilities().isMember("elicitation"))
        inquiry.requests["user_name"] = askName();
    if (call.clientCapabilities().isMember("sampling"))
        inquiry.requests["greeting"] = sampling("Generate a greeting");
    if (call.inputResponses().isObject() || !inquiry.requests.isObject())
        return words("Nothing is left to ask");
    return {.inquiry = std::move(inquiry)};
}

void addAskingPrompt(Mcp::Server& server)
{
    Mcp::Prompt prompt{.name = "test_input_required_result_prompt", .description = "Asks for a context first"};
    prompt.inquire = [](const Json::Value&, const Json::Value& responses) -> tl::expected<Json::Value, Inquiry>
    {
        if (responses.isObject() && responses.isMember("user_context"))
            return *deserializeJsonValue(
                R"([{"role": "user", "content": {"type": "text", "text": "Use the context."}}])");
        Inquiry inquiry;
        inquiry.requests["user_context"] = elicitation(
            "What context should the prompt use?",
            R"({"type": "object", "properties": {"context": {"type": "string"}}, "required": ["context"]})");
        return tl::unexpected(std::move(inquiry));
    };
    server.addPrompt(std::move(prompt));
}

} // namespace

void addAskingTools(Mcp::Server& server)
{
    addToolsOfSessions(server);
    addQuestion(server, "test_missing_capability", "greeting", sampling("Say hello"));
    addQuestion(server, "test_streaming_elicitation", "user_name", askName());
    addQuestion(server, "test_input_required_result_elicitation", "user_name", askName());
    addQuestion(server, "test_input_required_result_sampling", "capital_question",
                sampling("What is the capital of France?"));
    addQuestion(server, "test_input_required_result_list_roots", "client_roots", roots());
    addQuestion(server, "test_input_required_result_request_state", "confirm",
                elicitation("Please confirm",
                            R"({"type": "object", "properties": {"ok": {"type": "boolean"}}, "required": ["ok"]})"),
                "confirming");
    addQuestion(server, "test_input_required_result_tampered_state", "confirm",
                elicitation("Please confirm",
                            R"({"type": "object", "properties": {"ok": {"type": "boolean"}}, "required": ["ok"]})"),
                "confirming");
    add(server, "test_input_required_result_multiple_inputs", "Asks three things at once", askAll);
    add(server, "test_input_required_result_multi_round", "Asks twice", askTwice);
    add(server, "test_input_required_result_capabilities", "Asks what the client offers", askWhatIsOffered);
    addAskingPrompt(server);
}

} // namespace VX::Test
