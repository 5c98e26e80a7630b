#pragma once

#include "CallLog.h"
#include "host/MainWindowView.h"

namespace pluvarine::test {

// The main window as the host link sees it; every call goes into the shared log.
class FakeView : public MainWindowView {
public:
    explicit FakeView(CallLog& log) : m_log(log) {}

    bool russianSystem = false; // ApplyLanguage asks to skip the version check
    bool visible = false;
    bool topmost = false;
    std::string overhang = "";
    std::string labelX = ".....";
    std::string labelY = ".....";

    void showWindow() override {
        m_log.call("showWindow");
        visible = true;
    }
    void hideWindow() override {
        m_log.call("hideWindow");
        visible = false;
    }
    void stayOnTop(bool on) override {
        m_log.call("stayOnTop", args(on));
        topmost = on;
    }
    void setClickLabels(const std::string& x, const std::string& y) override {
        m_log.call("setClickLabels", args(x, y));
        labelX = x;
        labelY = y;
    }
    std::string overhangText() const override { return overhang; }
    void setOverhangText(const std::string& text) override {
        m_log.call("setOverhangText", text);
        overhang = text;
    }
    void enableTimer1() override { m_log.call("enableTimer1"); }
    bool ApplyLanguage() override {
        m_log.call("ApplyLanguage");
        return russianSystem;
    }
    void fillMaterialList() override { m_log.call("fillMaterialList"); }
    std::int32_t windowHandle() const override { return 4711; }
    QImage bildPicture() const override { return picture(Qt::blue); }
    QImage bild2Picture() const override { return picture(Qt::red); }

private:
    static QImage picture(Qt::GlobalColor colour) {
        QImage image(30, 30, QImage::Format_RGB32);
        image.fill(colour);
        return image;
    }

    CallLog& m_log;
};

} // namespace pluvarine::test
