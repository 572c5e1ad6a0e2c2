#pragma once

#include <memory>
#include <string>

namespace Json
{
class Value;
}

namespace VX
{

/// Asks the service once for the latest version, unless the user does not want that, and tells of a newer one than the
/// running program's. What goes wrong with that is silent.
/// @threads the UI thread
class VersionWindow
{
public:
    /// Asks, if that has not been done, and draws the window while there is something to tell. To be called within a
    /// frame.
    /// @param mayShow  false: draws nothing in this frame
    void draw(bool mayShow);

private:
    void request_();
    static void take_(const Json::Value& answer, std::string& shown);
    void drawWindow_();
    void drawContent_();

    bool versionRequested = false;
    /// The newer version, until the user closes the window. An answer that comes after the window is gone finds it gone
    /// too.
    std::shared_ptr<std::string> newVersion = std::make_shared<std::string>();
};

} // namespace VX
