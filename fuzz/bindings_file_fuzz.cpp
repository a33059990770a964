// Feeds arbitrary bytes to the bindings file reader. The reader must either return bindings or
// throw BindingsFileError: anything else (a crash, another exception, a sanitizer report) is a
// fault. What it accepts must also survive a save: the store rewrites the file at every start,
// so a value that reads but does not write back the same would lose the user's bindings.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "store/bindings_file.h"

namespace {

void requireRoundTrip(const std::vector<ostrelle::GestureBinding>& bindings) {
    const std::vector<ostrelle::GestureBinding> reread =
        ostrelle::decodeBindingsFile(ostrelle::encodeBindingsFile(bindings));
    if (reread != bindings) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    std::vector<ostrelle::GestureBinding> bindings;
    try {
        bindings = ostrelle::decodeBindingsFile(bytes);
    } catch (const ostrelle::BindingsFileError&) {
        return 0;
    }
    requireRoundTrip(bindings);
    return 0;
}
