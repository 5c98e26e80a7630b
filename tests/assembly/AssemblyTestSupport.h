#pragma once

#include "assembly/Daten.h"
#include "assembly/PlainRebuildInputs.h"
#include "assembly/Rebuild.h"
#include "assembly/RecordingScene.h"
#include "base/RuntimeError.h"
#include "tests/support/FaultyScene.h"

#include <gtest/gtest.h>
#include <regex>
#include <string>
#include <vector>

namespace pluvarine::test {

inline constexpr const char* kWorkFolder = "/wf";

inline Daten makeDaten(double H, double D, double hs, double s) {
    Daten daten;
    daten.workFolder = kWorkFolder;
    daten.design.heightH = H;
    daten.design.wallOffset = D;
    daten.design.standpipeHeight = hs;
    daten.design.clampSpacing = s;
    return daten;
}

// Part files below res/, in placing order.
inline std::vector<std::string> partFiles(const RecordingScene& scene) {
    std::vector<std::string> files;
    for (const SceneObject& object : scene.objects())
        files.push_back(object.partFile.substr(std::string(kWorkFolder).size() + 5));
    return files;
}

// Each placement is AddPart, CurrentObject(its id), [ScaleObject], MoveObject, [RotateObject],
// CommitObject(true); a finished construction ends with one UpdateView.
inline void expectPlacementProtocol(const std::vector<SceneCall>& calls, bool endsWithUpdate) {
    std::string ops;
    for (std::size_t i = 0; i < calls.size(); ++i) {
        ops += calls[i].op + " ";
        EXPECT_TRUE(calls[i].op != "CurrentObject" ||
                    (i > 0 && calls[i].args[0] == calls[i - 1].result));
        EXPECT_TRUE(calls[i].op != "CommitObject" || calls[i].args[0] == SceneValue(true));
    }
    const std::string placement =
        "(AddPart CurrentObject (ScaleObject )?MoveObject (RotateObject )?CommitObject )*";
    EXPECT_TRUE(
        std::regex_match(ops, std::regex(placement + (endsWithUpdate ? "UpdateView " : ""))))
        << ops;
}

// A main window's worth of state around one rebuild, with the failures it reported.
struct Bench {
    Daten daten = makeDaten(3000, 0, 0, 0);
    FaultyScene scene;
    PlainRebuildInputs inputs;
    Rebuild rebuild{daten, scene, inputs};
    std::vector<int> failures;
    Bench() {
        rebuild.setFailureObserver(
            [this](const RuntimeError& e) { failures.push_back(e.number()); });
    }
    // The material of every ApplyMaterial from call `from` on; each follows its CurrentObject.
    std::vector<SceneValue> applied(std::size_t from = 0) const {
        std::vector<SceneValue> files;
        for (std::size_t i = from + 1; i < scene.calls().size(); ++i) {
            if (scene.calls()[i].op == "ApplyMaterial") {
                EXPECT_EQ(scene.calls()[i - 1].op, "CurrentObject");
                EXPECT_EQ(scene.calls()[i].args[0], SceneValue(0));
                files.push_back(scene.calls()[i].args[1]);
            }
        }
        return files;
    }
};

// Names the instances of a parameterised test after the `name` member of the case.
inline constexpr auto byName = [](const auto& info) { return std::string(info.param.name); };

} // namespace pluvarine::test
