// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "ContentServer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <ostream>
#include <set>

#include "support/DavServer.h"
#include "support/RunProgram.h"

namespace fs = std::filesystem;

namespace logbook::e2e {
namespace {

using test::Quoted;
using test::RunProgram;

class SharedFolder : public ContentServer {
 public:
  explicit SharedFolder(const std::string& folder)
      : mounted_(folder + "/share"), unmounted_(folder + "/not-mounted") {
    fs::create_directory(unmounted_);
  }
  void Start() override { fs::rename(unmounted_, mounted_); }
  void Stop() override { fs::rename(mounted_, unmounted_); }
  std::string Settings() const override { return "Url=file://" + mounted_ + "\r\n"; }
  std::string OutOfReach() const override {
    return "The shared folder " + mounted_ + " is not there.";
  }
  std::string Root() const override { return mounted_; }

 private:
  std::string mounted_, unmounted_;
};

class HttpsServer : public ContentServer {
 public:
  explicit HttpsServer(const std::string& folder) : password_file_(folder + "/password") {
    std::ofstream(password_file_) << test::DavServer::kPassword << '\n';
    fs::permissions(password_file_, fs::perms::owner_read);
  }
  void Start() override { server_.Start(); }
  void Stop() override { server_.Stop(); }
  std::string Settings() const override {
    return "Url=" + server_.Url() + "\r\nUser=" + test::DavServer::kUser +
           "\r\nPasswordFile=" + password_file_ + "\r\nCaFile=" + server_.CaFile() + "\r\n";
  }
  std::string OutOfReach() const override { return "The content server cannot be reached: "; }
  std::string Root() const override { return server_.Root(); }

 private:
  std::string password_file_;
  test::DavServer server_{test::DavServer::Scheme::kHttps};
};

std::string BytesOf(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

// All files below a folder by their names relative to it.
std::set<std::string> FilesBelow(const fs::path& root) {
  std::set<std::string> names;
  if (!fs::exists(root)) return names;
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    const std::string name = fs::relative(entry.path(), root).string();
    // The WebDAV server's own store of properties.
    if (entry.is_regular_file() && name.find(".DAV") == std::string::npos) names.insert(name);
  }
  return names;
}

std::string XPath(const fs::path& document, const std::string& expression) {
  std::string text =
      RunProgram("xmllint --xpath " + Quoted(expression) + " " + Quoted(document.string())).output;
  if (text.ends_with('\n')) text.pop_back();
  return text;
}

// Names of the described files; the description of each goes to the upload.
std::vector<std::string> ReadDescriptor(const fs::path& document, Upload& upload) {
  const auto judged = RunProgram("xmllint --noout --dtdvalid " + Quoted(TEST_UPLOAD_DTD) + " " +
                                 Quoted(document.string()));
  EXPECT_EQ(judged.status, 0) << judged.output;
  std::vector<std::string> names;
  const int count = std::stoi(XPath(document, "count(/Upload/file)"));
  for (int i = 1; i <= count; ++i) {
    const std::string file = "/Upload/file[" + std::to_string(i) + "]";
    names.push_back(XPath(document, "string(" + file + "/@name)"));
    upload.described.push_back(XPath(document, "concat(" + file + "/@name, '|', " + file +
                                                   "/Source, '|', " + file + "/Destination, '|', " +
                                                   file + "/Reason, '|', " + file + "/Owner)"));
  }
  return names;
}

void AddPackage(const fs::path& package, const std::string& scratch, Upload& upload) {
  const fs::path folder = scratch + "/" + package.filename().string();
  fs::create_directories(folder);
  const auto unpacked = RunProgram("unzip -tq " + Quoted(package.string()) + " && unzip -q " +
                                   Quoted(package.string()) + " -d " + Quoted(folder.string()));
  EXPECT_EQ(unpacked.status, 0) << unpacked.output;
  for (const std::string& name : FilesBelow(folder))
    upload.files.push_back(
        FileLine(package.filename().string() + "/" + name, BytesOf(folder / name)));
}

}  // namespace

std::ostream& operator<<(std::ostream& out, ServerKind kind) {
  return out << (kind == ServerKind::kHttps ? "Https" : "SharedFolder");
}

std::string MissingFor(ServerKind kind) {
  for (const char* program : {"xmllint", "unzip"}) {
    if (!test::HasProgram(program)) return program;
  }
  return kind == ServerKind::kHttps && !test::HasDavServer() ? "apache2 with mod_dav_fs" : "";
}

std::unique_ptr<ContentServer> MakeContentServer(ServerKind kind, const std::string& folder) {
  if (kind == ServerKind::kHttps) return std::make_unique<HttpsServer>(folder);
  return std::make_unique<SharedFolder>(folder);
}

std::string FileLine(const std::string& path, const std::string& bytes) {
  return path + " " + std::to_string(bytes.size()) + " " +
         std::to_string(std::hash<std::string>()(bytes));
}

std::vector<Upload> ReadUploads(const std::string& root, const std::string& scratch) {
  std::vector<Upload> uploads;
  std::set<std::string> left = FilesBelow(root);
  for (const std::string& name : FilesBelow(root)) {
    if (!name.ends_with(".xml")) continue;
    left.erase(name);
    const std::string folder = name.substr(0, name.size() - 4);
    Upload upload;
    for (const std::string& file : ReadDescriptor(fs::path(root) / name, upload)) {
      const fs::path path = fs::path(root) / folder / file;
      left.erase(folder + "/" + file);
      if (file.ends_with(".qkvzip")) {
        AddPackage(path, scratch, upload);
      } else {
        upload.files.push_back(FileLine(file, BytesOf(path)));
      }
    }
    uploads.push_back(upload);
  }
  EXPECT_EQ(left, std::set<std::string>()) << "files of no upload";
  std::sort(uploads.begin(), uploads.end());
  return uploads;
}

}  // namespace logbook::e2e
