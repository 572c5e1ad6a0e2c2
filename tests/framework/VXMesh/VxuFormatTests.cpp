#include "formats/VxuFormat.h"

#include "FormatTestSupport.h"

#include <VXMesh/ObjectLines.h>

#include <gmock/gmock.h>

#include <zip.h>

#include <limits>
#include <map>
#include <vector>

namespace VX
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

/// The entries of an archive as libzip sees them.
std::map<std::string, std::string> unzip(const std::filesystem::path& path)
{
    std::map<std::string, std::string> entries;
    zip_t* zip = zip_open(path.c_str(), ZIP_RDONLY | ZIP_CHECKCONS, nullptr);
    for (zip_int64_t i = 0; zip && i < zip_get_num_entries(zip, 0); ++i)
    {
        zip_stat_t info;
        zip_stat_index(zip, static_cast<zip_uint64_t>(i), 0, &info);
        EXPECT_EQ(info.comp_method, ZIP_CM_STORE) << info.name;
        std::string bytes(info.size, '\0');
        zip_file_t* file = zip_fopen_index(zip, static_cast<zip_uint64_t>(i), 0);
        EXPECT_EQ(zip_fread(file, bytes.data(), bytes.size()), static_cast<zip_int64_t>(bytes.size()));
        zip_fclose(file);
        entries[info.name] = bytes;
    }
    if (zip)
        zip_discard(zip);
    return entries;
}

void zipUp(const std::filesystem::path& path, const std::map<std::string, std::string>& entries,
           int method = ZIP_CM_STORE)
{
    zip_t* zip = zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, nullptr);
    ASSERT_TRUE(zip);
    for (const auto& [name, bytes] : entries)
    {
        const auto index = zip_file_add(zip, name.c_str(), zip_source_buffer(zip, bytes.data(), bytes.size(), 0), 0);
        zip_set_file_compression(zip, static_cast<zip_uint64_t>(index), method, 0);
    }
    ASSERT_EQ(zip_close(zip), 0);
}

void replace(std::string& text, std::string_view from, std::string_view to)
{
    const auto at = text.find(from);
    ASSERT_NE(at, std::string::npos) << from;
    text.replace(at, from.size(), to);
}

/// A scene with each kind of object, an instance, and settings that are not the default ones.
std::shared_ptr<Object> makeScene()
{
    const auto root = std::make_shared<Object>();
    root->setName("assembly \xC3\xA4\"\\");
    root->setTransform(Transform(Eigen::Translation3d(500000.25, 1.0 / 3.0, -2.0)));

    const auto first = makeMeshObject(makeTetrahedron());
    first->setName("first");
    first->setColor({1, 2, 3, 4});
    first->setFlatShaded(true);
    root->addChild(first);

    const auto second = std::make_shared<ObjectMesh>(first->mesh());
    second->setName("second");
    second->setVisible(false);
    second->setTransform(Transform(Eigen::AngleAxisd(0.5, Vector3d::UnitX())));
    root->addChild(second);

    auto cloud = std::make_shared<PointCloud>();
    cloud->points = {{1.0F, 2.0F, 3.0F}};
    cloud->colors = {{9, 8, 7, 6}};
    const auto points = std::make_shared<ObjectPoints>(std::move(cloud));
    points->setVisibilityMask(ViewportMask(5));
    second->addChild(points);

    auto segments = std::make_shared<Lines>();
    segments->points = {{0.0F, 0.0F, 0.0F}, {1.0F, 1.0F, 1.0F}};
    segments->segments = {Segment(0, 1)};
    second->addChild(std::make_shared<ObjectLines>(std::move(segments)));
    return root;
}

class VxuFormat : public testing::Test
{
protected:
    tl::expected<LoadedObjects, std::string> saveAndLoad_(const Object& root)
    {
        const auto saved = saveObjectToFile(root, path_, {});
        if (!saved)
            return tl::unexpected(saved.error());
        return loadObjectFromFile(path_, {});
    }

    /// Saves the scene and changes one of its entries.
    void saveWith_(const std::string& entry, const std::function<void(std::string&)>& change)
    {
        ASSERT_TRUE(saveObjectToFile(*makeScene(), path_, {}).has_value());
        auto entries = unzip(path_);
        change(entries[entry]);
        zipUp(path_, entries);
    }

