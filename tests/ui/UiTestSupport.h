#pragma once

#include "assembly/Daten.h"
#include "assembly/RecordingScene.h"
#include "host/MacroCommands.h"
#include "ui/FrmDetails.h"
#include "ui/FrmMain.h"
#include "ui/FrmMessage.h"
#include "ui/text/LoadText.h"

#include <QApplication>
#include <QKeyEvent>
#include <QTest>
#include <QWidget>
#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pluvarine::test {

// The system locale (LC_ALL, read by the language module) and the active string table for the
// duration of a test; both are put back afterwards.
class LanguageScope {
public:
    LanguageScope(const char* systemLocale, int textLanguage) {
        if (const char* old = std::getenv("LC_ALL"))
            m_oldLcAll = old;
        ::setenv("LC_ALL", systemLocale, 1);
        m_oldTextLanguage = activeTextLanguage();
        setActiveTextLanguage(textLanguage);
    }
    ~LanguageScope() {
        if (m_oldLcAll)
            ::setenv("LC_ALL", m_oldLcAll->c_str(), 1);
        else
            ::unsetenv("LC_ALL");
        setActiveTextLanguage(m_oldTextLanguage);
    }
    LanguageScope(const LanguageScope&) = delete;
    LanguageScope& operator=(const LanguageScope&) = delete;

private:
    std::optional<std::string> m_oldLcAll;
    int m_oldTextLanguage = 0;
};

// Records which of the host link's buttons were pressed.
class RecordingCommands : public MacroCommands {
public:
    void Command2_Click() override { calls.push_back("cancel"); }
    void Command4_Click() override { calls.push_back("insert"); }
    void Command5_Click() override { calls.push_back("pick"); }
    void Command7_Click() override { calls.push_back("help"); }
    std::vector<std::string> calls;
};

// A main window on a recording scene, without OpenGL (an empty frame is the preview).
class WindowTest : public ::testing::Test {
protected:
    WindowTest() {
        daten.workFolder = "/wf";
        main = std::make_unique<FrmMain>(daten, scene, nullptr);
    }

    // Every rebuild starts with loading the base scene.
    int rebuilds() const {
        int count = 0;
        for (const SceneCall& call : scene.calls())
            count += call.member == SceneMember::LoadScene ? 1 : 0;
        return count;
    }
    int callsOf(SceneMember member) const {
        int count = 0;
        for (const SceneCall& call : scene.calls())
            count += call.member == member ? 1 : 0;
        return count;
    }

    template <typename T> T* child(QObject* parent, const char* name) const {
        T* found = parent->findChild<T*>(QString::fromUtf8(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    template <typename T> T* child(const char* name) const { return child<T>(main.get(), name); }

    Daten daten;
    RecordingScene scene;
    std::unique_ptr<FrmMain> main;
};

// Types one character as a keyboard would, also characters QTest::keyClicks cannot send.
inline void typeChar(QWidget* widget, QChar character) {
    QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(character));
    QApplication::sendEvent(widget, &press);
    QKeyEvent release(QEvent::KeyRelease, Qt::Key_unknown, Qt::NoModifier, QString(character));
    QApplication::sendEvent(widget, &release);
}

inline void typeText(QWidget* widget, const QString& text) {
    for (const QChar c : text)
        typeChar(widget, c);
}

} // namespace pluvarine::test
