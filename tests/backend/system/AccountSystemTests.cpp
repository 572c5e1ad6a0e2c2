#include "BackendProcess.h"
#include "tests/backend/accounts/support/AccountTestSupport.h"
#include "tests/support/StartThreads.h"
#include "tests/support/TempDir.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <backend/SigningSecret.h>
#include <backend/accounts/AccountStore.h>
#include <backend/accounts/PasswordHash.h>

#include <atomic>
#include <fstream>
#include <mutex>
#include <random>
#include <set>
#include <thread>

namespace VX::Test
{

namespace
{

using namespace std::chrono_literals;
using ::testing::Each;

constexpr const char* password = "passw0rd!";

class AccountSystemTest : public ::testing::Test
{
public:
    [[nodiscard]] std::unique_ptr<BackendProcess> start() const
    {
        return std::make_unique<BackendProcess>(data, log, std::vector<std::string>{});
    }

    /// The accounts as they are stored, whether a service runs or not.
    [[nodiscard]] std::unique_ptr<AccountStore> store() const
    {
        const AccountSecrets secrets(loadOrCreateSecret(data / "link-key").value());
        return AccountStore::open(data / "accounts.sqlite", secrets).value();
    }

    /// The code in the newest message to this address; empty where there is none.
    [[nodiscard]] std::string codeFor(const std::string& address) const
    {
        std::set<std::filesystem::path, std::greater<>> mails;
        for (const auto& entry : std::filesystem::directory_iterator(data / "outbox"))
            if (entry.path().extension() == ".eml")
                mails.insert(entry.path());
        for (const auto& mail : mails)
            if (const std::string text = readFile(mail); text.find("<" + address + ">") != std::string::npos)
                return codeIn(text);
        return {};
    }