    TempDir folder_;
    std::filesystem::path path_ = folder_.path() / "scene.vxu";
};

void expectSame(const Object& actual, const Object& expected)
{
    EXPECT_EQ(actual.typeName(), expected.typeName());
    EXPECT_EQ(actual.name(), expected.name());
    EXPECT_EQ(actual.transform().matrix(), expected.transform().matrix());
    EXPECT_EQ(actual.visibilityMask(), expected.visibilityMask());
    if (const auto* visual = dynamic_cast<const VisualObject*>(&expected))
    {
        EXPECT_EQ(dynamic_cast<const VisualObject&>(actual).color(), visual->color());
    }
    ASSERT_EQ(actual.children().size(), expected.children().size());
    for (std::size_t i = 0; i < expected.children().size(); ++i)
        expectSame(*actual.children()[i], *expected.children()[i]);
}

} // namespace

TEST_F(VxuFormat, TreeComesBackTheSame)
{
    const auto scene = makeScene();
    const auto loaded = saveAndLoad_(*scene);
    ASSERT_TRUE(loaded.has_value()) << loaded.error();
    EXPECT_THAT(loaded->warnings, IsEmpty());
    ASSERT_EQ(loaded->objects.size(), 1U);
    expectSame(*loaded->objects.front(), *scene);

    const auto& first = dynamic_cast<const ObjectMesh&>(*loaded->objects.front()->children()[0]);
    const auto& second = dynamic_cast<const ObjectMesh&>(*loaded->objects.front()->children()[1]);
    EXPECT_TRUE(first.isFlatShaded());
    EXPECT_FALSE(second.isFlatShaded());
    EXPECT_EQ(first.mesh()->points, makeTetrahedron().points);
    EXPECT_DOUBLE_EQ(sixfoldVolume(first), 1.0);
    const auto& points = dynamic_cast<const ObjectPoints&>(*second.children()[0]);
    EXPECT_THAT(points.pointCloud()->points, ElementsAre(Vector3f(1.0F, 2.0F, 3.0F)));
    EXPECT_THAT(points.pointCloud()->colors, ElementsAre(Color{9, 8, 7, 6}));
    const auto& lines = dynamic_cast<const ObjectLines&>(*second.children()[1]);
    EXPECT_THAT(lines.lines()->segments, ElementsAre(Segment(0, 1)));
}

TEST_F(VxuFormat, InstancesShareOneEntryAndOneMesh)
{
    const auto loaded = saveAndLoad_(*makeScene());
    ASSERT_TRUE(loaded.has_value()) << loaded.error();
    const auto& children = loaded->objects.front()->children();
    EXPECT_EQ(dynamic_cast<const ObjectMesh&>(*children[0]).mesh(),
              dynamic_cast<const ObjectMesh&>(*children[1]).mesh());
    EXPECT_EQ(unzip(path_).size(), 4U) << "the scene, a mesh, points and lines";
}

TEST_F(VxuFormat, NamelessContainerGivesItsChildrenAsTopLevelObjects)
{
    const auto container = std::make_shared<Object>();
    container->addChild(makeMeshObject(makeTetrahedron()));
    container->addChild(makeMeshObject(makeTetrahedron()));
    const auto loaded = saveAndLoad_(*container);
    ASSERT_TRUE(loaded.has_value()) << loaded.error();
    ASSERT_EQ(loaded->objects.size(), 2U);
    EXPECT_EQ(loaded->objects[0]->typeName(), "ObjectMesh");
}

TEST_F(VxuFormat, ObjectsWithoutGeometryComeBackWithoutIt)
{
    const auto group = std::make_shared<Object>();
    group->setName("group");
    group->addChild(std::make_shared<ObjectMesh>());
    group->addChild(std::make_shared<ObjectMesh>(std::make_shared<Mesh>()));
    const auto loaded = saveAndLoad_(*group);
    ASSERT_TRUE(loaded.has_value()) << loaded.error();
    const auto& children = loaded->objects.front()->children();
    EXPECT_FALSE(dynamic_cast<const ObjectMesh&>(*children[0]).mesh());
    EXPECT_TRUE(dynamic_cast<const ObjectMesh&>(*children[1]).mesh());
}

