#pragma once

#include "TestGlb.h"
#include "base/RuntimeError.h"
#include "platform/viewer/ViewerScene.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace pluvarine::test {

// Every viewer failure is one error kind.
template <class Step> void expectViewerError(Step step) {
    try {
        step();
        ADD_FAILURE() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), RuntimeError::ViewerError);
    }
}

// A folder of test parts: pipe (0.1 x 0.1 x 0.5 box), clamp, auxiliary dummy, a base scene with
// one small marker, and a material file.
class ViewerFixture : public ::testing::Test {
protected:
    void SetUp() override {
        const SurfaceLook own{"own", {0.5f, 0.5f, 0.5f}, 0.0f, 0.6f};
        writeBoxPart(path("pipe.v3o"), 0.1, 0.1, 0.5, own);
        writeBoxPart(path("clamp.v3o"), 0.2334, 0.12, 0.03, own);
        writeBoxPart(path("dummy.v3o"), 1, 1, 1, own, true);
        writeBoxPart(path("main.v3o"), 0.01, 0.01, 0.01, own);
        writeText(path("Kupfer.ini"), "[Material]\r\nName=Kupfer\r\nBaseColor=154,108,89\r\n"
                                      "Metallic=1\r\nRoughness=0.35\r\n");
    }
    std::string path(const std::string& name) const {
        return m_dir.filePath(QString::fromStdString(name)).toStdString();
    }
    // Adds the part and makes it the current object.
    std::int32_t current(const std::string& part) {
        const std::int32_t id = m_scene.AddPart(path(part + ".v3o"));
        m_scene.CurrentObject(id);
        return id;
    }

    QTemporaryDir m_dir;
    ViewerScene m_scene;
};

} // namespace pluvarine::test