    TempDir folder;
    const std::filesystem::path data = folder.path() / "data";
    const std::filesystem::path log = folder.path() / "log";
};

TEST_F(AccountSystemTest, managesUsersFromTheCommandLine)
{
    const auto passwordFile = folder.write("password", std::string(password) + "\n");
    const std::vector<std::string> atData{"--data", data.string()};
    const auto run = [&](std::vector<std::string> words)
    {
        words.insert(words.end(), atData.begin(), atData.end());
        std::filesystem::remove(log);
        return runBackend(words, log, passwordFile);
    };
    EXPECT_EQ(run({"user", "add", "ann@example.com", "--password-stdin"}), 0);
    EXPECT_EQ(run({"user", "list"}), 0);
    EXPECT_EQ(readFile(log), "ann@example.com\n");
    EXPECT_EQ(run({"user", "add", "ann@example.com", "--password-stdin"}), 1);
    EXPECT_EQ(readFile(log), "There is an account with this address already.\n");
    {
        const auto backend = start();
        EXPECT_EQ(callIdentity(backend->port(), "InitiateAuth", passwordSignIn("ann@example.com", password)).status,
                  200);
    }
    EXPECT_EQ(run({"user", "reset", "ann@example.com", "--password-stdin"}), 0);
    EXPECT_EQ(run({"user", "remove", "ann@example.com"}), 0);
    EXPECT_EQ(run({"user", "list"}), 0);
    EXPECT_EQ(readFile(log), "");
    EXPECT_EQ(run({"user", "rename"}), 2);
}

TEST_F(AccountSystemTest, printsStatistics)
{
    const auto backend = start();
    const Client client(backend->port());
    const auto session =
        client.send("POST", "/stats/log", R"({"type":"createSession","email":"a@b.c"})").json()["sessionId"].asInt64();
    ASSERT_EQ(client
                  .send("POST", "/stats/log",
                        fmt::format(R"({{"type":"logAction","sessionId":{},"email":"","actionNames":)"
                                    R"([{{"name":"Sign In","ts":1738314902123}}]}})",
                                    session))
                  .status,
              200);
    const auto output = folder.path() / "table";
    EXPECT_EQ(runBackend({"stats", "--data", data.string()}, output), 0);
    EXPECT_EQ(readFile(output), "Day         Action   Version  Count\n2025-01-31  Sign In               1\n");
}

TEST_F(AccountSystemTest, keepsItsSecretsPrivate)
{
    const auto backend = start();
    ASSERT_EQ(callIdentity(backend->port(), "SignUp", userBody("ann@example.com", password)).status, 200);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(data))
        EXPECT_EQ(entry.status().permissions() & ~std::filesystem::perms::owner_all, std::filesystem::perms::none)
            << entry.path();
    EXPECT_EQ(readFile(log).find("ann@"), std::string::npos);
}

TEST_F(AccountSystemTest, sharesAccountsWithAnotherProcess)
{
    const auto first = start();
    const auto second = start();
    ASSERT_EQ(callIdentity(first->port(), "SignUp", userBody("ann@example.com", password)).status, 200);
    ASSERT_EQ(callIdentity(second->port(), "ConfirmSignUp", userBody("ann@example.com", {}, codeFor("ann@example.com")))
                  .status,
              200);
    const Json::Value result =
        callIdentity(first->port(), "InitiateAuth", passwordSignIn("ann@example.com", password)).json();
    EXPECT_EQ(callIdentity(second->port(), "InitiateAuth",
                           tokenSignIn(result["AuthenticationResult"]["RefreshToken"].asString()))
                  .status,
              200);
}

/// Runs `call` this many times, so many at a time. @return the statuses of the answers
std::vector<int> atOnce(std::size_t count, std::size_t threads, const std::function<int()>& call)
{
    std::vector<int> statuses(count);
    std::atomic<std::size_t> next = 0;
    startThreads(threads,
                 [&](int)
                 {
                     for (std::size_t n = next++; n < count; n = next++)
                         statuses[n] = call();
                 })
        .clear();
    return statuses;
}

TEST_F(AccountSystemTest, servesManyAtOnce)
{
    const auto passwordFile = folder.write("password", std::string(password) + "\n");
    ASSERT_EQ(
        runBackend({"user", "add", "ann@example.com", "--password-stdin", "--data", data.string()}, log, passwordFile),
        0);
    const auto backend = start();
    const Json::Value signIn = passwordSignIn("ann@example.com", password);
    const std::string token =
        callIdentity(backend->port(), "InitiateAuth", signIn).json()["AuthenticationResult"]["RefreshToken"].asString();
    const auto started = std::chrono::steady_clock::now();
    EXPECT_THAT(atOnce(200, 8, [&] { return callIdentity(backend->port(), "InitiateAuth", signIn).status; }),
                Each(200));
    const auto signedIn = std::chrono::steady_clock::now();
    EXPECT_THAT(
        atOnce(1000, 32, [&] { return callIdentity(backend->port(), "InitiateAuth", tokenSignIn(token)).status; }),
        Each(200));
    const auto refreshed = std::chrono::steady_clock::now();
    RecordProperty("signInMilliseconds", static_cast<int>((signedIn - started) / 1ms));
    RecordProperty("refreshMilliseconds", static_cast<int>((refreshed - signedIn) / 1ms));
}

/// Goes through the life of one account after another, and notes what the service has answered.
class AccountClient
{
public:
    AccountClient(const AccountSystemTest& test, std::string name)
        : test_(test)
        , name_(std::move(name))
    {
    }

    /// Goes on until the service is gone.
    void run(std::uint16_t port)
    {
        while (step_(port))
            continue;
        // What was not answered may have been done or not. A sign-in can be done again; otherwise a new account is
        // next.
        if (stage_ != Stage::SignIn && stage_ != Stage::Refresh)
            stage_ = Stage::SignUp;
    }

    std::set<std::string> signedUp;
    std::set<std::string> confirmed;
    std::set<std::string> reset;
    std::set<std::string> accessTokens;
    static inline std::atomic<std::size_t> answers = 0; ///< of all clients

private:
    enum class Stage
    {
        SignUp,
        Confirm,
        SignIn,
        Refresh,
        Forgot,
        Reset
    };

