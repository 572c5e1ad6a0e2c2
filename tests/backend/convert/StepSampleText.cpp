#include "StepSampleText.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace VX::Test
{

namespace
{

/// Calls `visit` with each character outside comments, and with whether it belongs to a string.
template <typename Visit>
void forEachCharacter(std::string_view text, Visit visit)
{
    bool isInString = false;
    for (std::size_t at = 0; at < text.size(); ++at)
    {
        if (!isInString && text.substr(at, 2) == "/*")
        {
            at = text.find("*/", at) + 1;
            continue;
        }
        const bool isQuote = text[at] == '\'';
        visit(text[at], isInString || isQuote);
        isInString = isInString != isQuote;
    }
}

/// The numbers of the references in `text`, those in strings left out.
std::vector<int> references(std::string_view text)
{
    std::vector<int> found;
    bool isReference = false;
    forEachCharacter(text,
                     [&](char c, bool isInString)
                     {
                         if (isReference && std::isdigit(static_cast<unsigned char>(c)) != 0)
                             found.back() = found.back() * 10 + (c - '0');
                         else if ((isReference = c == '#' && !isInString))
                             found.push_back(0);
                     });
    return found;
}

/// The strings in `text`, without their quotes.
std::vector<std::string> strings(std::string_view text)
{
    std::vector<std::string> found;
    bool wasInString = false;
    forEachCharacter(text,
                     [&](char c, bool isInString)
                     {
                         if (isInString && !wasInString)
                             found.emplace_back();
                         if (isInString && c != '\'')
                             found.back() += c;
                         // "''" stands for one quote, and ends no string.
                         wasInString = isInString;
                     });
    return found;
}

/// The real numbers in `text` outside strings, such as "1.", "-2.5E-3".
std::vector<double> numbers(std::string_view text)
{
    std::string plain;
    forEachCharacter(text, [&](char c, bool isInString) { plain += isInString ? ' ' : c; });
    std::vector<double> found;
    for (const char* at = plain.c_str(); *at != 0;)
    {
        char* end = nullptr;
        const bool isNumber = std::isdigit(static_cast<unsigned char>(*at)) != 0 || *at == '-';
        const double value = isNumber ? std::strtod(at, &end) : 0;
        if (isNumber && end != at)
            found.push_back(value);
        at = isNumber && end != at ? end : at + 1;
    }
    return found;
}

} // namespace

StepSampleText::StepSampleText(std::string_view text)
{
    std::string statement;
    forEachCharacter(text.substr(text.find("DATA;") + 5),
                     [&](char c, bool isInString)
                     {
                         if (c == ';' && !isInString)
                         {
                             const std::size_t equals = statement.find('=');
                             if (statement.starts_with('#') && equals != std::string::npos)
                                 instances_[std::atoi(statement.c_str() + 1)] = statement.substr(equals + 1);
                             statement.clear();
                         }
                         else if (isInString || std::isspace(static_cast<unsigned char>(c)) == 0)
                             statement += c;
                     });
}

bool StepSampleText::is_(Id id, std::string_view keyword) const
{
    const auto found = instances_.find(id);
    return found != instances_.end() && found->second.starts_with(std::string(keyword) + '(');
}

std::vector<StepSampleText::Id> StepSampleText::all_(std::string_view keyword) const
{
    std::vector<Id> found;
    for (const auto& [id, text] : instances_)
        if (is_(id, keyword))
            found.push_back(id);
    return found;
}

std::string StepSampleText::productName_(Id definition) const
{
    const Id formation = references(instances_.at(definition)).at(0);
    const Id product = references(instances_.at(formation)).at(0);
    const std::vector<std::string> texts = strings(instances_.at(product));
    return texts.at(1).empty() ? texts.at(0) : texts.at(1);
}

std::vector<StepSampleText::Id> StepSampleText::roots_() const
{
    std::vector<Id> roots = all_("PRODUCT_DEFINITION");
    for (const Id usage : all_("NEXT_ASSEMBLY_USAGE_OCCURRENCE"))
        std::erase(roots, references(instances_.at(usage)).at(1));
    return roots;
}

std::vector<StepSampleText::Id> StepSampleText::usagesIn_(Id definition) const
{
    std::vector<Id> usages = all_("NEXT_ASSEMBLY_USAGE_OCCURRENCE");
    std::erase_if(usages, [&](Id usage) { return references(instances_.at(usage)).at(0) != definition; });
    return usages;
}

std::size_t StepSampleText::partsIn_(Id definition) const
{
    const std::vector<Id> usages = usagesIn_(definition);
    std::size_t count = usages.empty() ? 1 : 0;
    for (const Id usage : usages)
        count += partsIn_(references(instances_.at(usage)).at(1));
    return count;
}

std::size_t StepSampleText::partCount() const
{
    std::size_t count = 0;
    for (const Id root : roots_())
        count += partsIn_(root);
    return count;
}

void StepSampleText::addNames_(Id definition, const std::string& usageName, std::multiset<std::string>& names) const
{
    names.insert(usageName.empty() ? productName_(definition) : usageName);
    for (const Id usage : usagesIn_(definition))
        addNames_(references(instances_.at(usage)).at(1), strings(instances_.at(usage)).at(1), names);
}

std::multiset<std::string> StepSampleText::names() const
{
    std::multiset<std::string> names;
    for (const Id root : roots_())
        addNames_(root, "", names);
    return names;
}

void StepSampleText::addColors_(Id style, std::set<std::string>& colors) const
{
    static constexpr std::array surfaceStyles{"PRESENTATION_STYLE", "SURFACE_", "FILL_AREA_STYLE"};
    const auto found = instances_.find(style);
    if (found == instances_.end())
        return;
    const std::string& text = found->second;
    if (is_(style, "COLOUR_RGB"))
    {
        const std::vector<double> rgb = numbers(text);
        std::array<char, 8> hex{};
        std::snprintf(hex.data(), hex.size(), "#%02lx%02lx%02lx", std::lround(rgb.at(0) * 255),
                      std::lround(rgb.at(1) * 255), std::lround(rgb.at(2) * 255));
        colors.insert(hex.data());
    }
    else if (std::ranges::any_of(surfaceStyles, [&](const char* prefix) { return text.starts_with(prefix); }))
        for (const Id next : references(text))
            addColors_(next, colors);
}

std::set<std::string> StepSampleText::surfaceColors() const
{
    std::set<std::string> colors;
    for (const char* keyword : {"STYLED_ITEM", "OVER_RIDING_STYLED_ITEM"})
        for (const Id item : all_(keyword))
        {
            const std::string& text = instances_.at(item);
            const std::size_t endOfStyles = text.find("),");
            const Id target = references(text.substr(endOfStyles)).at(0);
            if (is_(target, "MANIFOLD_SOLID_BREP") || is_(target, "ADVANCED_FACE"))
                for (const Id style : references(text.substr(0, endOfStyles)))
                    addColors_(style, colors);
        }
    return colors;
}

double StepSampleText::millimetres_(Id unit) const
{
    const std::string& text = instances_.at(unit);
    if (text.find("SI_UNIT(.MILLI.,.METRE.)") != std::string::npos)
        return 1;
    if (text.find("SI_UNIT($,.METRE.)") != std::string::npos)
        return 1000;
    const std::string& measure = instances_.at(references(text).at(0));
    return numbers(measure).at(0) * millimetres_(references(measure).at(0));
}

double StepSampleText::lengthUnit_() const
{
    for (const auto& [id, text] : instances_)
        if (const std::size_t units = text.find("GLOBAL_UNIT_ASSIGNED_CONTEXT("); units != std::string::npos)
            for (const Id unit : references(text.substr(units)))
                if (instances_.at(unit).find("LENGTH_UNIT()") != std::string::npos)
                    return millimetres_(unit);
    return 1;
}

Box3d StepSampleText::vertexBox() const
{
    const double unit = lengthUnit_();
    Box3d box;
    for (const Id vertex : all_("VERTEX_POINT"))
    {
        const std::vector<double> xyz = numbers(instances_.at(references(instances_.at(vertex)).at(0)));
        box.extend(Vector3d(xyz.at(0), xyz.at(1), xyz.at(2)) * unit);
    }
    return box;
}

} // namespace VX::Test
