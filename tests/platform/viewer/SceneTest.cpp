#include "ViewerFixture.h"
#include "platform/viewer/MaterialFile.h"

#include <cmath>
#include <filesystem>
#include <numbers>

namespace pluvarine::test {
namespace {

using Scene = ViewerFixture;
using Point = std::array<double, 3>;

// Ids count on across LoadScene; a file that cannot be read fails without taking one; a part
// file is read from disk once per run.
TEST_F(Scene, IdsKeepCountingAcrossLoadSceneAndFailuresTakeNone) {
    writeText(path("broken.v3o"), "glTF this is not");
    writeText(path("truncated.v3o"), readFile(path("pipe.v3o")).substr(0, 100));
    for (int i = 0; i < 3; ++i) {
        m_scene.LoadScene(path("main.v3o"));
        ASSERT_EQ(m_scene.objects().size(), 1u);
        EXPECT_EQ(m_scene.objects()[0].id, 0); // base-scene content has no id
        EXPECT_EQ(m_scene.AddPart(path("pipe.v3o")), 3 * i + 1);
        EXPECT_EQ(m_scene.AddPart(path("clamp.v3o")), 3 * i + 2);
        EXPECT_EQ(m_scene.AddPart(path("clamp.v3o")), 3 * i + 3);
    }
    EXPECT_EQ(m_scene.partCache().diskReads(), 3);
    std::filesystem::remove(path("pipe.v3o")); // the run keeps what it read
    EXPECT_EQ(m_scene.objects()[1].part, m_scene.object(m_scene.AddPart(path("pipe.v3o")))->part);
    EXPECT_EQ(m_scene.partCache().diskReads(), 3);
    for (const std::string& file : {path("res/Bogen_100_72_L.v3o"), std::string(),
                                    path("broken.v3o"), path("truncated.v3o"), path("")}) {
        expectViewerError([&] { m_scene.AddPart(file); });
    }
    EXPECT_EQ(m_scene.AddPart(path("pipe.v3o")), 11);
    expectViewerError([&] { m_scene.LoadScene(path("nothing.v3o")); });
    EXPECT_TRUE(m_scene.objects().empty());
}

// The constructions' order (scale, move, rotate) gives T(p) * R * S with the numbers exactly as
// handed over in single precision.
TEST_F(Scene, ScaleMoveRotateGivesScaledCentredTurnedPiece) {
    const std::int32_t id = current("pipe");
    const float sz = 178.105f / 500, px = -0.3854f, pz = 1.1357f;
    m_scene.ScaleObject(1, 1, sz);
    m_scene.MoveObject(px, 0, pz);
    m_scene.RotateObject(0, -1, 0, 72.0f);
    m_scene.CommitObject(true);
    const double a = 72 * std::numbers::pi / 180, c = std::cos(a), s = std::sin(a);
    const double expected[3][4] = {{c, 0, -s * sz, px}, {0, 1, 0, 0}, {s, 0, c * sz, pz}};
    const Matrix4d& m = m_scene.object(id)->transform;
    for (int r = 0; r < 12; ++r) {
        EXPECT_NEAR(m(r / 4, r % 4), expected[r / 4][r % 4], 1e-15) << r;
    }
    EXPECT_EQ(m.translationPart(), (Point{px, 0.0, pz})); // exactly where it was moved to
}

// Only the current object moves; AddPart does not select.
TEST_F(Scene, EachOperationActsOnTheObjectAsItStandsAboutItsReferencePoint) {
    struct Op {
        char kind; // scale, move, rotate
        float x, y, z, angle = 0;
    };
    struct Case {
        const char* name;
        std::vector<Op> ops;
        Point probe, expected;
    };
    const double s42 = 0.25 * std::sin(42 * std::numbers::pi / 180);
    const double c42 = 0.25 * std::cos(42 * std::numbers::pi / 180);
    const Point top{0, 0, 0.25};
    for (const Case& c : std::initializer_list<Case>{
             // The tilt rule: axis (0, -1, 0) with a positive angle tilts the top towards -x.
             {"tilt", {{'r', 0, -1, 0, 42}}, top, {-s42, 0, c42}},
             {"tilt back", {{'r', 0, 1, 0, 42}}, top, {s42, 0, c42}},
             {"any axis length", {{'r', 0, -5, 0, 90}}, top, {-0.25, 0, 0}},
             {"about the moved point", {{'m', -1, 0, 2}, {'r', 0, -1, 0, 180}}, top, {-1, 0, 1.75}},
             {"scale keeps the point", {{'m', 1, 2, 3}, {'s', 2, 2, 2}}, top, {1, 2, 3.5}},
             {"last move wins", {{'m', 5, 5, 5}, {'m', 0.1f, 0, -0.2f}}, top, {0.1, 0, 0.05}},
             {"scene axes", {{'r', 0, 0, 1, 90}, {'s', 2, 1, 1}}, {0, 1, 0}, {-2, 0, 0}},
             {"mirror", {{'s', 1, -1, -0.2f}}, {0, 1, 0.25}, {0, -1, -0.05}}}) {
        const std::int32_t id = current("pipe");
        const std::int32_t other = m_scene.AddPart(path("pipe.v3o")); // not selected: stays put
        for (const Op& op : c.ops) {
            op.kind == 's'   ? m_scene.ScaleObject(op.x, op.y, op.z)
            : op.kind == 'm' ? m_scene.MoveObject(op.x, op.y, op.z)
                             : m_scene.RotateObject(op.x, op.y, op.z, op.angle);
        }
        const Point p = m_scene.object(id)->transform.map(c.probe);
        for (int k = 0; k < 3; ++k) {
            EXPECT_NEAR(p[k], c.expected[k], 1e-8) << c.name << ", coordinate " << k;
        }
        EXPECT_TRUE(m_scene.object(other)->transform.isIdentity()) << c.name;
    }
}

TEST_F(Scene, TransformingAnObjectNoLongerInTheSceneFails) {
    current("pipe");
    m_scene.LoadScene(path("main.v3o"));
    expectViewerError([&] { m_scene.ScaleObject(1, 1, 1); });
    expectViewerError([&] { m_scene.MoveObject(0, 0, 0); });
    expectViewerError([&] { m_scene.RotateObject(0, -1, 0, 42); });
    expectViewerError([&] { m_scene.CommitObject(true); });
}

// Single objects leave or move without the others, and the bounds follow.
TEST_F(Scene, RemoveAndSetTransformChangeOneObjectAndTheBounds) {
    const std::int32_t a = m_scene.AddPart(path("clamp.v3o"));
    const std::int32_t b = m_scene.AddPart(path("clamp.v3o"));
    const Box3 one = m_scene.bounds();
    Matrix4d shift;
    shift(0, 3) = 10;
    m_scene.setTransform(b, shift);
    EXPECT_DOUBLE_EQ(m_scene.bounds().max()[0], one.max()[0] + 10);
    m_scene.remove(a);
    m_scene.remove(a); // gone already: nothing
    ASSERT_EQ(m_scene.objects().size(), 1u);
    EXPECT_EQ(m_scene.objects()[0].id, b);
    EXPECT_DOUBLE_EQ(m_scene.bounds().min()[0], one.min()[0] + 10);
}

TEST(MaterialFile, ReadsTheViewersMaterialFormat) {
    struct Case {
        const char* text;
        int r, g, b;
        float metallic, roughness;
    };
    for (const Case& c : std::initializer_list<Case>{
             {"[Material]\r\nName=K\r\nBaseColor=154,108,89\r\nMetallic=1\r\nRoughness=0.35\r\n",
              154, 108, 89, 1, 0.35f},
             {"[material]\nbasecolor = 117 , 117 , 117 \nMETALLIC= 0.9\n", 117, 117, 117, 0.9f,
              0.5f},
             {"[Other]\nBaseColor=1,2,3\n[Material]\nBaseColor=4,5,6\nMetallic=7\nRoughness=-1\n",
              4, 5, 6, 1, 0}}) { // the [Material] section only; factors clamped
        const auto look = MaterialFile::parse(c.text);
        ASSERT_TRUE(look) << c.text;
        EXPECT_EQ(look->baseColor,
                  (std::array{srgbToLinear(c.r), srgbToLinear(c.g), srgbToLinear(c.b)}));
        EXPECT_EQ(look->metallic, c.metallic) << c.text;
        EXPECT_EQ(look->roughness, c.roughness) << c.text;
    }
    for (const char* malformed :
         {"[Material]\nName=x\n", "[Material]\nBaseColor=1,2\n", "[Material]\nBaseColor=1,2,3,4\n",
          "[Material]\nBaseColor=1,2,300\n", "[Material]\nBaseColor=a,b,c\n", "BaseColor=1,2,3\n",
          ""}) {
        EXPECT_FALSE(MaterialFile::parse(malformed)) << malformed;
    }
    EXPECT_NEAR(srgbToLinear(144), 0.278894f, 1e-5);
    EXPECT_EQ(
        MaterialFile::format("Zink", 117, 117, 117, 1.0f, 0.45f),
        "[Material]\r\nName=Zink\r\nBaseColor=117,117,117\r\nMetallic=1\r\nRoughness=0.45\r\n");
}

// Only the current object takes the file's look; an empty, missing or malformed file leaves the
// part's own look; an id no longer in the scene is skipped.
TEST_F(Scene, ApplyMaterial) {
    const std::int32_t old = m_scene.AddPart(path("pipe.v3o"));
    m_scene.LoadScene(path("main.v3o"));
    const std::int32_t other = m_scene.AddPart(path("pipe.v3o"));
    for (std::int32_t stale : {old, 0, -3, 99}) {
        m_scene.CurrentObject(stale);
        EXPECT_NO_THROW(EXPECT_FALSE(m_scene.ApplyMaterial(0, path("Kupfer.ini"))));
    }
    EXPECT_FALSE(m_scene.objects().front().material); // the base scene is not touched
    const std::int32_t id = current("pipe");
    EXPECT_TRUE(m_scene.ApplyMaterial(0, path("Kupfer.ini")));
    EXPECT_EQ(m_scene.object(id)->look(0).baseColor[0], srgbToLinear(154));
    EXPECT_FALSE(m_scene.object(other)->material);
    writeText(path("Bad.ini"), "[Material]\nName=nothing\n");
    for (auto [file, applied] : {std::pair{std::string(), true},
                                 {path("mat/Missing.ini"), false},
                                 {path("Bad.ini"), false}}) {
        m_scene.ApplyMaterial(0, path("Kupfer.ini"));
        EXPECT_EQ(m_scene.ApplyMaterial(0, file), applied) << file;
        EXPECT_FALSE(m_scene.object(id)->material) << file;
        EXPECT_EQ(m_scene.object(id)->look(0).name, "Grau");
    }
}

// Every corner of the content lies inside the view, and the content fills it in at least one
// direction (the fit is not just "far away").
TEST(CameraFit, ShowsTheWholeContentAndFillsTheView) {
    struct Case {
        Point lo, hi;
        QSize viewport;
        float yaw = 212, pitch = 12;
    };
    const Point pipeLo{-0.2, -0.06, -1.5}, top{0.13, 0.06, 1.5}; // continuous, 3 m high
    for (const Case& c :
         std::initializer_list<Case>{{pipeLo, top, {257, 449}}, // the main window's preview
                                     {pipeLo, top, {692, 464}}, // a wide image
                                     {{-0.64, -0.06, -1.5}, top, {692, 464}}, // bend
                                     {{-5, -1, 0}, {5, 1, 0.2}, {257, 449}},
                                     {{0, 0, 0}, {1, 1, 1}, {400, 300}, 300, -30}}) {
        Box3 content;
        content.add(c.lo);
        content.add(c.hi);
        OrbitCamera camera;
        camera.setView({}, 1, c.yaw, c.pitch);
        camera.fit(content, float(c.viewport.width()) / float(c.viewport.height()));
        const QRectF drawn = expectShown(camera, content, c.viewport);
        EXPECT_GT(
            std::max(drawn.width() / c.viewport.width(), drawn.height() / c.viewport.height()),
            0.75);
    }
}

TEST(CameraFit, AnEmptyBoxLeavesTheView) {
    OrbitCamera camera;
    camera.setView({1, 2, 3}, 5, 100, 20);
    camera.fit(Box3(), 1.0f);
    EXPECT_EQ(camera.target(), QVector3D(1, 2, 3));
    EXPECT_EQ(camera.distance(), 5.0f);
}

} // namespace
} // namespace pluvarine::test
