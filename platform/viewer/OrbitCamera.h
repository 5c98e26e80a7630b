#pragma once

#include "platform/viewer/Box3.h"

#include <QMatrix4x4>
#include <QPointF>
#include <QSize>
#include <QVector3D>

namespace pluvarine {

// The preview's camera: it looks at a target point from a direction given by yaw (about z,
// from +x) and pitch (above the horizontal), at a distance. z is up. The default direction
// looks at the wall face from the assembly's side (-x), a little from the side and from above,
// so that offsets away from the wall and the height both read.
class OrbitCamera {
public:
    static constexpr float kDefaultYaw = 212.0f;
    static constexpr float kDefaultPitch = 12.0f;
    static constexpr float kFieldOfView = 30.0f; // vertical, degrees

    // Aims at the box so that all of it is in view for the given aspect ratio (width / height),
    // keeping the present direction.
    void fit(const Box3& box, float aspect);
    // Back to the default direction, then fit.
    void reset(const Box3& box, float aspect);

    // Mouse gestures, in pixels of a viewport `viewportHeight` high.
    void orbit(float dxPixels, float dyPixels);
    void pan(float dxPixels, float dyPixels, int viewportHeight);
    void zoom(float steps); // positive: closer

    QVector3D eye() const;
    QVector3D target() const { return m_target; }
    float distance() const { return m_distance; }
    float yaw() const { return m_yaw; }
    float pitch() const { return m_pitch; }
    void setView(const QVector3D& target, float distance, float yaw, float pitch);

    QMatrix4x4 viewMatrix() const;
    QMatrix4x4 projectionMatrix(float aspect) const;
    // Where a scene point shows in a viewport of that size (pixels, y down).
    QPointF project(const QVector3D& point, const QSize& viewport) const;

private:
    QVector3D direction() const; // from the target to the eye, unit length

    QVector3D m_target{0, 0, 0};
    float m_distance = 8.0f;
    float m_yaw = kDefaultYaw;
    float m_pitch = kDefaultPitch;
    float m_radius = 2.0f; // of the fitted content, for the depth range
};

} // namespace pluvarine
