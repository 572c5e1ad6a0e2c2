#include "McpFixture.h"
#include "UriTemplate.h"

#include <gmock/gmock.h>

#include <set>

namespace VX::Test
{

namespace
{

using OffersTests = McpFixture;

} // namespace

TEST(UriTemplate, FindsTheValuesOfItsVariables)
{
    const auto found = Mcp::matchUriTemplate("a://{x}/b/{y}", "a://1%202/b/3");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->at("x"), "1 2");
    EXPECT_EQ(found->at("y"), "3");
}

TEST(UriTemplate, RefusesWhatDoesNotFit)
{
    for (const char* uri : {"a://1/c", "a:///b", "a://1/2/b", "a://1/bb", "b://1/b", "", "a://%zz/b"})
        EXPECT_FALSE(Mcp::matchUriTemplate("a://{x}/b", uri)) << uri;
}

TEST_F(OffersTests, ListsAreEmptyWhereThereIsNothing)
{
    for (const auto& [method, key] :
         {std::pair("tools/list", "tools"), std::pair("resources/list", "resources"),
          std::pair("prompts/list", "prompts"), std::pair("resources/templates/list", "resourceTemplates")})
    {
        EXPECT_TRUE(modern(method, Json::objectValue).json["result"][key].isArray()) << method;
        EXPECT_TRUE(legacy(method).json["result"][key].isArray()) << method;
    }
}

TEST_F(OffersTests, AToolIsListedWithAllThatIsKnownOfIt)
{
    server.addTool({.name = "a.b",
                    .title = "Title",
                    .description = "Words",
                    .inputSchema = object("type", "object"),
                    .outputSchema = object("type", "object"),
                    .readOnly = true,
                    .run = [](const auto&, const auto&) {}});
    const Json::Value tool = modern("tools/list", Json::objectValue).json["result"]["tools"][0];
    EXPECT_EQ(tool["name"], "a.b");
    EXPECT_EQ(tool["title"], "Title");
    EXPECT_EQ(tool["description"], "Words");
    EXPECT_EQ(tool["outputSchema"]["type"], "object");
    EXPECT_TRUE(tool["annotations"]["readOnlyHint"].asBool());
    EXPECT_FALSE(tool["annotations"]["destructiveHint"].asBool());
}

TEST_F(OffersTests, AToolWithoutSchemaTakesAnObject)
{
    addTool("a", [](Mcp::ToolCall&) { return Mcp::ToolResult{}; });
    EXPECT_EQ(modern("tools/list", Json::objectValue).json["result"]["tools"][0]["inputSchema"]["type"], "object");
}

TEST_F(OffersTests, LongListsComeInPages)
{
    for (int i = 0; i < 250; ++i)
        addTool("tool" + std::to_string(i), [](Mcp::ToolCall&) { return Mcp::ToolResult{}; });
    std::set<std::string> names;
    Json::Value params(Json::objectValue);
    int pages = 0;
    for (;;)
    {
        const Json::Value result = modern("tools/list", params).json["result"];
        ++pages;
        for (const auto& tool : result["tools"])
            names.insert(tool["name"].asString());
        if (!result.isMember("nextCursor"))
            break;
        params["cursor"] = result["nextCursor"];
    }
    EXPECT_EQ(names.size(), 250U);
    EXPECT_EQ(pages, 3);
}

TEST_F(OffersTests, AnUnknownCursorIsRefused)
{
    for (const char* method : {"tools/list", "resources/list", "resources/templates/list", "prompts/list"})
    {
        EXPECT_EQ(modern(method, object("cursor", "nonsense")).error(), -32602) << method;
        EXPECT_EQ(legacy(method, object("cursor", 7)).error(), -32602) << method;
    }
}

TEST_F(OffersTests, ATextResourceIsReadAsTextAndAnotherInBase64)
{
    for (const char* type : {"application/json", "image/png"})
        server.addResource({.uri = std::string("x://") + type,
                            .name = type,
                            .mimeType = type,
                            .read = [](const Mcp::Resource::Answer& answer) { answer("abc"); }});
    const Json::Value text = modern("resources/read", object("uri", "x://application/json")).json["result"];
    EXPECT_EQ(text["contents"][0]["text"], "abc");
    EXPECT_EQ(text["cacheScope"], "private");
    const Json::Value bytes = modern("resources/read", object("uri", "x://image/png")).json["result"];
    EXPECT_EQ(bytes["contents"][0]["blob"], "YWJj");
}

