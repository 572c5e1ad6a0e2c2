#include <quorvix/auth/AuthToken.h>
#include <quorvix/auth/Cognito.h>
#include <quorvix/auth/WebAuth.h>
#include <quorvix/setup/Deployment.h>
#include <quorvix/setup/Version.h>

#include <VXInterprocess/SharedMemory.h>
#include <VXMesh/Config.h>
#include <VXMesh/SystemInfo.h>
#include <VXViewer/OpenLink.h>

#include <boost/url/parse.hpp>
#include <boost/url/url.hpp>
#include <boost/url/url_view.hpp>
#include <fmt/format.h>

#include <string_view>
#include <thread>

namespace VX
{

namespace
{

constexpr unsigned channelNumber = 1;

std::string& defaultName()
{
    static std::string name;
    return name;
}

void openPage(std::string_view page)
{
    boost::urls::url url(deployment().webApp);
    url.set_path(page);
    url.params().set("source", "native-application");
    url.params().set("platform", getOSNoSpaces());
    url.params().set("version", versionNoSpaces(true));
    OpenLink(std::string(url.buffer()));
}

/// The first value of `key`, decoded, a "+" being a plus sign; empty where there is none.
std::string parameterOf(const boost::urls::url_view& url, std::string_view key)
{
    // Boost.URL 1.81 sees two parameters in the empty query of "?#", and reads beyond the link for the second.
    if (url.encoded_query().empty())
        return {};
    boost::urls::encoding_opts options;
    options.space_as_plus = false;
    const auto parameters = url.params(options);
    const auto found = parameters.find(key);
    return found == parameters.end() ? std::string() : std::string((*found).value);
}

class WebAuth : public WebAuthInterface
{
public:
    WebAuth(const std::string& name, const std::function<void()>& onNotified)
        : impl_(std::make_unique<Impl>(name, onNotified))
    {
    }

    void openSignIn() override { openPage("sign-in"); }

    void openSignUp() override { openPage("sign-up"); }

    void openForgotPassword() override { openPage("forgot-password"); }

    void notifyAboutSignOut() override
    {
        impl_->channel.notify([] {});
    }

private:
    struct Impl
    {
        Impl(const std::string& name, const std::function<void()>& onNotified)
            : channel(name, true)
            , listener([this, onNotified] { channel.wait(onNotified); })
        {
        }

        ~Impl()
        {
            channel.stop();
            listener.join();
        }

        Impl(const Impl&) = delete;
        Impl& operator=(const Impl&) = delete;

        SharedMemory channel;
        std::thread listener;
    };

    std::unique_ptr<Impl> impl_;
};

} // namespace

WebAuthInterface::~WebAuthInterface() = default;

std::unique_ptr<WebAuthInterface> makeDefaultWebAuth(const std::function<void()>& onNotified)
{
    return std::make_unique<WebAuth>(getDefaultSharedMemoryName(), onNotified);
}

void setDefaultSharedMemoryNamePrefix(const std::string& prefix)
{
    defaultName() = fmt::format("{}_{}", prefix, channelNumber);
}

const std::string& getDefaultSharedMemoryName()
{
    return defaultName();
}

bool processDeepLinkAuth(int argc, char** argv, const std::string& sharedMemoryName, const std::string& appName)
{
    std::string url;
    bool marked = false;
    for (int i = 1; i < argc; ++i)
    {
        const std::string_view argument = argv[i];
        const bool marks = argument == "-url";
        if (marked && !marks)
            url = argument;
        marked = marks;
    }
    if (url.empty())
        return false;
    notifyWebAuth(sharedMemoryName, url, appName);
    return true;
}

void notifyWebAuth(const std::string& sharedMemoryName, const std::string& url, const std::string& appName)
{
    SharedMemory channel(sharedMemoryName, false);
    channel.notify(
        [&]
        {
            const boost::urls::url_view link = boost::urls::parse_uri_reference(url).value();
            const std::string email = parameterOf(link, "email");
            const std::string token = parameterOf(link, "refresh-token");
            Config::instance().reset(appName);
            saveAuthToken({email, token, Cognito::getEndpoint(email)});
        });
}

} // namespace VX
