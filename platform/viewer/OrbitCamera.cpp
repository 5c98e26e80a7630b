#include "platform/viewer/OrbitCamera.h"

#include <algorithm>
#include <cmath>

namespace pluvarine {

namespace {
constexpr float kDegrees = 3.14159265358979f / 180.0f;
constexpr float kMargin = 0.92f; // share of the view the fitted content may fill
} // namespace

void OrbitCamera::fit(const Box3& box, float aspect) {
    if (box.isEmpty()) {
        return;
    }
    aspect = aspect > 0 ? aspect : 1.0f;
    const auto c = box.centre();
    m_target = QVector3D(float(c[0]), float(c[1]), float(c[2]));
    const QVector3D forward = -direction();
    QVector3D right = QVector3D::crossProduct(forward, {0, 0, 1});
    right = right.lengthSquared() > 1e-12f ? right.normalized() : QVector3D(1, 0, 0);
    const QVector3D up = QVector3D::crossProduct(right, forward);
    const float tanV = std::tan(kFieldOfView * kDegrees / 2) * kMargin;
    const float tanH = tanV * aspect;
    const auto size = box.size();
    m_radius = std::max(
        0.05f, 0.5f * float(std::sqrt(size[0] * size[0] + size[1] * size[1] + size[2] * size[2])));
    // Each corner needs the camera at least this far back along the viewing direction to lie
    // inside the frustum: |rel . right| <= (d + rel . forward) tanH, the same for up.
    float needed = 0.0f;
    for (int i = 0; i < 8; ++i) {
        const QVector3D corner(float(i & 1 ? box.max()[0] : box.min()[0]),
                               float(i & 2 ? box.max()[1] : box.min()[1]),
                               float(i & 4 ? box.max()[2] : box.min()[2]));
        const QVector3D rel = corner - m_target;
        const float depth = QVector3D::dotProduct(rel, forward);
        needed =
            std::max({needed, std::abs(QVector3D::dotProduct(rel, right)) / tanH - depth,
                      std::abs(QVector3D::dotProduct(rel, up)) / tanV - depth, -depth + 0.05f});
    }
    m_distance = std::max(needed, 0.1f);
}

void OrbitCamera::reset(const Box3& box, float aspect) {
    m_yaw = kDefaultYaw;
    m_pitch = kDefaultPitch;
    fit(box, aspect);
}

void OrbitCamera::orbit(float dxPixels, float dyPixels) {
    m_yaw = std::fmod(m_yaw - dxPixels * 0.4f + 360.0f, 360.0f);
    m_pitch = std::clamp(m_pitch + dyPixels * 0.4f, -89.0f, 89.0f);
}

void OrbitCamera::pan(float dxPixels, float dyPixels, int viewportHeight) {
    const float perPixel =
        2 * m_distance * std::tan(kFieldOfView * kDegrees / 2) / float(std::max(viewportHeight, 1));
    const QVector3D forward = -direction();
    QVector3D right = QVector3D::crossProduct(forward, {0, 0, 1});
    right = right.lengthSquared() > 1e-12f ? right.normalized() : QVector3D(1, 0, 0);
    const QVector3D up = QVector3D::crossProduct(right, forward);
    // The content follows the mouse.
    m_target += (-dxPixels * right + dyPixels * up) * perPixel;
}

void OrbitCamera::zoom(float steps) {
    m_distance = std::clamp(m_distance * std::pow(0.85f, steps), 0.05f, 1000.0f);
}

QVector3D OrbitCamera::direction() const {
    const float y = m_yaw * kDegrees, p = m_pitch * kDegrees;
    return {std::cos(p) * std::cos(y), std::cos(p) * std::sin(y), std::sin(p)};
}

QVector3D OrbitCamera::eye() const {
    return m_target + m_distance * direction();
}

void OrbitCamera::setView(const QVector3D& target, float distance, float yaw, float pitch) {
    m_target = target;
    m_distance = distance;
    m_yaw = yaw;
    m_pitch = std::clamp(pitch, -89.0f, 89.0f);
}

QMatrix4x4 OrbitCamera::viewMatrix() const {
    QMatrix4x4 view;
    view.lookAt(eye(), m_target, {0, 0, 1});
    return view;
}

QMatrix4x4 OrbitCamera::projectionMatrix(float aspect) const {
    const float nearPlane = std::max(m_distance - 3 * m_radius, m_distance * 0.01f);
    const float farPlane = m_distance + 3 * m_radius + 10.0f;
    QMatrix4x4 projection;
    projection.perspective(kFieldOfView, aspect > 0 ? aspect : 1.0f, nearPlane, farPlane);
    return projection;
}

QPointF OrbitCamera::project(const QVector3D& point, const QSize& viewport) const {
    const float aspect = float(viewport.width()) / float(std::max(viewport.height(), 1));
    const QVector3D ndc = (projectionMatrix(aspect) * viewMatrix()).map(point);
    return {(ndc.x() + 1) / 2 * viewport.width(), (1 - ndc.y()) / 2 * viewport.height()};
}

} // namespace pluvarine
