#pragma once

#include "assembly/FlatExtras.h"
#include "assembly/PartsListRow.h"
#include "assembly/SceneObject.h"

#include <vector>

namespace pluvarine {

// What to order for one downpipe, read off the scene as composed: one row per article,
// material and cut length, in the order the parts were placed.
struct PartsList {
    std::vector<PartsListRow> rows;

    // From the objects of a scene: the part file each was added from, its z scale (a pipe
    // piece or standpipe is 500 mm stretched by it; none: its own 500 mm) and the material
    // file applied (none, empty or unknown: the parts' own look, grey). Objects from files
    // outside the catalogue, and the auxiliary dummy, are not articles.
    static PartsList of(const std::vector<SceneObject>& objects);

    // The object file's scene extras: "pluvarine.partsList.count" and, for rows i = 1 ... count,
    // "pluvarine.partsList.<i>.<field>" (article, textId, file, diameter, angle, length,
    // material, materialTextId, count, cutLength where cut, warning where the cut is not
    // positive).
    FlatExtras toExtras() const;
    // Reads them back; extras without a list give an empty one, missing fields their defaults.
    static PartsList fromExtras(const FlatExtras& extras);

    // Totals per article and material over several lists: counts and total lengths summed, in
    // the order each first appears; no cut length of their own.
    static std::vector<PartsListRow> totals(const std::vector<PartsList>& lists);

    bool operator==(const PartsList&) const = default;
};

} // namespace pluvarine
