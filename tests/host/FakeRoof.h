#pragma once

#include "CallLog.h"
#include "FakeRoofData.h"
#include "host/HostRoof.h"

#include <memory>
#include <vector>

namespace pluvarine::test {

// A fake roof whose faces each cover a band of x values; a point outside every band has no
// face, and FindRoofFaceAt fails there as the host's call does.
class FakeRoof : public HostRoof {
public:
    struct FaceArea {
        float xMin = 0;
        float xMax = 0;
        float height = 0; // metres, the face's height at any point of the band
    };

    FakeRoof(CallLog& log, std::shared_ptr<FakeRoofData> data, std::vector<FaceArea> faces)
        : m_log(log), m_data(std::move(data)), m_faces(std::move(faces)) {}

    std::shared_ptr<HostRoofData> GetRoofData() override {
        m_log.call("GetRoofData");
        return m_data;
    }
    std::int32_t FindRoofFaceAt(bool flag, float x, float y, float& height,
                                std::array<float, 6>& six, bool& ignored) override {
        m_log.call("FindRoofFaceAt", args(flag, x, y, sixText(six)));
        ignored = true;
        for (std::size_t i = 0; i < m_faces.size(); ++i) {
            if (x >= m_faces[i].xMin && x <= m_faces[i].xMax) {
                height = m_faces[i].height;
                six.fill(-7); // what the host hands back there is never read
                return static_cast<std::int32_t>(i);
            }
        }
        throw RuntimeError(RuntimeError::HostError, "no roof face at the point");
    }

    static std::string sixText(const std::array<float, 6>& six) {
        return args(six[0], six[1], six[2], six[3], six[4], six[5]);
    }

private:
    CallLog& m_log;
    std::shared_ptr<FakeRoofData> m_data;
    std::vector<FaceArea> m_faces;
};

} // namespace pluvarine::test
