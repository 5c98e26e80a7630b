#pragma once

#include "assembly/Daten.h"
#include "store/text/LoadText.h"
#include "tests/support/FaultyScene.h"
#include "ui/FrmDetails.h"
#include "ui/FrmMain.h"
#include "ui/FrmMessage.h"

#include <QtTest>
#include <QtWidgets>
#include <algorithm>
#include <gtest/gtest.h>
#include <memory>

// Readable QStrings in test failures.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

namespace pluvarine::test {

// Each language with a string table: a short tag, a system locale that selects it, its table.
struct Language {
    const char* tag;
    const char* systemLocale;
    int lcid;
    friend void PrintTo(const Language& language, std::ostream* out) { *out << language.tag; }
};
inline const Language languages[] = {{"de", "de_DE.UTF-8", TextLanguage::German},
                                     {"en", "en_US.UTF-8", TextLanguage::EnglishUnitedStates},
                                     {"gb", "en_GB.UTF-8", TextLanguage::EnglishUnitedKingdom},
                                     {"fr", "fr_FR.UTF-8", TextLanguage::French},
                                     {"pl", "pl_PL.UTF-8", TextLanguage::Polish},
                                     {"ru", "ru_RU.UTF-8", TextLanguage::Russian},
                                     {"hr", "hr_HR.UTF-8", TextLanguage::Croatian}};

// The system locale (LC_ALL) and the active string table for one test; both are put back (an
// empty LC_ALL counts as none).
struct LanguageScope {
    LanguageScope(const char* systemLocale, int textLanguage) {
        qputenv("LC_ALL", systemLocale);
        setActiveTextLanguage(textLanguage);
    }
    ~LanguageScope() {
        qputenv("LC_ALL", oldLocale);
        setActiveTextLanguage(oldTextLanguage);
    }
    const QByteArray oldLocale = qgetenv("LC_ALL");
    const int oldTextLanguage = activeTextLanguage();
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
        return int(std::ranges::count_if(
            scene.calls(), [](const SceneCall& c) { return c.member == SceneMember::LoadScene; }));
    }
    // A control of the main window, or of `parent`.
    template <typename T> T* child(const char* name, QObject* parent = nullptr) const {
        T* found = (parent ? parent : main.get())->findChild<T*>(QString::fromUtf8(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    void click(const char* name, QObject* parent = nullptr) const {
        QTest::mouseClick(child<QAbstractButton>(name, parent), Qt::LeftButton);
    }

    Daten daten;
    FaultyScene scene;
    std::unique_ptr<FrmMain> main;
};

// The caption or text a control shows.
inline QString shownText(const QWidget* widget) {
    for (const char* property : {"text", "title", "currentText"})
        if (const QVariant value = widget->property(property); value.isValid())
            return value.toString();
    return {};
}

// Types as a keyboard would, also characters QTest::keyClicks cannot send.
inline void typeText(QWidget* widget, const QString& text) {
    for (const QChar c : text)
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, Qt::Key_unknown, Qt::NoModifier, QString(c));
            QApplication::sendEvent(widget, &event);
        }
}

} // namespace pluvarine::test
