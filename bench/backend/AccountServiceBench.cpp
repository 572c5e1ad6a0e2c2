// What many sign-ins and token refreshes at once take, over HTTP on loopback, and what a password's hash alone does.

#include <VXMesh/Json.h>

#include <benchmark/benchmark.h>
#include <curl/curl.h>

#include <backend/Service.h>
#include <backend/accounts/UserCommand.h>
#include <sodium.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace
{

constexpr std::string_view password = "passw0rd!";
constexpr const char* signInBody =
    R"({"AuthFlow": "USER_PASSWORD_AUTH",
        "AuthParameters": {"USERNAME": "ann@example.com", "PASSWORD": "passw0rd!"}})";

std::size_t append(const char* data, std::size_t size, std::size_t count, void* text)
{
    static_cast<std::string*>(text)->append(data, size * count);
    return size * count;
}

// One connection of a client.
class Client
{
public:
    explicit Client(std::uint16_t port)
        : curl_(curl_easy_init(), curl_easy_cleanup)
        , headers_(curl_slist_append(nullptr, "x-amz-target: AWSCognitoIdentityProviderService.InitiateAuth"),
                   curl_slist_free_all)
    {
        curl_easy_setopt(curl_.get(), CURLOPT_URL, ("http://127.0.0.1:" + std::to_string(port) + "/auth").c_str());
        curl_easy_setopt(curl_.get(), CURLOPT_HTTPHEADER, headers_.get());
        curl_easy_setopt(curl_.get(), CURLOPT_WRITEFUNCTION, append);
    }

    // The answer's body; empty where it is no success.
    std::string initiateAuth(const std::string& body)
    {
        std::string answer;
        curl_easy_setopt(curl_.get(), CURLOPT_POSTFIELDS, body.c_str());
        curl_easy_setopt(curl_.get(), CURLOPT_WRITEDATA, &answer);
        long status = 0;
        if (curl_easy_perform(curl_.get()) == CURLE_OK)
            curl_easy_getinfo(curl_.get(), CURLINFO_RESPONSE_CODE, &status);
        return status == 200 ? answer : std::string();
    }

private:
    std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> curl_;
    std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> headers_;
};

// A service with one account, in a folder of its own.
class AccountService
{
public:
    AccountService()
        : folder_(std::filesystem::temp_directory_path() / ("accountServiceBench" + std::to_string(::getpid())))
    {
        VX::CommandArguments user;
        user.command = VX::CommandArguments::Command::UserAdd;
        user.dataFolder = folder_;
        user.address = "ann@example.com";
        VX::runUserCommand(user, [] { return std::string(password); }).value();
        service_ = VX::Service::start(VX::defaultServerConfig(), folder_, {}).value();
    }

    ~AccountService()
    {
        service_.reset();
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    AccountService(const AccountService&) = delete;
    AccountService& operator=(const AccountService&) = delete;

    [[nodiscard]] std::uint16_t port() const { return service_->port(); }

private:
    std::filesystem::path folder_;
    std::unique_ptr<VX::Service> service_;
};

// Sends `body` so many times over so many connections.
void sendMany(benchmark::State& state, const AccountService& service, const std::string& body)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    std::vector<double> milliseconds(count);
    std::atomic<std::size_t> next = 0;
    std::atomic<std::size_t> failed = 0;
    const auto work = [&]
    {
        Client client(service.port());
        for (std::size_t i = next++; i < count; i = next++)
        {
            const auto started = std::chrono::steady_clock::now();
            failed += client.initiateAuth(body).empty() ? 1 : 0;
            milliseconds[i] =
                std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - started).count();
        }
    };
    for (auto _ : state)
    {
        std::vector<std::thread> clients;
        for (std::int64_t i = 0; i < state.range(1); ++i)
            clients.emplace_back(work);
        for (auto& client : clients)
            client.join();
    }
    if (failed > 0)
        state.SkipWithError((std::to_string(failed) + " requests failed").c_str());
    std::ranges::sort(milliseconds);
    state.counters["median_ms"] = milliseconds[count / 2];
    state.counters["p95_ms"] = milliseconds[count * 95 / 100];
    state.counters["max_ms"] = milliseconds.back();
    state.SetItemsProcessed(state.range(0));
}

void signIns(benchmark::State& state)
{
    const AccountService service;
    sendMany(state, service, signInBody);
}

void tokenRefreshes(benchmark::State& state)
{
    const AccountService service;
    const auto signedIn = VX::deserializeJsonValue(Client(service.port()).initiateAuth(signInBody)).value();
    sendMany(state, service,
             R"({"AuthFlow": "REFRESH_TOKEN_AUTH", "AuthParameters": {"REFRESH_TOKEN": ")" +
                 signedIn["AuthenticationResult"]["RefreshToken"].asString() + "\"}}");
}

// At the limits that the service uses.
void argon2id(benchmark::State& state)
{
    std::array<char, crypto_pwhash_STRBYTES> hash{};
    for (auto _ : state)
        if (sodium_init() < 0 ||
            crypto_pwhash_str(hash.data(), password.data(), password.size(), crypto_pwhash_OPSLIMIT_INTERACTIVE,
                              crypto_pwhash_MEMLIMIT_INTERACTIVE) != 0)
            state.SkipWithError("out of memory");
}

// Two at a time, as the service has it, share the memory.
BENCHMARK(argon2id)->Threads(1)->Threads(2)->UseRealTime()->Unit(benchmark::kMillisecond);
// How many, and how many at a time.
BENCHMARK(signIns)->Args({200, 8})->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(tokenRefreshes)->Args({1000, 32})->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace
