#pragma once

#if defined(_WIN32)
#if defined(QUORVIX_BUILD)
#define QUORVIX_API __declspec(dllexport)
#else
#define QUORVIX_API __declspec(dllimport)
#endif
#else
#define QUORVIX_API __attribute__((visibility("default")))
#endif
