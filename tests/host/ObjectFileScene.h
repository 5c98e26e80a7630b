#pragma once

#include "CallLog.h"
#include "assembly/RecordingScene.h"

#include <fstream>

namespace pluvarine::test {

// The recording scene, whose export also writes a small object file at the path, as the viewer
// does; loading and exporting go into the shared log too. An export into a missing folder
// fails as the viewer's would.
class ObjectFileScene : public RecordingScene {
public:
    explicit ObjectFileScene(CallLog& log) : m_log(log) {}

    void LoadScene(const std::string& sceneFile) override {
        m_log.call("LoadScene", sceneFile);
        RecordingScene::LoadScene(sceneFile);
    }
    bool SaveScene(const std::string& path, const std::string& objectName,
                   const std::string& third) override {
        m_log.call("SaveScene", args(path, objectName, "'" + third + "'"));
        const bool result = RecordingScene::SaveScene(path, objectName, third);
        std::ofstream file(path, std::ios::binary);
        if (!file) {
            throw RuntimeError(RuntimeError::ViewerError, "cannot write " + path);
        }
        file << "object " << objectName;
        return result;
    }

private:
    CallLog& m_log;
};

} // namespace pluvarine::test
