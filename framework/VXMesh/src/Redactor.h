#pragma once

#include <VXMesh/Export.h>

#include <optional>
#include <string>
#include <string_view>

namespace VX
{

/// Takes secrets out of a line of the log; the second line of defence behind not logging them. "[redacted]" comes in
/// place of
/// - the value of a name that ends in "password", "token", "secret", "authorization", "confirmation code" and their
///   like, in JSON (also in JSON within JSON), headers, queries and "name: value", of whatever letter case and
///   separators; a value without quotes behind a colon reaches to the end of the line;
/// - requests of the identity service, as a whole;
/// - links of the application's own scheme, behind the scheme;
/// - what follows "Bearer", JSON web tokens, and six digits behind the word "code".
/// @return nothing where `text` has no secret
/// @threads any
[[nodiscard]] VXMESH_API std::optional<std::string> redact(std::string_view text);

} // namespace VX
