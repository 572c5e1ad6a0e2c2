#pragma once

#include "StepExcerpt.h"

#include <tl/expected.hpp>

#include <TopoDS_Shape.hxx>

#include <memory>
#include <string>

namespace VX
{

/// A shape as the file describes it, in millimetres.
struct StepShape
{
    TopoDS_Shape shape; ///< null where the item has none or is too damaged
    double precision = 0.001;
    double maxTolerance = 1; ///< precision and this are for healing
};

/// Translates the exact geometry of a STEP file into shapes with Open CASCADE. The shapes are not healed: edges lack
/// their curves in the parameters of the surfaces where the file does not give them.
/// One object in a process at a time: the library keeps its units and parameters in global variables.
class StepReader
{
public:
    StepReader();
    ~StepReader();

    StepReader(const StepReader&) = delete;
    StepReader& operator=(const StepReader&) = delete;

    /// Reads the text of `excerpt`.
    /// @return "The STEP file is damaged: its geometry cannot be read."
    [[nodiscard]] tl::expected<void, std::string> read(const StepExcerpt& excerpt);

    [[nodiscard]] StepShape translate(const StepExcerpt::Item& item);

    /// The shape, mostly one face, that instance #`number` of the excerpt became when an item above it was translated;
    /// null where it became none.
    [[nodiscard]] TopoDS_Shape find(int number) const;

private:
    struct Session;
    std::unique_ptr<Session> session_;
};

} // namespace VX
