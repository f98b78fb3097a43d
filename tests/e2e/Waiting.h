// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Waiting for a condition, never for a time: a test of whole programs goes on as soon as what it
// waits for is there, and fails with its description if it does not come.
#pragma once

#include <chrono>
#include <functional>
#include <stdexcept>
#include <string>

namespace logbook::e2e {

// Generous: the machine may be slow and shared.
inline constexpr std::chrono::seconds kLimit{60};

// What was waited for did not come; fails the test that does not catch it.
class TimeOut : public std::runtime_error {
 public:
  explicit TimeOut(const std::string& what) : std::runtime_error("waited in vain for " + what) {}
};

// Asks for the condition every few milliseconds and delivers the bus events of this process
// between. Raises TimeOut when the limit has passed; an error of the condition passes.
void WaitFor(const std::string& what, const std::function<bool()>& condition,
             std::chrono::milliseconds limit = kLimit);

// Watches for a time that the condition never holds; true if it never did. For what must not
// happen, where nothing else can be waited for.
bool NeverHolds(const std::function<bool()>& condition, std::chrono::milliseconds watched);

}  // namespace logbook::e2e
