#pragma once

#include <QStringList>
#include <optional>
#include <string>

namespace pluvarine {

// The command line of the program.
struct LaunchOptions {
    std::string script;                     // --script FILE: a JSON script that drives the session
    std::string journal;                    // --journal FILE: JSON lines of host calls and events
    std::string programFolder;              // --program-folder DIR: the host's program folder
    std::optional<std::string> versionText; // --version-text TEXT: what the host reports
    std::string building;                   // --building FILE: the host's default building
    std::string helpFolder;                 // --help-folder DIR: the help pages the host installs
    std::string host = "tectaro";           // --host NAME: tectaro (the stand-in) or freecad
    std::string hostSocket;                 // --host-socket PATH: a host over the host protocol
    int hostTimeoutMs = 10000;              // --host-timeout MS: how long a host call may take

    // The host runs in another process and is reached over the host protocol.
    bool remoteHost() const { return !hostSocket.empty() || host != "tectaro"; }

    // Parses the arguments of QCoreApplication; false (with the reason in `error`, or nothing
    // for --help and --version, which are printed) when the program is not to start.
    static std::optional<LaunchOptions> parse(const QStringList& arguments, std::string& error);

    // --language LANG, which must be in place before Qt first reads the locale: sets the
    // interface language (LANGUAGE) and the system locale (LC_ALL, LANG) of this process.
    static void applyLanguage(int argc, char** argv);
};

} // namespace pluvarine
