#pragma once

#include <VXMesh/Export.h>

#include <tl/expected.hpp>

#include <filesystem>
#include <string>
#include <string_view>

namespace VX
{

/// Readable and writable for its owner alone.
inline constexpr std::filesystem::perms privateFileMode =
    std::filesystem::perms::owner_read | std::filesystem::perms::owner_write;

/// What a file gets that the user saves: readable and writable for everybody, less what the user's mask takes away.
inline constexpr std::filesystem::perms documentFileMode =
    privateFileMode | std::filesystem::perms::group_read | std::filesystem::perms::group_write |
    std::filesystem::perms::others_read | std::filesystem::perms::others_write;

/// A file that takes its final name only when it is complete: it is written under a temporary name in the same folder
/// and renamed then. Until `commit` an old file of the final name stays as it is; without `commit` nothing remains.
/// A symbolic link at the final name is replaced, never followed; a device, pipe or socket there stays, and nothing is
/// written.
class VXMESH_API AtomicFile
{
public:
    /// Whether `commit` waits until the bytes are on the disk.
    enum class Flush
    {
        No,
        Yes
    };

    /// What `commit` does where something has the final name already.
    enum class Existing
    {
        Replace,
        Keep ///< fails with the system's "file exists", however late it came there
    };

    /// Creates the empty temporary file beside `target`.
    /// @param mode  of the file, less the bits of the process's mask; its owner may write
    /// @return `Cannot write "NAME": REASON.`
    /// @threads any
    [[nodiscard]] static tl::expected<AtomicFile, std::string> create(const std::filesystem::path& target,
                                                                      std::filesystem::perms mode = documentFileMode,
                                                                      Existing existing = Existing::Replace);

    AtomicFile(AtomicFile&& other) noexcept;
    AtomicFile& operator=(AtomicFile&& other) noexcept;
    ~AtomicFile();

    /// Where to write to.
    [[nodiscard]] const std::filesystem::path& temporaryPath() const { return temporaryPath_; }

    /// Gives the file its final name; every stream on it must be closed before.
    /// @return `Cannot write "NAME": REASON.`; the temporary file is gone then
    [[nodiscard]] tl::expected<void, std::string> commit(Flush flush = Flush::Yes);

private:
    AtomicFile(std::filesystem::path target, std::filesystem::path temporaryPath, Existing existing);
    void discard_() noexcept;

    std::filesystem::path target_;
    std::filesystem::path temporaryPath_; ///< empty once renamed
    Existing existing_;
};

/// Puts `bytes` into `path` so that at any moment, also after a crash, it holds either the old content or the new one.
/// The folder must exist.
/// @return `Cannot write "NAME": REASON.`
/// @threads any
[[nodiscard]] VXMESH_API tl::expected<void, std::string>
writeFileAtomically(const std::filesystem::path& path, std::string_view bytes,
                    std::filesystem::perms mode = privateFileMode);

} // namespace VX