    /// @return false where no answer came
    bool step_(std::uint16_t port)
    {
        switch (stage_)
        {
        case Stage::SignUp:
            address_ = fmt::format("{}.{}@example.com", name_, ++count_);
            return done_(callIdentity(port, "SignUp", userBody(address_, password)), signedUp, Stage::Confirm);
        case Stage::Confirm:
            return done_(callIdentity(port, "ConfirmSignUp", userBody(address_, {}, test_.codeFor(address_))),
                         confirmed, Stage::SignIn);
        case Stage::SignIn:
            return authenticated_(callIdentity(port, "InitiateAuth", passwordSignIn(address_, password)),
                                  Stage::Refresh);
        case Stage::Refresh:
            return authenticated_(callIdentity(port, "InitiateAuth", tokenSignIn(refreshToken_)),
                                  ++refreshes_ % 16 == 0 ? Stage::Forgot : Stage::Refresh);
        case Stage::Forgot:
        {
            std::set<std::string> unused;
            return done_(callIdentity(port, "ForgotPassword", userBody(address_)), unused, Stage::Reset);
        }
        case Stage::Reset:
            // From here on the tokens of this account are revoked, even where no answer comes.
            for (const std::string& token : tokensOfAccount_)
                accessTokens.erase(token);
            tokensOfAccount_.clear();
            return done_(callIdentity(port, "ConfirmForgotPassword",
                                      userBody(address_, "an0ther-word", test_.codeFor(address_))),
                         reset, Stage::SignUp);
        }
        return false;
    }

    bool done_(const ClientAnswer& answer, std::set<std::string>& noted, Stage next)
    {
        if (answer.status == 0)
            return false;
        ++answers;
        EXPECT_EQ(answer.status, 200) << answer.body;
        noted.insert(address_);
        stage_ = next;
        return true;
    }

    bool authenticated_(const ClientAnswer& answer, Stage next)
    {
        if (answer.status == 0)
            return false;
        ++answers;
        EXPECT_EQ(answer.status, 200) << answer.body;
        const Json::Value result = answer.json()["AuthenticationResult"];
        if (stage_ == Stage::SignIn)
        {
            tokensOfAccount_.clear();
            refreshToken_ = result["RefreshToken"].asString();
        }
        accessTokens.insert(result["AccessToken"].asString());
        tokensOfAccount_.push_back(result["AccessToken"].asString());
        stage_ = next;
        return true;
    }

    const AccountSystemTest& test_;
    const std::string name_;
    Stage stage_ = Stage::SignUp;
    int count_ = 0;
    int refreshes_ = 0;
    std::string address_;
    std::string refreshToken_;
    std::vector<std::string> tokensOfAccount_;
};

TEST_F(AccountSystemTest, losesNothingThatItAnsweredWhenItIsKilled)
{
    constexpr int kills = 200;
    AccountClient clients[] = {{*this, "ann"}, {*this, "bob"}, {*this, "eve"}};
    std::minstd_rand random;
    for (int i = 0; i < kills; ++i)
    {
        const auto backend = start();
        auto threads = startThreads(std::size(clients), [&](std::size_t c) { clients[c].run(backend->port()); });
        // A moment of its work, however fast the machine is: some answers on, and somewhere within an operation.
        const std::size_t answers = AccountClient::answers + 1 + random() % 8;
        EXPECT_TRUE(waitUntil([&] { return AccountClient::answers >= answers; }));
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 20'000));
        backend->killNow();
        threads.clear();
    }

    const auto stored = store();
    std::size_t operations = 0;
    for (const auto& client : clients)
    {
        for (const std::string& address : client.signedUp)
            EXPECT_TRUE(stored->find(address).value()) << address;
        for (const std::string& address : client.confirmed)
            EXPECT_TRUE(stored->find(address).value()->isConfirmed) << address;
        for (const std::string& address : client.reset)
            EXPECT_TRUE(isPasswordOf(stored->find(address).value()->passwordHash, "an0ther-word")) << address;
        for (const std::string& token : client.accessTokens)
            EXPECT_TRUE(stored->ownerOf(token).value());
        operations +=
            client.signedUp.size() + client.confirmed.size() + client.reset.size() + client.accessTokens.size();
    }
    EXPECT_GT(operations, 200U);
    RecordProperty("operations", static_cast<int>(operations));
}

} // namespace

} // namespace VX::Test
