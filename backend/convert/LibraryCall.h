#pragma once

#include <Standard_Failure.hxx>
#include <Standard_OutOfMemory.hxx>

#include <new>

namespace VX
{

/// Calls `function`, in which the geometry library may throw.
/// @return false when it did; a lack of memory goes on as std::bad_alloc
template <typename Function>
bool callLibrary(Function function)
{
    try
    {
        function();
        return true;
    }
    catch (const Standard_OutOfMemory&)
    {
        throw std::bad_alloc();
    }
    catch (const Standard_Failure&)
    {
        return false;
    }
}

} // namespace VX