TEST_F(VxuFormat, NewerMajorVersionIsRefused)
{
    saveWith_("scene.json", [](std::string& text) { replace(text, "\"major\" : 1", "\"major\" : 12"); });
    EXPECT_EQ(loadObjectFromFile(path_, {}).error(),
              "\"scene.vxu\" was written by a newer version of Quorvix (format 12); update to open it.");
}

TEST_F(VxuFormat, NewerMinorVersionIsReadWithoutWhatIsUnknown)
{
    saveWith_("scene.json",
              [](std::string& text)
              {
                  replace(text, "\"minor\" : 0", "\"minor\" : 7");
                  replace(text, "\"type\" : \"ObjectLines\"", "\"type\" : \"ObjectOfTheFuture\", \"new\" : [1]");
              });
    const auto loaded = loadObjectFromFile(path_, {});
    ASSERT_TRUE(loaded.has_value()) << loaded.error();
    EXPECT_EQ(loaded->objects.front()->children()[1]->children()[1]->typeName(), "Object");
}

TEST_F(VxuFormat, DamagedDescriptionIsRefused)
{
    const std::string error = "Cannot open \"scene.vxu\": its scene description is damaged.";
    const std::vector<std::pair<std::string, std::string>> changes = {
        {"\"objects\" :", "\"objects\" : 5, \"was\" :"},
        {"\"visibility\" : 0", "\"visibility\" : -1"},
        {"\"visibility\" : 0", "\"visibility\" : \"yes\""},
        {"500000.25", "\"far\""},
        {"500000.25", "1e999"},
        {"500000.25,", ""},
        {"\"ObjectPoints\"", "[]"},
        {"\"name\" : \"first\"", "\"name\" : {}"},
        {"{", "["},
    };
    for (const auto& [from, to] : changes)
    {
        saveWith_("scene.json", [&](std::string& text) { replace(text, from, to); });
        const auto loaded = loadObjectFromFile(path_, {});
        ASSERT_FALSE(loaded.has_value()) << from << " as " << to;
        EXPECT_EQ(loaded.error(), error) << from << " as " << to;
    }
}

TEST_F(VxuFormat, DamagedGeometryIsLeftOutWithAWarning)
{
    saveWith_("geometry/0.vxg", [](std::string& bytes) { bytes.resize(bytes.size() - 1); });
    const auto loaded = loadObjectFromFile(path_, {});
    ASSERT_TRUE(loaded.has_value()) << loaded.error();
    EXPECT_THAT(loaded->warnings,
                ElementsAre("\"scene.vxu\": the geometry of the object \"first\" is damaged and was left out.",
                            "\"scene.vxu\": the geometry of the object \"second\" is damaged and was left out."));
    const auto& second = *loaded->objects.front()->children()[1];
    EXPECT_TRUE(dynamic_cast<const ObjectPoints&>(*second.children()[0]).pointCloud());
}

TEST_F(VxuFormat, LineEndsInANameDoNotTearAWarning)
{
    saveWith_("scene.json",
              [](std::string& text)
              {
                  replace(text, "\"name\" : \"first\"", "\"name\" : \"first\\nof\\rmany\"");
                  replace(text, "geometry/0.vxg", "geometry/missing.vxg");
              });
    const auto loaded = loadObjectFromFile(path_, {});
    ASSERT_TRUE(loaded.has_value()) << loaded.error();
    EXPECT_THAT(loaded->warnings,
                ElementsAre("\"scene.vxu\": the geometry of the object \"first of many\" is damaged and was left "
                            "out."));
    EXPECT_EQ(loaded->objects.front()->children()[0]->name(), "first\nof\rmany");
}

