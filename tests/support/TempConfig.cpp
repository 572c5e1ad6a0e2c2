#include "TempConfig.h"

#include <VXMesh/Config.h>

namespace VX::Test
{

TempConfig::TempConfig(const std::string& applicationName)
    : config_("XDG_CONFIG_HOME", folder_.path() / "config")
    , data_("XDG_DATA_HOME", folder_.path() / "data")
    , state_("XDG_STATE_HOME", folder_.path() / "state")
    , runtime_("XDG_RUNTIME_DIR", folder_.path() / "run")
{
    std::filesystem::create_directory(folder_.path() / "run");
    Config::instance().reset(applicationName);
}

TempConfig::~TempConfig()
{
    // While the variables still point here: settings that wait to be saved are, and nothing is left for the end of the
    // process to save.
    Config::instance().reset("Quorvix");
}

} // namespace VX::Test
