// What an attach takes: the system's loading of a library, and what this one does meanwhile, each in fresh processes.
#include "tests/torture/late_library.hpp"
#include "tests/torture/roles.hpp"
#include "tests/torture/system.hpp"
#include "tests/torture/times.hpp"

#include <cstdio>
#include <optional>
#include <sstream>
#include <stdexcept>

namespace tallowmere::torture {
namespace {

struct Loaded {
    Moment loading;
    Moment attaching;  // only of the library that attaches late
    bool made = false; // the section; likewise
};

Loaded load(const char* which) {
    Process loader({"loader", which});
    std::istringstream words(loader.hear());
    Loaded loaded;
    words >> loaded.loading >> loaded.attaching >> loaded.made;
    if (!words || loader.finish() != 0) throw std::runtime_error("a loader ended with an error");
    return loaded;
}

class Trial {
  public:
    void round() {
        loadAll(making_, true);
        const Library attached;
        loadAll(opening_, false);
    }
    void print() {
        empty_.print("loading an empty library");
        late_.print("loading the library without its attach");
        print("making the section", making_);
        print("opening the section", opening_);
    }

  private:
    struct Attaches {
        Times alone;
        Times whole;
    };

    static void print(const char* what, Attaches& attaches) {
        attaches.alone.print((std::string("its attach alone, ") + what).c_str());
        attaches.whole.print((std::string("loading the library, ") + what).c_str());
    }

    void loadAll(Attaches& attaches, bool making) {
        empty_.add(load("empty").loading);
        const Loaded late = load("late");
        if (late.made != making) throw std::runtime_error("somebody else has a section there");
        late_.add(late.loading);
        attaches.alone.add(late.attaching);
        attaches.whole.add(load("library").loading);
    }

    Times empty_;
    Times late_;
    Attaches making_;
    Attaches opening_;
};

} // namespace

int beLoader(const Arguments& arguments) {
    const std::string& which = arguments.at(0);
    comeFirst();
    Loaded loaded;
    std::optional<Library> library;
    std::optional<Module> other;
    if (which == "library") {
        loaded.loading = timeOf([&] { library.emplace(); });
    } else {
        const char* const path = which == "late" ? TALLOWMERE_LATE_LIBRARY : TALLOWMERE_EMPTY_LIBRARY;
        loaded.loading = timeOf([&] { other.emplace(path); });
    }
    if (which == "late") {
        const auto attach = other->function<decltype(&attachNow)>("attachNow");
        loaded.attaching = timeOf([&] { loaded.made = attach(); });
    }
    std::ostringstream words;
    words << loaded.loading << loaded.attaching << loaded.made << '\n';
    say(words.str());
    return 0;
}

int runAttaches(unsigned rounds) {
    for (const UserFiles files : {UserFiles::kNone, UserFiles::kUsual}) {
        const Surroundings surroundings(files);
        Trial trial;
        for (unsigned i = 0; i < rounds; ++i) trial.round();
        std::printf("%s the user's settings and files\n", files == UserFiles::kNone ? "without" : "with");
        trial.print();
    }
    return 0;
}

} // namespace tallowmere::torture
