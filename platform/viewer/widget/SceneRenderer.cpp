#include "platform/viewer/widget/SceneRenderer.h"

#include <QColor>
#include <QPointF>
#include <QVector4D>
#include <algorithm>
#include <cmath>

namespace pluvarine {

namespace {

// Every object is an instance of its mesh: its model and normal matrices come per instance, so
// all objects of one mesh and look are one draw call.
const char* kVertexShader = R"(#version 330 core
layout(location = 0) in vec3 position;
layout(location = 1) in vec3 normal;
layout(location = 2) in mat4 model;
layout(location = 6) in mat3 normalMatrix;
uniform mat4 viewProjection;
uniform vec4 clipPlane; // what lies on its negative side is cut away
out vec3 worldPosition;
out vec3 worldNormal;
out float gl_ClipDistance[1];
void main() {
    vec4 p = model * vec4(position, 1.0);
    worldPosition = p.xyz;
    worldNormal = normalMatrix * normal;
    gl_ClipDistance[0] = dot(clipPlane, p);
    gl_Position = viewProjection * p;
}
)";

// The background around the wall, given in normalised device coordinates.
const char* kFlatVertexShader = R"(#version 330 core
layout(location = 0) in vec3 position;
void main() { gl_Position = vec4(position, 1.0); }
)";

// Cook-Torrance with GGX distribution, Smith-Schlick geometry and Schlick Fresnel; the
// environment is a sky-over-ground gradient looked up along the reflection, blurred towards
// its average with roughness. llvmpipe runs this for every 4 x 4 pixel block a triangle touches,
// and the thin triangles of a pipe seen whole touch each block several times: so what depends
// only on the material comes in as uniforms, and pow() (a log and an exp per channel) and
// divisions give way to products, square roots and exp2 where the 8-bit result stays the same
// to within two steps.
const char* kFragmentShader = R"(#version 330 core
in vec3 worldPosition;
in vec3 worldNormal;
uniform vec3 cameraPosition;
uniform vec3 f0;                // Fresnel at normal incidence
uniform vec3 diffuseColor;      // (1 - metallic) * base colour
uniform vec3 diffuseLight;      // (1 - f0) * diffuseColor / pi
uniform vec3 ambientFresnelMax; // max(1 - roughness, f0)
uniform float specularScale;    // a^2 / (4 pi), a = roughness^2
uniform float a2Minus1;         // a^2 - 1
uniform float geometryK;        // (roughness + 1)^2 / 8
uniform float panelSharpness;   // exponent of the panel lobes, times log2(e)
uniform float environmentBlur;  // roughness^2
uniform float environmentWeight; // 1 - roughness / 2
out vec4 fragColor;

const float PI = 3.14159265;
const vec3 skyColor = vec3(0.80, 0.86, 0.95);
const vec3 horizonColor = vec3(0.95, 0.95, 0.93);
const vec3 groundColor = vec3(0.22, 0.20, 0.18);
const vec3 keyLight = vec3(-0.45, -0.35, 0.82) / length(vec3(-0.45, -0.35, 0.82));
const vec3 fillLight = vec3(-0.6, 0.7, 0.2) / length(vec3(-0.6, 0.7, 0.2));
const vec3 lowLight = vec3(0.3, -0.8, -0.2) / length(vec3(0.3, -0.8, -0.2));

float pow5(float x) {
    float x2 = x * x;
    return x2 * x2 * x;
}

vec3 environment(vec3 r) {
    float t = r.z;
    // Above the horizon t^0.6, here as 0.741 sqrt(t) + 0.259 t: the two differ by less than
    // 0.014, and the colours they blend differ by less than 0.15. Below it sqrt(3 |t|).
    float root = sqrt(t > 0.0 ? t : min(-3.0 * t, 1.0));
    float blend = t > 0.0 ? root * (0.741 + 0.259 * root) : root;
    vec3 sharp = mix(horizonColor, t > 0.0 ? skyColor : groundColor, blend);
    // Two bright panels at about eye height on either side of the default view direction:
    // a pipe seen from a little above mirrors them as streaks, which is what makes a metal
    // read as metal. The lobe d^n is exp(n (d - 1)), the same near its peak where it shows.
    sharp += 1.4 * exp2(panelSharpness * (min(dot(r, vec3(-0.33, -0.93, -0.15)), 1.0) - 1.0))
           + 0.8 * exp2(panelSharpness * (min(dot(r, vec3(-0.86, 0.49, -0.15)), 1.0) - 1.0));
    vec3 average = 0.5 * (skyColor + groundColor) + 0.1;
    return mix(sharp, average, environmentBlur);
}

