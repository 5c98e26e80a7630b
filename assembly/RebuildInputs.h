#pragma once

#include <string>

namespace pluvarine {

// What the rebuild needs of the main window: the texts of its three numeric fields, the two
// bend-angle option buttons and the construction question. The main window implements it with
// widgets; the headless composer and the tests with plain values.
class RebuildInputs {
public:
    virtual ~RebuildInputs() = default;

    virtual std::string overhangText() const = 0;     // txtÜd
    virtual std::string standpipeText() const = 0;    // txths
    virtual std::string clampSpacingText() const = 0; // txtdR

    virtual bool isO42Selected() const = 0;
    virtual bool isO72Selected() const = 0;
    // Selects O42 (and so deselects O72) without counting as a user click: no second rebuild.
    virtual void selectO42() = 0;
    // Enables or disables both O42 and O72.
    virtual void setBendOptionsEnabled(bool enabled) = 0;

    // Shows the choice dialog (modeless) and calls its Message_Initiate with case 1, string
    // 2002 and the options 2003 / 2004. The answer arrives later and starts its own rebuild.
    virtual void askConstructionQuestion() = 0;
};

} // namespace pluvarine
