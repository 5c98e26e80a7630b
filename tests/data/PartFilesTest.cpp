// The working folder the build lays out. Every part file of the catalogue: a GLB the viewer can
// read, with the effective sizes the constructions place it by, sound triangles, and openings
// where the neighbouring parts join, meeting them as the constructions place the parts. Beside
// them the base scene, the material files and the empty folders.

#include "data/generator/PartShapes.h"
#include "platform/viewer/GltfAxes.h"
#include "tests/data/GlbPart.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <set>
#include <sstream>

namespace pluvarine {
namespace {

namespace fs = std::filesystem;

const fs::path kRoot = PLUVARINE_WORKFOLDER;

// Bounds in mm (x lo, x hi, y lo, y hi, z lo, z hi): exact to single precision on an axis whose
// slack is 0, else each end within the slack.
struct CataloguedPart {
    const char* stem;
    double box[6];
    double slack[3];
    std::set<std::string> openings;
};

const CataloguedPart kParts[] = {
    // The gutter outlet: top 186.5 mm of H; plate 218 along the gutter.
    {"Reinhangestutzen_100_218", {-90, 90, -109, 109, -93.25, 93.25}, {}, {"bottom"}},
    {"Fallrohr_100_500", {-50, 50, -50, 50, -250, 250}, {}, {"bottom", "top"}},
    {"Standrohr_125_500", {-62.5, 62.5, -62.5, 62.5, -250, 250}, {}, {"bottom", "top"}},
    {"Abdeckkappe_100_125", {-64.5, 64.5, -64.5, 64.5, -14.7, 14.7}, {2, 2}, {"bore"}},
    // The clamp: 233.4 deep, ring round the pipe axis at x = -62.7 mm, rod into the wall.
    {"Rohrschelle_100", {-116.7, 116.7, -64, 64, -12.5, 12.5}, {0, 6, 5}, {"ring", "rod"}},
    {"Bogen_100_72_L", {-115.2, 115.2, -50, 50, -137.3, 137.3}, {0, 2}, {"top", "inclined"}},
    {"Bogen_100_72_R", {-115.2, 115.2, -50, 50, -137.3, 137.3}, {0, 2}, {"bottom", "inclined"}},
    {"Bogen_100_42_L", {-96.15, 96.15, -50, 50, -153.65, 153.65}, {0, 2}, {"top", "inclined"}},
    {"Bogen_100_42_R", {-96.15, 96.15, -50, 50, -153.65, 153.65}, {0, 2}, {"bottom", "inclined"}},
    // Kinks: effective height k along z; sideways about the vertical pipe's axis.
    {"Knick_100_72", {-50, 50, -50, 50, -48.1, 48.1}, {3, 1}, {"bottom", "inclined"}},
    {"Knick_100_42", {-50, 50, -50, 50, -33.7, 33.7}, {3, 1}, {"bottom", "inclined"}},
    {"dummy", {-500, 500, -500, 500, -500, 500}, {}, {}},
};

// Its effective sizes; one grey triangle mesh in its own frame, turned +Y up by its node; indices
// in range, unit normals the triangles are wound to, and a closed outward surface: just in front of
// a triangle lies outside the solid, just behind it inside (overlapping pieces, as on the clamp,
// add up); every declared opening a rim of the mesh.
TEST(PartFiles, AreSoundMeshesOfTheirSizesWithTheirOpenings) {
    for (const CataloguedPart& entry : kParts) {
        SCOPED_TRACE(entry.stem);
        const GlbPart& part = GlbPart::catalogued(entry.stem);
        const double actual[6] = {part.lo.x, part.hi.x, part.lo.y, part.hi.y, part.lo.z, part.hi.z};
        for (int i = 0; i < 6; ++i) {
            if (entry.slack[i / 2] == 0) {
                EXPECT_FLOAT_EQ(float(actual[i]), float(entry.box[i] / 1000)) << "bound " << i;
            } else {
                EXPECT_NEAR(actual[i] * 1000, entry.box[i], entry.slack[i / 2]) << "bound " << i;
            }
        }
        const tinygltf::Model& model = part.model;
        ASSERT_TRUE(model.scenes.size() == 1 && model.scenes[0].nodes == std::vector<int>{0});
        const auto& root = model.nodes.at(0);
        EXPECT_EQ(root.name, entry.stem);
        EXPECT_TRUE(root.matrix ==
                        std::vector<double>(gltfFromSceneFrame.begin(), gltfFromSceneFrame.end()) &&
                    root.translation.empty() && root.rotation.empty() && root.scale.empty());
        ASSERT_TRUE(model.meshes.size() == 1 && root.mesh == 0 &&
                    model.meshes[0].primitives.size() == 1 && model.materials.size() == 1);
        EXPECT_EQ(model.meshes[0].primitives[0].mode, TINYGLTF_MODE_TRIANGLES);
        EXPECT_EQ(model.meshes[0].primitives[0].material, 0);
        const auto& pbr = model.materials[0].pbrMetallicRoughness;
        const auto grey = ::testing::DoubleNear(0.279, 0.001); // sRGB 144
        EXPECT_THAT(pbr.baseColorFactor, ::testing::ElementsAre(grey, grey, grey, 1.0));
        EXPECT_EQ(pbr.metallicFactor, 0);
        EXPECT_GT(pbr.roughnessFactor, 0.2);
        const auto& extras = model.asset.extras;
        EXPECT_EQ(extras.Get("part").Get<std::string>(), entry.stem);
        const bool auxiliary = std::string(entry.stem) == "dummy";
        EXPECT_EQ(extras.Get("auxiliary").Get<bool>(), auxiliary);
        EXPECT_EQ(root.extras.Has("auxiliary"), auxiliary);

        const auto& [p, n, idx] = std::tie(part.positions, part.normals, part.indices);
        ASSERT_TRUE(idx.size() % 3 == 0 && n.size() == p.size());
        ASSERT_TRUE(std::ranges::all_of(idx, [&](std::uint32_t i) { return i < p.size(); }));
        EXPECT_TRUE(std::ranges::all_of(n, [](Vec3 v) { return std::abs(v.length() - 1) < 1e-6; }));
        const std::size_t triangles = idx.size() / 3;
        EXPECT_GE(triangles, auxiliary ? 12u : 200u);
        EXPECT_LE(triangles, auxiliary ? 12u : 20000u);
        for (std::size_t t = 0; t < triangles; ++t) {
            const Vec3 a = p[idx[3 * t]], b = p[idx[3 * t + 1]], c = p[idx[3 * t + 2]];
            const Vec3 face = (b - a).cross(c - a);
            ASSERT_GT(face.dot(n[idx[3 * t]] + n[idx[3 * t + 1]] + n[idx[3 * t + 2]]), 0) << t;
            if (t % std::max<std::size_t>(1, triangles / 60) == 0 && face.length() > 1e-10) {
                const Vec3 centre = (a + b + c) * (1.0 / 3), off = face.normalized() * 1e-6;
                const double outside = part.windingNumber(centre + off);
                EXPECT_NEAR(part.windingNumber(centre - off) - outside, 1.0, 0.02) << t;
                EXPECT_NEAR(outside, std::round(outside), 0.02) << t;
            }
        }
        std::set<std::string> names;
        for (const Opening& o : part.openings) {
            names.insert(o.name);
            int onRim = 0;
            for (const Vec3& v : p) {
                const Vec3 d = v - o.centre;
                const double along = d.dot(o.direction);
                onRim += std::abs(along) < 1e-6 &&
                         std::abs((d - o.direction * along).length() - o.radius) < 1e-6;
            }
            EXPECT_GE(onRim, 16) << o.name;
        }
        EXPECT_EQ(names, entry.openings);
    }
}

// The pipe pieces are stretched along z only; their walls are the nominal sizes. The cap's bore
// leaves room round the pipe; the clamp's ring holds the pipe (its axis on the ring's, as the
// constructions show), 4 mm thick as the clamp's far end shows.
TEST(PartGeometry, PipesHaveTheNominalBoreAndCapAndClampFitThem) {
    for (const auto& [stem, bore] :
         {std::pair{"Fallrohr_100_500", 48.5}, {"Standrohr_125_500", 60.5}}) {
        const GlbPart& pipe = GlbPart::catalogued(stem);
        EXPECT_NEAR(pipe.windingNumber({(bore - 0.3) / 1000, 0, 0}), 0, 0.02) << stem;
        EXPECT_NEAR(pipe.windingNumber({0, (bore + 0.3) / 1000, 0}), 1, 0.02) << stem;
    }
    const double bore = GlbPart::catalogued("Abdeckkappe_100_125").opening("bore").radius;
    EXPECT_TRUE(bore > 0.05 && bore < 0.0525) << bore;
    const GlbPart& clamp = GlbPart::catalogued("Rohrschelle_100");
    EXPECT_NEAR(clamp.opening("ring").radius, 0.05, 1e-9);
    EXPECT_NEAR(clamp.opening("rod").centre.x, 0.1167, 1e-9);
}

// The reference point, where the constructions place a part, is the centre of its box. (The
// kinks' boxes are still 0.65 and 1.4 mm off across the wall, x: their lower end must stay on
// the vertical pipe's axis where the kink construction puts it, so the fix is in their shape.)
TEST(PartFiles, HaveTheirReferencePointAtTheCentreOfTheirBox) {
    for (const CataloguedPart& entry : kParts) {
        const GlbPart& part = GlbPart::catalogued(entry.stem);
        const Vec3 centre = (part.lo + part.hi) * 0.5;
        const bool kink = std::string(entry.stem).starts_with("Knick");
        EXPECT_LT(std::abs(centre.x), kink ? 2e-3 : 1e-6) << entry.stem;
        EXPECT_LT(std::abs(centre.y), 1e-6) << entry.stem;
        EXPECT_LT(std::abs(centre.z), 1e-6) << entry.stem;
    }
}

TEST(PartGeometry, UnknownAnglesAreRefused) {
    EXPECT_THROW(PartShapes::bend(90, true), std::invalid_argument);
    EXPECT_THROW(PartShapes::kink(45), std::invalid_argument);
}

// The base scene without parts, the catalogue's parts, the four material files byte for byte
// and the empty folders.
TEST(WorkFolder, HoldsExactlyTheFilesTheProgramExpects) {
    const auto contents = [](const char* folder) {
        std::map<std::string, std::string> files;
        for (const auto& entry : fs::directory_iterator(kRoot / folder)) {
            std::ifstream in(entry.path(), std::ios::binary);
            files[entry.path().filename().string()] = (std::ostringstream() << in.rdbuf()).str();
        }
        return files;
    };
    const GlbPart scene((kRoot / "main.v3o").string());
    EXPECT_EQ(scene.model.meshes.size(), 1U); // on the marker, which is not drawn
    ASSERT_TRUE(scene.model.scenes.size() == 1 && scene.model.scenes[0].nodes.size() == 1);
    const auto& marker = scene.model.nodes.at(scene.model.scenes[0].nodes[0]);
    EXPECT_TRUE(marker.children.empty() && marker.extras.Get("auxiliary").Get<bool>());
    EXPECT_TRUE(scene.model.asset.extras.Get("baseScene").Get<bool>());
    const auto res = contents("res");
    EXPECT_EQ(res.size(), std::size(kParts));
    for (const CataloguedPart& entry : kParts) {
        EXPECT_TRUE(res.contains(std::string(entry.stem) + ".v3o")) << entry.stem;
    }
    EXPECT_EQ(
        contents("mat"),
        (std::map<std::string, std::string>{
            {"Grau.ini", "[Material]\r\nName=Grau\r\nBaseColor=144,144,144\r\nMetallic=0\r\n"
                         "Roughness=0.55\r\n"},
            {"Kupfer.ini", "[Material]\r\nName=Kupfer\r\nBaseColor=154,108,89\r\nMetallic=1\r\n"
                           "Roughness=0.35\r\n"},
            {"Zink.ini", "[Material]\r\nName=Zink\r\nBaseColor=117,117,117\r\nMetallic=0.85\r\n"
                         "Roughness=0.5\r\n"},
            {"Alu.ini", "[Material]\r\nName=Alu\r\nBaseColor=178,178,178\r\nMetallic=0.9\r\n"
                        "Roughness=0.3\r\n"}}));
    EXPECT_TRUE(fs::is_directory(kRoot / "obj") && fs::is_directory(kRoot / "destination"));
}

// Part files composed as the constructions place them: each opening meets its neighbour.
// The placements are written out here from the construction tables, in millimetres with the
// ground at z = 0.

// One placed part: stretched to `length` along z (0: as drawn), turned `degrees` about
// (0, -1, 0), reference point at (x, 0, z).
struct Placement {
    std::string stem;
    double x, z, length = 0, degrees = 0;

