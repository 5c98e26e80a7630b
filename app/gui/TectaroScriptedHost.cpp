#include "TectaroScriptedHost.h"

#include "platform/tectaro/TectaroHost.h"
#include "platform/tectaro/widgets/PartsListDialog.h"
#include "platform/tectaro/widgets/TectaroWindow.h"

#include <QVector3D>
#include <algorithm>
#include <stdexcept>

namespace pluvarine {

namespace {

using Json = nlohmann::json;

Json vector3(const QVector3D& v) {
    return Json::array({v.x(), v.y(), v.z()});
}

} // namespace

bool TectaroScriptedHost::busy() {
    return m_host.busy();
}

void TectaroScriptedHost::click(double x, double y) {
    if (!m_window.clickAt(QPointF(x, y))) {
        throw std::runtime_error("the host is not waiting for a click");
    }
}

void TectaroScriptedHost::pressMacroButton() {
    if (!m_window.pressMacroButton()) {
        throw std::runtime_error("the macro's button is missing, hidden or disabled");
    }
}

void TectaroScriptedHost::newProject() {
    m_window.newProject();
}

void TectaroScriptedHost::saveProject(const std::string& path) {
    std::string error;
    if (!m_window.saveProject(path, &error)) {
        throw std::runtime_error("cannot save the project: " + error);
    }
}

void TectaroScriptedHost::closeProject() {
    m_window.closeProject();
}

void TectaroScriptedHost::openProject(const std::string& path, bool discardUnsaved) {
    const bool kept = m_host.saveFailed() && !discardUnsaved;
    std::string error;
    if (!m_window.openProject(path, &error) && !kept) {
        throw std::runtime_error("cannot open the project: " + error);
    }
}

void TectaroScriptedHost::screenshot(const std::string& file) {
    if (!m_window.screenshot(file)) {
        throw std::runtime_error("cannot write the screenshot " + file);
    }
}

Json TectaroScriptedHost::state() {
    Json elements = Json::array();
    if (const TectaroProject* project = m_host.project()) {
        for (const auto& element : project->elements) {
            // The element's box in the building: its object's box carried into the world.
            const QMatrix4x4 world = element->worldTransform();
            QVector3D low(1e9F, 1e9F, 1e9F);
            QVector3D high(-1e9F, -1e9F, -1e9F);
            for (int corner = 0; corner < 8; ++corner) {
                const QVector3D a = element->object.boundsMin;
                const QVector3D b = element->object.boundsMax;
                const QVector3D p =
                    world.map(QVector3D(corner & 1 ? b.x() : a.x(), corner & 2 ? b.y() : a.y(),
                                        corner & 4 ? b.z() : a.z()));
                low = QVector3D(std::min(low.x(), p.x()), std::min(low.y(), p.y()),
                                std::min(low.z(), p.z()));
                high = QVector3D(std::max(high.x(), p.x()), std::max(high.y(), p.y()),
                                 std::max(high.z(), p.z()));
            }
            elements.push_back(
                {{"name", element->object.name},
                 {"source", element->sourcePath},
                 {"matrix", element->matrix.values},
                 {"plan", Json::array({element->planPosition().x(), element->planPosition().y()})},
                 {"worldMin", vector3(low)},
                 {"worldMax", vector3(high)}});
        }
    }
    Json button = nullptr;
    if (const auto& b = m_host.macroButton()) {
        button = {
            {"id", b->id}, {"shown", b->shown}, {"enabled", b->enabled}, {"tooltip", b->tooltip}};
    }
    return {{"project", m_host.project() != nullptr ? Json(m_host.project()->path) : Json()},
            {"button", button},
            {"prompt", m_host.prompt()},
            {"clickRequested", m_host.clickRequest().has_value()},
            {"lastChunkCount", m_host.lastChunkCount()},
            {"elements", elements}};
}

void TectaroScriptedHost::exit() {
    if (!m_window.close()) {
        throw std::runtime_error("the host kept running: its project was not saved");
    }
}

void TectaroScriptedHost::exportPartsList(const std::string& file) {
    std::string error;
    if (!m_window.exportPartsList(file, &error)) {
        throw std::runtime_error(error);
    }
}

QWidget* TectaroScriptedHost::partsListWindow() {
    return &m_window.showPartsList();
}

QWidget* TectaroScriptedHost::localWindow() {
    return &m_window;
}

} // namespace pluvarine
