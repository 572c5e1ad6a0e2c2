#pragma once

#if defined(_WIN32)
#if defined(VXVIEWER_BUILD)
#define VXVIEWER_API __declspec(dllexport)
#else
#define VXVIEWER_API __declspec(dllimport)
#endif
#else
#define VXVIEWER_API __attribute__((visibility("default")))
#endif