// One light's share, as scalars for Schlick's Fresnel F = f0 + (1 - f0) s: the diffuse weight
// (1 - s) E and the specular weight D G / (4 nv nl) E, alone and times s, where E = radiance nl.
// nv cancels against the geometry term; one division remains.
vec3 light(vec3 n, vec3 v, float geometryV, vec3 l, float radiance) {
    vec3 h = normalize(v + l);
    float nl = max(dot(n, l), 0.0);
    float nh = max(dot(n, h), 0.0);
    float s = pow5(1.0 - max(dot(h, v), 0.0));
    float d = nh * nh * a2Minus1 + 1.0;
    float e = radiance * nl;
    float specular = e * specularScale / (d * d * geometryV * (nl * (1.0 - geometryK) + geometryK));
    return vec3(e * (1.0 - s), specular, specular * s);
}

// The highlight roll-off x / (1 + 0.35 x), then x^(1/2.2), as one polynomial in sqrt(x):
// within 0.73 of a step of 8-bit output, without a division.
vec3 toneAndGamma(vec3 x) {
    vec3 s = sqrt(clamp(x, 0.0, 1.0 / 0.65));
    return s * (1.308531 + s * (-0.976061 + s * (1.234622 + s * (-0.991897 + s * 0.297153))));
}

void main() {
    vec3 n = normalize(worldNormal);
    vec3 v = normalize(cameraPosition - worldPosition);
    float facing = dot(n, v);
    if (facing < 0.0) n = -n; // two-sided, whatever the winding or mirroring
    float nv = max(abs(facing), 1e-4);
    float geometryV = nv * (1.0 - geometryK) + geometryK;
    vec3 w = light(n, v, geometryV, keyLight, 2.6) + light(n, v, geometryV, fillLight, 0.9);
    vec3 color = diffuseLight * w.x + f0 * w.y + (1.0 - f0) * w.z;
    // A faint light from below the horizon, diffuse only.
    color += (0.35 / PI) * diffuseColor * max(dot(n, lowLight), 0.0);
    vec3 fr = f0 + (ambientFresnelMax - f0) * pow5(1.0 - nv);
    vec3 hemisphere = mix(groundColor, skyColor, 0.5 + 0.5 * n.z);
    color += (1.0 - fr) * diffuseColor * hemisphere * 0.55;
    color += fr * environment(reflect(-v, n)) * environmentWeight;
    fragColor = vec4(toneAndGamma(color), 1.0);
}
)";

// The wall and the background around it are flat: one colour, no shading per pixel.
const char* kFlatFragmentShader = R"(#version 330 core
uniform vec3 flatColor;
out vec4 fragColor;
void main() { fragColor = vec4(flatColor, 1.0); }
)";

const QColor kWallColor(214, 212, 206);
// How many triangles go to the driver between flushes of a frame: few enough that rasterizing
// begins early, enough that each flush's reloading of the frame's tiles stays small.
constexpr std::size_t kTrianglesPerFlush = 32768;
// Parts may reach this far behind the wall's plane (metres) and still show: faces lying on the
// wall stay whole.
constexpr float kWallTolerance = 0.001f;

QVector3D linear(const QColor& color) {
    return {float(color.redF()), float(color.greenF()), float(color.blueF())};
}

// The part of a convex polygon (homogeneous points) where dot(plane, point) >= 0.
std::vector<QVector4D> clipPolygon(const std::vector<QVector4D>& polygon, const QVector4D& plane) {
    std::vector<QVector4D> kept;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const QVector4D& a = polygon[i];
        const QVector4D& b = polygon[(i + 1) % polygon.size()];
        const float da = QVector4D::dotProduct(plane, a);
        const float db = QVector4D::dotProduct(plane, b);
        if (da >= 0) {
            kept.push_back(a);
        }
        if ((da >= 0) != (db >= 0)) {
            kept.push_back(a + (b - a) * (da / (da - db)));
        }
    }
    return kept;
}

// The wall's outline in normalised device coordinates, clipped to the depth range (only what
// lies between the near and the far plane shows): a convex polygon, or fewer than 3 points.
std::vector<QPointF> wallOutline(const QMatrix4x4& wallToClip) {
    std::vector<QVector4D> corners;
    for (const QVector3D& corner :
         {QVector3D(0, -1, -1), QVector3D(0, 1, -1), QVector3D(0, 1, 1), QVector3D(0, -1, 1)}) {
        corners.push_back(wallToClip * QVector4D(corner, 1));
    }
    std::vector<QPointF> outline;
    for (const QVector4D& p : clipPolygon(clipPolygon(corners, {0, 0, 1, 1}), {0, 0, -1, 1})) {
        outline.emplace_back(p.x() / p.w(), p.y() / p.w());
    }
    return outline;
}

// Twice the signed area of a polygon: positive when counter-clockwise.
double twiceArea(const std::vector<QPointF>& polygon) {
    double area = 0;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const QPointF& a = polygon[i];
        const QPointF& b = polygon[(i + 1) % polygon.size()];
        area += a.x() * b.y() - b.x() * a.y();
    }
    return area;
}