TEST_F(OffersTests, AResourceThatCannotBeReadSaysWhy)
{
    server.addResource({.uri = "x://a",
                        .read = [](const Mcp::Resource::Answer& answer)
                        { answer(tl::unexpected(std::string("The scene is closed."))); }});
    EXPECT_EQ(modern("resources/read", object("uri", "x://a")).error(), -32603);
}

TEST_F(OffersTests, AnUnknownResourceHasTheErrorOfItsEra)
{
    const auto answer = modern("resources/read", object("uri", "x://b"));
    EXPECT_EQ(answer.error(), -32602);
    EXPECT_EQ(answer.json["error"]["data"]["uri"], "x://b");
    EXPECT_EQ(legacy("resources/read", object("uri", "x://b")).error(), -32002);
    EXPECT_EQ(legacy("resources/subscribe", object("uri", "x://b")).error(), -32002);
}

TEST_F(OffersTests, ATemplateReadsWhatFits)
{
    server.addResourceTemplate(
        {.uriTemplate = "x://{id}",
         .mimeType = "text/plain",
         .read = [](const std::string&, const auto& variables, const Mcp::Resource::Answer& answer)
         { answer("number " + variables.at("id")); }});
    EXPECT_EQ(legacy("resources/read", object("uri", "x://7")).json["result"]["contents"][0]["text"], "number 7");
}

TEST_F(OffersTests, APromptGetsItsArguments)
{
    server.addPrompt({.name = "p",
                      .arguments = {{.name = "x", .required = true}},
                      .messages = [](const Json::Value& arguments)
                      {
                          Json::Value out(Json::arrayValue);
                          out.append(arguments["x"]);
                          return out;
                      }});
    Json::Value params = object("name", "p");
    EXPECT_EQ(modern("prompts/get", params).error(), -32602) << "without the required argument";
    params["arguments"]["x"] = "y";
    EXPECT_EQ(modern("prompts/get", params).json["result"]["messages"][0], "y");
    EXPECT_EQ(modern("prompts/get", object("name", "q")).error(), -32602);
}

TEST_F(OffersTests, SuggestionsAreLimited)
{
    server.addPrompt({.name = "p",
                      .arguments = {{.name = "x"}},
                      .complete = [](const std::string&, const std::string& value)
                      { return std::vector<std::string>(150, value + "!"); }});
    Json::Value params(Json::objectValue);
    params["ref"]["type"] = "ref/prompt";
    params["ref"]["name"] = "p";
    params["argument"]["name"] = "x";
    params["argument"]["value"] = "a";
    const Json::Value completion = legacy("completion/complete", params).json["result"]["completion"];
    EXPECT_EQ(completion["values"].size(), 100U);
    EXPECT_EQ(completion["values"][0], "a!");
    EXPECT_EQ(completion["total"], 150);
    EXPECT_TRUE(completion["hasMore"].asBool());
}

TEST_F(OffersTests, AResourceIsRefusedWithTheToolThatTellsTheSame)
{
    server.addResource({.uri = "x://a",
                        .mimeType = "text/plain",
                        .tool = "secrets.tell",
                        .read = [](const Mcp::Resource::Answer& answer) { answer(std::string("secret")); }});
    server.setToolValidator(
        [](const std::string& name) -> tl::expected<void, std::string>
        {
            if (name == "secrets.tell")
                return tl::unexpected(std::string("Sign in first."));
            return {};
        });
    for (const auto& answer :
         {modern("resources/read", object("uri", "x://a")), legacy("resources/read", object("uri", "x://a"))})
        EXPECT_EQ(answer.json["error"]["message"], "Sign in first.");
    server.setToolValidator({});
    EXPECT_EQ(modern("resources/read", object("uri", "x://a")).json["result"]["contents"][0]["text"], "secret");
}

} // namespace VX::Test
