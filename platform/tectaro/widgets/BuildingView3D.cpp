#include "platform/tectaro/widgets/BuildingView3D.h"

#include "platform/tectaro/BuildingMesh.h"
#include "platform/tectaro/TectaroHost.h"
#include "platform/viewer/widget/PreviewWidget.h"

#include <QVBoxLayout>
#include <algorithm>

namespace pluvarine {

namespace {

SurfaceLook look(const char* name, float r, float g, float b, float roughness) {
    SurfaceLook result;
    result.name = name;
    result.baseColor = {r, g, b};
    result.roughness = roughness;
    return result;
}

Matrix4d toMatrix4d(const QMatrix4x4& m) {
    std::array<double, 16> values{};
    const float* data = m.constData(); // column-major, as Matrix4d
    for (std::size_t i = 0; i < 16; ++i) {
        values[i] = data[i];
    }
    return Matrix4d::fromColumnMajor(values);
}

} // namespace

BuildingView3D::BuildingView3D(TectaroHost& host, QWidget* parent) : QWidget(parent), m_host(host) {
    setObjectName(QStringLiteral("tectaro3D"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_preview = new PreviewWidget(m_scene, this);
    m_preview->setBackdrop(false); // building coordinates are the scene's; no wall plane
    m_preview->setMultisampling(false);
    m_preview->setLevelsOfDetail(true);
    layout->addWidget(m_preview);
    connect(&host, &TectaroHost::projectChanged, this, &BuildingView3D::rebuild);
    connect(&host, &TectaroHost::elementsChanged, this, &BuildingView3D::updateElements);
    rebuild();
}

BuildingView3D::~BuildingView3D() {
    // The preview observes the scene: it goes first, while the scene is still there.
    delete m_preview;
}

void BuildingView3D::rebuild() {
    static const SurfaceLook wallLook = look("Wall", 0.78f, 0.74f, 0.66f, 0.9f);
    static const SurfaceLook roofLook = look("Roof", 0.45f, 0.12f, 0.07f, 0.7f);
    m_scene.clear();
    m_shown.clear();
    const auto building = m_host.building();
    for (const Wall& wall : building->walls) {
        m_scene.addMesh(BuildingMesh::wall(wall), Matrix4d(), wallLook, "wall");
    }
    for (const Roof& roof : building->roofs) {
        for (const RoofFace& face : roof.faces) {
            m_scene.addMesh(BuildingMesh::roofFace(face, roof.roofingThickness), Matrix4d(),
                            roofLook, "roof");
        }
    }
    updateElements();
    m_scene.UpdateView();
}

void BuildingView3D::updateElements() {
    const TectaroProject* project = m_host.project();
    const std::vector<std::shared_ptr<PlacedElement>> none;
    const auto& elements = project ? project->elements : none;
    bool changed = false;
    for (auto it = m_shown.begin(); it != m_shown.end();) {
        const bool stays =
            std::find(elements.begin(), elements.end(), it->first) != elements.end() &&
            it->second.content == it->first->object.content;
        if (stays) {
            ++it;
            continue;
        }
        for (const std::int32_t id : it->second.ids) {
            m_scene.remove(id);
        }
        it = m_shown.erase(it);
        changed = true;
    }
    for (const auto& element : elements) {
        const auto found = m_shown.find(element);
        if (found == m_shown.end()) {
            show(element);
            changed = true;
        } else if (found->second.matrix.values != element->matrix.values) {
            // Moved: the same objects, placed anew.
            const Matrix4d world = toMatrix4d(element->worldTransform());
            std::size_t next = 0;
            for (const GlbItem& item : element->object.content->items) {
                if (!item.auxiliary && item.mesh) {
                    m_scene.setTransform(found->second.ids[next++], world * item.transform);
                }
            }
            found->second.matrix = element->matrix;
            changed = true;
        }
    }
    if (changed && m_preview->followsFit()) {
        m_preview->fitToView();
    }
}

void BuildingView3D::show(const std::shared_ptr<PlacedElement>& element) {
    Shown& shown = m_shown[element];
    shown.content = element->object.content;
    shown.matrix = element->matrix;
    const Matrix4d world = toMatrix4d(element->worldTransform());
    for (const GlbItem& item : element->object.content->items) {
        if (item.auxiliary || !item.mesh) {
            continue;
        }
        shown.ids.push_back(m_scene.addMesh(item.mesh, world * item.transform, item.look,
                                            element->object.name + "/" + item.nodeName));
    }
}

} // namespace pluvarine
