#include <gtest/gtest.h>

#include <backend/PresignedUrl.h>

#include <map>
#include <string>

namespace VX::Test
{

namespace
{

using namespace std::chrono_literals;

/// Path and query of a link, as a server sees them.
struct Target
{
    explicit Target(const std::string& link)
    {
        const auto mark = link.find('?');
        path = link.substr(0, mark);
        for (std::size_t at = mark; at != std::string::npos;)
        {
            const auto equals = link.find('=', at);
            const auto next = link.find('&', equals);
            query[link.substr(at + 1, equals - at - 1)] = link.substr(equals + 1, next - equals - 1);
            at = next;
        }
    }

    std::string path;
    std::map<std::string, std::string> query;
};

class PresignedUrlTest : public ::testing::Test
{
public:
    [[nodiscard]] bool allows(const std::string& method, const Target& target) const
    {
        return links.verify(method, target.path, target.query, now).has_value();
    }

    const std::chrono::sys_seconds now{1'700'000'000s};
    const PresignedUrl links{SigningSecret{1, 2, 3}};
    const Target upload{links.sign({.method = "PUT", .key = "uploads/a", .expiry = now + 1h, .limit = 1000})};
    const Target download{links.sign({.method = "GET", .key = "results/b.c", .expiry = now + 1h})};
};

TEST_F(PresignedUrlTest, hasASignatureOverMethodKeyExpiryAndLimit)
{
    EXPECT_EQ(links.sign({.method = "PUT", .key = "uploads/a", .expiry = now, .limit = 1000}),
              "/storage/uploads/a?expires=1700000000&limit=1000&signature="
              "a6c22d6f888d88518c9e061491a554d48ae8a5ebdecbef4ee3f28cc981a23265");
}

TEST_F(PresignedUrlTest, givesBackWhatItAllows)
{
    const auto grant = links.verify("PUT", upload.path, upload.query, now).value_or(PresignedUrl::Grant());
    EXPECT_EQ(grant.key, "uploads/a");
    EXPECT_EQ(grant.limit, 1000U);
}

TEST_F(PresignedUrlTest, allowsItsOwnMethodOnly)
{
    EXPECT_FALSE(allows("GET", upload));
    EXPECT_FALSE(allows("HEAD", upload));
    EXPECT_TRUE(allows("GET", download));
    EXPECT_TRUE(allows("HEAD", download));
    EXPECT_FALSE(allows("PUT", download));
}

TEST_F(PresignedUrlTest, expires)
{
    EXPECT_TRUE(links.verify("PUT", upload.path, upload.query, now + 1h - 1s));
    EXPECT_FALSE(links.verify("PUT", upload.path, upload.query, now + 1h));
    EXPECT_TRUE(links.verify("PUT", upload.path, upload.query, PresignedUrl::anyTime));
}

TEST_F(PresignedUrlTest, refusesEveryChange)
{
    const std::pair<const char*, const char*> changes[] = {
        {"expires", "1800000000"}, {"expires", "1700003600 "}, {"expires", "x"},    {"expires", ""},
        {"limit", "1001"},         {"limit", "+1000"},         {"limit", "-1000"},  {"limit", "99999999999999999999"},
        {"signature", ""},         {"signature", "00"},        {"signature", "zz"},
    };
    for (const auto& [name, value] : changes)
    {
        Target changed = upload;
        changed.query[name] = value;
        EXPECT_FALSE(allows("PUT", changed)) << name << "=" << value;
    }
    for (const char* name : {"expires", "limit", "signature"})
    {
        Target changed = upload;
        changed.query.erase(name);
        EXPECT_FALSE(allows("PUT", changed)) << name;
    }
    Target other = upload;
    other.path = "/storage/uploads/b";
    EXPECT_FALSE(allows("PUT", other));
    other.path = "/elsewhere/uploads/a";
    EXPECT_FALSE(allows("PUT", other));
}

TEST_F(PresignedUrlTest, refusesASignatureThatIsTooLong)
{
    Target changed = upload;
    changed.query["signature"] += "00";
    EXPECT_FALSE(allows("PUT", changed));
}

TEST_F(PresignedUrlTest, refusesALinkSignedWithAnotherSecret)
{
    const PresignedUrl others(SigningSecret{9});
    EXPECT_FALSE(others.verify("PUT", upload.path, upload.query, now));
}

} // namespace

} // namespace VX::Test
