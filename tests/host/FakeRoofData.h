#pragma once

#include "CallLog.h"
#include "host/HostRoofData.h"

#include <vector>

namespace pluvarine::test {

// The data of one fake roof: lengths in metres, faces numbered from 1; a face number outside
// the roof fails as the host's call would.
class FakeRoofData : public HostRoofData {
public:
    struct Face {
        double overhang = 0; // metres
        double pitch = 0;    // degrees
        double direction = 0;
    };

    FakeRoofData(CallLog& log, double roofingThickness, double gutterWidth, std::vector<Face> faces)
        : m_log(log), m_roofingThickness(roofingThickness), m_gutterWidth(gutterWidth),
          m_faces(std::move(faces)) {}

    double GetRoofingThickness() override {
        m_log.call("GetRoofingThickness");
        return m_roofingThickness;
    }
    double GetGutterWidth() override {
        m_log.call("GetGutterWidth");
        return m_gutterWidth;
    }
    double GetFaceOverhang(std::int32_t face, bool& ignored) override {
        m_log.call("GetFaceOverhang", args(face));
        ignored = true;
        return at(face).overhang;
    }
    double GetFacePitch(std::int32_t face) override {
        m_log.call("GetFacePitch", args(face));
        return at(face).pitch;
    }
    double GetFaceDirection(std::int32_t face) override {
        m_log.call("GetFaceDirection", args(face));
        return at(face).direction;
    }

private:
    const Face& at(std::int32_t face) const {
        if (face < 1 || face > static_cast<std::int32_t>(m_faces.size())) {
            throw RuntimeError(RuntimeError::HostError, "no such roof face");
        }
        return m_faces[static_cast<std::size_t>(face - 1)];
    }

    CallLog& m_log;
    double m_roofingThickness;
    double m_gutterWidth;
    std::vector<Face> m_faces;
};

} // namespace pluvarine::test
