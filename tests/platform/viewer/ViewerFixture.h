#pragma once

#include "TestGlb.h"
#include "platform/viewer/ViewerScene.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace pluvarine::test {

// A working folder of test files: a pipe piece (0.1 x 0.1 x 0.5 box), a clamp, an auxiliary
// dummy, a base scene with one small marker, and material files.
class ViewerFixture : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_dir.isValid());
        SurfaceLook grey{"own", {0.5f, 0.5f, 0.5f}, 0.0f, 0.6f};
        writeBoxPart(path("pipe.v3o"), 0.1, 0.1, 0.5, grey);
        writeBoxPart(path("clamp.v3o"), 0.2334, 0.12, 0.03, grey);
        writeBoxPart(path("dummy.v3o"), 1.0, 1.0, 1.0, grey, true);
        writeBoxPart(path("main.v3o"), 0.01, 0.01, 0.01, grey);
        writeText(path("Kupfer.ini"),
                  "[Material]\r\nName=Kupfer\r\nBaseColor=154,108,89\r\nMetallic=1\r\n"
                  "Roughness=0.35\r\n");
        writeText(path("Grau.ini"),
                  "[Material]\r\nName=Grau\r\nBaseColor=144,144,144\r\nMetallic=0\r\n"
                  "Roughness=0.6\r\n");
    }

    std::string path(const std::string& name) const {
        return m_dir.filePath(QString::fromStdString(name)).toStdString();
    }

    QTemporaryDir m_dir;
    ViewerScene m_scene;
};

} // namespace pluvarine::test
