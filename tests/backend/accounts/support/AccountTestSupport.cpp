#include "AccountTestSupport.h"

#include <json/writer.h>

#include <backend/DataFolder.h>
#include <backend/SigningSecret.h>

#include <algorithm>
#include <regex>
#include <vector>

namespace VX::Test
{

ClientAnswer callIdentity(std::uint16_t port, const std::string& operation, const Json::Value& body,
                          const std::string& headers)
{
    return Client(port).send("POST", "/auth", body.toStyledString(),
                             "x-amz-target: AWSCognitoIdentityProviderService." + operation + "\r\n" + headers);
}

Json::Value passwordSignIn(const std::string& address, const std::string& password)
{
    Json::Value body;
    body["AuthFlow"] = "USER_PASSWORD_AUTH";
    body["AuthParameters"]["USERNAME"] = address;
    body["AuthParameters"]["PASSWORD"] = password;
    return body;
}

Json::Value tokenSignIn(const std::string& token)
{
    Json::Value body;
    body["AuthFlow"] = "REFRESH_TOKEN_AUTH";
    body["AuthParameters"]["REFRESH_TOKEN"] = token;
    return body;
}

Json::Value userBody(const std::string& address, const std::string& password, const std::string& code)
{
    Json::Value body;
    body["Username"] = address;
    if (!password.empty())
        body["Password"] = password;
    if (!code.empty())
        body["ConfirmationCode"] = code;
    return body;
}

namespace
{

std::vector<std::filesystem::path> mails(const std::filesystem::path& outbox)
{
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(outbox))
        if (entry.path().extension() == ".eml")
            files.push_back(entry.path());
    std::ranges::sort(files);
    return files;
}

} // namespace

std::size_t mailCount(const std::filesystem::path& outbox)
{
    return mails(outbox).size();
}

std::string newestMail(const std::filesystem::path& outbox)
{
    const auto files = mails(outbox);
    return files.empty() ? std::string() : readFile(files.back());
}

std::string codeIn(const std::string& mail)
{
    static const std::regex number("\\b[0-9]{6}\\b");
    const std::sregex_iterator found(mail.begin(), mail.end(), number);
    EXPECT_EQ(std::distance(found, std::sregex_iterator()), 1) << mail;
    return found == std::sregex_iterator() ? std::string() : found->str();
}

std::string errorOf(const ClientAnswer& answer)
{
    const Json::Value document = answer.json();
    if (answer.status != 400 || !document.isObject() || document.size() != 2)
        return std::to_string(answer.status) + " " + answer.body;
    return document["__type"].asString() + ": " + document["message"].asString();
}

void AccountServiceTest::start()
{
    server.reset();
    router = std::make_unique<Router>();
    const auto dataFolder = DataFolder::open(data);
    ASSERT_TRUE(dataFolder) << dataFolder.error();
    auto opened = AccountServices::open(config, *dataFolder, loadOrCreateSecret(dataFolder->secret()).value(),
                                        [this] { return now.load(); });
    ASSERT_TRUE(opened) << opened.error();
    services = std::move(*opened);
    services->addRoutes(*router);
    server = HttpServer::start({}, *router).value();
}

ClientAnswer AccountServiceTest::call(const std::string& operation, const Json::Value& body,
                                      const std::string& headers) const
{
    return callIdentity(port(), operation, body, headers);
}

ClientAnswer AccountServiceTest::signIn(const std::string& name, const std::string& word) const
{
    return call("InitiateAuth", passwordSignIn(name, word));
}

void AccountServiceTest::makeAccount(const std::string& name, const std::string& word) const
{
    EXPECT_EQ(call("SignUp", userBody(name, word)).status, 200);
    EXPECT_EQ(call("ConfirmSignUp", userBody(name, {}, newestCode())).body, "{}");
}

} // namespace VX::Test