// The half-plane beyond the edge from polygon[i], as a plane for clipPolygon().
QVector4D beyondEdge(const std::vector<QPointF>& polygon, std::size_t i, double area) {
    // Outside lies right of a counter-clockwise edge, left of a clockwise one.
    const QPointF& a = polygon[i];
    const QPointF d = polygon[(i + 1) % polygon.size()] - a;
    const QPointF out = area > 0 ? QPointF(d.y(), -d.x()) : QPointF(-d.y(), d.x());
    return {float(out.x()), float(out.y()), 0, float(-QPointF::dotProduct(out, a))};
}

bool insideOutline(const std::vector<QPointF>& outline, const QPointF& point) {
    const double area = twiceArea(outline);
    if (outline.size() < 3 || std::abs(area) < 1e-12) {
        return false;
    }
    for (std::size_t i = 0; i < outline.size(); ++i) {
        if (QVector4D::dotProduct(beyondEdge(outline, i, area),
                                  QVector4D(float(point.x()), float(point.y()), 0, 1)) > 0) {
            return false;
        }
    }
    return true;
}

// The screen outside a convex outline as triangles, x and y in normalised device coordinates:
// for each edge, the screen beyond it. The pieces overlap near the corners, which a flat colour
// does not show.
std::vector<float> screenOutside(const std::vector<QPointF>& outline) {
    const std::vector<QVector4D> screen = {
        {-1, -1, 0, 1}, {1, -1, 0, 1}, {1, 1, 0, 1}, {-1, 1, 0, 1}};
    const double area = twiceArea(outline);
    std::vector<std::vector<QVector4D>> pieces;
    if (outline.size() < 3 || std::abs(area) < 1e-12) {
        pieces.push_back(screen);
    } else {
        for (std::size_t i = 0; i < outline.size(); ++i) {
            pieces.push_back(clipPolygon(screen, beyondEdge(outline, i, area)));
        }
    }
    std::vector<float> triangles;
    for (const auto& piece : pieces) {
        for (std::size_t i = 2; i < piece.size(); ++i) {
            for (const QVector4D& p : {piece[0], piece[i - 1], piece[i]}) {
                triangles.insert(triangles.end(), {p.x(), p.y(), 0.0f});
            }
        }
    }
    return triangles;
}

// The part of the segment a-b within the screen (|x|, |y| <= 1), if any (Liang-Barsky).
bool clipToScreen(QPointF& a, QPointF& b) {
    const QPointF d = b - a;
    const double p[4] = {-d.x(), d.x(), -d.y(), d.y()};
    const double q[4] = {a.x() + 1, 1 - a.x(), a.y() + 1, 1 - a.y()};
    double enter = 0, leave = 1;
    for (int i = 0; i < 4; ++i) {
        if (p[i] == 0) {
            if (q[i] < 0) {
                return false;
            }
        } else if (p[i] < 0) {
            enter = std::max(enter, q[i] / p[i]);
        } else {
            leave = std::min(leave, q[i] / p[i]);
        }
    }
    if (enter > leave) {
        return false;
    }
    b = a + d * leave;
    a = a + d * enter;
    return true;
}

// Uniforms of the shading that depend on the material only.
void setMaterial(QOpenGLShaderProgram& program, const SurfaceLook& look) {
    const float rough = std::clamp(look.roughness, 0.04f, 1.0f);
    const float metal = look.metallic;
    const QVector3D base(look.baseColor[0], look.baseColor[1], look.baseColor[2]);
    const QVector3D f0 = QVector3D(0.04f, 0.04f, 0.04f) * (1 - metal) + base * metal;
    const float a2 = rough * rough * rough * rough;
    program.setUniformValue("f0", f0);
    program.setUniformValue("diffuseColor", base * (1 - metal));
    program.setUniformValue("diffuseLight",
                            (QVector3D(1, 1, 1) - f0) * base * (1 - metal) / 3.14159265f);
    program.setUniformValue("ambientFresnelMax",
                            QVector3D(std::max(1 - rough, f0.x()), std::max(1 - rough, f0.y()),
                                      std::max(1 - rough, f0.z())));
    program.setUniformValue("specularScale", a2 / (4 * 3.14159265f));
    program.setUniformValue("a2Minus1", a2 - 1);
    program.setUniformValue("geometryK", (rough + 1) * (rough + 1) / 8);
    program.setUniformValue("panelSharpness", (48.0f + (3.0f - 48.0f) * rough) * 1.44269504f);
    program.setUniformValue("environmentBlur", rough * rough);
    program.setUniformValue("environmentWeight", 1 - 0.5f * rough);
}

} // namespace

