#include "LaunchOptions.h"

#include <QCommandLineParser>
#include <cstdlib>
#include <cstring>

namespace pluvarine {

namespace {

QCommandLineOption option(const char* name, const char* description, const char* value) {
    return QCommandLineOption(QString::fromLatin1(name), QString::fromUtf8(description),
                              QString::fromLatin1(value));
}

} // namespace

std::optional<LaunchOptions> LaunchOptions::parse(const QStringList& arguments,
                                                  std::string& error) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Designs a rain-water downpipe at a wall of the host's building and inserts it."));
    parser.addHelpOption();
    parser.addVersionOption();
    const auto script = option("script", "Runs the JSON script FILE (see the README).", "FILE");
    const auto journal =
        option("journal", "Writes every host call and event as JSON lines to FILE.", "FILE");
    const auto folder = option("program-folder", "The host's program folder.", "DIR");
    const auto version = option("version-text", "The host's name and version text.", "TEXT");
    const auto building = option("building", "The building file the host opens.", "FILE");
    const auto help = option("help-folder", "The help pages the host installs.", "DIR");
    const auto language =
        option("language", "Runs in this language and locale (de, en_US, ru_RU, ...).", "LANG");
    const auto host =
        option("host", "The host: tectaro (the stand-in, default) or freecad (a running FreeCAD).",
               "NAME");
    const auto socket =
        option("host-socket", "Connects to the host listening at this Unix socket (host protocol).",
               "PATH");
    const auto timeout =
        option("host-timeout", "How long a call to a host over a socket may take.", "MS");
    parser.addOptions(
        {script, journal, folder, version, building, help, language, host, socket, timeout});
    if (!parser.parse(arguments)) {
        error = parser.errorText().toStdString();
        return std::nullopt;
    }
    if (parser.isSet(QStringLiteral("help"))) {
        parser.showHelp(); // exits
    }
    if (parser.isSet(QStringLiteral("version"))) {
        parser.showVersion(); // exits
    }
    if (!parser.positionalArguments().isEmpty()) {
        error = "unexpected argument: " + parser.positionalArguments().first().toStdString();
        return std::nullopt;
    }
    LaunchOptions options;
    options.script = parser.value(script).toStdString();
    options.journal = parser.value(journal).toStdString();
    options.programFolder = parser.value(folder).toStdString();
    if (parser.isSet(version)) {
        options.versionText = parser.value(version).toStdString();
    }
    options.building = parser.value(building).toStdString();
    options.helpFolder = parser.value(help).toStdString();
    if (parser.isSet(host)) {
        options.host = parser.value(host).toStdString();
        if (options.host != "tectaro" && options.host != "freecad") {
            error = "unknown host " + options.host + ": tectaro or freecad";
            return std::nullopt;
        }
    }
    options.hostSocket = parser.value(socket).toStdString();
    if (parser.isSet(timeout)) {
        bool valid = false;
        options.hostTimeoutMs = parser.value(timeout).toInt(&valid);
        if (!valid || options.hostTimeoutMs <= 0) {
            error = "--host-timeout needs a positive number of milliseconds";
            return std::nullopt;
        }
    }
    return options;
}

void LaunchOptions::applyLanguage(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        const char* value = nullptr;
        if (std::strcmp(argv[i], "--language") == 0 && i + 1 < argc) {
            value = argv[i + 1];
        } else if (std::strncmp(argv[i], "--language=", 11) == 0) {
            value = argv[i] + 11;
        }
        if (value != nullptr && *value != '\0') {
            // The string table follows LANGUAGE; the default-locale identifier and the number
            // formats follow LC_ALL.
            setenv("LANGUAGE", value, 1);
            setenv("LC_ALL", value, 1);
            setenv("LANG", value, 1);
        }
    }
}

} // namespace pluvarine
