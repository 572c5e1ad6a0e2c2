#include "CreateObjectsTool.h"

#include "menu/Translate.h"

#include <VXMesh/ObjectMesh.h>
#include <VXViewer/SceneEdit.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/Selection.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <optional>

namespace VX
{

namespace
{

constexpr float panelWidth = 240;
constexpr float fieldWidth = 120;
constexpr double usualSize = 10;
constexpr double partOfScene = 0.25;
constexpr std::uint8_t previewAlpha = 190;

/// The largest of 1, 2 and 5 times a power of ten that is not greater.
double roundLength(double length)
{
    const double power = std::pow(10, std::floor(std::log10(length)));
    const double factor = length / power;
    return power * (factor >= 5 ? 5 : factor >= 2 ? 2 : 1);
}

/// In round numbers: on what is seen in the middle of the view, so that it does not hide the new object.
Vector3f placeInView(SceneView& view, double size)
{
    const PixelRect& area = view.area();
    const Vector2f middle(static_cast<float>(area.x) + static_cast<float>(area.width) / 2,
                          static_cast<float>(area.y) + static_cast<float>(area.height) / 2);
    const std::optional<Vector3d> seen = view.pointAt(middle);
    const Vector3d place = seen ? Vector3d(*seen - view.camera().direction() * size) : view.camera().target();
    const double step = size / 10;
    return ((place / step).array().round() * step).cast<float>();
}

Color previewColor()
{
    const ImVec4 accent = UI::colorVec(UI::Color::Accent);
    const auto byte = [](float part) { return static_cast<std::uint8_t>(std::lround(part * 255)); };
    return {byte(accent.x), byte(accent.y), byte(accent.z), previewAlpha};
}

} // namespace

CreateObjectsTool::CreateObjectsTool(Viewer& viewer)
    : SceneTool("Create Simple Objects", viewer, {translatable("Create Simple Objects"), panelWidth})
{
}

void CreateObjectsTool::began_()
{
    SceneView& view = viewer_().view();
    const Box3d scene = view.box();
    const double extent = scene.isEmpty() ? 0 : scene.diagonal().norm() * partOfScene;
    const double size = roundLength(extent > 0 ? extent : usualSize);
    size_ = static_cast<float>(size);
    shapes_ = makeSimpleShapes(size_);
    position_ = scene.isEmpty() ? Vector3f(Vector3f::Zero()) : placeInView(view, size);
    preview_ = std::make_shared<ObjectMesh>();
    updateShape_();
    updatePlace_();
    view.setPreview(preview_);
    if (scene.isEmpty())
        view.fit({preview_});
}

void CreateObjectsTool::ended_()
{
    viewer_().view().setPreview(nullptr);
    preview_.reset();
}

void CreateObjectsTool::drawContent_()
{
    std::vector<std::string> names;
    names.reserve(shapes_.size());
    for (const SimpleShape& shape : shapes_)
        names.push_back(tr(nameOf(shape)));
    ImGui::SetNextItemWidth(UI::px(fieldWidth));
    // Room for the whole list.
    ImGui::SetNextWindowSizeConstraints({0, 0}, {FLT_MAX, FLT_MAX});
    if (UI::combo(tr("Shape"), current_, names))
        updateShape_();
    if (drawDimensions(shapes_[static_cast<std::size_t>(current_)], size_))
        updateShape_();
    UI::separator();
    const float reach = std::max(position_.cwiseAbs().maxCoeff(), size_) * 1000;
    bool moved = false;
    for (int axis = 0; axis < 3; ++axis)
    {
        const std::array<const char*, 3> labels{"X", "Y", "Z"};
        moved |= drawLengthField(labels.at(static_cast<std::size_t>(axis)), position_[axis], -reach, reach, size_);
    }
    if (moved)
        updatePlace_();
    ImGui::Dummy({0, UI::px(4)});
    if (UI::primaryButton(tr("Place")))
    {
        place_();
        close_();
        return;
    }
    ImGui::SameLine();
    if (UI::button(tr("Cancel")))
        close_();
}

void CreateObjectsTool::updateShape_()
{
    preview_->setMesh(std::make_shared<const Mesh>(meshOf(shapes_[static_cast<std::size_t>(current_)])));
    preview_->setColor(previewColor());
}

void CreateObjectsTool::updatePlace_()
{
    preview_->setTransform(Transform(Eigen::Translation3d(position_.cast<double>())));
}

void CreateObjectsTool::place_()
{
    const auto object = std::make_shared<ObjectMesh>(preview_->mesh());
    object->setName(tr(nameOf(shapes_[static_cast<std::size_t>(current_)])));
    object->setTransform(preview_->transform());
    object->setSelected(true);
    SceneEdit edit(*viewer_().getGlobalHistoryStore(), translatable("Create Simple Object"));
    for (const std::shared_ptr<Object>& selected : selectedObjects(viewer_().scene()))
    {
        edit.touch(selected);
        selected->setSelected(false);
    }
    edit.touch(viewer_().sceneRoot());
    viewer_().scene().addChild(object);
}

} // namespace VX