SceneRenderer::SceneRenderer() = default;

SceneRenderer::~SceneRenderer() = default; // GL objects go with release() or the context

QColor SceneRenderer::backgroundColor() {
    return QColor(232, 236, 242);
}

QColor SceneRenderer::wallColor() {
    return kWallColor;
}

void SceneRenderer::initialize() {
    initializeOpenGLFunctions();
    m_program = std::make_unique<QOpenGLShaderProgram>();
    m_program->addShaderFromSourceCode(QOpenGLShader::Vertex, kVertexShader);
    m_program->addShaderFromSourceCode(QOpenGLShader::Fragment, kFragmentShader);
    m_program->link();
    m_flatProgram = std::make_unique<QOpenGLShaderProgram>();
    m_flatProgram->addShaderFromSourceCode(QOpenGLShader::Vertex, kFlatVertexShader);
    m_flatProgram->addShaderFromSourceCode(QOpenGLShader::Fragment, kFlatFragmentShader);
    m_flatProgram->link();
    glGenVertexArrays(1, &m_outsideVao);
    glGenBuffers(1, &m_outsideBuffer);
    glGenBuffers(1, &m_instanceBuffer);
    glBindVertexArray(m_outsideVao);
    glBindBuffer(GL_ARRAY_BUFFER, m_outsideBuffer);
    glEnableVertexAttribArray(0);
    glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, 0, nullptr);
    glBindVertexArray(0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    m_initialized = true;
}

void SceneRenderer::release() {
    if (!m_initialized) {
        return;
    }
    for (auto& [key, mesh] : m_meshes) {
        deleteMesh(mesh);
    }
    m_meshes.clear();
    glDeleteVertexArrays(1, &m_outsideVao);
    glDeleteBuffers(1, &m_outsideBuffer);
    glDeleteBuffers(1, &m_instanceBuffer);
    m_batches.clear();
    m_batchScene = nullptr;
    m_drawn.reset();
    m_program.reset();
    m_flatProgram.reset();
    m_initialized = false;
}

std::optional<QMatrix4x4> SceneRenderer::wallTransform(const Box3& box, const OrbitCamera& camera) {
    // Single-sided like every face: from behind, the wall is not there.
    if (box.isEmpty() || camera.eye().x() >= 0) {
        return std::nullopt;
    }
    const auto size = box.size();
    const auto centre = box.centre();
    const double extent = std::max({size[0], size[1], size[2], 1.0});
    QMatrix4x4 model;
    model.translate(0, float(centre[1]), float(centre[2]));
    model.scale(1, float(extent * 1.5), float(size[2] / 2 + extent * 0.5));
    return model;
}

