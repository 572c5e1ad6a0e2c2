#include "StepTextBuilder.h"

#include <fmt/format.h>

namespace VX::Test
{

std::string stepFileText(std::string_view data)
{
    return fmt::format("ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION((''),'2;1');\n"
                       "FILE_NAME('','',(''),(''),'','','');\nFILE_SCHEMA(('AP242'));\nENDSEC;\nDATA;\n{}ENDSEC;\n"
                       "END-ISO-10303-21;\n",
                       data);
}

std::string ref(int number)
{
    return fmt::format("#{}", number);
}

std::string refs(const std::vector<int>& numbers)
{
    std::string list = "(";
    for (const int number : numbers)
        list += (list.size() > 1 ? "," : "") + ref(number);
    return list + ")";
}

int StepTextBuilder::add(const std::string& entity)
{
    data_ += fmt::format("#{}={};\n", ++last_, entity);
    return last_;
}

int StepTextBuilder::context(const std::string& unit)
{
    const std::string prefix = unit == "INCH" ? ".MILLI." : unit.empty() ? "$" : "." + unit + ".";
    int length = add(fmt::format("(LENGTH_UNIT()NAMED_UNIT(*)SI_UNIT({},.METRE.))", prefix));
    if (unit == "INCH")
    {
        const int measure = add(fmt::format("LENGTH_MEASURE_WITH_UNIT(LENGTH_MEASURE(25.4),#{})", length));
        length = add(fmt::format("(CONVERSION_BASED_UNIT('INCH',#{})LENGTH_UNIT()NAMED_UNIT(*))", measure));
    }
    const int angle = add("(NAMED_UNIT(*)PLANE_ANGLE_UNIT()SI_UNIT($,.RADIAN.))");
    return add(fmt::format("(GEOMETRIC_REPRESENTATION_CONTEXT(3)GLOBAL_UNIT_ASSIGNED_CONTEXT((#{},#{}))"
                           "REPRESENTATION_CONTEXT('',''))",
                           angle, length));
}

int StepTextBuilder::placement(std::array<double, 3> origin, bool isTurned)
{
    const int point = add(fmt::format("CARTESIAN_POINT('',({:.6f},{:.6f},{:.6f}))", origin[0], origin[1], origin[2]));
    const int z = add("DIRECTION('',(0.,0.,1.))");
    const int x = add(isTurned ? "DIRECTION('',(0.,1.,0.))" : "DIRECTION('',(1.,0.,0.))");
    return add(fmt::format("AXIS2_PLACEMENT_3D('',#{},#{},#{})", point, z, x));
}

int StepTextBuilder::tetrahedron(const std::string& name, double size)
{
    const int points =
        add(fmt::format("COORDINATES_LIST('',4,((0.,0.,0.),({0:.6f},0.,0.),(0.,{0:.6f},0.),(0.,0.,{0:.6f})))", size));
    faces_.clear();
    for (const char* corners : {"(1,3,2)", "(1,2,4)", "(1,4,3)", "(2,3,4)"})
        faces_.push_back(add(fmt::format("TRIANGULATED_FACE('',#{},4,(),$,(),({}))", points, corners)));
    return add(fmt::format("TESSELLATED_SOLID('{}',{},$)", name, refs(faces_)));
}

int StepTextBuilder::representation(std::initializer_list<int> items, int context, const std::string& type)
{
    return add(fmt::format("{}('',{},#{})", type, refs(items), context));
}

int StepTextBuilder::product(const std::string& name, int representation)
{
    const int product = add(fmt::format("PRODUCT('{0}','{0}','',())", name));
    const int formation = add(fmt::format("PRODUCT_DEFINITION_FORMATION('','',#{})", product));
    const int definition = add(fmt::format("PRODUCT_DEFINITION('design','',#{},$)", formation));
    if (representation != 0)
    {
        const int shape = add(fmt::format("PRODUCT_DEFINITION_SHAPE('','',#{})", definition));
        add(fmt::format("SHAPE_DEFINITION_REPRESENTATION(#{},#{})", shape, representation));
    }
    products_.push_back({definition, representation});
    return definition;
}

int StepTextBuilder::part(const std::string& name, double size)
{
    const int solid = tetrahedron("", size);
    return product(name, representation({solid}, context()));
}

int StepTextBuilder::assembly(const std::string& name, int assemblyContext)
{
    return product(name, representation({}, assemblyContext, "SHAPE_REPRESENTATION"));
}

int StepTextBuilder::useUnplaced(const std::string& name, int assembly, int component)
{
    return add(fmt::format("NEXT_ASSEMBLY_USAGE_OCCURRENCE('1','{}','',#{},#{},$)", name, assembly, component));
}

int StepTextBuilder::use(const std::string& name, int assembly, int component, std::array<double, 3> origin,
                         bool isTurned)
{
    const int from = placement({0, 0, 0});
    const int to = placement(origin, isTurned);
    const int transformation = add(fmt::format("ITEM_DEFINED_TRANSFORMATION('','',#{},#{})", from, to));
    const int relation = add(
        fmt::format("(REPRESENTATION_RELATIONSHIP('','',#{},#{})REPRESENTATION_RELATIONSHIP_WITH_TRANSFORMATION(#{})"
                    "SHAPE_REPRESENTATION_RELATIONSHIP())",
                    representationOf(component), representationOf(assembly), transformation));
    const int usage = useUnplaced(name, assembly, component);
    const int shape = add(fmt::format("PRODUCT_DEFINITION_SHAPE('','',#{})", usage));
    add(fmt::format("CONTEXT_DEPENDENT_SHAPE_REPRESENTATION(#{},#{})", relation, shape));
    return usage;
}

int StepTextBuilder::surfaceStyle(double r, double g, double b)
{
    const int color = add(fmt::format("COLOUR_RGB('',{:.6f},{:.6f},{:.6f})", r, g, b));
    const int fillColor = add(fmt::format("FILL_AREA_STYLE_COLOUR('',#{})", color));
    const int fill = add(fmt::format("FILL_AREA_STYLE('',(#{}))", fillColor));
    const int area = add(fmt::format("SURFACE_STYLE_FILL_AREA(#{})", fill));
    const int side = add(fmt::format("SURFACE_SIDE_STYLE('',(#{}))", area));
    const int usage = add(fmt::format("SURFACE_STYLE_USAGE(.BOTH.,#{})", side));
    return add(fmt::format("PRESENTATION_STYLE_ASSIGNMENT((#{}))", usage));
}

int StepTextBuilder::styledItem(int style, int item)
{
    return add(fmt::format("STYLED_ITEM('',(#{}),#{})", style, item));
}

int StepTextBuilder::representationOf(int product) const
{
    for (const Product& candidate : products_)
        if (candidate.definition == product)
            return candidate.representation;
    return 0;
}

} // namespace VX::Test
