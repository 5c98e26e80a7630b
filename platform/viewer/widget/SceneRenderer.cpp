#include "platform/viewer/widget/SceneRenderer.h"

#include <QColor>
#include <algorithm>

namespace pluvarine {

namespace {

const char* kVertexShader = R"(#version 330 core
layout(location = 0) in vec3 position;
layout(location = 1) in vec3 normal;
uniform mat4 model;
uniform mat3 normalMatrix;
uniform mat4 viewProjection;
out vec3 worldPosition;
out vec3 worldNormal;
void main() {
    vec4 p = model * vec4(position, 1.0);
    worldPosition = p.xyz;
    worldNormal = normalMatrix * normal;
    gl_Position = viewProjection * p;
}
)";

// Cook-Torrance with GGX distribution, Smith-Schlick geometry and Schlick Fresnel; the
// environment is a sky-over-ground gradient looked up along the reflection, blurred towards
// its average with roughness.
const char* kFragmentShader = R"(#version 330 core
in vec3 worldPosition;
in vec3 worldNormal;
uniform vec3 cameraPosition;
uniform vec3 baseColor;
uniform float metallic;
uniform float roughness;
out vec4 fragColor;

const float PI = 3.14159265;
const vec3 skyColor = vec3(0.80, 0.86, 0.95);
const vec3 horizonColor = vec3(0.95, 0.95, 0.93);
const vec3 groundColor = vec3(0.22, 0.20, 0.18);

vec3 environment(vec3 r, float rough) {
    float t = r.z;
    vec3 sharp = t > 0.0 ? mix(horizonColor, skyColor, pow(clamp(t, 0.0, 1.0), 0.6))
                         : mix(horizonColor, groundColor, pow(clamp(-t * 3.0, 0.0, 1.0), 0.5));
    // Two bright panels at about eye height on either side of the default view direction:
    // a pipe seen from a little above mirrors them as streaks, which is what makes a metal
    // read as metal.
    float spread = mix(48.0, 3.0, rough);
    sharp += 1.4 * pow(max(dot(r, vec3(-0.33, -0.93, -0.15)), 0.0), spread)
           + 0.8 * pow(max(dot(r, vec3(-0.86, 0.49, -0.15)), 0.0), spread);
    vec3 average = 0.5 * (skyColor + groundColor) + 0.1;
    return mix(sharp, average, rough * rough);
}

float distributionGGX(float nh, float a) {
    float a2 = a * a;
    float d = nh * nh * (a2 - 1.0) + 1.0;
    return a2 / (PI * d * d);
}

float geometrySmith(float nv, float nl, float rough) {
    float k = (rough + 1.0) * (rough + 1.0) / 8.0;
    return (nv / (nv * (1.0 - k) + k)) * (nl / (nl * (1.0 - k) + k));
}

vec3 light(vec3 n, vec3 v, vec3 l, vec3 radiance, vec3 f0, vec3 albedo, float rough) {
    vec3 h = normalize(v + l);
    float nl = max(dot(n, l), 0.0);
    float nv = max(dot(n, v), 1e-4);
    float nh = max(dot(n, h), 0.0);
    vec3 f = f0 + (1.0 - f0) * pow(1.0 - max(dot(h, v), 0.0), 5.0);
    vec3 specular = distributionGGX(nh, rough * rough) * geometrySmith(nv, nl, rough) * f /
                    (4.0 * nv * max(nl, 1e-4));
    vec3 diffuse = (1.0 - f) * (1.0 - metallic) * albedo / PI;
    return (diffuse + specular) * radiance * nl;
}

void main() {
    vec3 n = normalize(worldNormal);
    vec3 v = normalize(cameraPosition - worldPosition);
    if (dot(n, v) < 0.0) n = -n; // two-sided, whatever the winding or mirroring
    float rough = clamp(roughness, 0.04, 1.0);
    vec3 f0 = mix(vec3(0.04), baseColor, metallic);
    vec3 color = light(n, v, normalize(vec3(-0.45, -0.35, 0.82)), vec3(2.6), f0, baseColor, rough)
               + light(n, v, normalize(vec3(-0.6, 0.7, 0.2)), vec3(0.9), f0, baseColor, rough);
    // A faint light from below the horizon, diffuse only.
    color += 0.35 / PI * (1.0 - metallic) * baseColor *
             max(dot(n, normalize(vec3(0.3, -0.8, -0.2))), 0.0);
    float nv = max(dot(n, v), 0.0);
    vec3 fr = f0 + (max(vec3(1.0 - rough), f0) - f0) * pow(1.0 - nv, 5.0);
    vec3 hemisphere = mix(groundColor, skyColor, 0.5 + 0.5 * n.z);
    color += (1.0 - fr) * (1.0 - metallic) * baseColor * hemisphere * 0.55;
    color += fr * environment(reflect(-v, n), rough) * (1.0 - 0.5 * rough);
    color = color / (1.0 + 0.35 * color);        // soft highlight roll-off
    fragColor = vec4(pow(color, vec3(1.0 / 2.2)), 1.0);
}
)";