TEST_F(VxuFormat, FlippedBitInTheGeometryIsNoticed)
{
    ASSERT_TRUE(saveObjectToFile(*makeMeshObject(makeTetrahedron()), path_, {}).has_value());
    std::string bytes = readFile(path_);
    const auto at = bytes.find("VXG1");
    ASSERT_NE(at, std::string::npos);
    bytes[at + 150] = static_cast<char>(bytes[at + 150] ^ 1);
    folder_.write("scene.vxu", bytes);
    EXPECT_EQ(loadObjectFromFile(path_, {}).error(), "Cannot open \"scene.vxu\": its geometry is damaged.");
}

TEST_F(VxuFormat, CompressedEntriesAreRefused)
{
    ASSERT_TRUE(saveObjectToFile(*makeScene(), path_, {}).has_value());
    zipUp(path_, unzip(path_), ZIP_CM_DEFLATE);
    EXPECT_EQ(loadObjectFromFile(path_, {}).error(),
              "Cannot open \"scene.vxu\": it has no scene description, or a damaged one.");
}

TEST_F(VxuFormat, AnyPrefixOfAFileIsRefused)
{
    ASSERT_TRUE(saveObjectToFile(*makeMeshObject(makeTetrahedron()), path_, {}).has_value());
    const std::string bytes = readFile(path_);
    for (std::size_t size = 1; size < bytes.size(); size += 7)
        ASSERT_FALSE(readVxu(sourceOf(std::string_view(bytes).substr(0, size), "scene.vxu"), {}).has_value());
    EXPECT_EQ(readVxu(sourceOf(std::string_view(bytes).substr(0, 100), "scene.vxu"), {}).error(),
              "Cannot open \"scene.vxu\": it is damaged or cut off.");
}

TEST_F(VxuFormat, OtherFilesAreRefused)
{
    folder_.write("scene.vxu", "v 0 0 0\n");
    EXPECT_EQ(loadObjectFromFile(path_, {}).error(), "Cannot open \"scene.vxu\": it is not a vxu file.");
    zipUp(path_, {{"readme.txt", "hello"}});
    EXPECT_EQ(loadObjectFromFile(path_, {}).error(),
              "Cannot open \"scene.vxu\": it has no scene description, or a damaged one.");
}

TEST_F(VxuFormat, EmptySceneIsAnError)
{
    EXPECT_EQ(saveAndLoad_(*std::make_shared<Object>()).error(), "Cannot open \"scene.vxu\": it holds no objects.");
}

TEST_F(VxuFormat, TreeThatCouldNotBeReadBackIsNotSaved)
{
    const auto root = std::make_shared<Object>();
    root->setName("root");
    Object* parent = root.get();
    for (int i = 0; i < 500; ++i)
    {
        const auto child = std::make_shared<Object>();
        parent->addChild(child);
        parent = child.get();
    }
    EXPECT_FALSE(saveObjectToFile(*root, path_, {}).has_value());
    EXPECT_FALSE(std::filesystem::exists(path_));
}

TEST_F(VxuFormat, DeepTreeComesBack)
{
    const auto root = std::make_shared<Object>();
    root->setName("root");
    Object* parent = root.get();
    for (int i = 0; i < 400; ++i)
    {
        const auto child = std::make_shared<Object>();
        parent->addChild(child);
        parent = child.get();
    }
    const auto loaded = saveAndLoad_(*root);
    ASSERT_TRUE(loaded.has_value()) << loaded.error();
    expectSame(*loaded->objects.front(), *root);
}

TEST_F(VxuFormat, CanceledSavingKeepsTheOldFile)
{
    ASSERT_TRUE(saveObjectToFile(*makeScene(), path_, {}).has_value());
    const std::string before = readFile(path_);
    const auto saved =
        saveObjectToFile(*makeMeshObject(makeTetrahedron()), path_, [](float fraction) { return fraction < 0.75F; });
    EXPECT_EQ(saved.error(), operationCanceledText());
    EXPECT_EQ(readFile(path_), before);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.path()), {}), 1);
}

TEST_F(VxuFormat, CanceledLoadingSaysSo)
{
    ASSERT_TRUE(saveObjectToFile(*makeScene(), path_, {}).has_value());
    EXPECT_EQ(loadObjectFromFile(path_, [](float fraction) { return fraction < 0.2F; }).error(),
              operationCanceledText());
}

} // namespace VX