    Vec3 turn(const Vec3& v) const {
        const double a = degrees * std::numbers::pi / 180;
        return {v.x * std::cos(a) - v.z * std::sin(a), v.y, v.x * std::sin(a) + v.z * std::cos(a)};
    }
    Opening opening(const std::string& name) const {
        const Opening& o = GlbPart::catalogued(stem).opening(name);
        // Stretched from its drawn 500 mm.
        const Vec3 centre{o.centre.x * 1000, o.centre.y * 1000,
                          o.centre.z * (length ? 2 * length : 1000)};
        return {name, turn(centre) + Vec3{x, 0, z}, turn(o.direction), o.radius};
    }
};

// Opening `a` of part `from` meets opening `b` of part `to`: the gap along a's axis (negative:
// one reaches into the other) and the distance of b's centre from that axis, in mm; facing each
// other unless only the axes must agree (a clamp's ring, the cap's bore).
struct Joint {
    const char *from, *a, *to, *b;
    double gapLo, gapHi, lateral;
    bool facing = true;
};

// The parts of a construction by their role.
using Parts = std::map<std::string, Placement>;

const std::vector<Joint> kBendJoints = {
    {"outlet", "bottom", "upper", "top", -0.01, 0.01, 0.01},
    {"upper", "inclined", "inclined", "top", -1.5, 1.5, 1.5},
    {"inclined", "bottom", "lower", "inclined", -1.5, 1.5, 1.5},
    // The 72-degree lower bend is centred on 276.4 mm, not its 274.6: 0.9 mm overlap.
    {"lower", "bottom", "vertical", "top", -1.0, 0.01, 0.01},
    {"vertical", "top", "clamp", "ring", -1e9, 0, 1e-6, false},
    // The cap rests on the standpipe: its bore, half its height up, round the pipe's axis.
    {"standpipe", "top", "cap", "bore", 14.7 - 1e-4, 14.7 + 1e-4, 1e-6, false},
};

// The 42-degree upper kink reaches 10 mm up into the outlet, 1.5 mm off its axis; the inclined
// pipe ends inside both kinks.
const std::vector<Joint> kKinkJoints = {
    {"outlet", "bottom", "upper", "bottom", -10.01, 0.01, 1.6},
    {"upper", "inclined", "inclined", "top", -25, -5, 2.0},
    {"inclined", "bottom", "lower", "inclined", -25, -5, 2.0},
    {"lower", "bottom", "vertical", "top", -0.01, 0.01, 0.01},
};

// a, b, bLow: effective sizes of the upper and lower bend; ch, cv, kc, ks: the construction
// constants of the angle.
Parts bend(int degrees, double a, double b, double bLow, double ch, double cv, double kc, double ks,
           double H, double D) {
    const double hs = 300, lh = D - 2 * a + ch, l = lh / kc, v = l * ks;
    const double lv = H - 186.5 - 2 * b - v + cv;
    const std::string n = std::to_string(degrees);
    return {{"upper", {"Bogen_100_" + n + "_L", -(D - a / 2), H - 186.5 - b / 2}},
            {"lower", {"Bogen_100_" + n + "_R", -a / 2, H - 186.5 - b - v - bLow / 2 + cv}},
            {"inclined",
             {"Fallrohr_100_500", -(a + lh / 2 - ch / 2), H - 186.5 - b - (v - cv) / 2, l,
              double(degrees)}},
            {"vertical", {"Fallrohr_100_500", -50, lv / 2, lv}},
            {"standpipe", {"Standrohr_125_500", -50, hs / 2, hs}},
            {"outlet", {"Reinhangestutzen_100_218", -(D - 50), H - 93.25}},
            {"cap", {"Abdeckkappe_100_125", -50, hs + 14.7}},
            {"clamp", {"Rohrschelle_100", 12.7, lv}}};
}

// beta: the inclined pipe's angle from the horizontal; w: the kinks' reach from the wall;
// k: their effective height; the rest, the construction's small allowances.
Parts kink(int degrees, double beta, double w, double k, double lift, double incline, double extra,
           double upperLift, double lowerX, double upperX, double H, double W) {
    const double l = (W - w - 30) / std::cos(beta * std::numbers::pi / 180);
    const double r = std::sin(beta * std::numbers::pi / 180) * l;
    const double lv = H - 186.5 - r - k + lift;
    const std::string file = "Knick_100_" + std::to_string(degrees);
    return {{"vertical", {"Fallrohr_100_500", -50, lv / 2, lv}},
            {"inclined",
             {"Fallrohr_100_500", -W / 2, H - 186.5 - r / 2 + incline, l + extra, double(degrees)}},
            {"lower", {file, -lowerX, H - 186.5 - r - k / 2 + lift}},
            {"upper", {file, -W + upperX, H - 186.5 - k / 2 + upperLift, 0, 180}},
            {"outlet", {"Reinhangestutzen_100_218", -W + 50, H - 93.25}}};
}

// Besides the joints: the pipes stand on the ground.
TEST(Constructions, EveryOpeningMeetsItsNeighbour) {
    const std::pair<Parts, std::vector<Joint>> constructions[] = {
        {bend(72, 230.4, 274.6, 276.4, 30, 95, 0.95, 0.309, 5000, 600), kBendJoints},
        {bend(72, 230.4, 274.6, 276.4, 30, 95, 0.95, 0.309, 3200, 900), kBendJoints},
        {bend(42, 192.3, 307.3, 307.3, 75, 65, 0.669, 0.743, 5000, 500), kBendJoints},
        {bend(42, 192.3, 307.3, 307.3, 75, 65, 0.669, 0.743, 2800, 380), kBendJoints},
        {kink(72, 18, 102.1, 96.2, 10, -43.1, 0, 0, 51.05, 51.05, 3000, 300), kKinkJoints},
        {kink(72, 18, 102.1, 96.2, 10, -43.1, 0, 0, 51.05, 51.05, 4200, 190), kKinkJoints},
        {kink(42, 48, 106, 67.4, 0, -30, 30, 10, 51.5, 53, 3000, 300), kKinkJoints},
        {kink(42, 48, 106, 67.4, 0, -30, 30, 10, 51.5, 53, 4200, 190), kKinkJoints},
        // The straight downpipe 600 mm from the wall, H 3000: two clamps 1800 apart.
        {{{"outlet", {"Reinhangestutzen_100_218", -650, 3000 - 93.25}},
          {"vertical", {"Fallrohr_100_500", -650, (3000 - 186.5) / 2, 3000 - 186.5}},
          {"standpipe", {"Standrohr_125_500", -650, 150, 300}},
          {"cap", {"Abdeckkappe_100_125", -650, 300 + 14.7}},
          {"clamp", {"Rohrschelle_100", 12.7 - 600, 3000 - 549.2 + 95}},
          {"clamp2", {"Rohrschelle_100", 12.7 - 600, 3000 - 549.2 + 95 - 1800}}},
         {{"outlet", "bottom", "vertical", "top", -0.01, 0.01, 0.01},
          {"vertical", "top", "clamp", "ring", -1e9, 0, 1e-6, false},
          {"vertical", "top", "clamp2", "ring", -1e9, 0, 1e-6, false},
          {"standpipe", "top", "cap", "bore", 14.7 - 1e-4, 14.7 + 1e-4, 1e-6, false}}},
    };
    for (std::size_t i = 0; i < std::size(constructions); ++i) {
        SCOPED_TRACE("construction " + std::to_string(i));
        const auto& [p, joints] = constructions[i];
        for (const Joint& j : joints) {
            SCOPED_TRACE(std::string(j.from) + " " + j.a + " / " + j.to + " " + j.b);
            const Opening a = p.at(j.from).opening(j.a), b = p.at(j.to).opening(j.b);
            const Vec3 d = b.centre - a.centre;
            const double gap = d.dot(a.direction);
            EXPECT_TRUE(!j.facing || std::abs(a.direction.dot(b.direction) + 1) < 1e-6);
            EXPECT_TRUE(gap >= j.gapLo && gap <= j.gapHi) << gap;
            EXPECT_LE((d - a.direction * gap).length(), j.lateral);
        }
        for (const char* pipe : {"vertical", "standpipe"}) {
            EXPECT_NEAR(p.contains(pipe) ? p.at(pipe).opening("bottom").centre.z : 0, 0, 1e-4);
        }
    }
}

} // namespace
} // namespace pluvarine