SceneRenderer::Detail SceneRenderer::render(const ViewerScene& scene, const OrbitCamera& camera,
                                            const QSize& pixels) {
    if (!m_initialized) {
        initialize();
    }
    m_drawn.reset();
    dropStale();
    glViewport(0, 0, pixels.width(), pixels.height());
    const float aspect = float(pixels.width()) / float(std::max(pixels.height(), 1));
    const QMatrix4x4 viewProjection = camera.projectionMatrix(aspect) * camera.viewMatrix();
    // The wall is painted first, as the clear colour with the background laid around its
    // outline: a multisampled fill of the whole wall costs llvmpipe as much as the shaded
    // parts. Parts behind its plane are cut away, as the wall would hide them.
    const Box3 bounds = scene.bounds();
    const auto wall = m_backdrop ? wallTransform(bounds, camera) : std::nullopt;
    const std::vector<QPointF> outline =
        wall ? wallOutline(viewProjection * *wall) : std::vector<QPointF>();
    const QVector3D clear = linear(wall ? kWallColor : backgroundColor());
    glClearColor(clear.x(), clear.y(), clear.z(), 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    if (!m_program->isLinked() || !m_flatProgram->isLinked()) {
        return {QRect(QPoint(), pixels), backgroundColor()};
    }
    if (wall) {
        drawAroundWall(outline);
    }
    drawObjects(scene, 0, viewProjection, camera.eye(),
                wall ? QVector4D(-1, 0, 0, kWallTolerance) : QVector4D(0, 0, 0, 1), pixels);
    if (!wall) {
        m_drawn = Drawn{&scene,
                        scene.layoutRevision(),
                        scene.objects().empty() ? 0 : scene.objects().back().id,
                        viewProjection,
                        camera.eye(),
                        pixels};
    }
    return detail(bounds, outline, viewProjection, pixels);
}

bool SceneRenderer::renderAdditions(const ViewerScene& scene, const OrbitCamera& camera,
                                    const QSize& pixels) {
    const float aspect = float(pixels.width()) / float(std::max(pixels.height(), 1));
    const QMatrix4x4 viewProjection = camera.projectionMatrix(aspect) * camera.viewMatrix();
    if (!m_initialized || m_backdrop || !m_drawn || m_drawn->scene != &scene ||
        m_drawn->layoutRevision != scene.layoutRevision() || m_drawn->pixels != pixels ||
        m_drawn->viewProjection != viewProjection || m_drawn->eye != camera.eye() ||
        !m_program->isLinked()) {
        return false;
    }
    const auto& objects = scene.objects();
    const auto first = std::upper_bound(
        objects.begin(), objects.end(), m_drawn->lastId,
        [](std::int32_t id, const ViewerObject& object) { return id < object.id; });
    if (first == objects.end()) {
        return true; // the frame shows it all
    }
    glViewport(0, 0, pixels.width(), pixels.height());
    drawObjects(scene, static_cast<std::size_t>(first - objects.begin()), viewProjection,
                camera.eye(), QVector4D(0, 0, 0, 1), pixels);
    m_drawn->lastId = objects.back().id;
    return true;
}

void SceneRenderer::drawObjects(const ViewerScene& scene, std::size_t first,
                                const QMatrix4x4& viewProjection, const QVector3D& eye,
                                const QVector4D& clipPlane, const QSize& pixels) {
    // llvmpipe clips at every distance the shader writes, enabled or not: the plane itself
    // says whether anything goes.
    glEnable(GL_CLIP_DISTANCE0);
    glEnable(GL_DEPTH_TEST);
    // glTF's rule: counter-clockwise faces are the front, back faces are not drawn (materials
    // are single-sided unless they say otherwise). Skipping them halves llvmpipe's work.
    glEnable(GL_CULL_FACE);
    glCullFace(GL_BACK);
    m_program->bind();
    m_program->setUniformValue("viewProjection", viewProjection);
    m_program->setUniformValue("cameraPosition", eye);
    m_program->setUniformValue("clipPlane", clipPlane);
    updateBatches(scene, first);
    selectDraws(viewProjection, pixels);
    drawAll();
    glDisable(GL_CLIP_DISTANCE0);
    m_program->release();
}

void SceneRenderer::drawAll() {
    std::size_t unflushed = 0;
    for (const Draw& each : m_draws) {
        // A mirroring placement (a negative scale) turns the winding round.
        glFrontFace(m_batches[each.batch].mirrored ? GL_CW : GL_CCW);
        draw(each);
        // A software rasterizer starts on what it has been given while the rest is submitted:
        // llvmpipe bins a frame's triangles on this thread, then rasterizes them on its others.
        unflushed += each.triangles;
        if (unflushed >= kTrianglesPerFlush) {
            glFlush();
            unflushed = 0;
        }
    }
    glFrontFace(GL_CCW);
}

void SceneRenderer::resolve(const Detail& detail, GLuint multisampled, GLuint target,
                            const QSize& pixels) {
    glBindFramebuffer(GL_READ_FRAMEBUFFER, multisampled);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, target);
    if (detail.rect != QRect(QPoint(), pixels)) {
        const QVector3D plain = linear(detail.plain);
        glClearColor(plain.x(), plain.y(), plain.z(), 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);
    }
    if (!detail.rect.isEmpty()) {
        const QRect& r = detail.rect;
        glBlitFramebuffer(r.left(), r.top(), r.right() + 1, r.bottom() + 1, r.left(), r.top(),
                          r.right() + 1, r.bottom() + 1, GL_COLOR_BUFFER_BIT, GL_NEAREST);
    }
    glBindFramebuffer(GL_FRAMEBUFFER, target);
}

