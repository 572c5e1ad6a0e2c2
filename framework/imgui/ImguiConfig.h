#pragma once

#define IMGUI_API __attribute__((visibility("default")))
#define IMGUI_IMPL_API IMGUI_API

/// Text outside the basic plane and draw lists of more than 65535 vertices.
#define IMGUI_USE_WCHAR32
#define ImDrawIdx unsigned int

#define IMGUI_ENABLE_FREETYPE
#define IMGUI_DISABLE_OBSOLETE_FUNCTIONS
