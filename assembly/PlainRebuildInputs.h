#pragma once

#include "assembly/RebuildInputs.h"

#include <string>

namespace pluvarine {

// The main window's inputs as plain values, for the headless composer, tests and benchmarks.
// Starts with the form defaults: txtÜd "0", txths "300", txtdR "1800", O42 selected, both
// option buttons enabled.
class PlainRebuildInputs : public RebuildInputs {
public:
    std::string overhangText() const override { return m_overhang; }
    std::string standpipeText() const override { return m_standpipe; }
    std::string clampSpacingText() const override { return m_clampSpacing; }

    bool isO42Selected() const override { return m_o42; }
    bool isO72Selected() const override { return !m_o42; }
    void selectO42() override;
    void setBendOptionsEnabled(bool enabled) override { m_optionsEnabled = enabled; }
    void askConstructionQuestion() override { ++m_questionsAsked; }

    // What a user does: typing into the fields and clicking an option button (without the
    // rebuild a click starts; the caller runs it).
    void setOverhangText(std::string text) { m_overhang = std::move(text); }
    void setStandpipeText(std::string text) { m_standpipe = std::move(text); }
    void setClampSpacingText(std::string text) { m_clampSpacing = std::move(text); }
    void clickO42() { m_o42 = true; }
    void clickO72() { m_o42 = false; }

    bool bendOptionsEnabled() const { return m_optionsEnabled; }
    int questionsAsked() const { return m_questionsAsked; }
    int o42SelectionsByProgram() const { return m_o42SelectionsByProgram; }

private:
    std::string m_overhang = "0";
    std::string m_standpipe = "300";
    std::string m_clampSpacing = "1800";
    bool m_o42 = true;
    bool m_optionsEnabled = true;
    int m_questionsAsked = 0;
    int m_o42SelectionsByProgram = 0;
};

} // namespace pluvarine
