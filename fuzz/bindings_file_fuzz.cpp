// Feeds arbitrary bytes to the bindings file reader. The reader must either return bindings or
// throw BindingsFileError: anything else (a crash, another exception, a sanitizer report) is a
// fault. What it accepts must also survive a save: the store rewrites the file at every start,
// so a value that reads but does not write back the same would lose the user's bindings.
// The fast reader, when it reads a file at all, must read it exactly as the full reader does.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "store/binding_json.h"
#include "store/bindings_file.h"
#include "store/bindings_quick_reader.h"

namespace {

void requireRoundTrip(const std::vector<ostrelle::GestureBinding>& bindings) {
    const std::vector<ostrelle::GestureBinding> reread = ostrelle::decodeBindingsFile(ostrelle::encodeBindingsFile(bindings));
    if (reread != bindings) std::abort();
}

void requireAgreement(std::string_view bytes) {
    const auto quick = ostrelle::readPlainBindingsFile(bytes);
    if (!quick) return;
    try {
        if (ostrelle::decodeBindingsTree(bytes) != *quick) std::abort();
    } catch (const ostrelle::BindingsFileError&) {
        std::abort();  // the fast reader took a file the full reader refuses
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    requireAgreement(bytes);
    std::vector<ostrelle::GestureBinding> bindings;
    try {
        bindings = ostrelle::decodeBindingsFile(bytes);
    } catch (const ostrelle::BindingsFileError&) {
        return 0;
    }
    requireRoundTrip(bindings);
    return 0;
}