// The backdrop is flat and evenly lit: one colour, no need for the full shading per pixel.
const char* kFlatFragmentShader = R"(#version 330 core
uniform vec3 flatColor;
out vec4 fragColor;
void main() { fragColor = vec4(flatColor, 1.0); }
)";

const QColor kWallColor(214, 212, 206);

} // namespace

SceneRenderer::SceneRenderer() = default;

SceneRenderer::~SceneRenderer() = default; // GL objects go with release() or the context

QColor SceneRenderer::backgroundColor() {
    return QColor(232, 236, 242);
}

void SceneRenderer::initialize() {
    initializeOpenGLFunctions();
    m_program = std::make_unique<QOpenGLShaderProgram>();
    m_program->addShaderFromSourceCode(QOpenGLShader::Vertex, kVertexShader);
    m_program->addShaderFromSourceCode(QOpenGLShader::Fragment, kFragmentShader);
    m_program->link();
    m_flatProgram = std::make_unique<QOpenGLShaderProgram>();
    m_flatProgram->addShaderFromSourceCode(QOpenGLShader::Vertex, kVertexShader);
    m_flatProgram->addShaderFromSourceCode(QOpenGLShader::Fragment, kFlatFragmentShader);
    m_flatProgram->link();
    m_wall = std::make_shared<MeshData>();
    m_wall->positions = {0, -1, -1, 0, 1, -1, 0, 1, 1, 0, -1, 1};
    m_wall->normals = {-1, 0, 0, -1, 0, 0, -1, 0, 0, -1, 0, 0};
    m_wall->indices = {0, 2, 1, 0, 3, 2};
    m_initialized = true;
}

void SceneRenderer::release() {
    if (!m_initialized) {
        return;
    }
    for (auto& [key, mesh] : m_meshes) {
        glDeleteVertexArrays(1, &mesh.vao);
        glDeleteBuffers(1, &mesh.buffer);
        glDeleteBuffers(1, &mesh.indexBuffer);
    }
    m_meshes.clear();
    m_program.reset();
    m_flatProgram.reset();
    m_initialized = false;
}

