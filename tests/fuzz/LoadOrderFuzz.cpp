// Fuzzes the file names in a plugin directory. Compares which files the daemon's code accepts as
// plugins, and their load order, with an independent implementation of the rules.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <list>
#include <queue>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "daemon/src/FileManager.h"
#include "tests/fuzz/Input.h"
#include "tests/support/FakePlatform.h"
#include "tools/corvane/order/LoadOrder.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* LITE_NAME = "libbtapp-lite.so";
constexpr const char* DONGLE_NAME = "libZarnDongleDetectNotification.so";
constexpr const char* KNOWN_NAMES[] = {"libbleapp.so", LITE_NAME, DONGLE_NAME,
                                       ".so",          "a.SO",    "b.so.1"};

struct Product {
    bool marker;
    bool answers;
    int type;

    int priorityOf(const std::string& name) const {
        if (name == DONGLE_NAME) {
            return answers && (type == 7 || type == 8) ? 10 : 5;
        }
        return name == LITE_NAME ? (marker ? 9 : 7) : name == "libbleapp.so" ? 8 : 5;
    }
};

/// The plugin directory. It is created once and emptied after each run.
class Directory {
public:
    Directory() {
        auto path = (fs::temp_directory_path() / "corvane-fuzz-XXXXXX").string();
        REQUIRE(mkdtemp(path.data()) != nullptr);
        m_path = path;
        std::ofstream(m_path / "file").close();
        fs::create_directory(plugins());
    }
    ~Directory() {
        std::error_code ignored;
        fs::remove_all(m_path, ignored);
    }
    Directory(const Directory&) = delete;
    Directory& operator=(const Directory&) = delete;

    fs::path plugins() const { return m_path / "plugins"; }

    /// Creates an entry of a kind. Returns true if it can be loaded, apart from its name.
    bool add(const std::string& name, unsigned kind) const {
        const auto path = plugins() / name;
        switch (kind) {
            case 0:
                fs::create_directory(path);
                return false;
            case 1:
                fs::create_symlink("nowhere", path);
                return false;
            case 2:
                fs::create_symlink(m_path / "file", path);
                return true;
            default:
                std::ofstream(path).close();
                return true;
        }
    }

    void empty() const {
        for (const auto& entry : fs::directory_iterator(plugins())) {
            fs::remove(entry.path());
        }
    }

private:
    fs::path m_path;
};

/// Reads a valid file name, or "".
std::string fileName(Input& input) {
    const unsigned known = input.upTo(9);
    std::string name = known < std::size(KNOWN_NAMES) ? KNOWN_NAMES[known] : input.text();
    std::erase(name, '/');
    name.resize(std::min<std::size_t>(name.size(), 252));
    if (known == 9) {
        name += ".so";
    }
    return name == "." || name == ".." ? "" : name;
}

bool endsAsPlugin(const std::string& name) {
    return name.size() > 2 && name.compare(name.size() - 3, 3, ".so") == 0;
}

/// Returns the order in which a std::priority_queue returns the names, if they are inserted in the
/// order in which they were found.
std::vector<std::string> expectedOrder(const std::list<std::string>& found,
                                       const Product& product) {
    using Item = std::pair<int, std::string>;
    const auto lower = [](const Item& a, const Item& b) { return a.first < b.first; };
    std::priority_queue<Item, std::vector<Item>, decltype(lower)> queue(lower);
    for (const auto& name : found) {
        queue.emplace(product.priorityOf(name), name);
    }
    std::vector<std::string> names;
    for (; !queue.empty(); queue.pop()) {
        names.push_back(queue.top().second);
    }
    return names;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Directory directory;
    Input input(data, size);
    const Product product{input.flag(), input.flag(), input.number<std::int8_t>()};
    fake_platform::recordNothing();
    fake_platform::setProductType(product.answers ? 0 : -1, product.answers ? product.type : 0);
    if (product.marker) {
        std::ofstream(CORVANE_MARKER_FILE).close();
    } else {
        fs::remove(CORVANE_MARKER_FILE);
    }

    std::set<std::string> candidates;
    std::set<std::string> others;
    for (int i = 0; i < 12 && !input.isEmpty(); ++i) {
        const unsigned kind = input.upTo(7);
        const auto name = fileName(input);
        if (name.empty() || candidates.contains(name) || others.contains(name)) {
            continue;
        }
        const bool loadable = directory.add(name, kind);
        (loadable && endsAsPlugin(name) ? candidates : others).insert(name);
    }

    const auto found = FileManager().getFilesInDirectory(directory.plugins().string() + '/');
    REQUIRE(std::set(found.begin(), found.end()) == candidates);
    REQUIRE(found.size() == candidates.size());

    const auto order = corvane::tool::readLoadOrder(directory.plugins());
    std::vector<std::string> loaded;
    for (const auto& file : order.files) {
        REQUIRE(file.getPriority() == product.priorityOf(file.name));
        REQUIRE(*std::next(found.begin(), static_cast<long>(file.found) - 1) == file.name);
        loaded.push_back(file.name);
    }
    REQUIRE(loaded == expectedOrder(found, product));
    std::set<std::string> skipped;
    for (const auto& entry : order.skipped) {
        skipped.insert(entry.name);
    }
    REQUIRE(skipped == others);
    directory.empty();
    return 0;
}
