#pragma once

#include "platform/viewer/Box3.h"
#include "platform/viewer/Matrix4d.h"
#include "platform/viewer/PartModel.h"
#include "platform/viewer/SurfaceLook.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace pluvarine {

// One object of the scene: a part placed by a transform from its own frame to the scene frame.
// Renderer-independent: the preview, the export and the tests all read these.
struct ViewerObject {
    std::int32_t id = 0; // 0 for the content of the base scene, which has no id
    std::shared_ptr<const PartModel> part;
    Matrix4d transform;
    std::optional<SurfaceLook> material; // the applied material; none: the part's own look
    bool committed = false;
    Box3 bounds; // the drawn extent in the scene frame, kept up to date by the scene
    // As the scene was told, for the parts list: the product of the scales and the material
    // file applied (none: never one).
    std::optional<std::array<float, 3>> scaled;
    std::optional<std::string> materialFile;

    bool drawn() const { return part && !part->auxiliary; }
    // The look of piece `index`: the applied material or the part's own.
    const SurfaceLook& look(std::size_t index) const {
        return material ? *material : part->pieces[index].look;
    }
};

} // namespace pluvarine
