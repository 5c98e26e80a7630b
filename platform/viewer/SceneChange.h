#pragma once

namespace pluvarine {

// What an observer of the scene is told about.
enum class SceneChange {
    Content,   // objects added or removed, or the scene replaced
    Placement, // a transform or a commit of the current object
    Look,      // a material applied
    FitView,   // the view should show the whole assembly (UpdateView)
};

} // namespace pluvarine
