#include "assembly/Rebuild.h"

#include "assembly/MaterialChoice.h"
#include "assembly/Neu.h"
#include "base/Conversions.h"

namespace pluvarine {

Rebuild::Rebuild(Daten& daten, SceneOperations& scene, RebuildInputs& inputs)
    : m_daten(daten), m_scene(scene), m_inputs(inputs) {}

void Rebuild::setFailureObserver(StepFailureObserver observer) {
    m_onFailure = std::move(observer);
}

std::optional<double> Rebuild::overhang() const {
    std::optional<double> value;
    // A text that is not a number passes no test below, so nothing is built and nothing asked.
    tryStep([&] { value = textToDouble(m_inputs.overhangText()); });
    return value;
}

void Rebuild::build(Construction construction) {
    DesignRecord& design = m_daten.design;
    m_lastConstruction = construction;
    resumeNext(
        {
            [&] { buildConstruction(construction, m_daten, m_scene); },
            // Set even when the construction stopped part-way: the parts placed so far count.
            [&] { design.modelBuilt = true; },
            [&] { materialStep(design, m_scene); },
        },
        m_onFailure);
}

void Rebuild::buildBendByAngle() {
    resumeNext({
                   [&] { m_daten.design.bendPartsBuilt = true; },
                   [&] {
                       const auto v = overhang();
                       if (v && *v >= 200 && *v <= 390) {
                           m_inputs.selectO42(); // not a click: starts no second rebuild
                       }
                   },
                   [&] {
                       if (m_inputs.isO42Selected()) {
                           build(Construction::Bend42);
                       }
                   },
                   [&] {
                       if (m_inputs.isO72Selected()) {
                           build(Construction::Bend72);
                       }
                   },
               },
               m_onFailure);
}

void Rebuild::buildAnswered() {
    if (m_daten.design.bendChosen) {
        if (m_inputs.isO42Selected()) {
            build(Construction::Kink42);
        }
        if (m_inputs.isO72Selected()) {
            build(Construction::Kink72);
        }
        return;
    }
    resumeNext({[&] { m_inputs.setBendOptionsEnabled(false); }}, m_onFailure);
    build(Construction::Continuous);
}

void Rebuild::run() {
    DesignRecord& design = m_daten.design;
    m_lastConstruction = Construction::None;
    resumeNext({
                   [&] { design.modelBuilt = false; },
                   [&] { Neu(m_daten, m_scene); },
                   [&] { m_inputs.setBendOptionsEnabled(true); },
                   // A field that is not a number leaves its record value as it was.
                   [&] { design.clampSpacing = textToDouble(m_inputs.clampSpacingText()); },
                   [&] {
                       design.wallOffset =
                           textToDouble(m_inputs.overhangText()) + m_daten.roof.gutterWidth - 60;
                   },
                   [&] { design.standpipeHeight = textToDouble(m_inputs.standpipeText()); },
               },
               m_onFailure);

    // The overhang decides; each test reads the field afresh.
    const auto isOpen = [](std::optional<double> v) { return v && *v > 0 && *v < 200; };
    if (const auto v = overhang(); v && *v >= 200) {
        buildBendByAngle();
    }
    if (!design.constructionAnswered && isOpen(overhang())) {
        resumeNext({[&] { m_inputs.setBendOptionsEnabled(false); },
                    [&] { m_inputs.askConstructionQuestion(); }},
                   m_onFailure);
    }
    if (const auto v = overhang(); v && *v == 0) {
        resumeNext({[&] { m_inputs.setBendOptionsEnabled(false); }}, m_onFailure);
        build(Construction::Continuous);
    }
    if (design.constructionAnswered && isOpen(overhang())) {
        buildAnswered();
    }
}

void Rebuild::answerContinuous() {
    answer(false);
}

void Rebuild::answerBend() {
    answer(true);
}

void Rebuild::answer(bool bend) {
    DesignRecord& design = m_daten.design;
    design.constructionAnswered = true;
    design.bendChosen = bend;
    design.bendPartsBuilt = bend;
    if (!bend) {
        m_inputs.setBendOptionsEnabled(false);
    }
    run();
}

} // namespace pluvarine