SceneRenderer::Detail SceneRenderer::detail(const Box3& bounds, const std::vector<QPointF>& outline,
                                            const QMatrix4x4& viewProjection, const QSize& pixels) {
    // The parts lie within the projection of their bounding box, the wall's edges where they
    // cross the screen; 2 pixels more hold what multisampling blends along them.
    const QRect screen(QPoint(), pixels);
    double left = 1, right = -1, bottom = 1, top = -1;
    const auto add = [&](const QPointF& p) {
        left = std::min(left, p.x());
        right = std::max(right, p.x());
        bottom = std::min(bottom, p.y());
        top = std::max(top, p.y());
    };
    for (int i = 0; !bounds.isEmpty() && i < 8; ++i) {
        const QVector4D p =
            viewProjection * QVector4D(float(i & 1 ? bounds.max()[0] : bounds.min()[0]),
                                       float(i & 2 ? bounds.max()[1] : bounds.min()[1]),
                                       float(i & 4 ? bounds.max()[2] : bounds.min()[2]), 1);
        if (p.w() <= 1e-6f) {
            return {screen, backgroundColor()}; // partly behind the eye: anywhere
        }
        add({p.x() / p.w(), p.y() / p.w()});
    }
    for (std::size_t i = 0; i < outline.size(); ++i) {
        QPointF a = outline[i], b = outline[(i + 1) % outline.size()];
        if (clipToScreen(a, b)) {
            add(a);
            add(b);
        }
    }
    if (left > right) {
        return {QRect(), insideOutline(outline, {0, 0}) ? kWallColor : backgroundColor()};
    }
    const auto column = [&](double x) { return (x + 1) / 2 * pixels.width(); };
    const auto row = [&](double y) { return (y + 1) / 2 * pixels.height(); };
    const QRect rect =
        QRect(QPoint(int(std::floor(column(left))) - 2, int(std::floor(row(bottom))) - 2),
              QPoint(int(std::ceil(column(right))) + 1, int(std::ceil(row(top))) + 1)) &
        screen;
    // Outside the rectangle no edge passes: all of it lies on one side of the wall's outline.
    // Test it at a screen corner the rectangle leaves out.
    QPointF corner(-1, -1);
    for (const QPointF c : {QPointF(-1, -1), QPointF(1, -1), QPointF(-1, 1), QPointF(1, 1)}) {
        const QPoint pixel(c.x() < 0 ? 0 : pixels.width() - 1, c.y() < 0 ? 0 : pixels.height() - 1);
        if (!rect.contains(pixel)) {
            corner = c;
        }
    }
    return {rect, insideOutline(outline, corner) ? kWallColor : backgroundColor()};
}

void SceneRenderer::drawAroundWall(const std::vector<QPointF>& outline) {
    const std::vector<float> triangles = screenOutside(outline);
    if (triangles.empty()) {
        return;
    }
    glDisable(GL_DEPTH_TEST);
    m_flatProgram->bind();
    m_flatProgram->setUniformValue("flatColor", linear(backgroundColor()));
    glBindVertexArray(m_outsideVao);
    glBindBuffer(GL_ARRAY_BUFFER, m_outsideBuffer);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(triangles.size() * sizeof(float)),
                 triangles.data(), GL_STREAM_DRAW);
    glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(triangles.size() / 3));
    glBindVertexArray(0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    m_flatProgram->release();
}

void SceneRenderer::updateBatches(const ViewerScene& scene, std::size_t first) {
    if (m_batchScene == &scene && m_batchRevision == scene.revision() && m_batchFirst == first) {
        return;
    }
    m_batchScene = &scene;
    m_batchRevision = scene.revision();
    m_batchFirst = first;
    m_selection.reset();
    // Batches in the order their first object comes in the scene, instances in scene order:
    // where surfaces meet at the same depth, the same one wins as when drawn one by one.
    m_batches.clear();
    std::map<std::pair<const MeshData*, bool>, std::vector<std::size_t>> index;
    for (auto it = scene.objects().begin() + std::ptrdiff_t(first); it != scene.objects().end();
         ++it) {
        const ViewerObject& object = *it;
        if (!object.drawn()) {
            continue;
        }
        const auto m = object.transform.toFloat();
        // QMatrix4x4 takes row-major values; ours are column-major.
        const QMatrix4x4 model = QMatrix4x4(m.data()).transposed();
        const bool mirrored = model.determinant() < 0;
        const QMatrix3x3 normalMatrix = model.normalMatrix();
        for (std::size_t i = 0; i < object.part->pieces.size(); ++i) {
            const auto& piece = object.part->pieces[i];
            if (piece.mesh->indices.empty()) {
                continue;
            }
            const SurfaceLook& look = object.look(i);
            auto& candidates = index[{piece.mesh.get(), mirrored}];
            std::size_t batch = m_batches.size();
            for (const std::size_t candidate : candidates) {
                if (m_batches[candidate].look == look) {
                    batch = candidate;
                }
            }
            if (batch == m_batches.size()) {
                candidates.push_back(batch);
                m_batches.push_back({piece.mesh, look, mirrored, {}});
            }
            std::vector<float>& values = m_batches[batch].instances;
            values.insert(values.end(), model.constData(), model.constData() + 16);
            values.insert(values.end(), normalMatrix.constData(), normalMatrix.constData() + 9);
        }
    }
}

