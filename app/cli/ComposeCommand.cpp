#include "app/cli/Commands.h"
#include "app/cli/ComposeOptions.h"
#include "app/cli/ComposeReport.h"
#include "assembly/Daten.h"
#include "assembly/MaterialChoice.h"
#include "assembly/PlainRebuildInputs.h"
#include "assembly/Rebuild.h"
#include "assembly/RecordingScene.h"
#include "platform/system/InstalledData.h"

#include <iostream>

namespace pluvarine {

// Composes one design headless, as the main window would: the fields as typed, one rebuild as
// the refresh button runs it, the answer's rebuild if the question came up and an answer is
// given, then the material picked in the list.
int runCompose(const std::vector<std::string>& args) {
    const auto parsed = parseComposeOptions(args);
    if (const auto* error = std::get_if<std::string>(&parsed)) {
        std::cerr << "pluvarine-cli compose: " << *error << '\n';
        return 2;
    }
    const ComposeOptions& options = std::get<ComposeOptions>(parsed);
    if (options.help) {
        std::cout << composeUsage();
        return 0;
    }

    Daten daten;
    daten.workFolder =
        options.workFolder.empty() ? InstalledData::workFolderTree() : options.workFolder;
    while (daten.workFolder.size() > 1 && daten.workFolder.back() == '/') {
        daten.workFolder.pop_back();
    }
    daten.oldObjectFile = daten.workFolder + "/obj/fallrohr.tob";
    daten.design.heightH = options.heightH;
    daten.roof.gutterWidth = options.gutterWidth;

    PlainRebuildInputs inputs;
    inputs.setOverhangText(options.overhangText);
    inputs.setStandpipeText(options.standpipeText);
    inputs.setClampSpacingText(options.clampSpacingText);
    if (options.angle72) {
        inputs.clickO72();
    }

    RecordingScene scene;
    Rebuild rebuild(daten, scene, inputs);
    rebuild.run();
    const bool asked = inputs.questionsAsked() > 0;
    if (asked && options.answerBend) {
        if (*options.answerBend) {
            rebuild.answerBend();
        } else {
            rebuild.answerContinuous();
        }
    }
    if (options.materialIndex) {
        chooseMaterial(daten, scene, *options.materialIndex);
    }

    std::cout << composeReport({rebuild.lastConstruction(), asked, daten.design, scene},
                               options.trace);
    return 0;
}

} // namespace pluvarine
