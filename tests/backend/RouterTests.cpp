#include <gtest/gtest.h>

#include <backend/Router.h>

#include <stdexcept>

namespace VX::Test
{

namespace
{

class RouterTest : public ::testing::Test
{
public:
    static Router::Handle answering(const std::string& text)
    {
        return [text](const HttpRequest&, const HttpHandler::Respond& respond) { respond({.body = text}); };
    }

    HttpResponse answer(const std::string& method, const std::string& path)
    {
        HttpResponse answer;
        router.handle({.method = method, .path = path}, [&](HttpResponse response) { answer = std::move(response); });
        return answer;
    }

    Router router;
};

TEST_F(RouterTest, findsTheOperationByMethodAndPath)
{
    router.add("GET", "/a", answering("get a"));
    router.add("POST", "/a", answering("post a"));
    router.add("GET", "/b/", answering("below b"));
    EXPECT_EQ(answer("GET", "/a").body, "get a");
    EXPECT_EQ(answer("POST", "/a").body, "post a");
    EXPECT_EQ(answer("GET", "/b/c/d").body, "below b");
}

TEST_F(RouterTest, answersOtherPathsWith404)
{
    router.add("GET", "/a", answering("a"));
    for (const char* path : {"/", "/b", "/a/", "/aa", "/A"})
    {
        EXPECT_EQ(answer("GET", path).status, 404) << path;
        EXPECT_EQ(answer("GET", path).body,
                  R"({"error":{"message":"There is nothing under this address."},"result":null})");
    }
}

TEST_F(RouterTest, answersOtherMethodsWith405)
{
    router.add("GET", "/a", answering("a"));
    router.add("HEAD", "/a", answering("a"));
    const auto response = answer("DELETE", "/a");
    EXPECT_EQ(response.status, 405);
    EXPECT_EQ(response.headers.at("Allow"), "GET, HEAD");
}

TEST_F(RouterTest, letsTheOperationDecideAboutTheBody)
{
    router.add("PUT", "/a", answering("a"),
               [](const HttpRequest& head) { return HttpBodySink{.limit = head.path.size(), .file = "/file"}; });
    router.add("POST", "/b", answering("b"));
    EXPECT_EQ(router.acceptBody({.method = "PUT", .path = "/a"})->file, "/file");
    const auto other = router.acceptBody({.method = "POST", .path = "/b"});
    EXPECT_TRUE(other->file.empty());
    EXPECT_EQ(other->limit, 64U << 10U);
}

TEST_F(RouterTest, refusesTheBodyOfAnUnknownRequest)
{
    const auto refused = router.acceptBody({.method = "PUT", .path = "/a"});
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error().status, 404);
}

TEST_F(RouterTest, survivesAnOperationThatThrows)
{
    router.add("GET", "/a", [](const HttpRequest&, const HttpHandler::Respond&) { throw std::runtime_error("no"); });
    EXPECT_EQ(answer("GET", "/a").status, 500);
}

} // namespace

} // namespace VX::Test
