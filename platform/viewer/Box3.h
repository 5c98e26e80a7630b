#pragma once

#include <array>

namespace pluvarine {

// An axis-aligned box; empty until the first point is added.
class Box3 {
public:
    void add(const std::array<double, 3>& point);
    void add(const Box3& other);

    bool isEmpty() const { return m_empty; }
    const std::array<double, 3>& min() const { return m_min; }
    const std::array<double, 3>& max() const { return m_max; }
    std::array<double, 3> centre() const;
    std::array<double, 3> size() const;

private:
    bool m_empty = true;
    std::array<double, 3> m_min{};
    std::array<double, 3> m_max{};
};

} // namespace pluvarine
