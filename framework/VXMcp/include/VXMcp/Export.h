#pragma once

#if defined(_WIN32)
#if defined(VXMCP_BUILD)
#define VXMCP_API __declspec(dllexport)
#else
#define VXMCP_API __declspec(dllimport)
#endif
#else
#define VXMCP_API __attribute__((visibility("default")))
#endif
