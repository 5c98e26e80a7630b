#pragma once

#include <QImage>
#include <cstdint>
#include <string>

namespace pluvarine {

// What the macro's host-link procedures need of the main window beyond the rebuild inputs:
// showing and hiding it, topmost placement, the click labels, the overhang field, the one-shot
// timer and the two pictures handed to the host. The window implements it with widgets; tests
// with a fake.
class MainWindowView {
public:
    virtual ~MainWindowView() = default;

    virtual void showWindow() = 0;
    virtual void hideWindow() = 0;
    // Above all non-topmost windows (true) or back among them; no move, resize or activation.
    virtual void stayOnTop(bool on) = 0;

    virtual void setClickLabels(const std::string& x, const std::string& y) = 0; // lblX, lblY
    virtual std::string overhangText() const = 0;                                // txtÜd
    virtual void setOverhangText(const std::string& text) = 0;

    // Timer1: one-shot 100 ms; when it fires the window calls back the macro's timer handler.
    virtual void enableTimer1() = 0;

    // Start-up steps that belong to the window: puts the texts of the active language on every
    // window, hides the help button on Croatian systems, creates both dialogs hidden; returns
    // true when the host's version check is to be skipped (Russian systems).
    virtual bool ApplyLanguage() = 0;
    // Fills cbmaterial with strings 117-120 and selects entry 0 (a click while nothing is built).
    virtual void fillMaterialList() = 0;

    virtual std::int32_t windowHandle() const = 0;
    virtual QImage bildPicture() const = 0;  // Bild: the host toolbar image, 30 x 30
    virtual QImage bild2Picture() const = 0; // Bild2: the pick cursor, 30 x 30
};

} // namespace pluvarine
