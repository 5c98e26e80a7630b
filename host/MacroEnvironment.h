#pragma once

#include "assembly/Daten.h"
#include "assembly/SceneOperations.h"
#include "host/HostConnection.h"
#include "host/MainWindowView.h"
#include "platform/system/HelpViewer.h"
#include "platform/system/ProgramControl.h"
#include "platform/system/UserMessages.h"
#include "store/ProgressSink.h"

#include <functional>

namespace pluvarine {

// Everything the main window's host-link procedures work with besides the host itself. The
// program wires the real windows, viewer and platform services; tests wire fakes.
struct MacroEnvironment {
    HostConnectionFactory connect;       // creates the host connection object `exe`
    PictureConversion pictureFromBitmap; // the host binding's picture conversion
    Daten& daten;                        // the shared design record, roof data and working folder
    SceneOperations& scene;              // the preview (base scene, export of the assembly)
    std::function<void()> rebuild;       // the rebuild of the assembly (Rebuild::run)
    MainWindowView& view;
    UserMessages& messages;
    ProgramControl& program;
    HelpViewer& help;
    EventPump pumpEvents; // lets pending events run between the files of an archive
};

} // namespace pluvarine
