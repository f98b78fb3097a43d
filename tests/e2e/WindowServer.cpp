// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "WindowServer.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

namespace logbook::e2e {
namespace {

// An answer of the server, or nothing.
template <typename Reply>
using Answer = std::unique_ptr<Reply, void (*)(void*)>;

template <typename Reply>
Answer<Reply> Owned(Reply* reply) {
  return {reply, std::free};
}

constexpr std::uint32_t kMostNumbers = 16384;

xcb_window_t Id(WindowId window) {
  return static_cast<xcb_window_t>(window);
}

Answer<xcb_query_tree_reply_t> Tree(xcb_connection_t* connection, WindowId window) {
  return Owned(xcb_query_tree_reply(connection, xcb_query_tree(connection, Id(window)), nullptr));
}

}  // namespace

WindowServer::WindowServer(const Desktop& desktop)
    : connection_(xcb_connect(desktop.Variables().at("DISPLAY").value().c_str(), nullptr)) {
  if (xcb_connection_has_error(connection_) != 0) throw std::runtime_error("no window server");
  root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
}

WindowServer::~WindowServer() {
  xcb_disconnect(connection_);
}

Place WindowServer::Inner(WindowId window) const {
  const auto look = Owned(xcb_get_window_attributes_reply(
      connection_, xcb_get_window_attributes(connection_, Id(window)), nullptr));
  const auto size = Owned(
      xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, Id(window)), nullptr));
  const auto corner = Owned(xcb_translate_coordinates_reply(
      connection_, xcb_translate_coordinates(connection_, Id(window), root_, 0, 0), nullptr));
  if (!look || !size || !corner || look->map_state != XCB_MAP_STATE_VIEWABLE) return {};
  return {corner->dst_x, corner->dst_y, size->width, size->height};
}

Place WindowServer::Outer(WindowId window) const {
  WindowId frame = window;
  for (;;) {
    const auto tree = Tree(connection_, frame);
    if (!tree) return {};
    if (tree->parent == root_) break;
    frame = tree->parent;
  }
  return Inner(window) == Place() ? Place() : Inner(frame);
}

std::vector<std::uint32_t> WindowServer::Numbers(WindowId window,
                                                 const std::string& property) const {
  const auto reply =
      Owned(xcb_get_property_reply(connection_,
                                   xcb_get_property(connection_, 0, Id(window), Atom(property),
                                                    XCB_GET_PROPERTY_TYPE_ANY, 0, kMostNumbers),
                                   nullptr));
  if (!reply || reply->format != 32) return {};
  const auto* begin = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {begin, begin + reply->value_len};
}

std::uint32_t WindowServer::Atom(const std::string& name) const {
  const auto reply = Owned(xcb_intern_atom_reply(
      connection_,
      xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.c_str()),
      nullptr));
  return reply ? reply->atom : 0;
}

bool WindowServer::HasState(WindowId window, const std::string& state) const {
  const std::vector<std::uint32_t> states = Numbers(window, "_NET_WM_STATE");
  return std::find(states.begin(), states.end(), Atom(state)) != states.end();
}

// Each icon is its width, its height, and that many points.
std::vector<int> WindowServer::IconWidths(WindowId window) const {
  const std::vector<std::uint32_t> numbers = Numbers(window, "_NET_WM_ICON");
  std::vector<int> widths;
  for (std::size_t at = 0; at + 1 < numbers.size(); at += 2 + numbers[at] * numbers[at + 1]) {
    widths.push_back(static_cast<int>(numbers[at]));
  }
  return widths;
}

std::vector<WindowId> WindowServer::Managed() const {
  const std::vector<std::uint32_t> windows = Numbers(root_, "_NET_CLIENT_LIST");
  return {windows.begin(), windows.end()};
}

WindowId WindowServer::Active() const {
  const std::vector<std::uint32_t> window = Numbers(root_, "_NET_ACTIVE_WINDOW");
  return window.empty() ? 0 : window.front();
}

std::vector<WindowId> WindowServer::FirstLevel() const {
  const auto tree = Tree(connection_, root_);
  if (!tree) return {};
  const xcb_window_t* begin = xcb_query_tree_children(tree.get());
  return {begin, begin + xcb_query_tree_children_length(tree.get())};
}

}  // namespace logbook::e2e
