#pragma once

#include "platform/viewer/OrbitCamera.h"
#include "platform/viewer/ViewerScene.h"

#include <QOpenGLExtraFunctions>
#include <QOpenGLShaderProgram>
#include <map>
#include <memory>

namespace pluvarine {

// Draws a ViewerScene with OpenGL 3.3 (core profile): physically based shading (GGX specular,
// Schlick Fresnel, metalness) lit by two directional lights and a sky/ground environment, so
// that metals reflect their colour and plastics stay matt. A faint wall plane at x = 0 is drawn
// behind the assembly as a backdrop; it is not part of the scene. Needs a current context for
// every call; the owner calls release() with the context current before the context goes.
class SceneRenderer : protected QOpenGLExtraFunctions {
public:
    SceneRenderer();
    ~SceneRenderer();
    SceneRenderer(const SceneRenderer&) = delete;
    SceneRenderer& operator=(const SceneRenderer&) = delete;

    void initialize();
    // Renders into the bound framebuffer, viewport `pixels`.
    void render(const ViewerScene& scene, const OrbitCamera& camera, const QSize& pixels);
    void release();

    // The clear colour (sRGB), for tests telling background from content.
    static QColor backgroundColor();

private:
    struct GpuMesh {
        std::weak_ptr<const MeshData> source;
        GLuint vao = 0;
        GLuint buffer = 0;
        GLuint indexBuffer = 0;
        GLsizei indexCount = 0;
    };

    const GpuMesh& upload(const std::shared_ptr<const MeshData>& mesh);
    void dropStale();
    void drawMesh(const GpuMesh& mesh, const QMatrix4x4& model, const SurfaceLook& look);
    void drawBackdrop(const ViewerScene& scene, const OrbitCamera& camera, float aspect);

    bool m_initialized = false;
    std::unique_ptr<QOpenGLShaderProgram> m_program;
    std::unique_ptr<QOpenGLShaderProgram> m_flatProgram;
    std::map<const MeshData*, GpuMesh> m_meshes;
    std::shared_ptr<MeshData> m_wall;
};

} // namespace pluvarine
