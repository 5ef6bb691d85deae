// Stands in for the system's disk-image tool: the same command line, the same property list, a mount point
// for as long as an image is attached. Standard C++ and POSIX only, so that it is small and starts at once.
//
//   disk_image_tool --state=FOLDER [flags] attach -readonly -nobrowse -plist IMAGE
//   disk_image_tool --state=FOLDER [flags] detach DEVICE|MOUNT-POINT [-force]
//
// An image is a text file: "orlix disk image", then the path of the folder that holds the volume's files,
// then whatever a test likes. While the image is attached that folder lies at the mount point,
// FOLDER/Volumes/NAME; detaching puts it back. Attaching an attached image again answers with the same mount
// point; both lie on one file system. FOLDER/calls has a line for each call, its words parted by tabs.
//
// Misbehaviour
//   --hang=COMMAND        never answers to "attach" or "detach"
//   --exit=STATUS         attaches nothing and exits so; --error=TEXT on standard error
//   --bad-error           exits with 1, with an error text that is not UTF-8
//   --crash               dies by a signal instead of attaching
//   --garbage             attaches, and prints what is no property list
//   --array               attaches, and prints a property list that is no dictionary
//   --no-entities         attaches, and prints a dictionary without entities
//   --no-mount-point      attaches nothing, and prints entities without a mount point
//   --no-device           prints the mount point's entity without its device
//   --two-mounts          a second, empty volume stands before the image's own
//   --flood=BYTES         fills standard error first
//   --busy=COUNT          refuses to detach so often; a forced detach counts as well
#include <signal.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr const char* firstLine = "orlix disk image";
constexpr const char* device = "/dev/disk4";
constexpr const char* volumeDevice = "/dev/disk4s1";
constexpr int couldNotMount = 1;
constexpr int resourceBusy = 16;

struct Call {
    std::map<std::string, std::string> flags;
    std::vector<std::string> words;  // the command and its arguments

    bool has(const std::string& name) const { return flags.count(name) != 0; }
    std::string text(const std::string& name) const {
        const auto found = flags.find(name);
        return found == flags.end() ? std::string() : found->second;
    }
    int number(const std::string& name) const { return std::atoi(text(name).c_str()); }
    bool says(std::size_t index, const char* word) const {
        return index < words.size() && words[index] == word;
    }
};

Call parse(int argc, char** argv) {
    Call call;
    int at = 1;
    for (; at < argc && std::string(argv[at]).rfind("--", 0) == 0; ++at) {
        const std::string text = argv[at] + 2;
        const std::size_t equals = text.find('=');
        call.flags[text.substr(0, equals)] = equals == std::string::npos ? "" : text.substr(equals + 1);
    }
    call.words.assign(argv + at, argv + argc);
    return call;
}

[[noreturn]] void hang() {
    for (;;)
        pause();
}

int fail(int status, const std::string& text) {
    std::cerr << text << std::endl;
    return status;
}

struct Image {
    fs::path folder;  // where the volume's files lie while it is not attached
};

std::optional<Image> readImage(const fs::path& path) {
    std::ifstream stream(path);
    std::string first;
    std::string folder;
    if (!std::getline(stream, first) || !std::getline(stream, folder) || first != firstLine)
        return std::nullopt;
    return Image{folder};
}

// What is attached: at most one volume, kept in a file of two lines, its mount point and its folder.
class Attached {
  public:
    explicit Attached(const fs::path& state) : path_(state / "attached") {
        std::ifstream stream(path_);
        std::string line;
        if (std::getline(stream, line)) mountPoint = line;
        if (std::getline(stream, line)) folder = line;
    }
    explicit operator bool() const { return !mountPoint.empty(); }
    void keep() const { std::ofstream(path_) << mountPoint.string() << '\n' << folder.string() << '\n'; }
    void forget() const { fs::remove(path_); }

    fs::path mountPoint;
    fs::path folder;

  private:
    fs::path path_;
};

std::string escaped(const std::string& text) {
    std::string result;
    for (const char c : text) {
        if (c == '&')
            result += "&amp;";
        else if (c == '<')
            result += "&lt;";
        else
            result += c;
    }
    return result;
}

// As the real tool prints it: the whole disk, its map, and the volume last.
void printEntity(const std::string& hint, const std::string& entityDevice, const std::string& mountPoint) {
    std::cout << "\t\t<dict>\n\t\t\t<key>content-hint</key>\n\t\t\t<string>" << hint << "</string>\n";
    if (!entityDevice.empty())
        std::cout << "\t\t\t<key>dev-entry</key>\n\t\t\t<string>" << entityDevice << "</string>\n";
    if (!mountPoint.empty())
        std::cout << "\t\t\t<key>mount-point</key>\n\t\t\t<string>" << escaped(mountPoint) << "</string>\n";
    std::cout << "\t\t\t<key>potentially-mountable</key>\n\t\t\t<" << (mountPoint.empty() ? "false" : "true")
              << "/>\n\t\t</dict>\n";
}

