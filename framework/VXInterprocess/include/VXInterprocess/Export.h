#pragma once

#if defined(_WIN32)
#if defined(VXINTERPROCESS_BUILD)
#define VXINTERPROCESS_API __declspec(dllexport)
#else
#define VXINTERPROCESS_API __declspec(dllimport)
#endif
#else
#define VXINTERPROCESS_API __attribute__((visibility("default")))
#endif
