#include "platform/viewer/Box3.h"

#include <algorithm>

namespace pluvarine {

void Box3::add(const std::array<double, 3>& point) {
    if (m_empty) {
        m_min = m_max = point;
        m_empty = false;
        return;
    }
    for (int i = 0; i < 3; ++i) {
        m_min[i] = std::min(m_min[i], point[i]);
        m_max[i] = std::max(m_max[i], point[i]);
    }
}

void Box3::add(const Box3& other) {
    if (!other.m_empty) {
        add(other.m_min);
        add(other.m_max);
    }
}

std::array<double, 3> Box3::centre() const {
    return {(m_min[0] + m_max[0]) / 2, (m_min[1] + m_max[1]) / 2, (m_min[2] + m_max[2]) / 2};
}

std::array<double, 3> Box3::size() const {
    return {m_max[0] - m_min[0], m_max[1] - m_min[1], m_max[2] - m_min[2]};
}

} // namespace pluvarine
