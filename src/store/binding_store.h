#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "store/gesture_binding.h"
#include "support/observers.h"
#include "support/wall_clock.h"

namespace ostrelle {

// What loading did with the file, for tools that report it (the store itself stays silent).
struct BindingStoreLoad {
    enum class Outcome { loaded, seeded, setAside };
    Outcome outcome = Outcome::loaded;
    std::size_t dropped = 0;                        // bindings dropped while loading
    std::optional<std::filesystem::path> backup;    // the copy made before dropping any
    std::optional<std::filesystem::path> setAside;  // where an unreadable file went
    std::string problem;                            // why the file could not be read
};

// The user's bindings, loaded at start and written back in full after every change. Several
// processes may share the file (the service, the command line, the application): every
// read-modify-write holds the folder's lock and starts from what the file holds then, so no
// process overwrites a change it has not seen. Used from one thread.
class BindingStore {
  public:
    struct FingerGroup {
        int fingers = 0;
        std::vector<GestureBinding> bindings;
    };

    // Loads (or seeds) at once; never fails: an unreadable file is set aside and replaced by a seed.
    BindingStore(std::filesystem::path fileURL, bool launchedBefore, WallClock clock = systemWallClock());

    const std::vector<GestureBinding>& bindings() const { return bindings_; }
    const std::filesystem::path& fileURL() const { return fileURL_; }
    const BindingStoreLoad& load() const { return load_; }

    // The first binding whose gesture id is the gesture's (shapes are not compared).
    const GestureBinding* bindingFor(const Gesture& gesture) const;
    bool isInUse(const Gesture& gesture, const std::optional<std::string>& excluding) const {
        return holderOf(gesture, excluding) != nullptr;
    }
    // The binding that holds the gesture, other than the one `excluding` names; null when none.
    const GestureBinding* holderOf(const Gesture& gesture, const std::optional<std::string>& excluding) const;
    // The binding with this id; null when none has it.
    const GestureBinding* bindingWithID(const std::string& id) const;
    // Adds or replaces (in place, by id); refused when another binding holds the gesture.
    bool save(const GestureBinding& binding);
    // Removes every binding with that id; writes the file even when none was removed.
    void remove(const std::string& id);
    // Takes up a change another process made to the file; true when the list changed. A file
    // that is missing or cannot be read now is left for the next change to deal with.
    bool refresh();

    std::vector<Gesture> customGestures() const;
    std::string nextCustomName() const;
    std::vector<FingerGroup> groupedByFingers() const;

    static std::vector<GestureBinding> seed(double createdAt);
    static std::vector<GestureBinding> legacySeed(double createdAt);

    // Notified after every change of the list.
    ObserverList observers;

  private:
    void loadFile(bool launchedBefore);
    void setBindings(std::vector<GestureBinding> bindings);
    void persist();
    std::filesystem::path lockFile() const;
    std::filesystem::path sideFile(const std::string& kind) const;
    // The decoded bindings the store can use, with current action ids.
    std::vector<GestureBinding> usable(std::vector<GestureBinding> decoded) const;
    // Moves an unreadable file aside as "<name>.corrupt-<seconds>.json"; where it went.
    std::optional<std::filesystem::path> setAside() const;
    void adopt(std::string bytes, std::vector<GestureBinding> decoded);
    // Before a change (under the lock): start from what the file holds now.
    void catchUpWithFile();

    std::filesystem::path fileURL_;
    WallClock clock_;
    std::vector<GestureBinding> bindings_;
    BindingStoreLoad load_;
    std::optional<std::string> seenBytes_;  // what the file held when this store last read or wrote it
};

}  // namespace ostrelle
