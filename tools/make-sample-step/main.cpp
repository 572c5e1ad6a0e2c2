// Makes samples/bearing-block.step: an assembly with shared instances, nested, with names and colours of parts, of
// faces and of one instance.

#include "Parts.h"

#include <Interface_Static.hxx>
#include <Quantity_Color.hxx>
#include <STEPCAFControl_Writer.hxx>
#include <TDataStd_Name.hxx>
#include <TDocStd_Document.hxx>
#include <TopLoc_Location.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <gp_Ax1.hxx>
#include <gp_Trsf.hxx>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <numbers>
#include <regex>
#include <sstream>
#include <string>

namespace
{

struct Rgb
{
    int r;
    int g;
    int b;
};

constexpr Rgb paint{72, 122, 168};
constexpr Rgb bright{206, 210, 214};
constexpr Rgb steel{168, 173, 178};
constexpr Rgb ringSteel{190, 192, 196};
constexpr Rgb chrome{226, 229, 232};
constexpr Rgb blackOxide{64, 66, 70};
constexpr Rgb zinc{214, 200, 150};
constexpr Rgb marked{214, 62, 48};

Quantity_Color toColor(const Rgb& rgb)
{
    return {rgb.r / 255.0, rgb.g / 255.0, rgb.b / 255.0, Quantity_TOC_sRGB};
}

gp_Trsf moved(double x, double y, double z)
{
    gp_Trsf move;
    move.SetTranslation(gp_Vec(x, y, z));
    return move;
}

/// The document that the writer takes.
class Assembly
{
public:
    Assembly()
        : document_(new TDocStd_Document("XmlXCAF"))
        , shapes_(XCAFDoc_DocumentTool::ShapeTool(document_->Main()))
        , colors_(XCAFDoc_DocumentTool::ColorTool(document_->Main()))
    {
    }

    TDF_Label addPart(const char* name, const Sample::Part& part, const Rgb& color)
    {
        const TDF_Label label = shapes_->AddShape(part.shape, Standard_False);
        TDataStd_Name::Set(label, name);
        colors_->SetColor(label, toColor(color), XCAFDoc_ColorSurf);
        for (const TopoDS_Face& face : part.brightFaces)
            colors_->SetColor(shapes_->AddSubShape(label, face), toColor(bright), XCAFDoc_ColorSurf);
        return label;
    }

    TDF_Label addAssembly(const char* name)
    {
        const TDF_Label label = shapes_->NewShape();
        TDataStd_Name::Set(label, name);
        return label;
    }

    void place(const TDF_Label& parent, const TDF_Label& part, const std::string& name, const gp_Trsf& where,
               const Rgb* color = nullptr)
    {
        const TDF_Label label = shapes_->AddComponent(parent, part, TopLoc_Location(where));
        TDataStd_Name::Set(label, name.c_str());
        if (color)
            colors_->SetColor(label, toColor(*color), XCAFDoc_ColorSurf);
    }

    bool write(const std::filesystem::path& path)
    {
        shapes_->UpdateAssemblies();
        STEPCAFControl_Writer writer;
        Interface_Static::SetIVal("write.surfacecurve.mode", 0);
        Interface_Static::SetCVal("write.step.product.name", "Bearing block");
        return writer.Transfer(document_) && writer.Write(path.c_str()) == IFSelect_RetDone;
    }

private:
    Handle(TDocStd_Document) document_;
    Handle(XCAFDoc_ShapeTool) shapes_;
    Handle(XCAFDoc_ColorTool) colors_;
};

void addBearing(Assembly& assembly, const TDF_Label& top)
{
    const TDF_Label bearing = assembly.addAssembly("Ball bearing");
    const TDF_Label inner = assembly.addPart("Inner ring", Sample::makeRace(Sample::shaftRadius, 14.6), ringSteel);
    const TDF_Label outer = assembly.addPart("Outer ring", Sample::makeRace(18.4, Sample::boreRadius), ringSteel);
    const TDF_Label ball = assembly.addPart("Ball", Sample::makeBall(), chrome);
    assembly.place(bearing, inner, "Inner ring", gp_Trsf());
    assembly.place(bearing, outer, "Outer ring", gp_Trsf());
    for (int index = 0; index < Sample::ballCount; ++index)
    {
        const double angle = 2 * std::numbers::pi * index / Sample::ballCount;
        assembly.place(bearing, ball, "Ball " + std::to_string(index + 1),
                       moved(Sample::ballCircle * std::sin(angle), 0, Sample::ballCircle * std::cos(angle)));
    }
    assembly.place(top, bearing, "Ball bearing", moved(0, 0, Sample::boreHeight));
}

void addBolts(Assembly& assembly, const TDF_Label& top)
{
    const TDF_Label fastener = assembly.addAssembly("Bolt with washer");
    assembly.place(fastener, assembly.addPart("Hexagon bolt M8", Sample::makeBolt(), blackOxide), "Bolt",
                   moved(0, 0, Sample::washerHeight));
    assembly.place(fastener, assembly.addPart("Washer M8", Sample::makeWasher(), zinc), "Washer", gp_Trsf());
    int number = 0;
    for (const double x : {-Sample::boltX, Sample::boltX})
        for (const double y : {-Sample::boltY, Sample::boltY})
            assembly.place(top, fastener, "Bolt " + std::to_string(++number), moved(x, y, Sample::flangeHeight - 1));
}

/// The writer puts the time of day and its own build into the header; the sample is to be the same each time.
bool settleHeader(const std::filesystem::path& path)
{
    std::stringstream text;
    text << std::ifstream(path).rdbuf();
    const std::regex name("FILE_NAME\\([^;]*;");
    const std::string settled = std::regex_replace(
        text.str(), name, "FILE_NAME('bearing-block.step','2025-01-01T00:00:00',('Quorvix'),('Quorvix'),'','','');");
    std::ofstream out(path);
    out << settled;
    return out.good();
}

bool makeSample(const std::filesystem::path& path)
{
    Assembly assembly;
    const TDF_Label top = assembly.addAssembly("Bearing block");
    assembly.place(top, assembly.addPart("Block", Sample::makeBlock(), paint), "Block", gp_Trsf());
    addBearing(assembly, top);
    const TDF_Label shaft = assembly.addPart("Shaft", Sample::makeShaft(), steel);
    assembly.place(top, shaft, "Shaft", moved(0, 0, Sample::boreHeight));
    addBolts(assembly, top);
    const TDF_Label ring =
        assembly.addPart("Retaining ring", Sample::makeRing(Sample::shaftRadius, 14, 1.5), blackOxide);
    assembly.place(top, ring, "Retaining ring front", moved(0, -9.5, Sample::boreHeight));
    assembly.place(top, ring, "Retaining ring back", moved(0, 9.5, Sample::boreHeight), &marked);
    return assembly.write(path) && settleHeader(path);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2)
    {
        std::fputs("usage: make-sample-step FILE.step\n", stderr);
        return 2;
    }
    try
    {
        std::cout.rdbuf(nullptr);
        if (makeSample(argv[1]))
            return 0;
        std::fprintf(stderr, "%s cannot be written.\n", argv[1]);
    }
    catch (...) // The library's failures are no std::exception.
    {
        std::fprintf(stderr, "%s cannot be made.\n", argv[1]);
    }
    return 1;
}
