// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/WindowManager.h"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>
#include <thread>
#include <vector>

namespace logbook {
namespace {

using namespace std::chrono_literals;

constexpr std::chrono::seconds kLongestWait = 1s;
constexpr std::chrono::milliseconds kLookPause = 2ms;
constexpr std::uint32_t kMostNumbers = 4096;

// An answer of the window server, or nothing.
template <typename Reply>
std::unique_ptr<Reply, void (*)(void*)> Owned(Reply* reply) {
  return {reply, std::free};
}

using Numbers = std::vector<std::uint32_t>;

bool Holds(const Numbers& numbers, std::uint32_t number) {
  return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

// The window server, through the toolkit's own connection: what is asked here comes behind all that
// the toolkit has sent before.
class Server {
 public:
  explicit Server(xcb_connection_t* connection)
      : connection_(connection),
        root_(xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root) {}

  xcb_atom_t Atom(std::string_view name) const {
    const auto reply = Owned(xcb_intern_atom_reply(
        connection_,
        xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
  }

  Numbers Property(xcb_window_t window, std::string_view name) const {
    const auto reply =
        Owned(xcb_get_property_reply(connection_,
                                     xcb_get_property(connection_, 0, window, Atom(name),
                                                      XCB_GET_PROPERTY_TYPE_ANY, 0, kMostNumbers),
                                     nullptr));
    if (!reply || reply->format != 32) return {};
    const auto* begin = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {begin, begin + reply->value_len};
  }

  void SetAtoms(xcb_window_t window, std::string_view name, const Numbers& atoms) const {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, Atom(name), XCB_ATOM_ATOM, 32,
                        static_cast<std::uint32_t>(atoms.size()), atoms.data());
  }

  // True if there is a window manager that understands this message.
  bool Understands(std::string_view message) const {
    return Holds(Property(root_, "_NET_SUPPORTED"), Atom(message));
  }

  // Sends a message about a window to the window manager.
  void Send(xcb_window_t window, std::string_view message, const Numbers& numbers = {}) const {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = Atom(message);
    std::copy(numbers.begin(), numbers.end(), event.data.data32);
    char bytes[32] = {};  // as long as an event is on the wire
    std::memcpy(bytes, &event, sizeof event);
    xcb_send_event(connection_, 0, root_,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   bytes);
    xcb_flush(connection_);
  }

  // The frame that a window has got; nothing if it has none around it.
  std::optional<QMargins> FrameAround(xcb_window_t window) const;

 private:
  xcb_connection_t* connection_;
  xcb_window_t root_;
};

// Under a window manager that does not tell: the window of the first level that holds this one.
std::optional<QMargins> Server::FrameAround(xcb_window_t window) const {
  xcb_window_t frame = window;
  for (;;) {
    const auto tree =
        Owned(xcb_query_tree_reply(connection_, xcb_query_tree(connection_, frame), nullptr));
    if (!tree) return std::nullopt;
    if (tree->parent == root_) break;
    frame = tree->parent;
  }
  const auto geometry = [this](xcb_window_t id) {
    return Owned(xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, id), nullptr));
  };
  const auto inner = geometry(window), outer = geometry(frame);
  const auto corner = Owned(xcb_translate_coordinates_reply(
      connection_, xcb_translate_coordinates(connection_, window, frame, 0, 0), nullptr));
  if (frame == window || !inner || !outer || !corner) return std::nullopt;
  const int border = outer->border_width;
  const QMargins margins(corner->dst_x + border, corner->dst_y + border,
                         outer->width + border - corner->dst_x - inner->width,
                         outer->height + border - corner->dst_y - inner->height);
  const bool lies_around =
      margins.left() >= 0 && margins.top() >= 0 && margins.right() >= 0 && margins.bottom() >= 0;
  return lies_around ? std::optional(margins) : std::nullopt;
}

std::optional<Server> WindowServer() {
  const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  if (x11 == nullptr || x11->connection() == nullptr) return std::nullopt;
  return Server(x11->connection());
}

xcb_window_t IdOf(const QWidget& window) {
  return static_cast<xcb_window_t>(window.winId());
}

std::optional<QMargins> ToldFrame(const Server& server, xcb_window_t window) {
  const Numbers widths = server.Property(window, "_NET_FRAME_EXTENTS");
  if (widths.size() != 4) return std::nullopt;
  return QMargins(static_cast<int>(widths[0]), static_cast<int>(widths[2]),
                  static_cast<int>(widths[1]), static_cast<int>(widths[3]));
}

// Asks for the frame that a window would get and waits for the answer.
std::optional<QMargins> FrameToCome(const Server& server, xcb_window_t window) {
  if (!server.Understands("_NET_REQUEST_FRAME_EXTENTS")) return std::nullopt;
  server.Send(window, "_NET_REQUEST_FRAME_EXTENTS");
  const auto end = std::chrono::steady_clock::now() + kLongestWait;
  for (;;) {
    const auto told = ToldFrame(server, window);
    if (told || std::chrono::steady_clock::now() > end) return told;
    std::this_thread::sleep_for(kLookPause);
  }
}

}  // namespace

std::optional<QMargins> FrameByWindowManager(const QWidget& window) {
  const auto server = WindowServer();
  if (!server) return std::nullopt;
  const xcb_window_t id = IdOf(window);
  std::optional<QMargins> frame = ToldFrame(*server, id);
  if (!frame) frame = window.isVisible() ? server->FrameAround(id) : FrameToCome(*server, id);
  const double scale = window.devicePixelRatioF();
  if (!frame || scale == 1) return frame;
  return (QMarginsF(*frame) / scale).toMargins();
}

bool MoveByWindowManager(const QWidget& window, QPoint corner) {
  // The corner is that of the frame; two numbers, from a usual program.
  constexpr std::uint32_t kNorthWest = 1, kX = 1 << 8, kY = 1 << 9, kFromProgram = 1 << 12;
  const auto server = WindowServer();
  if (!server || !window.isVisible() || !server->Understands("_NET_MOVERESIZE_WINDOW"))
    return false;
  const QScreen* screen = window.screen();
  const QPoint origin = screen == nullptr ? QPoint() : screen->geometry().topLeft();
  const QPoint dots = QPointF((corner - origin) * window.devicePixelRatioF()).toPoint() + origin;
  server->Send(IdOf(window), "_NET_MOVERESIZE_WINDOW",
               {kNorthWest | kX | kY | kFromProgram, static_cast<std::uint32_t>(dots.x()),
                static_cast<std::uint32_t>(dots.y())});
  return true;
}

// The toolkit places windows here, by its own sizes.
void TellSize(const QWidget&) {}

void LeaveOutOfTaskBar(const QWidget& window) {
  const auto server = WindowServer();
  if (!server) return;
  const xcb_window_t id = IdOf(window);
  Numbers states = server->Property(id, "_NET_WM_STATE");
  states.push_back(server->Atom("_NET_WM_STATE_SKIP_TASKBAR"));
  server->SetAtoms(id, "_NET_WM_STATE", states);
}

}  // namespace logbook
