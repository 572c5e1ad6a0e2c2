#include <quorvix/setup/BaseUrl.h>
#include <quorvix/setup/Deployment.h>

#include <VXMesh/FileError.h>
#include <VXMesh/Json.h>
#include <VXMesh/StringConvert.h>
#include <VXMesh/ThreadAnnotations.h>

#include <spdlog/spdlog.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <utility>

namespace VX
{

namespace
{

struct UrlMember
{
    const char* name;
    std::string Deployment::* url;
};

constexpr std::array<UrlMember, 7> urlMembers{{
    {"account", &Deployment::account},
    {"converter", &Deployment::converter},
    {"telemetry", &Deployment::telemetry},
    {"logs", &Deployment::logs},
    {"version", &Deployment::version},
    {"webApp", &Deployment::webApp},
    {"website", &Deployment::website},
}};

constexpr std::array<std::pair<const char*, Deployment::SignIn>, 2> signInTexts{{
    {"inApp", Deployment::SignIn::InApp},
    {"browser", Deployment::SignIn::Browser},
}};

constexpr std::array<std::pair<const char*, Deployment::Services>, 2> servicesTexts{{
    {"embedded", Deployment::Services::Embedded},
    {"none", Deployment::Services::None},
}};

/// Reads one record; every error is a reason that `fileErrorText` puts behind the file's name.
class RecordReader
{
public:
    explicit RecordReader(const std::filesystem::path& file)
        : folder_(file.parent_path())
    {
    }

    [[nodiscard]] tl::expected<Deployment, std::string> read(const Json::Value& record)
    {
        if (!record.isObject())
            return tl::unexpected<std::string>("a deployment is a JSON object.");
        for (const std::string& name : record.getMemberNames())
        {
            auto taken = readMember_(name, record[name]);
            if (!taken)
                return tl::unexpected(std::move(taken.error()));
        }
        for (const UrlMember& member : urlMembers)
        {
            if (deployment_.services == Deployment::Services::None && (deployment_.*member.url).empty())
                return tl::unexpected('"' + std::string(member.name) +
                                      "\" is missing; with \"services\": \"none\" every URL must be given.");
        }
        return std::move(deployment_);
    }

private:
    [[nodiscard]] tl::expected<void, std::string> readMember_(const std::string& name, const Json::Value& value)
    {
        for (const UrlMember& member : urlMembers)
        {
            if (name == member.name)
                return readUrl_(member, value);
        }
        if (name == "signIn")
            return readChoice_(name, value, signInTexts, deployment_.signIn);
        if (name == "services")
            return readChoice_(name, value, servicesTexts, deployment_.services);
        if (name == "caFile")
            return readCaFile_(value);
        return tl::unexpected("it has no member \"" + name + "\".");
    }

    [[nodiscard]] tl::expected<void, std::string> readUrl_(const UrlMember& member, const Json::Value& value)
    {
        auto url = value.isString() ? parseBaseUrl(value.asString()) : tl::unexpected<std::string>("is not a text");
        if (!url)
            return tl::unexpected('"' + std::string(member.name) + "\" " + url.error() + '.');
        deployment_.*member.url = std::move(*url);
        return {};
    }

    template <typename Choice>
    [[nodiscard]] static tl::expected<void, std::string>
    readChoice_(const std::string& name, const Json::Value& value,
                const std::array<std::pair<const char*, Choice>, 2>& choices, Choice& choice)
    {
        for (const auto& [text, meaning] : choices)
        {
            if (value.isString() && value.asString() == text)
            {
                choice = meaning;
                return {};
            }
        }
        return tl::unexpected('"' + name + "\" is neither \"" + choices[0].first + "\" nor \"" + choices[1].first +
                              "\".");
    }

    [[nodiscard]] tl::expected<void, std::string> readCaFile_(const Json::Value& value)
    {
        if (value.isString() && !value.asString().empty())
        {
            std::error_code error;
            auto file = folder_ / pathFromUtf8(value.asString());
            if (std::filesystem::is_regular_file(file, error))
            {
                deployment_.caFile = std::move(file);
                return {};
            }
        }
        return tl::unexpected<std::string>("\"caFile\" names no file that is there.");
    }

    std::filesystem::path folder_;
    Deployment deployment_;
};

[[nodiscard]] tl::expected<Deployment, std::string> readRecord(const std::filesystem::path& file)
{
    const auto record = deserializeJsonValue(file);
    if (!record)
        return tl::unexpected(record.error());
    return RecordReader(file).read(*record).map_error([&file](const std::string& reason)
                                                      { return fileErrorText("use", file, reason); });
}

/// The record of the process; empty until it is fixed.
struct FixedDeployment
{
    Mutex mutex;
    std::unique_ptr<const Deployment> record VX_GUARDED_BY(mutex);
};

FixedDeployment& fixedDeployment()
{
    // Never destroyed: request threads may build a request during the exit.
    static auto* const fixed = new FixedDeployment;
    return *fixed;
}

} // namespace

DeploymentSources deploymentSources(std::optional<std::filesystem::path> argument)
{
    DeploymentSources sources;
    sources.argument = std::move(argument);
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nobody changes the environment
    if (const char* const file = std::getenv("QUORVIX_DEPLOYMENT"); file && *file)
        sources.environment = pathFromUtf8(file);
    sources.system = "/etc/quorvix/deployment.json";
    return sources;
}

tl::expected<Deployment, std::string> loadDeployment(const DeploymentSources& sources)
{
    if (sources.argument)
        return readRecord(*sources.argument);
    if (sources.environment)
        return readRecord(*sources.environment);
    std::error_code error;
    if (std::filesystem::exists(sources.system, error) || error)
        return readRecord(sources.system);
    return Deployment{};
}

Deployment withEmbeddedServices(Deployment deployment, std::uint16_t port)
{
    for (const UrlMember& member : urlMembers)
    {
        std::string& url = deployment.*member.url;
        if (url.empty())
            url = "http://127.0.0.1:" + std::to_string(port);
    }
    return deployment;
}

bool setDeployment(Deployment deployment)
{
    FixedDeployment& fixed = fixedDeployment();
    const MutexLock lock(fixed.mutex);
    if (fixed.record)
        return false;
    fixed.record = std::make_unique<const Deployment>(std::move(deployment));
    return true;
}

const Deployment& deployment()
{
    FixedDeployment& fixed = fixedDeployment();
    {
        const MutexLock lock(fixed.mutex);
        if (fixed.record)
            return *fixed.record;
    }
    auto loaded = loadDeployment(deploymentSources(std::nullopt));
    if (!loaded)
        spdlog::error("The deployment cannot be used: no service is known");
    // Another thread may have been faster: its record counts.
    static_cast<void>(setDeployment(loaded ? std::move(*loaded) : Deployment{}));
    const MutexLock lock(fixed.mutex);
    return *fixed.record;
}

void resetDeployment()
{
    FixedDeployment& fixed = fixedDeployment();
    const MutexLock lock(fixed.mutex);
    fixed.record.reset();
}

} // namespace VX
