#include "dialog/ChildProcess.h"
#include "menu/Translate.h"

#include <VXMesh/StringConvert.h>
#include <VXMesh/ThreadAnnotations.h>
#include <VXViewer/CommandLoop.h>
#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/OpenLink.h>
#include <VXViewer/Viewer.h>

#include <spdlog/spdlog.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace VX
{

namespace
{

class LinkOpener
{
public:
    static LinkOpener& instance()
    {
        static LinkOpener opener;
        return opener;
    }

    void set(std::function<void(const std::string&)> function)
    {
        const MutexLock lock(mutex_);
        function_ = std::move(function);
    }

    [[nodiscard]] std::function<void(const std::string&)> get() const
    {
        const MutexLock lock(mutex_);
        return function_;
    }

private:
    mutable Mutex mutex_;
    std::function<void(const std::string&)> function_ VX_GUARDED_BY(mutex_);
};

bool isAllowed(const std::string& url)
{
    constexpr std::array<std::string_view, 3> schemes{"https://", "http://", "mailto:"};
    const std::string lower = toLower(url);
    const bool known = std::any_of(schemes.begin(), schemes.end(), [&](std::string_view scheme)
                                   { return lower.starts_with(scheme) && lower.size() > scheme.size(); });
    return known && std::none_of(url.begin(), url.end(),
                                 [](char c) { return static_cast<unsigned char>(c) <= ' ' || c == '\x7f'; });
}

/// The user can copy the address from the message.
void tellFailure(const std::string& url)
{
    CommandLoop::appendCommand(
        [url]
        {
            if (const auto& menu = getViewerInstance().getMenuPlugin())
                menu->showModalMessage(tr("The browser cannot be started. Copy this address to open it yourself:") +
                                           "\n" + url,
                                       NotificationType::Error);
        });
}

} // namespace

bool OpenLink(const std::string& url)
{
    if (!isAllowed(url))
    {
        spdlog::warn("A link that is not of the web was not opened.");
        return false;
    }
    if (const auto opener = LinkOpener::instance().get())
    {
        opener(url);
        return true;
    }
    const auto started = startDetached("xdg-open", {url},
                                       [url]
                                       {
                                           spdlog::warn("The browser cannot be started: xdg-open has failed.");
                                           tellFailure(url);
                                       });
    if (!started)
    {
        spdlog::warn("The browser cannot be started (xdg-open): {}", started.error());
        tellFailure(url);
    }
    return started.has_value();
}

void setLinkOpener(std::function<void(const std::string&)> opener)
{
    LinkOpener::instance().set(std::move(opener));
}

} // namespace VX
