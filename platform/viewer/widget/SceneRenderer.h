#pragma once

#include "platform/viewer/MeshLevels.h"
#include "platform/viewer/OrbitCamera.h"
#include "platform/viewer/ViewerScene.h"

#include <QColor>
#include <QOpenGLExtraFunctions>
#include <QOpenGLShaderProgram>
#include <QPointF>
#include <QRect>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace pluvarine {

// Draws a ViewerScene with OpenGL 3.3 (core profile): physically based shading (GGX specular,
// Schlick Fresnel, metalness) lit by two directional lights and a sky/ground environment, so
// that metals reflect their colour and plastics stay matt. A flat wall at x = 0 is drawn behind
// the assembly as a backdrop, seen from the front (-x) only; it is not part of the scene, and
// what lies behind it does not show. Needs a current context for every call; the owner calls
// release() with the context current before the context goes.
class SceneRenderer : protected QOpenGLExtraFunctions {
public:
    SceneRenderer();
    ~SceneRenderer();
    SceneRenderer(const SceneRenderer&) = delete;
    SceneRenderer& operator=(const SceneRenderer&) = delete;

    // Where a frame is more than one flat colour: outside `rect` (pixels, origin at the bottom
    // left as OpenGL counts) every pixel is `plain`, so that a multisampled frame needs
    // resolving inside it only.
    struct Detail {
        QRect rect;
        QColor plain;
    };

    void initialize();
    // Renders into the bound framebuffer, viewport `pixels`.
    Detail render(const ViewerScene& scene, const OrbitCamera& camera, const QSize& pixels);
    // Draws only the objects added to the scene since the last frame, over that frame, when
    // nothing else has changed (the view, the size, the other objects) and there is no backdrop:
    // an insertion into a scene of thousands of objects then costs what the new ones cost. The
    // bound framebuffer must still hold the last frame, colour and depth. False, and nothing
    // drawn, when a whole frame is needed.
    bool renderAdditions(const ViewerScene& scene, const OrbitCamera& camera, const QSize& pixels);
    // Resolves a multisampled frame into a single-sampled framebuffer of the same size, which
    // is left bound. llvmpipe's resolve costs almost half as much as the frame, so only the
    // detail is resolved and the rest cleared to its colour.
    void resolve(const Detail& detail, GLuint multisampled, GLuint target, const QSize& pixels);
    void release();

    // Whether the wall backdrop is drawn (on by default); a view of whole buildings turns it off.
    void setBackdrop(bool on) { m_backdrop = on; }
    bool backdrop() const { return m_backdrop; }
    // Whether objects that cover few pixels are drawn from coarser levels of their meshes, none
    // further than three quarters of a pixel from the mesh's own surface (off by default). Objects
    // out of view are never drawn. Set before the first frame.
    void setLevelsOfDetail(bool on) { m_levelsOfDetail = on; }
    // How many triangles the last frame drew, for measuring.
    std::size_t trianglesDrawn() const { return m_trianglesDrawn; }

    // The colours (sRGB) around and of the wall, for tests telling them from content.
    static QColor backgroundColor();
    static QColor wallColor();

private:
    // How a mesh is drawn stretched: along which of its axes (-1: none, or about evenly) and
    // by which power of two. Objects stretched alike share their levels of detail.
    using Stretch = std::pair<int, int>;
    // A mesh's levels of detail for one stretch, over the mesh's vertex buffer.
    struct LevelSet {
        GLuint vao = 0;
        GLuint indexBuffer = 0; // every level's triangles
        std::shared_ptr<const MeshLevels> levels;
    };
    struct GpuMesh {
        std::weak_ptr<const MeshData> source;
        GLuint buffer = 0; // positions, then normals
        // Unstretched levels always; only the finest without levels of detail.
        std::map<Stretch, LevelSet> levelSets;
    };

    // All objects of one mesh and look (and winding) of the scene.
    struct Batch {
        std::shared_ptr<const MeshData> mesh;
        SurfaceLook look;
        bool mirrored = false;
        std::vector<float> instances;
    };
    // Per instance: the model matrix (16 floats) and the normal matrix (9), column-major.
    static constexpr GLsizei kInstanceFloats = 25;
    // The objects of one batch seen at one level of detail, drawn in one call.
    struct Draw {
        std::size_t batch = 0;
        Stretch stretch;
        std::size_t level = 0;
        GLsizei firstInstance = 0; // in the instance buffer
        GLsizei count = 0;
        std::size_t triangles = 0;
    };

    GpuMesh& upload(const std::shared_ptr<const MeshData>& mesh);
    const LevelSet& levelSet(GpuMesh& gpu, const MeshData& mesh, const Stretch& stretch);
    void deleteMesh(GpuMesh& gpu);
    void dropStale();
    // Groups the scene's objects from index `first` on into batches, when the scene has
    // changed since the last frame.
    void updateBatches(const ViewerScene& scene, std::size_t first);
    // Picks the batches' instances in view and their levels of detail, and uploads their
    // matrices in that order, when the batches or the view have changed.
    void selectDraws(const QMatrix4x4& viewProjection, const QSize& pixels);
    // Draws the objects from index `first` on with the shaded program, parts beyond
    // `clipPlane` cut away.
    void drawObjects(const ViewerScene& scene, std::size_t first, const QMatrix4x4& viewProjection,
                     const QVector3D& eye, const QVector4D& clipPlane, const QSize& pixels);
    void drawAll();
    void draw(const Draw& draw);
    // The wall's square (x = 0, y and z from -1 to 1) placed behind the scene's bounds; none
    // when the scene is empty or the camera is behind the wall.
    static std::optional<QMatrix4x4> wallTransform(const Box3& bounds, const OrbitCamera& camera);
    // `outline`: the wall's, in normalised device coordinates.
    void drawAroundWall(const std::vector<QPointF>& outline);
    static Detail detail(const Box3& bounds, const std::vector<QPointF>& outline,
                         const QMatrix4x4& viewProjection, const QSize& pixels);

    bool m_initialized = false;
    bool m_backdrop = true;
    bool m_levelsOfDetail = false;
    std::unique_ptr<QOpenGLShaderProgram> m_program;
    std::unique_ptr<QOpenGLShaderProgram> m_flatProgram;
    std::map<const MeshData*, GpuMesh> m_meshes;
    GLuint m_outsideVao = 0; // the background around the wall, new each frame
    GLuint m_outsideBuffer = 0;
    GLuint m_instanceBuffer = 0;
    std::vector<Batch> m_batches;
    const ViewerScene* m_batchScene = nullptr;
    std::uint64_t m_batchRevision = 0;
    std::size_t m_batchFirst = 0;
    std::vector<Draw> m_draws;
    std::size_t m_trianglesDrawn = 0;
    // The view the draws were selected for; none when the batches have changed since.
    struct Selection {
        QMatrix4x4 viewProjection;
        QSize pixels;
    };
    std::optional<Selection> m_selection;
    // What the last frame showed, for renderAdditions().
    struct Drawn {
        const ViewerScene* scene = nullptr;
        std::uint64_t layoutRevision = 0;
        std::int32_t lastId = 0;
        QMatrix4x4 viewProjection;
        QVector3D eye;
        QSize pixels;
    };
    std::optional<Drawn> m_drawn;
};

} // namespace pluvarine
