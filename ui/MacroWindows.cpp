#include "ui/MacroWindows.h"

namespace pluvarine {

MacroWindows::MacroWindows(Daten& daten, SceneOperations& scene, QWidget* player)
    : m_main(std::make_unique<FrmMain>(daten, scene, player)) {
    m_main->frmDetails();
    m_main->frmMessage();
}

} // namespace pluvarine