void printAnswer(const Call& call, const std::string& mountPoint, const std::string& otherMountPoint) {
    std::cout << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                 "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                 "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                 "<plist version=\"1.0\">\n";
    if (call.has("array")) {
        std::cout << "<array>\n</array>\n</plist>\n";
        return;
    }
    std::cout << "<dict>\n";
    if (!call.has("no-entities")) {
        std::cout << "\t<key>system-entities</key>\n\t<array>\n";
        printEntity("GUID_partition_scheme", device, "");
        if (!otherMountPoint.empty()) printEntity("Apple_HFS", "/dev/disk4s2", otherMountPoint);
        printEntity("Apple_HFS", call.has("no-device") ? "" : volumeDevice, mountPoint);
        printEntity("Apple_Free", "", "");
        std::cout << "\t</array>\n";
    }
    std::cout << "</dict>\n</plist>\n";
}

int refuseToAttach(const Call& call) {
    if (call.has("bad-error")) return fail(couldNotMount, "hdiutil: attach failed - \xff\xfe");
    const std::string text = call.text("error");
    return fail(call.number("exit"),
                text.empty() ? "hdiutil: attach failed - no mountable file systems" : text);
}

// Null, with a word on standard error, when the volume could not be brought to its mount point.
std::optional<fs::path> mount(const fs::path& imagePath, const fs::path& state) {
    const std::optional<Image> image = readImage(imagePath);
    if (!image) {
        fail(couldNotMount, "hdiutil: attach failed - image not recognized");
        return std::nullopt;
    }
    Attached attached(state);
    if (attached && attached.folder == image->folder) return attached.mountPoint;
    attached.folder = image->folder;
    attached.mountPoint = state / "Volumes" / image->folder.filename();
    fs::create_directories(attached.mountPoint.parent_path());
    std::error_code error;
    fs::rename(attached.folder, attached.mountPoint, error);
    if (error) {
        fail(couldNotMount, "hdiutil: attach failed - no mountable file systems");
        return std::nullopt;
    }
    attached.keep();
    return attached.mountPoint;
}

int attach(const Call& call, const fs::path& state) {
    const bool isUsual = call.words.size() == 5 && call.says(1, "-readonly") && call.says(2, "-nobrowse") &&
                         call.says(3, "-plist");
    if (!isUsual) return fail(couldNotMount, "hdiutil: attach: unexpected arguments");
    if (call.text("hang") == "attach") hang();
    if (call.has("crash")) raise(SIGKILL);
    if (call.has("exit") || call.has("bad-error")) return refuseToAttach(call);
    if (call.has("no-mount-point")) {
        printAnswer(call, "", "");
        return 0;
    }
    const std::optional<fs::path> mountPoint = mount(call.words[4], state);
    if (!mountPoint) return couldNotMount;
    std::string other;
    if (call.has("two-mounts")) {
        other = (state / "Volumes" / "Other").string();
        fs::create_directories(other);
    }
    if (call.has("garbage"))
        std::cout << "disk4 is attached, have fun\n";
    else
        printAnswer(call, mountPoint->string(), other);
    return 0;
}

// Counts a refusal in a file of the state folder; true while there is one left.
bool isBusy(const Call& call, const fs::path& state) {
    int refused = 0;
    std::ifstream(state / "refused") >> refused;
    if (refused >= call.number("busy")) return false;
    std::ofstream(state / "refused") << refused + 1;
    return true;
}

int detach(const Call& call, const fs::path& state) {
    if (call.words.size() < 2 || call.words.size() > 3 || (call.words.size() == 3 && !call.says(2, "-force")))
        return fail(couldNotMount, "hdiutil: detach: unexpected arguments");
    if (call.text("hang") == "detach") hang();
    const Attached attached(state);
    const std::string& what = call.words[1];
    if (!attached || (what != device && what != volumeDevice && what != attached.mountPoint))
        return fail(couldNotMount, "hdiutil: detach failed - No such file or directory");
    if (isBusy(call, state)) return fail(resourceBusy, "hdiutil: couldn't unmount \"disk4\" - Resource busy");
    fs::rename(attached.mountPoint, attached.folder);
    attached.forget();
    std::cout << "\"disk4\" ejected.\n";
    return 0;
}

void record(const Call& call, const fs::path& state) {
    std::ofstream stream(state / "calls", std::ios::app);
    for (std::size_t index = 0; index < call.words.size(); ++index)
        stream << (index == 0 ? "" : "\t") << call.words[index];
    stream << '\n';
}

}  // namespace

int main(int argc, char** argv) {
    const Call call = parse(argc, argv);
    const fs::path state = call.text("state");
    if (state.empty()) return fail(2, "--state is needed");
    record(call, state);
    if (call.has("flood"))
        std::cerr << std::string(static_cast<std::size_t>(call.number("flood")), 'x') << std::endl;
    if (call.says(0, "attach")) return attach(call, state);
    if (call.says(0, "detach")) return detach(call, state);
    return fail(couldNotMount, "hdiutil: unknown command");
}
