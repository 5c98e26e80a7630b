// pluvarine-partgen WORKFOLDER
// Writes the part catalogue (res/*.v3o), the auxiliary dummy, the base scene main.v3o and the
// material files (mat/*.ini), and creates the empty obj/ and destination/ folders.

#include "data/generator/GlbWriter.h"
#include "data/generator/MaterialFiles.h"
#include "data/generator/PartShapes.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

// Written beside the target and renamed into place, so a reader never sees half a file.
void writeFile(const fs::path& path, const std::string& bytes) {
    const fs::path temporary = path.string() + ".part";
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        if (!out) {
            throw std::runtime_error("cannot write " + temporary.string());
        }
    }
    fs::rename(temporary, path);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: pluvarine-partgen WORKFOLDER\n";
        return 2;
    }
    try {
        const fs::path root = argv[1];
        for (const char* folder : {"res", "mat", "obj", "destination"}) {
            fs::create_directories(root / folder);
        }
        for (const auto& part : pluvarine::PartShapes::catalogue()) {
            // A part whose triangles face inwards would render inside out.
            if (part.mesh.signedVolume() <= 0) {
                throw std::logic_error(part.name + " is not closed outwards");
            }
            writeFile(root / "res" / (part.name + ".v3o"), pluvarine::GlbWriter::partFile(part));
        }
        for (const auto& material : pluvarine::MaterialFiles::all()) {
            writeFile(root / "mat" / material.fileName, material.content);
        }
        writeFile(root / "main.v3o",
                  pluvarine::GlbWriter::baseScene(pluvarine::PartShapes::baseMarker()));
    } catch (const std::exception& e) {
        std::cerr << "pluvarine-partgen: " << e.what() << "\n";
        return 1;
    }
    return 0;
}
