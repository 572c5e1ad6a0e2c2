#include "FontFile.h"

#include <VXMesh/StringConvert.h>

#include <ft2build.h>
#include FT_FREETYPE_H

namespace VX
{

bool isFontFile(const std::filesystem::path& path)
{
    FT_Library library = nullptr;
    if (FT_Init_FreeType(&library) != FT_Err_Ok)
        return false;
    FT_Face face = nullptr;
    const bool opened = FT_New_Face(library, utf8string(path).c_str(), 0, &face) == FT_Err_Ok;
    const bool usable = opened && FT_IS_SCALABLE(face) && FT_Select_Charmap(face, FT_ENCODING_UNICODE) == FT_Err_Ok;
    if (opened)
        FT_Done_Face(face);
    FT_Done_FreeType(library);
    return usable;
}

} // namespace VX
