#pragma once

#include "assembly/Daten.h"
#include "assembly/RecordingScene.h"

#include <array>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

namespace pluvarine::test {

inline constexpr const char* kWorkFolder = "/wf";

// A part as the documented placement table gives it, in double precision; the test rounds
// each number to single precision itself and demands the viewer got exactly that.
struct ExpectedPart {
    std::string file; // below res/
    std::optional<std::array<double, 3>> scale;
    std::array<double, 3> position;
    std::optional<std::array<double, 4>> rotation;
};

inline Daten makeDaten(double H, double wallOffset, double hs, double s) {
    Daten daten;
    daten.workFolder = kWorkFolder;
    daten.design.heightH = H;
    daten.design.wallOffset = wallOffset;
    daten.design.standpipeHeight = hs;
    daten.design.clampSpacing = s;
    return daten;
}

inline std::vector<std::string> opNames(const std::vector<SceneCall>& calls) {
    std::vector<std::string> names;
    for (const SceneCall& call : calls) {
        names.push_back(call.op);
    }
    return names;
}

inline std::vector<std::string> partFiles(const RecordingScene& scene) {
    std::vector<std::string> files;
    for (const SceneObject& object : scene.objects()) {
        files.push_back(object.partFile.substr(std::string(kWorkFolder).size() + 5)); // "/res/"
    }
    return files;
}

// Height above the ground in millimetres of a scene z.
inline double heightMm(float sceneZ, double H) {
    return (static_cast<double>(sceneZ) + H / 2000) * 1000;
}

template <std::size_t N> std::array<float, N> toFloats(const std::array<double, N>& values) {
    std::array<float, N> result{};
    for (std::size_t i = 0; i < N; ++i) {
        result[i] = static_cast<float>(values[i]);
    }
    return result;
}

// Every object of the scene, in placing order, is exactly the expected part: file, scale,
// position, rotation, all bit for bit as single precision, and committed.
inline void expectParts(const RecordingScene& scene, const std::vector<ExpectedPart>& expected) {
    ASSERT_EQ(scene.objects().size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        SCOPED_TRACE("part " + std::to_string(i) + " " + expected[i].file);
        const SceneObject& object = scene.objects()[i];
        EXPECT_EQ(object.partFile, std::string(kWorkFolder) + "/res/" + expected[i].file);
        if (expected[i].scale) {
            ASSERT_TRUE(object.scale.has_value());
            EXPECT_EQ(*object.scale, toFloats(*expected[i].scale));
        } else {
            EXPECT_FALSE(object.scale.has_value());
        }
        ASSERT_TRUE(object.position.has_value());
        EXPECT_EQ(*object.position, toFloats(expected[i].position));
        if (expected[i].rotation) {
            ASSERT_TRUE(object.rotation.has_value());
            EXPECT_EQ(*object.rotation, toFloats(*expected[i].rotation));
        } else {
            EXPECT_FALSE(object.rotation.has_value());
        }
        EXPECT_TRUE(object.committed);
    }
}

// The calls of one part placement follow AddPart, CurrentObject(id), [ScaleObject], MoveObject,
// [RotateObject], CommitObject(true); the whole construction ends with one UpdateView.
inline void expectPlacementProtocol(const std::vector<SceneCall>& calls, bool endsWithUpdate) {
    std::size_t i = 0;
    while (i < calls.size() && calls[i].op == "AddPart") {
        const auto id = std::get<std::int32_t>(*calls[i].result);
        ASSERT_LT(i + 1, calls.size());
        EXPECT_EQ(calls[i + 1].op, "CurrentObject");
        EXPECT_EQ(std::get<std::int32_t>(calls[i + 1].args[0]), id);
        i += 2;
        if (i < calls.size() && calls[i].op == "ScaleObject") {
            ++i;
        }
        ASSERT_LT(i, calls.size());
        EXPECT_EQ(calls[i].op, "MoveObject");
        ++i;
        if (i < calls.size() && calls[i].op == "RotateObject") {
            ++i;
        }
        ASSERT_LT(i, calls.size());
        EXPECT_EQ(calls[i].op, "CommitObject");
        EXPECT_EQ(std::get<bool>(calls[i].args[0]), true);
        ++i;
    }
    if (endsWithUpdate) {
        ASSERT_EQ(i + 1, calls.size());
        EXPECT_EQ(calls[i].op, "UpdateView");
    } else {
        EXPECT_EQ(i, calls.size());
    }
}

// Names the instances of a parameterised test after the `name` member of the case.
struct CaseName {
    template <typename Case>
    std::string operator()(const ::testing::TestParamInfo<Case>& param) const {
        return param.param.name;
    }
};

// The clamps' centres in millimetres above the ground, top first.
inline std::vector<double> clampHeightsMm(const RecordingScene& scene, double H) {
    std::vector<double> heights;
    for (const SceneObject& object : scene.objects()) {
        if (object.partFile.ends_with("Rohrschelle_100.v3o")) {
            heights.push_back(heightMm((*object.position)[2], H));
        }
    }
    return heights;
}

} // namespace pluvarine::test
