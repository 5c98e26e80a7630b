#pragma once

#include "host/PlacementMatrix.h"
#include "platform/viewer/ViewerScene.h"

#include <QWidget>
#include <map>
#include <memory>
#include <vector>

namespace pluvarine {

class PreviewWidget;
class TectaroHost;
struct GlbContent;
struct PlacedElement;

// The 3D view of the building: walls as prisms, roof faces as slabs, and every inserted element
// from its object file at its placement (its objects named "<object file>/<node>"), drawn by the
// viewer's preview widget (orbit, pan, zoom; a double click shows everything from the default
// direction). The scene is rebuilt when the project changes; when its elements change, only the
// elements added, removed or moved are, so an insertion costs the same however many there are.
// The view follows the whole building until the user turns, pans or zooms it. Frames are drawn
// without multisampling: the building fills the view, and 4x the samples would cost a large
// view more than the picture gains.
class BuildingView3D : public QWidget {
    Q_OBJECT
public:
    explicit BuildingView3D(TectaroHost& host, QWidget* parent = nullptr);
    ~BuildingView3D() override;

    ViewerScene& scene() { return m_scene; }
    PreviewWidget& preview() { return *m_preview; }
    // Rebuilds the scene from the host's project and fits the view.
    void rebuild();
    // Brings the elements in the scene up to the host's project.
    void updateElements();

private:
    // What the scene shows of one element: its objects' ids, made from `content` at `matrix`.
    struct Shown {
        std::shared_ptr<const GlbContent> content;
        PlacementMatrix matrix;
        std::vector<std::int32_t> ids;
    };

    void show(const std::shared_ptr<PlacedElement>& element);

    TectaroHost& m_host;
    ViewerScene m_scene;
    PreviewWidget* m_preview = nullptr;
    std::map<std::shared_ptr<PlacedElement>, Shown> m_shown;
};

} // namespace pluvarine