void SceneRenderer::render(const ViewerScene& scene, const OrbitCamera& camera,
                           const QSize& pixels) {
    if (!m_initialized) {
        initialize();
    }
    dropStale();
    glViewport(0, 0, pixels.width(), pixels.height());
    const QColor background = backgroundColor();
    glClearColor(background.redF(), background.greenF(), background.blueF(), 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glEnable(GL_DEPTH_TEST);
    // glTF's rule: counter-clockwise faces are the front, back faces are not drawn (materials
    // are single-sided unless they say otherwise). Skipping them halves llvmpipe's work.
    glEnable(GL_CULL_FACE);
    glCullFace(GL_BACK);
    if (!m_program->isLinked()) {
        return;
    }
    m_program->bind();
    const float aspect = float(pixels.width()) / float(std::max(pixels.height(), 1));
    m_program->setUniformValue("viewProjection",
                               camera.projectionMatrix(aspect) * camera.viewMatrix());
    m_program->setUniformValue("cameraPosition", camera.eye());
    for (const auto& object : scene.objects()) {
        if (!object.drawn()) {
            continue;
        }
        const auto m = object.transform.toFloat();
        // QMatrix4x4 takes row-major values; ours are column-major.
        const QMatrix4x4 model = QMatrix4x4(m.data()).transposed();
        // A mirroring placement (a negative scale) turns the winding round.
        glFrontFace(model.determinant() < 0 ? GL_CW : GL_CCW);
        for (std::size_t i = 0; i < object.part->pieces.size(); ++i) {
            const auto& piece = object.part->pieces[i];
            if (!piece.mesh->indices.empty()) {
                drawMesh(upload(piece.mesh), model, object.look(i));
            }
        }
    }
    glFrontFace(GL_CCW);
    m_program->release();
    drawBackdrop(scene, camera, aspect);
}

void SceneRenderer::drawBackdrop(const ViewerScene& scene, const OrbitCamera& camera,
                                 float aspect) {
    const Box3 box = scene.bounds();
    if (box.isEmpty() || !m_flatProgram->isLinked()) {
        return;
    }
    const auto size = box.size();
    const auto centre = box.centre();
    const double extent = std::max({size[0], size[1], size[2], 1.0});
    QMatrix4x4 model;
    model.translate(0, float(centre[1]), float(centre[2]));
    model.scale(1, float(extent * 1.5), float(size[2] / 2 + extent * 0.5));
    // Drawn last, so the depth test skips it behind the parts, and pushed back a little, so
    // parts touching the wall stay in front of it.
    m_flatProgram->bind();
    m_flatProgram->setUniformValue("viewProjection",
                                   camera.projectionMatrix(aspect) * camera.viewMatrix());
    m_flatProgram->setUniformValue("model", model);
    m_flatProgram->setUniformValue("normalMatrix", model.normalMatrix());
    m_flatProgram->setUniformValue(
        "flatColor", QVector3D(kWallColor.redF(), kWallColor.greenF(), kWallColor.blueF()));
    glEnable(GL_POLYGON_OFFSET_FILL);
    glPolygonOffset(1.0f, 4.0f);
    const GpuMesh& wall = upload(m_wall);
    glBindVertexArray(wall.vao);
    glDrawElements(GL_TRIANGLES, wall.indexCount, GL_UNSIGNED_INT, nullptr);
    glBindVertexArray(0);
    glDisable(GL_POLYGON_OFFSET_FILL);
    m_flatProgram->release();
}

void SceneRenderer::drawMesh(const GpuMesh& mesh, const QMatrix4x4& model,
                             const SurfaceLook& look) {
    m_program->setUniformValue("model", model);
    m_program->setUniformValue("normalMatrix", model.normalMatrix());
    m_program->setUniformValue("baseColor",
                               QVector3D(look.baseColor[0], look.baseColor[1], look.baseColor[2]));
    m_program->setUniformValue("metallic", look.metallic);
    m_program->setUniformValue("roughness", look.roughness);
    glBindVertexArray(mesh.vao);
    glDrawElements(GL_TRIANGLES, mesh.indexCount, GL_UNSIGNED_INT, nullptr);
    glBindVertexArray(0);
}

const SceneRenderer::GpuMesh& SceneRenderer::upload(const std::shared_ptr<const MeshData>& mesh) {
    auto found = m_meshes.find(mesh.get());
    if (found != m_meshes.end()) {
        return found->second;
    }
    GpuMesh gpu;
    gpu.source = mesh;
    gpu.indexCount = static_cast<GLsizei>(mesh->indices.size());
    const auto positionBytes = static_cast<GLsizeiptr>(mesh->positions.size() * sizeof(float));
    const auto normalBytes = static_cast<GLsizeiptr>(mesh->normals.size() * sizeof(float));
    glGenVertexArrays(1, &gpu.vao);
    glBindVertexArray(gpu.vao);
    glGenBuffers(1, &gpu.buffer);
    glBindBuffer(GL_ARRAY_BUFFER, gpu.buffer);
    glBufferData(GL_ARRAY_BUFFER, positionBytes + normalBytes, nullptr, GL_STATIC_DRAW);
    glBufferSubData(GL_ARRAY_BUFFER, 0, positionBytes, mesh->positions.data());
    glBufferSubData(GL_ARRAY_BUFFER, positionBytes, normalBytes, mesh->normals.data());
    glEnableVertexAttribArray(0);
    glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, 0, nullptr);
    glEnableVertexAttribArray(1);
    glVertexAttribPointer(1, 3, GL_FLOAT, GL_FALSE, 0,
                          reinterpret_cast<const void*>(static_cast<std::intptr_t>(positionBytes)));
    glGenBuffers(1, &gpu.indexBuffer);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, gpu.indexBuffer);
    glBufferData(GL_ELEMENT_ARRAY_BUFFER,
                 static_cast<GLsizeiptr>(mesh->indices.size() * sizeof(std::uint32_t)),
                 mesh->indices.data(), GL_STATIC_DRAW);
    glBindVertexArray(0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    return m_meshes.emplace(mesh.get(), gpu).first->second;
}

void SceneRenderer::dropStale() {
    // A mesh whose data is gone (its part left every scene) frees its buffers; this also keeps
    // a new mesh at a reused address from drawing the old buffers.
    for (auto it = m_meshes.begin(); it != m_meshes.end();) {
        if (it->second.source.expired()) {
            glDeleteVertexArrays(1, &it->second.vao);
            glDeleteBuffers(1, &it->second.buffer);
            glDeleteBuffers(1, &it->second.indexBuffer);
            it = m_meshes.erase(it);
        } else {
            ++it;
        }
    }
}

} // namespace pluvarine
