#pragma once

#include <VXViewer/Export.h>

#include <boost/signals2/signal.hpp>

#include <filesystem>
#include <vector>

namespace VX
{

/// What the file dialogs tell other parts.
/// @threads the UI thread
class VXVIEWER_API FileDialogSignals
{
public:
    static FileDialogSignals& instance();

    FileDialogSignals(const FileDialogSignals&) = delete;
    FileDialogSignals& operator=(const FileDialogSignals&) = delete;

    /// Files that the user chose a place for in a dialog have been written there.
    boost::signals2::signal<void(const std::vector<std::filesystem::path>&)> onSave;

private:
    FileDialogSignals() = default;
};

} // namespace VX
