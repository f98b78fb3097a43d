// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "PrintShop.h"

#include "support/PdfTools.h"

namespace logbook::e2e {
namespace {

constexpr char kWorkstationKey[] =
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvane Instruments\\Quorex Tessaline\\CurrentVersion]";

}  // namespace

void PrintShop::SetUp() {
  SKIP_WITHOUT_PDF_TOOLS();
  ReadableProgram::SetUp();
  if (!IsSkipped()) SetPrinter("PDF");
}

void PrintShop::SetPrinter(const std::string& name) {
  const std::string hive = work().machine().home() + "/machine.reg";
  work().machine().Put(hive, work().machine().Get(hive) + "\r\n" + kWorkstationKey +
                                 "\r\n\"DefaultPrinter\"=\"" + name + "\"\r\n");
}

void PrintShop::Start() {
  work().StartHostWithLogbook();
  main_ = std::make_unique<MainPage>(desktop());
}

ViewerPage PrintShop::View(const std::string& log) {
  desktop().DoubleClickScreen(Row(log).place.Middle());
  return ViewerPage(desktop(), DateOf(work(), log));
}

ViewerPage PrintShop::ViewAgain(const std::string& log) {
  main().Press(MainPage::Button::kBrowse);
  return ViewerPage(desktop(), DateOf(work(), log));
}

std::vector<std::string> PrintShop::Images() {
  std::vector<std::string> names;
  for (const auto& [name, bytes] : work().FilesIn(kPdfFolder)) names.push_back(name);
  return names;
}

std::string PrintShop::WaitForImage(const std::string& name, const std::string& older) {
  const std::string path = kPdfFolder + name;
  WaitFor("the print image " + name, [&] {
    if (!work().machine().Has(path)) return false;
    const std::string bytes = work().machine().Get(path);
    if (bytes == older) return false;
    EXPECT_TRUE(bytes.starts_with("%PDF-")) << name;
    EXPECT_TRUE(bytes.ends_with("%%EOF\n")) << name << " is not whole";
    return true;
  });
  return work().machine().Native(path);
}

}  // namespace logbook::e2e
