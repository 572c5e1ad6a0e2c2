#pragma once

#include <TopoDS_Face.hxx>
#include <TopoDS_Shape.hxx>

#include <vector>

namespace Sample
{

/// A part of the bearing block, in millimetres, with the faces that are machined bright.
struct Part
{
    TopoDS_Shape shape;
    std::vector<TopoDS_Face> brightFaces;
};

/// The block: a flange with four holes for the bolts, an upright with the bore along Y. The flange stands on z = 0.
Part makeBlock();

/// A ring around Y, between two radii.
Part makeRing(double innerRadius, double outerRadius, double width);

/// A ring of the bearing, with the groove that the balls run in.
Part makeRace(double innerRadius, double outerRadius);

/// Around the origin.
Part makeBall();

/// Along Y, with chamfers and a keyway.
Part makeShaft();

/// Along Z, its head on z = 0.
Part makeBolt();

/// Along Z, on z = 0.
Part makeWasher();

/// Where the bolts stand, x and y both positive and negative.
inline constexpr double boltX = 48;
inline constexpr double boltY = 19;
inline constexpr double flangeHeight = 12;
inline constexpr double boreHeight = 48;
inline constexpr double boreRadius = 22;
inline constexpr double washerHeight = 1.6;
inline constexpr double shaftRadius = 11;
inline constexpr double ballRadius = 2.6;
inline constexpr double ballCircle = 16.5;
inline constexpr int ballCount = 11;
inline constexpr double bearingWidth = 16;

} // namespace Sample
