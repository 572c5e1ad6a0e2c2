#pragma once

#include <cstddef>
#include <filesystem>

namespace VX::Test
{

/// Gives the calling thread, and the threads and processes that it starts from then on, a root folder of their own: it
/// shows all that the real one shows, but for `hidden`, and what is created in it directly is gone with the process.
/// Nothing happens a second time. To be called before other threads are started that are to see it.
/// @param hidden      name of an entry of the root folder
/// @param mountPoint  a folder, created where it is missing, that nothing else uses
/// @return false where the system does not allow it
bool enterPrivateRoot(const std::filesystem::path& hidden, const std::filesystem::path& mountPoint);

/// Something about the file systems of this private root that is so until the end of the scope.
class MountScope
{
public:
    /// `folder` is empty and holds no more than `bytes`.
    static MountScope makeSmall(const std::filesystem::path& folder, std::size_t bytes);

    /// Nothing can be written to the file system that is mounted at `folder`.
    static MountScope makeReadOnly(const std::filesystem::path& folder);

    ~MountScope();

    MountScope(const MountScope&) = delete;
    MountScope& operator=(const MountScope&) = delete;

    /// Whether the system allows it; it does not without a private root.
    [[nodiscard]] bool isActive() const { return active_; }

private:
    MountScope(std::filesystem::path folder, bool small, bool active);

    std::filesystem::path folder_;
    bool small_;
    bool active_;
};

} // namespace VX::Test
