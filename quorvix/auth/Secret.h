#pragma once

#include <VXMesh/Secret.h>

#include <json/value.h>

namespace VX
{

/// Overwrites the letters of every text in `value` with zeros.
/// @threads any one at a time
inline void wipe(Json::Value& value)
{
    for (Json::Value& member : value)
        wipe(member);
    const char* begin = nullptr;
    const char* end = nullptr;
    if (!value.isString() || !value.getString(&begin, &end))
        return;
    // The letters belong to the value, which gives them out to be read only.
    for (volatile char* letter = const_cast<char*>(begin); letter != end; ++letter)
        *letter = 0;
}

} // namespace VX