void SceneRenderer::selectDraws(const QMatrix4x4& viewProjection, const QSize& pixels) {
    if (m_selection && m_selection->viewProjection == viewProjection &&
        m_selection->pixels == pixels) {
        return;
    }
    m_selection = Selection{viewProjection, pixels};
    // The frustum's planes, inside positive (Gribb and Hartmann).
    const QVector4D x = viewProjection.row(0), y = viewProjection.row(1), z = viewProjection.row(2),
                    w = viewProjection.row(3);
    const QVector4D planes[] = {w + x, w - x, w + y, w - y, w + z, w - z};
    // A length of 1 at a depth of 1 covers this many pixels; w is the depth.
    const float pixelsAtUnitDepth = y.toVector3D().length() * float(pixels.height()) / 2;
    m_draws.clear();
    m_trianglesDrawn = 0;
    std::vector<float> ordered;
    for (std::size_t b = 0; b < m_batches.size(); ++b) {
        const Batch& batch = m_batches[b];
        GpuMesh& gpu = upload(batch.mesh);
        const MeshLevels& unstretched = *levelSet(gpu, *batch.mesh, {-1, 0}).levels;
        const QVector3D centre(unstretched.centre()[0], unstretched.centre()[1],
                               unstretched.centre()[2]);
        // Instances by stretch and level, each with its depth.
        std::map<std::pair<Stretch, std::size_t>, std::vector<std::pair<float, std::size_t>>>
            groups;
        for (std::size_t i = 0; i < batch.instances.size() / kInstanceFloats; ++i) {
            const float* m = batch.instances.data() + i * kInstanceFloats;
            const QVector4D placed = QMatrix4x4(m).transposed().map(QVector4D(centre, 1));
            // How long the mesh's unit axes come out.
            const std::array<float, 3> scale{QVector3D(m[0], m[1], m[2]).length(),
                                             QVector3D(m[4], m[5], m[6]).length(),
                                             QVector3D(m[8], m[9], m[10]).length()};
            const auto longest = std::max_element(scale.begin(), scale.end());
            const float radius = unstretched.radius() * *longest;
            const bool outside = std::any_of(std::begin(planes), std::end(planes), [&](auto& p) {
                return QVector4D::dotProduct(p, placed) < -radius * p.toVector3D().length();
            });
            if (outside) {
                continue;
            }
            const float nearest = QVector4D::dotProduct(w, placed) - radius;
            Stretch stretch{-1, 0};
            std::size_t level = 0;
            if (m_levelsOfDetail && nearest > 0 && *longest > 0) {
                // The levels made for the nearest power of two below the longest axis's
                // stretch over the others', for the axes' lengths over those they were made for.
                const int axis = static_cast<int>(longest - scale.begin());
                const float others = std::max(scale[(axis + 1) % 3], scale[(axis + 2) % 3]);
                const int power = others > 0 ? std::min(int(std::log2(*longest / others)), 6) : 6;
                float factor = *longest;
                if (power > 0) {
                    stretch = {axis, power};
                    factor = std::max(others, *longest / float(1 << power));
                }
                // Three quarters of a pixel where the object comes nearest, in the stretched
                // mesh's units: a coarser level's surface lies inside a round one's, so pipes
                // lose at most that on either side, with two thirds of the triangles that half a
                // pixel would draw.
                const MeshLevels& levels = *levelSet(gpu, *batch.mesh, stretch).levels;
                level = levels.coarsestWithin(0.75f * nearest / (pixelsAtUnitDepth * factor));
            }
            groups[{stretch, level}].emplace_back(nearest, i);
        }
        for (auto& [key, instances] : groups) {
            const MeshLevels& levels = *levelSet(gpu, *batch.mesh, key.first).levels;
            const std::size_t triangles =
                levels.levels()[key.second].indexCount / 3 * instances.size();
            m_trianglesDrawn += triangles;
            m_draws.push_back({b, key.first, key.second,
                               static_cast<GLsizei>(ordered.size() / kInstanceFloats),
                               static_cast<GLsizei>(instances.size()), triangles});
            // Nearest first: what they hide is then not shaded.
            std::sort(instances.begin(), instances.end());
            for (const auto& [depth, i] : instances) {
                const float* m = batch.instances.data() + i * kInstanceFloats;
                ordered.insert(ordered.end(), m, m + kInstanceFloats);
            }
        }
    }
    glBindBuffer(GL_ARRAY_BUFFER, m_instanceBuffer);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(ordered.size() * sizeof(float)),
                 ordered.data(), GL_STREAM_DRAW);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}

