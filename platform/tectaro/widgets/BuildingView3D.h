#pragma once

#include "platform/viewer/ViewerScene.h"

#include <QWidget>

namespace pluvarine {

class PreviewWidget;
class TectaroHost;

// The 3D view of the building: walls as prisms, roof faces as slabs, and every inserted element
// from its object file at its placement (its objects named "<object file>/<node>"), drawn by the
// viewer's preview widget (orbit, pan, zoom; a double click shows everything). The scene is rebuilt
// whenever the project or its elements change.
class BuildingView3D : public QWidget {
    Q_OBJECT
public:
    explicit BuildingView3D(TectaroHost& host, QWidget* parent = nullptr);
    ~BuildingView3D() override;

    ViewerScene& scene() { return m_scene; }
    PreviewWidget& preview() { return *m_preview; }
    // Rebuilds the scene from the host's project and fits the view.
    void rebuild();

private:
    TectaroHost& m_host;
    ViewerScene m_scene;
    PreviewWidget* m_preview = nullptr;
};

} // namespace pluvarine
