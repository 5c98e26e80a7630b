// The program: the stand-in host and the downpipe macro in one process.

#include "LaunchOptions.h"
#include "ScriptRunner.h"
#include "Session.h"
#include "base/RuntimeError.h"

#include <QApplication>
#include <QMessageBox>
#include <iostream>
#include <memory>

int main(int argc, char** argv) {
    using namespace pluvarine;
    LaunchOptions::applyLanguage(argc, argv);
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Pluvarine"));
    QApplication::setApplicationVersion(QStringLiteral("0.1.0"));

    std::string error;
    const std::optional<LaunchOptions> options = LaunchOptions::parse(app.arguments(), error);
    if (!options) {
        std::cerr << "pluvarine: " << error << '\n';
        return 2;
    }
    std::unique_ptr<Session> session;
    std::unique_ptr<ScriptRunner> script;
    try {
        session = std::make_unique<Session>(*options);
        if (!options->script.empty()) {
            script = std::make_unique<ScriptRunner>(*session, options->script);
        }
    } catch (const std::exception& failure) {
        std::cerr << "pluvarine: " << failure.what() << '\n';
        if (options->script.empty()) { // started from a desktop, where no one reads stderr
            QMessageBox::critical(nullptr, QApplication::applicationName(),
                                  QString::fromUtf8(failure.what()));
        }
        return 2;
    }
    if (!session->start()) {
        return 0; // the macro ended at start-up, after its message
    }
    if (script) {
        script->start();
    }
    const int result = QApplication::exec();
    return script && script->exitCode() != 0 ? script->exitCode() : result;
}