void SceneRenderer::draw(const Draw& draw) {
    const Batch& batch = m_batches[draw.batch];
    const LevelSet& levels = levelSet(upload(batch.mesh), *batch.mesh, draw.stretch);
    setMaterial(*m_program, batch.look);
    glBindVertexArray(levels.vao);
    glBindBuffer(GL_ARRAY_BUFFER, m_instanceBuffer);
    // The instance attributes point at this batch's run of the instance buffer.
    constexpr GLsizei stride = kInstanceFloats * sizeof(float);
    const std::intptr_t first = std::intptr_t(draw.firstInstance) * stride;
    for (GLuint column = 0; column < 4; ++column) {
        glEnableVertexAttribArray(2 + column);
        glVertexAttribPointer(2 + column, 4, GL_FLOAT, GL_FALSE, stride,
                              reinterpret_cast<const void*>(first + column * 4 * sizeof(float)));
        glVertexAttribDivisor(2 + column, 1);
    }
    for (GLuint column = 0; column < 3; ++column) {
        glEnableVertexAttribArray(6 + column);
        glVertexAttribPointer(
            6 + column, 3, GL_FLOAT, GL_FALSE, stride,
            reinterpret_cast<const void*>(first + (16 + column * 3) * sizeof(float)));
        glVertexAttribDivisor(6 + column, 1);
    }
    const MeshLevels::Level& level = levels.levels->levels()[draw.level];
    glDrawElementsInstanced(GL_TRIANGLES, static_cast<GLsizei>(level.indexCount), GL_UNSIGNED_INT,
                            reinterpret_cast<const void*>(std::intptr_t(level.firstIndex) *
                                                          std::intptr_t(sizeof(std::uint32_t))),
                            draw.count);
    glBindVertexArray(0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}

SceneRenderer::GpuMesh& SceneRenderer::upload(const std::shared_ptr<const MeshData>& mesh) {
    auto found = m_meshes.find(mesh.get());
    if (found != m_meshes.end()) {
        return found->second;
    }
    GpuMesh gpu;
    gpu.source = mesh;
    const auto positionBytes = static_cast<GLsizeiptr>(mesh->positions.size() * sizeof(float));
    const auto normalBytes = static_cast<GLsizeiptr>(mesh->normals.size() * sizeof(float));
    glGenBuffers(1, &gpu.buffer);
    glBindBuffer(GL_ARRAY_BUFFER, gpu.buffer);
    glBufferData(GL_ARRAY_BUFFER, positionBytes + normalBytes, nullptr, GL_STATIC_DRAW);
    glBufferSubData(GL_ARRAY_BUFFER, 0, positionBytes, mesh->positions.data());
    glBufferSubData(GL_ARRAY_BUFFER, positionBytes, normalBytes, mesh->normals.data());
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    return m_meshes.emplace(mesh.get(), gpu).first->second;
}

const SceneRenderer::LevelSet& SceneRenderer::levelSet(GpuMesh& gpu, const MeshData& mesh,
                                                       const Stretch& stretch) {
    auto found = gpu.levelSets.find(stretch);
    if (found != gpu.levelSets.end()) {
        return found->second;
    }
    LevelSet set;
    std::array<float, 3> factors{1, 1, 1};
    if (stretch.first >= 0) {
        factors[std::size_t(stretch.first)] = float(1 << stretch.second);
    }
    set.levels = std::make_shared<const MeshLevels>(mesh, m_levelsOfDetail, factors);
    const auto positionBytes = static_cast<GLsizeiptr>(mesh.positions.size() * sizeof(float));
    glGenVertexArrays(1, &set.vao);
    glBindVertexArray(set.vao);
    glBindBuffer(GL_ARRAY_BUFFER, gpu.buffer);
    glEnableVertexAttribArray(0);
    glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, 0, nullptr);
    glEnableVertexAttribArray(1);
    glVertexAttribPointer(1, 3, GL_FLOAT, GL_FALSE, 0,
                          reinterpret_cast<const void*>(static_cast<std::intptr_t>(positionBytes)));
    glGenBuffers(1, &set.indexBuffer);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, set.indexBuffer);
    const std::vector<std::uint32_t>& coarser = set.levels->coarserIndices();
    const auto ownBytes = static_cast<GLsizeiptr>(mesh.indices.size() * sizeof(std::uint32_t));
    const auto coarserBytes = static_cast<GLsizeiptr>(coarser.size() * sizeof(std::uint32_t));
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, ownBytes + coarserBytes, nullptr, GL_STATIC_DRAW);
    glBufferSubData(GL_ELEMENT_ARRAY_BUFFER, 0, ownBytes, mesh.indices.data());
    glBufferSubData(GL_ELEMENT_ARRAY_BUFFER, ownBytes, coarserBytes, coarser.data());
    glBindVertexArray(0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    return gpu.levelSets.emplace(stretch, set).first->second;
}

void SceneRenderer::deleteMesh(GpuMesh& gpu) {
    for (auto& [stretch, set] : gpu.levelSets) {
        glDeleteVertexArrays(1, &set.vao);
        glDeleteBuffers(1, &set.indexBuffer);
    }
    glDeleteBuffers(1, &gpu.buffer);
}

void SceneRenderer::dropStale() {
    // A mesh whose data is gone (its part left every scene) frees its buffers; this also keeps
    // a new mesh at a reused address from drawing the old buffers.
    for (auto it = m_meshes.begin(); it != m_meshes.end();) {
        if (it->second.source.expired()) {
            deleteMesh(it->second);
            it = m_meshes.erase(it);
        } else {
            ++it;
        }
    }
}

} // namespace pluvarine
