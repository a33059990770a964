// Writes the bundled example recordings: make_examples [output folder]
// Without an argument it rewrites the examples folder of the source tree. The output depends on
// nothing but the fixed seeds, so running it again reproduces the files byte for byte.
#include <fmt/format.h>

#include <exception>
#include <filesystem>
#include <fstream>

#include "drawn_shape.h"
#include "example_scripts.h"
#include "recording_text.h"

namespace {

void writeFile(const std::filesystem::path& path, const std::string& text) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << text;
    if (!out) throw std::runtime_error("cannot write " + path.string());
}

}  // namespace

int main(int argc, char** argv) {
    using namespace ostrelle::examples;
    const std::filesystem::path folder = argc > 1 ? argv[1] : OSTRELLE_EXAMPLES_DIR;
    try {
        std::filesystem::create_directories(folder);
        for (const ExampleScript& script : exampleScripts()) {
            Performer performer(script.seed);
            script.perform(performer);
            writeFile(folder / (script.stem + ".jsonl"),
                      recordingText(script.description, performer.expected(), performer.lines()));
            if (script.shapes)
                writeFile(folder / (script.stem + ".shapes.json"), shapesFileText(script.shapes()));
        }
    } catch (const std::exception& error) {
        fmt::print(stderr, "make_examples: {}\n", error.what());
        return 1;
    }
    return 0;
}
