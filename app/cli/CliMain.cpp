#include "app/cli/Commands.h"

#include <QCoreApplication>
#include <iostream>
#include <string>
#include <vector>

namespace {

void printUsage(std::ostream& out) {
    out << "usage: pluvarine-cli compose [options]     compose a downpipe and print it as JSON\n"
           "       pluvarine-cli archive pack DIR ARCHIVE | unpack ARCHIVE DIR | list ARCHIVE\n"
           "       pluvarine-cli help\n";
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv); // the user's locale for number texts
    std::vector<std::string> args(argv + 1, argv + argc);
    if (args.empty() || args[0] == "help" || args[0] == "--help" || args[0] == "-h") {
        printUsage(args.empty() ? std::cerr : std::cout);
        return args.empty() ? 2 : 0;
    }
    const std::string command = args[0];
    args.erase(args.begin());
    if (command == "compose") {
        return pluvarine::runCompose(args);
    }
    if (command == "archive") {
        return pluvarine::runArchive(args);
    }
    std::cerr << "pluvarine-cli: unknown command '" << command << "'\n";
    printUsage(std::cerr);
    return 2;
}
