// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A locale that writes 1.5 as "1,5", in force while the object lives. It is made for the test
// where the system has none, so that no test of numbers depends on what is installed.
#pragma once

#include <string>

namespace logbook::test {

class GermanLocale {
 public:
  GermanLocale();
  ~GermanLocale();
  GermanLocale(const GermanLocale&) = delete;
  GermanLocale& operator=(const GermanLocale&) = delete;

  // False where there is no such locale and none can be made; WhyNot tells the reason.
  bool InForce() const { return why_not_.empty(); }
  const std::string& WhyNot() const { return why_not_; }

 private:
  // The reason why the locale could not be made in the folder; empty if it was.
  std::string Make();

  std::string folder_;  // of a locale made for the test
  std::string before_;
  std::string why_not_;
};

}  // namespace logbook::test
