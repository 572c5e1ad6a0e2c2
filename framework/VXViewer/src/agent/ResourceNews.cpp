#include "ResourceNews.h"

#include <VXMcp/Server.h>
#include <VXViewer/HistoryStore.h>
#include <VXViewer/MainLoop.h>
#include <VXViewer/Viewer.h>

namespace VX
{

namespace
{

/// What a drag of the mouse changes all the time is told together.
constexpr double interval = 0.25;

} // namespace

ResourceNews::ResourceNews(Viewer& viewer, Mcp::Server& server)
    : viewer_(viewer)
    , server_(server)
    , connection_(
          viewer.getGlobalHistoryStore()->changed.connect([this](const HistoryStore&, HistoryChange) { note_(); }))
{
}

void ResourceNews::note_()
{
    if (!timer_)
        timer_ = viewer_.loop().callEvery(interval, [this] { tell_(); });
}

void ResourceNews::tell_()
{
    timer_.reset();
    for (const char* uri : {"viewer://scene", "viewer://status"})
        server_.resourceChanged(uri);
}

} // namespace VX
