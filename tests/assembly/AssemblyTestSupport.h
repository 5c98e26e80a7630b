#pragma once

#include "assembly/Daten.h"
#include "assembly/PlainRebuildInputs.h"
#include "assembly/Rebuild.h"
#include "assembly/RecordingScene.h"
#include "base/RuntimeError.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace pluvarine::test {

inline constexpr const char* kWorkFolder = "/wf";

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

// Part files below res/, in placing order.
inline std::vector<std::string> partFiles(const RecordingScene& scene) {
    std::vector<std::string> files;
    for (const SceneObject& object : scene.objects()) {
        files.push_back(object.partFile.substr(std::string(kWorkFolder).size() + 5));
    }
    return files;
}

// Height above the ground in millimetres of a scene z (the scene's origin is at H / 2).
inline double heightMm(float sceneZ, double H) {
    return (static_cast<double>(sceneZ) + H / 2000) * 1000;
}

// Each placement is AddPart, CurrentObject(its id), [ScaleObject], MoveObject, [RotateObject],
// CommitObject(true); a finished construction ends with one UpdateView.
inline void expectPlacementProtocol(const std::vector<SceneCall>& calls, bool endsWithUpdate) {
    std::size_t i = 0;
    const auto skip = [&](const char* op) { i += i < calls.size() && calls[i].op == op ? 1 : 0; };
    for (; i < calls.size() && calls[i].op == "AddPart"; ++i) {
        ASSERT_LT(i + 3, calls.size());
        EXPECT_EQ(calls[i + 1].op, "CurrentObject");
        EXPECT_EQ(calls[i + 1].args[0], *calls[i].result);
        i += 2;
        skip("ScaleObject");
        EXPECT_EQ(calls[i].op, "MoveObject");
        ++i;
        skip("RotateObject");
        ASSERT_LT(i, calls.size());
        EXPECT_EQ(calls[i].op, "CommitObject");
        EXPECT_EQ(calls[i].args[0], SceneValue(true));
    }
    ASSERT_EQ(i + (endsWithUpdate ? 1 : 0), calls.size());
    EXPECT_TRUE(!endsWithUpdate || calls.back().op == "UpdateView");
}

// A main window's worth of state around one rebuild, with the failures it reported.
struct Bench {
    Daten daten = makeDaten(3000, 0, 0, 0);
    RecordingScene scene;
    PlainRebuildInputs inputs;
    Rebuild rebuild{daten, scene, inputs};
    std::vector<int> failures;
    Bench() {
        rebuild.setFailureObserver(
            [this](const RuntimeError& e) { failures.push_back(e.number()); });
    }
    // (id, material) of every ApplyMaterial from call `from` on; each follows its CurrentObject.
    std::vector<std::pair<SceneValue, SceneValue>> applied(std::size_t from = 0) const {
        std::vector<std::pair<SceneValue, SceneValue>> result;
        for (std::size_t i = from + 1; i < scene.calls().size(); ++i) {
            const SceneCall& call = scene.calls()[i];
            if (call.op == "ApplyMaterial") {
                EXPECT_EQ(scene.calls()[i - 1].op, "CurrentObject");
                EXPECT_EQ(call.args[0], SceneValue(0));
                result.emplace_back(scene.calls()[i - 1].args[0], call.args[1]);
            }
        }
        return result;
    }
};

// Names the instances of a parameterised test after the `name` member of the case.
struct CaseName {
    template <typename Case> std::string operator()(const ::testing::TestParamInfo<Case>& p) const {
        return p.param.name;
    }
};

} // namespace pluvarine::test
