#include "store/binding_store.h"

#include <algorithm>
#include <cmath>

#include "actions/action_catalog.h"
#include "gestures/gesture_catalog.h"
#include "store/bindings_file.h"
#include "support/atomic_file.h"
#include "support/file_lock.h"

namespace ostrelle {
namespace {

struct SeedEntry {
    const char* gesture;
    const char* app;
    const char* option;
};

std::vector<GestureBinding> makeSeed(std::initializer_list<SeedEntry> entries, double createdAt) {
    std::vector<GestureBinding> bindings;
    for (const SeedEntry& e : entries) {
        bindings.push_back(
            GestureBinding::make(Gesture(e.gesture), ActionRef{e.app, e.option, {}, {}}, createdAt));
    }
    return bindings;
}

bool keeps(const GestureBinding& binding) {
    if (!binding.gesture.def()) return false;
    if (binding.gesture.custom && !binding.gesture.custom->isValid()) return false;
    return true;
}

}  // namespace

BindingStore::BindingStore(std::filesystem::path fileURL, bool launchedBefore, WallClock clock)
    : fileURL_(std::move(fileURL)), clock_(std::move(clock)) {
    loadFile(launchedBefore);
}

std::vector<GestureBinding> BindingStore::seed(double createdAt) {
    return makeSeed({{"2.restTap.left", "browsers", "back"},
                     {"2.restTap.right", "browsers", "forward"},
                     {"3.tap", "browsers", "newtab"},
                     {"4.tap", "system", "mission"}},
                    createdAt);
}

std::vector<GestureBinding> BindingStore::legacySeed(double createdAt) {
    return makeSeed({{"2.restTap.left", "browsers", "back"},
                     {"2.restTap.right", "browsers", "forward"},
                     {"3.tap", "browsers", "newtab"},
                     {"3.restTap.between", "browsers", "reload"},
                     {"3.click", "browsers", "close"},
                     {"4.tap", "system", "mission"},
                     {"4.swipe.left", "browsers", "left"},
                     {"4.swipe.right", "browsers", "right"},
                     {"5.tap", "system", "screenshot"}},
                    createdAt);
}

// Side files sit next to the bindings file: "bindings.corrupt-<seconds>.json".
std::filesystem::path BindingStore::sideFile(const std::string& kind) const {
    const auto seconds = static_cast<long long>(std::floor(clock_()));
    std::filesystem::path name = fileURL_.filename();
    if (name.extension() == ".json") name.replace_extension();
    return fileURL_.parent_path() / (name.string() + "." + kind + "-" + std::to_string(seconds) + ".json");
}

std::vector<GestureBinding> BindingStore::usable(std::vector<GestureBinding> decoded) const {
    std::vector<GestureBinding> kept;
    for (GestureBinding& binding : decoded) {
        if (!keeps(binding)) continue;
        std::optional<ActionRef> migrated = ActionCatalog::migrated(binding.action);
        if (!migrated) continue;
        binding.action = std::move(*migrated);
        kept.push_back(std::move(binding));
    }
    return kept;
}

std::optional<std::filesystem::path> BindingStore::setAside() const {
    const std::filesystem::path aside = sideFile("corrupt");
    std::error_code failed;
    std::filesystem::rename(fileURL_, aside, failed);
    if (failed) return std::nullopt;
    return aside;
}

// Beside the bindings file rather than on it: the atomic rename replaces the file's inode.
std::filesystem::path BindingStore::lockFile() const {
    return fileURL_.string() + ".lock";
}

void BindingStore::loadFile(bool launchedBefore) {
    const FileLock lock(lockFile());
    // Under the lock no writer is halfway, so any temporary file is a killed writer's.
    removeAbandonedTemporaries(fileURL_);
    const FileReadResult read = readWholeFile(fileURL_);
    const double now = referenceDateSeconds(clock_());
    if (read.status == FileReadResult::Status::missing) {
        load_.outcome = BindingStoreLoad::Outcome::seeded;
        bindings_ = launchedBefore ? legacySeed(now) : seed(now);
        persist();
        return;
    }

    std::vector<GestureBinding> decoded;
    try {
        if (read.status == FileReadResult::Status::unreadable) throw BindingsFileError(read.error);
        decoded = decodeBindingsFile(read.bytes);
    } catch (const BindingsFileError& error) {
        load_.outcome = BindingStoreLoad::Outcome::setAside;
        load_.problem = error.what();
        load_.setAside = setAside();
        bindings_ = launchedBefore ? legacySeed(now) : seed(now);
        persist();
        return;
    }

    const std::size_t decodedCount = decoded.size();
    bindings_ = usable(std::move(decoded));
    if (bindings_.size() < decodedCount) {
        load_.dropped = decodedCount - bindings_.size();
        const std::filesystem::path backup = sideFile("before-migration");
        std::error_code failed;
        std::filesystem::copy_file(fileURL_, backup, std::filesystem::copy_options::overwrite_existing,
                                   failed);
        if (!failed) load_.backup = backup;
    }
    // Always written back, so old records and ids are normalized on disk at every start.
    persist();
}

void BindingStore::persist() {
    // A failed write is not reported: the list in memory stays the truth and the next change retries.
    std::string bytes = encodeBindingsFile(bindings_);
    if (!writeFileAtomically(fileURL_, bytes)) seenBytes_ = std::move(bytes);
}

void BindingStore::setBindings(std::vector<GestureBinding> bindings) {
    bindings_ = std::move(bindings);
    observers.notify();
}

void BindingStore::adopt(std::string bytes, std::vector<GestureBinding> decoded) {
    seenBytes_ = std::move(bytes);
    setBindings(usable(std::move(decoded)));
}

bool BindingStore::refresh() {
    FileReadResult read = readWholeFile(fileURL_);
    if (read.status != FileReadResult::Status::ok || read.bytes == seenBytes_) return false;
    try {
        std::vector<GestureBinding> decoded = decodeBindingsFile(read.bytes);
        adopt(std::move(read.bytes), std::move(decoded));
        return true;
    } catch (const BindingsFileError&) {
        return false;  // perhaps still being edited by hand; the next change sets it aside
    }
}

void BindingStore::catchUpWithFile() {
    FileReadResult read = readWholeFile(fileURL_);
    if (read.status == FileReadResult::Status::missing || read.bytes == seenBytes_) return;
    try {
        if (read.status == FileReadResult::Status::unreadable) throw BindingsFileError(read.error);
        std::vector<GestureBinding> decoded = decodeBindingsFile(read.bytes);
        adopt(std::move(read.bytes), std::move(decoded));
    } catch (const BindingsFileError&) {
        // Kept, as at start, rather than overwritten unseen.
        (void)setAside();
    }
}

const GestureBinding* BindingStore::bindingFor(const Gesture& gesture) const {
    const auto it = std::find_if(bindings_.begin(), bindings_.end(),
                                 [&](const GestureBinding& b) { return b.gesture.id == gesture.id; });
    return it == bindings_.end() ? nullptr : &*it;
}

const GestureBinding* BindingStore::bindingWithID(const std::string& id) const {
    const auto found = std::find_if(bindings_.begin(), bindings_.end(),
                                    [&id](const GestureBinding& binding) { return binding.id == id; });
    return found == bindings_.end() ? nullptr : &*found;
}

const GestureBinding* BindingStore::holderOf(const Gesture& gesture,
                                             const std::optional<std::string>& excluding) const {
    const auto found = std::find_if(bindings_.begin(), bindings_.end(), [&](const GestureBinding& b) {
        return b.gesture.id == gesture.id && (!excluding || b.id != *excluding);
    });
    return found == bindings_.end() ? nullptr : &*found;
}

bool BindingStore::save(const GestureBinding& binding) {
    const FileLock lock(lockFile());
    catchUpWithFile();
    if (isInUse(binding.gesture, binding.id)) return false;
    std::vector<GestureBinding> updated = bindings_;
    const auto it = std::find_if(updated.begin(), updated.end(),
                                 [&](const GestureBinding& b) { return b.id == binding.id; });
    if (it != updated.end()) {
        *it = binding;
    } else {
        updated.push_back(binding);
    }
    setBindings(std::move(updated));
    persist();
    return true;
}

void BindingStore::remove(const std::string& id) {
    const FileLock lock(lockFile());
    catchUpWithFile();
    std::vector<GestureBinding> updated = bindings_;
    std::erase_if(updated, [&](const GestureBinding& b) { return b.id == id; });
    setBindings(std::move(updated));
    persist();
}

std::vector<Gesture> BindingStore::customGestures() const {
    std::vector<Gesture> gestures;
    for (const GestureBinding& binding : bindings_) {
        if (binding.gesture.custom) gestures.push_back(binding.gesture);
    }
    return gestures;
}

std::string BindingStore::nextCustomName() const {
    const std::vector<Gesture> customs = customGestures();
    for (int n = 1;; ++n) {
        std::string candidate = "Custom gesture " + std::to_string(n);
        const bool taken = std::any_of(customs.begin(), customs.end(),
                                       [&](const Gesture& g) { return g.custom->name == candidate; });
        if (!taken) return candidate;
    }
}

std::vector<BindingStore::FingerGroup> BindingStore::groupedByFingers() const {
    std::vector<FingerGroup> groups;
    for (int fingers = 1; fingers <= 5; ++fingers) {
        FingerGroup group{fingers, {}};
        for (const GestureBinding& binding : bindings_) {
            if (binding.gesture.fingers() == fingers) group.bindings.push_back(binding);
        }
        if (group.bindings.empty()) continue;
        std::stable_sort(group.bindings.begin(), group.bindings.end(),
                         [](const GestureBinding& a, const GestureBinding& b) {
                             const auto keyA = a.gesture.sortKey();
                             const auto keyB = b.gesture.sortKey();
                             return keyA != keyB ? keyA < keyB : a.createdAt < b.createdAt;
                         });
        groups.push_back(std::move(group));
    }
    return groups;
}

}  // namespace ostrelle
