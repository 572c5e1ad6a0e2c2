#include "ViewSettings.h"

#include "SettingRow.h"
#include "menu/Translate.h"

#include <VXViewer/CornerControllerObject.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerSettingsManager.h>

#include <algorithm>
#include <array>
#include <vector>

namespace VX
{

namespace
{

constexpr const char* edgesKey = "featureEdges";
constexpr const char* basisKey = "globalBasis";
constexpr const char* cubeKey = "viewCube";
constexpr const char* samplesKey = "samples";

/// Samples a pixel; 0: what suits the graphics.
constexpr std::array sampleChoices{0, 1, 2, 4, 8};

ViewportMask maskOf(bool shown)
{
    return shown ? ViewportMask::all() : ViewportMask();
}

bool showsCube(const Viewer& viewer)
{
    return viewer.cornerController() && !viewer.cornerController()->enabledIn().isEmpty();
}

bool showsBasis(const Viewer& viewer)
{
    return !viewer.view().options().globalBasis.isEmpty();
}

void enableCube(const Viewer& viewer, bool shown)
{
    if (viewer.cornerController())
        viewer.cornerController()->enable(maskOf(shown));
}

/// Only what the user changed here is stored: what else holds now may be a deployment's choice or a passing one.
void store(const Viewer& viewer, const char* key, int value)
{
    if (viewer.settingsManager())
        viewer.settingsManager()->saveInt(key, value);
}

void setProjection(const Viewer& viewer, Projection projection)
{
    if (viewer.view().camera().projection() != projection)
        viewer.view().toggleProjection();
    if (viewer.settingsManager())
        viewer.settingsManager()->saveSettings(viewer);
}

void setEdges(const Viewer& viewer, bool shown)
{
    viewer.view().options().featureEdges = shown;
    store(viewer, edgesKey, shown ? 1 : 0);
}

void setBasis(const Viewer& viewer, bool shown)
{
    viewer.view().options().globalBasis = maskOf(shown);
    store(viewer, basisKey, shown ? 1 : 0);
}

void setCube(const Viewer& viewer, bool shown)
{
    enableCube(viewer, shown);
    store(viewer, cubeKey, shown ? 1 : 0);
}

void setSamples(const Viewer& viewer, int samples)
{
    viewer.view().options().samples = samples;
    store(viewer, samplesKey, samples);
}

class ViewSettings final : public SettingsPage
{
public:
    void draw(Viewer& viewer) override
    {
        settingSection(tr("Camera"));
        drawProjection_(viewer);
        settingSection(tr("Scene"));
        bool edges = viewer.view().options().featureEdges;
        if (settingSwitch(tr("Edges"), tr("Draws a line along the sharp edges of meshes"), true, edges))
            setEdges(viewer, edges);
        bool basis = showsBasis(viewer);
        if (settingSwitch(tr("Axes of the Scene"), tr("Shows the origin of the scene and its axes"), false, basis))
            setBasis(viewer, basis);
        bool cube = showsCube(viewer);
        if (settingSwitch(tr("View Cube"), tr("Shows how the scene is turned; a click on it turns the view"), true,
                          cube))
            setCube(viewer, cube);
        settingSection(tr("Quality"));
        drawSamples_(viewer);
    }

    void reset(Viewer& viewer) override
    {
        setProjection(viewer, Camera().projection());
        setEdges(viewer, true);
        setBasis(viewer, false);
        setCube(viewer, true);
        setSamples(viewer, 0);
    }

private:
    static void drawProjection_(const Viewer& viewer)
    {
        const Projection usual = Camera().projection();
        auto current = static_cast<int>(viewer.view().camera().projection());
        bool changed = false;
        const bool reset = settingRow(
            tr("Projection"), tr("Near things look larger in perspective"), current == static_cast<int>(usual),
            [&] { changed = UI::combo("##value", current, {tr("Perspective"), tr("Orthographic")}); });
        if (reset || changed)
            setProjection(viewer, reset ? usual : static_cast<Projection>(current));
    }

    static void drawSamples_(const Viewer& viewer)
    {
        const int samples = viewer.view().options().samples;
        const auto found = std::find(sampleChoices.begin(), sampleChoices.end(), samples);
        auto current = static_cast<int>(found - sampleChoices.begin());
        std::vector<std::string> names{tr("Automatic"), tr("Off")};
        for (std::size_t i = names.size(); i < sampleChoices.size(); ++i)
            names.push_back(fmt::format("{}x", sampleChoices.at(i)));
        bool changed = false;
        const bool reset = settingRow(tr("Smoothing"), tr("More samples for each pixel: smoother edges, slower"),
                                      samples == 0, [&] { changed = UI::combo("##value", current, names); });
        if (reset || changed)
            setSamples(viewer, reset ? 0 : sampleChoices.at(static_cast<std::size_t>(current)));
    }
};

} // namespace

void loadViewSettings(const ViewerSettingsManager& manager, Viewer& viewer)
{
    SceneOptions& options = viewer.view().options();
    options.featureEdges = manager.loadInt(edgesKey, options.featureEdges ? 1 : 0) != 0;
    // A mask of single viewports stays where it says the same.
    const bool basis = showsBasis(viewer);
    if (const bool stored = manager.loadInt(basisKey, basis ? 1 : 0) != 0; stored != basis)
        options.globalBasis = maskOf(stored);
    const bool cube = showsCube(viewer);
    if (const bool stored = manager.loadInt(cubeKey, cube ? 1 : 0) != 0; stored != cube)
        enableCube(viewer, stored);
    const int samples = manager.loadInt(samplesKey, options.samples);
    if (std::find(sampleChoices.begin(), sampleChoices.end(), samples) != sampleChoices.end())
        options.samples = samples;
}

std::unique_ptr<SettingsPage> makeViewSettings()
{
    return std::make_unique<ViewSettings>();
}

} // namespace VX
