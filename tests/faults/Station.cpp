// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "Station.h"

#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "Faults.h"
#include "ShortMemory.h"
#include "base/Profile.h"
#include "catalogue/ItemRecord.h"
#include "support/DavServer.h"

namespace fs = std::filesystem;

namespace logbook::test {

namespace {

std::string BytesOf(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace

Disk ReadDisk(const std::string& native_folder) {
  Disk disk;
  for (const auto& entry : fs::recursive_directory_iterator(native_folder)) {
    const std::string path = fs::relative(entry.path(), native_folder).string();
    if (entry.is_directory()) {
      disk[path + "/"];
    } else {
      disk[path] = BytesOf(entry.path());
    }
  }
  return disk;
}

Station::Station()
    : client(state, "/bin/true"), real{host,   cell,  events,  messages, clock, process,
                                       client, forms, windows, print,    help,  save} {
  state.AppPath = "C:\\QUOREX\\qrxexe";
  FillCatalogues(state.catalogues);
}

void Station::PutSample(const std::string& log, const std::string& instrument,
                        const std::string& comment) {
  MakeLog(log, "11/14/2026 08:30:00", comment);
  const std::string folder = std::string(TEST_DATA_DIR) + "/snapshots/" + instrument;
  for (const auto& entry : fs::directory_iterator(folder)) {
    const std::string name = entry.path().filename().string();
    const std::string date =
        name == "logfile.ini" ? "[LogFile]\r\nDate=11/14/2026 08:30:00\r\n" : "";
    disk.Put(InLog(log, name), date + BytesOf(entry.path()));
  }
}

void Station::TieTo(const std::string& url) {
  const std::string password = "C:\\QUOREX\\password";
  disk.Put(password, std::string(DavServer::kPassword) + "\n");
  fs::permissions(disk.Native(password), fs::perms::owner_read | fs::perms::owner_write);
  disk.Put("C:\\QUOREX\\qrxexe\\arecm.cfg",
           "[Content Server]\r\nRetryPause=1\r\nLongestPause=1\r\nFolder=station\r\nUser=" +
               std::string(DavServer::kUser) + "\r\nPasswordFile=" + password + "\r\nUrl=" + url +
               "\r\n");
}

bool Station::Handle(const std::function<void()>& piece) {
  try {
    piece();
    return true;
  } catch (const RunTimeError& error) {
    error_ = "run-time error " + std::to_string(static_cast<int>(error.Number())) + "\n";
  } catch (const std::bad_alloc&) {
    error_ = "run-time error 7\n";
  } catch (const ProcessEnded&) {
    error_ = "the process has ended\n";
  }
  return false;
}

std::string Station::Told() const {
  std::string text;
  for (const Message& message : messages.shown) text += message.Text + "\n";
  return text + error_;
}

void Station::AnswerJobs() {
  cell.on_written = [this](const std::string& job) {
    if (job != "1") return;
    const faults::Aside by_the_host;
    const ShortMemory::Pause with_memory_of_its_own;
    Milestone();
    const std::string folder = state.machine.code_page->ToUtf8(
        GetPrivateProfileString(state.machine, "LogBook", "LogFileName", "", 260, state.IniFile));
    disk.Put(folder + "aall.txt", "1,2,3\r\n");
    WritePrivateProfileString(state.machine, "OPTION", "LENS", "1", folder + "logfile.ini");
    Milestone();
    cell.text = "0";
  };
}

}  // namespace logbook::test
