#pragma once

#if defined(_WIN32)
#if defined(VXMESH_BUILD)
#define VXMESH_API __declspec(dllexport)
#else
#define VXMESH_API __declspec(dllimport)
#endif
#else
#define VXMESH_API __attribute__((visibility("default")))
#endif
