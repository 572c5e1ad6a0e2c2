#include "SceneFacts.h"
#include "StepSampleText.h"

#include <gmock/gmock.h>

#include <backend/convert/StepConversion.h>
#include <tests/support/TempDir.h>

#include <filesystem>
#include <map>
#include <optional>
#include <ostream>
#include <string>

namespace VX
{

namespace
{

using Test::expectBox;
using Test::factsOf;
using Test::SceneFacts;
using Test::StepSampleText;
using testing::SizeIs;

/// A file that nobody here made, kept beside the repository.
struct Sample
{
    const char* name;
    double area; ///< mm², of the exact surfaces
};

void PrintTo(const Sample& sample, std::ostream* out)
{
    *out << sample.name;
}

/// A scene beside the text that it was made from.
class StepSamples : public testing::TestWithParam<Sample>
{
protected:
    void SetUp() override
    {
        const std::filesystem::path path = std::filesystem::path(QX_SOURCE_DIR "/../shared/samples") / GetParam().name;
        if (!std::filesystem::exists(path))
            GTEST_SKIP() << "samples are not here";
        text_.emplace(VX::Test::readFile(path));
        const auto scene = readStepFile(path);
        ASSERT_TRUE(scene) << scene.error();
        scene_ = *scene;
        facts_ = factsOf(*scene_);
    }

    std::optional<StepSampleText> text_;
    std::shared_ptr<Object> scene_;
    SceneFacts facts_;
};

TEST_P(StepSamples, HaveThePartsThatTheirTextLists)
{
    EXPECT_THAT(facts_.parts, SizeIs(text_->partCount()));
}

TEST_P(StepSamples, HaveTheNamesOfTheirText)
{
    EXPECT_EQ(facts_.names, text_->names());
}

TEST_P(StepSamples, HaveTheSurfaceColoursOfTheirText)
{
    EXPECT_FALSE(text_->surfaceColors().empty());
    EXPECT_EQ(facts_.colors, text_->surfaceColors());
}

// No curved face of these files bulges out of the box around the vertices.
TEST_P(StepSamples, FillTheBoxOfTheirVertices)
{
    const Box3d expected = text_->vertexBox();
    const Box3d box = scene_->worldBox();
    for (int axis = 0; axis < 3; ++axis)
    {
        const double tolerance = 0.001 * expected.sizes()[axis];
        EXPECT_NEAR(box.min()[axis], expected.min()[axis], tolerance) << axis;
        EXPECT_NEAR(box.max()[axis], expected.max()[axis], tolerance) << axis;
    }
}

TEST_P(StepSamples, HaveTheAreaOfTheExactSurfaces)
{
    EXPECT_TRUE(facts_.isFinite);
    EXPECT_NEAR(facts_.area, GetParam().area, 0.001 * GetParam().area);
}

INSTANTIATE_TEST_SUITE_P(Nist, StepSamples,
                         testing::Values(Sample{"nist_ctc_01_asme1_ap242-e1.stp", 807080.822},
                                         Sample{"nist_ctc_03_asme1_ap242-e2.stp", 354787.650},
                                         Sample{"nist_stc_06_asme1_ap242-e3.stp", 283414.452}),
                         [](const auto& sample)
                         {
                             const std::string name = sample.param.name;
                             return name.substr(5, 3) + name.substr(9, 2);
                         });

class OwnStepSample : public testing::Test
{
protected:
    void SetUp() override
    {
        const auto scene = readStepFile(QX_SOURCE_DIR "/samples/bearing-block.step");
        ASSERT_TRUE(scene) << scene.error();
        scene_ = *scene;
        facts_ = factsOf(*scene_);
        for (const ObjectMesh* part : facts_.parts)
            byName_[part->name()] = part;
    }

    const StepSampleText text_{VX::Test::readFile(QX_SOURCE_DIR "/samples/bearing-block.step")};
    std::shared_ptr<Object> scene_;
    SceneFacts facts_;
    std::map<std::string, const ObjectMesh*> byName_;
};

TEST_F(OwnStepSample, HasThePartsThatItsTextLists)
{
    EXPECT_THAT(facts_.parts, SizeIs(25));
    EXPECT_EQ(facts_.parts.size(), text_.partCount());
}

TEST_F(OwnStepSample, HasTheNamesOfItsText)
{
    EXPECT_EQ(facts_.names, text_.names());
    ASSERT_THAT(scene_->children(), SizeIs(1));
    EXPECT_EQ(scene_->children()[0]->name(), "Bearing block");
    EXPECT_EQ(facts_.names.count("Washer M8"), 4U);
}

TEST_F(OwnStepSample, HasTheColoursOfItsText)
{
    EXPECT_EQ(facts_.colors, text_.surfaceColors());
}

TEST_F(OwnStepSample, ColoursFacesPartsAndSingleInstances)
{
    EXPECT_THAT(byName_.at("Block")->mesh()->faceColors, testing::Contains(Color{72, 122, 168}));
    EXPECT_THAT(byName_.at("Block")->mesh()->faceColors, testing::Contains(Color{206, 210, 214}));
    EXPECT_EQ(byName_.at("Shaft")->color(), (Color{168, 173, 178}));
    EXPECT_EQ(byName_.at("Retaining ring front")->color(), (Color{64, 66, 70}));
    EXPECT_EQ(byName_.at("Retaining ring back")->color(), (Color{214, 62, 48}));
}

TEST_F(OwnStepSample, SharesTheMeshesOfItsInstances)
{
    // The block, two rings of the bearing, the ball, the shaft, the bolt, the washer and the retaining ring.
    EXPECT_THAT(facts_.meshes, SizeIs(8));
    EXPECT_EQ(byName_.at("Retaining ring front")->mesh(), byName_.at("Retaining ring back")->mesh());
}

TEST_F(OwnStepSample, FillsTheBoxOfItsParts)
{
    // Along X the flange of 120; along Y the shaft of 130; along Z from the tips of the bolts, whose shanks of 22 begin
    // at 12.6 on the washers, to the top of the upright, a cylinder of radius 34 about an axis at 48.
    expectBox(*scene_, Box3d(Vector3d(-60, -65, 12.6 - 22), Vector3d(60, 65, 48 + 34)));
}

} // namespace

} // namespace VX
