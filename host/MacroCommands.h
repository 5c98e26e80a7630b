#pragma once

namespace pluvarine {

// The main window's buttons whose work belongs to the host link; the window calls these from
// its click handlers.
class MacroCommands {
public:
    virtual ~MacroCommands() = default;
    virtual void Command2_Click() = 0; // cancel
    virtual void Command4_Click() = 0; // insert into the building
    virtual void Command5_Click() = 0; // pick a new point on a wall
    virtual void Command7_Click() = 0; // help
};

} // namespace pluvarine
