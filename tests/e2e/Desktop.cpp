// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "Desktop.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace fs = std::filesystem;

namespace logbook::e2e {
namespace {

std::string FirstLine(const std::string& text) {
  return text.substr(0, text.find('\n'));
}

bool HasLine(const std::string& text) {
  return text.find('\n') != std::string::npos;
}

// A pattern that this title alone matches.
std::string Pattern(const std::string& title) {
  std::string pattern = "^";
  for (const char c : title) {
    if (std::ispunct(static_cast<unsigned char>(c)) != 0) pattern += '\\';
    pattern += c;
  }
  return pattern + "$";
}

std::vector<WindowId> Ids(const std::string& lines) {
  std::vector<WindowId> ids;
  std::istringstream in(lines);
  for (WindowId id = 0; in >> id;) ids.push_back(id);
  return ids;
}

// What the tool tells about a place as lines NAME=NUMBER.
Place PlaceFrom(const std::string& text) {
  Place place;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t equals = line.find('=');
    if (equals == std::string::npos) continue;
    const std::string name = line.substr(0, equals);
    const int number = std::atoi(line.c_str() + equals + 1);
    if (name == "X") place.x = number;
    if (name == "Y") place.y = number;
    if (name == "WIDTH") place.width = number;
    if (name == "HEIGHT") place.height = number;
  }
  return place;
}

std::string NewFolder() {
  std::string pattern = (fs::temp_directory_path() / "logbook-desktop-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
  return pattern;
}

constexpr Place kPanels = {60, 40, 100, 24};  // left, top, right, bottom

void Replace(std::string& text, const std::string& old_part, const std::string& new_part) {
  const std::size_t place = text.find(old_part);
  if (place == std::string::npos) throw std::runtime_error("no " + old_part + " in the settings");
  text.replace(place, old_part.size(), new_part);
}

// The window manager's own settings, but for the places of windows.
std::string SettingsOf(DesktopKind::Manager manager) {
  std::ifstream file("/etc/xdg/openbox/rc.xml");
  std::string text{std::istreambuf_iterator<char>(file), {}};
  Replace(text, "<policy>Smart</policy>", "<policy>UnderMouse</policy>");
  Replace(text, "<center>yes</center>", "<center>no</center>");
  const auto panel = [&text](const std::string& edge, int size) {
    const std::string begin = "<" + edge + ">", end = "</" + edge + ">";
    Replace(text, begin + "0" + end, begin + std::to_string(size) + end);
  };
  panel("left", kPanels.x);
  panel("top", kPanels.y);
  panel("right", kPanels.width);
  panel("bottom", kPanels.height);
  if (manager == DesktopKind::Manager::kTakesWishes) return text;
  Replace(text, "</applications>",
          "<application type=\"dialog\"><position force=\"yes\"><x>0</x><y>0</y></position>"
          "</application></applications>");
  return text;
}

}  // namespace

std::string Desktop::Missing() {
  std::string missing;
  for (const char* name : {"Xvfb", "openbox", "dbus-daemon", "xdotool", "import", "convert"}) {
    if (ProgramExists(name)) continue;
    missing += missing.empty() ? "" : ", ";
    missing += name;
  }
  return missing;
}

Desktop::Desktop(const DesktopKind& kind) : kind_(kind), folder_(NewFolder()) {
  fs::create_directories(folder_ + "/run");
  fs::permissions(folder_ + "/run", fs::perms::owner_all);
  variables_ = {{"HOME", folder_},
                {"XDG_CONFIG_HOME", folder_ + "/config"},
                {"XDG_DATA_HOME", folder_ + "/data"},
                {"XDG_CACHE_HOME", std::nullopt},
                {"XDG_RUNTIME_DIR", folder_ + "/run"},
                {"XDG_CURRENT_DESKTOP", std::nullopt},
                {"WAYLAND_DISPLAY", std::nullopt},
                {"QT_QPA_PLATFORM", "xcb"},
                {"QT_QPA_PLATFORMTHEME", std::nullopt},
                {"QT_STYLE_OVERRIDE", std::nullopt},
                {"QT_FONT_DPI", std::nullopt},
                {"QT_SCALE_FACTOR", std::nullopt},
                {"QT_IM_MODULE", "compose"},
                {"NO_AT_BRIDGE", std::nullopt},
                {"LC_ALL", "C.UTF-8"}};

  bus_ = std::make_unique<ChildProcess>(
      std::vector<std::string>{"dbus-daemon", "--session", "--nofork", "--print-address=1",
                               "--address=unix:path=" + folder_ + "/run/bus"},
      variables_, NewFile("bus"));
  WaitFor("the session bus", [this] { return HasLine(bus_->Output()); });
  bus_address_ = FirstLine(bus_->Output());
  variables_["DBUS_SESSION_BUS_ADDRESS"] = bus_address_;
  if (kind_.dots_per_inch != 96) variables_["QT_FONT_DPI"] = std::to_string(kind_.dots_per_inch);
  if (kind_.colours != DesktopKind::Colours::kUsual) ChooseColours();
  StartDisplay();
  StartWindowManager();
}

// As the settings of a usual desktop keep them, where programs of this toolkit look for them.
void Desktop::ChooseColours() {
  variables_["XDG_CURRENT_DESKTOP"] = "KDE";
  variables_["KDE_SESSION_VERSION"] = "5";
  const bool high = kind_.colours == DesktopKind::Colours::kHighContrast;
  const std::string ground = high ? "0,0,0" : "42,46,50", view = high ? "0,0,0" : "27,30,32";
  const std::string text = high ? "255,255,255" : "252,252,252";
  const std::string chosen = high ? "26,235,255" : "61,174,233";
  const auto group = [&](const char* name, const std::string& back, const std::string& front) {
    return "[Colors:" + std::string(name) + "]\nBackgroundNormal=" + back +
           "\nForegroundNormal=" + front + "\nBackgroundAlternate=" + back +
           "\nForegroundLink=29,153,243\nForegroundVisited=155,89,182\n\n";
  };
  fs::create_directories(folder_ + "/config");
  std::ofstream(folder_ + "/config/kdeglobals")
      << group("Window", ground, text) << group("View", view, text) << group("Button", ground, text)
      << group("Selection", chosen, high ? "0,0,0" : text) << group("Tooltip", ground, text);
}

void Desktop::StartDisplay() {
  display_ = std::make_unique<ChildProcess>(
      std::vector<std::string>{
          "Xvfb", "-displayfd", "1", "-screen", "0",
          std::to_string(Screen().width) + "x" + std::to_string(Screen().height) + "x24",
          "-nolisten", "tcp", "-noreset", "-dpi", std::to_string(kind_.dots_per_inch)},
      variables_, NewFile("display"));
  // The number stands in a line of its own; warnings may stand before it.
  WaitFor("the virtual display", [this] {
    std::istringstream lines(display_->Output());
    for (std::string line; std::getline(lines, line) && !lines.eof();) {
      if (!line.empty() && std::all_of(line.begin(), line.end(), ::isdigit)) {
        variables_["DISPLAY"] = ":" + line;
        return true;
      }
    }
    return false;
  });
}

void Desktop::StartWindowManager() {
  if (kind_.manager != DesktopKind::Manager::kCentres) {
    fs::create_directories(folder_ + "/config/openbox");
    std::ofstream(folder_ + "/config/openbox/rc.xml") << SettingsOf(kind_.manager);
  }
  window_manager_ = std::make_unique<ChildProcess>(
      std::vector<std::string>{"openbox", "--sm-disable"}, variables_, NewFile("openbox"));
  WaitFor("the window manager", [this] {
    return RunCommand({"xdotool", "get_num_desktops"}, variables_, NewFile("xdotool")).status == 0;
  });
}

Desktop::~Desktop() {
  window_manager_.reset();
  bus_.reset();
  display_.reset();
  std::error_code ignored;
  fs::remove_all(folder_, ignored);
}

std::string Desktop::NewFile(const std::string& name) {
  return folder_ + "/" + std::to_string(++files_) + "-" + name;
}

std::string Desktop::XdoTool(const std::vector<std::string>& arguments) {
  std::vector<std::string> command = {"xdotool"};
  command.insert(command.end(), arguments.begin(), arguments.end());
  const std::string file = folder_ + "/xdotool";
  return RunCommand(command, variables_, file).output;
}

std::vector<WindowId> Desktop::Windows(const std::string& title) {
  return Search(Pattern(title));
}

std::vector<WindowId> Desktop::Search(const std::string& pattern) {
  // A window that goes while the tool looks at it ends the look.
  std::string found;
  do {
    found = XdoTool({"search", "--onlyvisible", "--name", pattern});
  } while (found.find("X Error") != std::string::npos);
  return Ids(found);
}

std::vector<WindowId> Desktop::Windows() {
  return Search("");
}

bool Desktop::HasKeyboard(WindowId window) {
  const std::string id = std::to_string(window);
  return FirstLine(XdoTool({"getactivewindow"})) == id &&
         FirstLine(XdoTool({"getwindowfocus", "-f"})) == id;
}

WindowId Desktop::WaitForWindow(const std::string& title, WindowId other_than) {
  WindowId found = 0;
  Place last;
  WaitFor("the window \"" + title + "\" with the keyboard", [&] {
    for (const WindowId id : Windows(title)) {
      if (id == other_than || !HasKeyboard(id)) continue;
      const Place place = Geometry(id);
      if (found == id && place == last) return true;
      found = id;
      last = place;
    }
    return false;
  });
  return found;
}

void Desktop::WaitUntilGone(WindowId window) {
  WaitFor("a window to go", [&] {
    const auto shown = Windows();
    return std::find(shown.begin(), shown.end(), window) == shown.end();
  });
}

void Desktop::GoToDesktop(int number) {
  XdoTool({"set_desktop", std::to_string(number)});
}

void Desktop::Move(WindowId window, Point point) {
  XdoTool({"windowmove", std::to_string(window), std::to_string(point.x), std::to_string(point.y)});
}

Place Desktop::WorkArea() const {
  if (kind_.manager == DesktopKind::Manager::kCentres) return Screen();
  return {kPanels.x, kPanels.y, Screen().width - kPanels.x - kPanels.width,
          Screen().height - kPanels.y - kPanels.height};
}

Place Desktop::Middle(const Place& outer) const {
  const Place area = WorkArea();
  const auto begin = [](int room, int size) {
    return static_cast<int>(std::nearbyint(room / 2.0 - size / 2.0));
  };
  return {begin(area.width, outer.width), begin(area.height, outer.height), outer.width,
          outer.height};
}

Place Desktop::Geometry(WindowId window) {
  return PlaceFrom(XdoTool({"getwindowgeometry", "--shell", std::to_string(window)}));
}

Place Desktop::PlaceOf(WindowId window) {
  // The position that the tool tells counts the frame twice; the mouse tells the true one.
  const Place size = Geometry(window);
  const Place corner = PlaceFrom(XdoTool(
      {"mousemove", "--window", std::to_string(window), "0", "0", "getmouselocation", "--shell"}));
  return {corner.x, corner.y, size.width, size.height};
}
void Desktop::Click(WindowId window, Point point, const std::string& key) {
  ClickAt({"mousemove", "--window", std::to_string(window), std::to_string(point.x),
           std::to_string(point.y)},
          key);
}

void Desktop::ClickScreen(Point point, const std::string& key) {
  ClickAt({"mousemove", std::to_string(point.x), std::to_string(point.y)}, key);
}

void Desktop::ClickAt(std::vector<std::string> arguments, const std::string& key) {
  if (!key.empty()) arguments.insert(arguments.end(), {"keydown", key});
  arguments.insert(arguments.end(), {"click", "1"});
  if (!key.empty()) arguments.insert(arguments.end(), {"keyup", key});
  XdoTool(arguments);
}

// A double click in single steps, between which the tool makes no pause: on a busy machine one
// could grow so long that two single clicks would come of it.
static void AppendDoubleClick(std::vector<std::string>& arguments) {
  for (int click = 0; click < 2; ++click)
    arguments.insert(arguments.end(), {"mousedown", "1", "mouseup", "1"});
}

void Desktop::DoubleClick(WindowId window, Point point) {
  std::vector<std::string> arguments = {"mousemove", "--window", std::to_string(window),
                                        std::to_string(point.x), std::to_string(point.y)};
  AppendDoubleClick(arguments);
  XdoTool(arguments);
}

void Desktop::DoubleClickScreen(Point point) {
  std::vector<std::string> arguments = {"mousemove", std::to_string(point.x),
                                        std::to_string(point.y)};
  AppendDoubleClick(arguments);
  const std::vector<WindowId> before = Windows();
  for (int tries = 0; tries < 3; ++tries) {
    XdoTool(arguments);
    try {
      WaitFor(
          "a window that opens", [&] { return Windows().size() > before.size(); },
          std::chrono::seconds(15));
      return;
    } catch (const TimeOut&) {  // the two clicks came apart
    }
  }
}

void Desktop::Key(const std::string& key) {
  XdoTool({"key", "--clearmodifiers", key});
}

void Desktop::Type(const std::string& text) {
  std::istringstream lines(text);
  bool first = true;
  for (std::string line; std::getline(lines, line); first = false) {
    if (!first) Key("Return");
    if (!line.empty()) XdoTool({"type", "--delay", "2", "--", line});
  }
  if (text.ends_with('\n')) Key("Return");
}

void Desktop::TakePicture(const std::string& file) {
  fs::create_directories(fs::path(file).parent_path());
  RunCommand({"import", "-window", "root", file}, variables_, NewFile("import"));
}

void Desktop::TakePicture(WindowId window, const std::string& file) {
  fs::create_directories(fs::path(file).parent_path());
  RunCommand({"import", "-frame", "-window", std::to_string(window), file}, variables_,
             NewFile("import"));
}

std::string Desktop::ColourAt(Point point) {
  const std::string picture = NewFile("colour.png");
  TakePicture(picture);
  const std::string pixel =
      "%[hex:p{" + std::to_string(point.x) + "," + std::to_string(point.y) + "}]";
  const auto result =
      RunCommand({"convert", picture, "-format", pixel, "info:"}, variables_, NewFile("convert"));
  return "#" + result.output.substr(0, 6);
}

std::string PictureFolder() {
  return TEST_PICTURE_DIR;
}

}  // namespace logbook::e2e
