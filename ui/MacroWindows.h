#pragma once

#include "assembly/Daten.h"
#include "assembly/SceneOperations.h"
#include "ui/FrmDetails.h"
#include "ui/FrmMain.h"
#include "ui/FrmMessage.h"

#include <memory>

class QWidget;

namespace pluvarine {

class MacroCommands;

// The program's three windows wired together: the main window with its rebuild, the roof
// details dialog and the choice dialog (created hidden, as ApplyLanguage does). For the
// program's main and the host link.
//
//   Daten daten;
//   ViewerScene scene(...);                       // the viewer's scene
//   auto* player = new PreviewWidget(scene);      // the viewer's OpenGL widget
//   MacroWindows windows(daten, scene, player);
//   windows.setMacroCommands(&macro);             // cancel, insert, pick, help
//   // the host link's load handler: windows.view().ApplyLanguage(), ... , show
class MacroWindows {
public:
    // `player` may be null (no OpenGL): an empty frame stands in for the preview.
    MacroWindows(Daten& daten, SceneOperations& scene, QWidget* player);

    void setMacroCommands(MacroCommands* commands) { m_main->setMacroCommands(commands); }

    FrmMain& main() { return *m_main; }
    FrmDetails& details() { return m_main->frmDetails(); }
    FrmMessage& message() { return m_main->frmMessage(); }
    Rebuild& rebuild() { return m_main->rebuild(); }
    MainWindowView& view() { return *m_main; }
    RebuildInputs& inputs() { return *m_main; }

private:
    std::unique_ptr<FrmMain> m_main;
};

} // namespace pluvarine
