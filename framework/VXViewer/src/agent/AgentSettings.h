#pragma once

#include <VXViewer/ViewerSettingsPlugin.h>

#include <string>

namespace VX
{

/// The setting of the folders that agents may use.
/// @threads the UI thread
class AgentSettings final : public ViewerSettingsPlugin::ExternalSettings
{
public:
    const char* getName() override;
    void draw(float scale) override;
    void reset() override;

private:
    void add_();

    std::string text_;
    std::string error_;
};

} // namespace VX
