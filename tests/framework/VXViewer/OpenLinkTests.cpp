#include <VXViewer/OpenLink.h>

#include <gtest/gtest.h>

#include <vector>

namespace VX
{

class OpenLinkTests : public testing::Test
{
protected:
    OpenLinkTests()
    {
        setLinkOpener([this](const std::string& url) { opened_.push_back(url); });
    }

    ~OpenLinkTests() override { setLinkOpener({}); }

    std::vector<std::string> opened_;
};

TEST_F(OpenLinkTests, OpensLinksOfTheWebAndOfMail)
{
    EXPECT_TRUE(OpenLink("https://quorvix.example/download"));
    EXPECT_TRUE(OpenLink("http://127.0.0.1:8080/"));
    EXPECT_TRUE(OpenLink("MAILTO:help@quorvix.example"));
    EXPECT_EQ(opened_.size(), 3U);
}

TEST_F(OpenLinkTests, RefusesAnythingElse)
{
    for (const char* url : {"", "file:///etc/passwd", "javascript:alert(1)", "-version", "https://", "quorvix.example",
                            "https://a b", "https://a\nb"})
        EXPECT_FALSE(OpenLink(url)) << url;
    EXPECT_TRUE(opened_.empty());
}

} // namespace VX
