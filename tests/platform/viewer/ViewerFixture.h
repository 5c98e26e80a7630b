#pragma once

#include "base/RuntimeError.h"
#include "platform/viewer/OrbitCamera.h"
#include "platform/viewer/ViewerScene.h"
#include "tests/support/FileBytes.h"

#include <QPolygonF>
#include <QTemporaryDir>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>

namespace pluvarine::test {

// A test that writes its own input must not go on without it.
inline void writeText(const std::string& path, const std::string& text) {
    ASSERT_TRUE((std::ofstream(path, std::ios::binary) << text).flush()) << path;
}

// The image area the box's eight corners cover as the camera shows them; every corner must lie
// in the viewport.
inline QRectF expectShown(const OrbitCamera& camera, const Box3& box, QSize viewport) {
    QPolygonF corners;
    for (int i = 0; i < 8; ++i) {
        const auto end = [&](int k) { return float((i >> k & 1 ? box.max() : box.min())[k]); };
        corners << camera.project(QVector3D(end(0), end(1), end(2)), viewport);
    }
    const QRectF drawn = corners.boundingRect();
    EXPECT_TRUE(QRectF({}, QSizeF(viewport)).contains(drawn))
        << drawn.left() << "," << drawn.top() << " to " << drawn.right() << "," << drawn.bottom();
    return drawn;
}

// Every viewer failure is one error kind.
template <class Step> void expectViewerError(Step step) {
    EXPECT_THAT(step, ::testing::Throws<RuntimeError>(
                          ::testing::Property(&RuntimeError::number, RuntimeError::ViewerError)));
}

// Copies of work-folder files in a scratch folder, under short names (tests delete and break
// them): pipe, clamp, the auxiliary dummy, a base scene with content (the cap's mesh) and the
// copper material.
class ViewerFixture : public ::testing::Test {
protected:
    void SetUp() override {
        for (const auto& [name, source] : {std::pair{"pipe.v3o", "res/Fallrohr_100_500.v3o"},
                                           {"clamp.v3o", "res/Rohrschelle_100.v3o"},
                                           {"dummy.v3o", "res/dummy.v3o"},
                                           {"main.v3o", "res/Abdeckkappe_100_125.v3o"},
                                           {"Kupfer.ini", "mat/Kupfer.ini"}}) {
            std::filesystem::copy_file(std::string(PLUVARINE_WORKFOLDER "/") + source, path(name));
        }
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
