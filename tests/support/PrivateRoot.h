#pragma once

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

/// Makes `folder` a file system of its own that holds no more than `bytes`, or cannot be written to, for this private
/// root alone. @return false where the system does not allow it, as without a private root
bool mountSmall(const std::filesystem::path& folder, std::size_t bytes);
bool makeReadOnly(const std::filesystem::path& folder);

} // namespace VX::Test
