// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <new>
#include <ostream>
#include <random>

#include "LogRoots.h"
#include "Output.h"
#include "RowWords.h"
#include "Verbs.h"
#include "base/Environment.h"
#include "base/FileLock.h"
#include "base/Files.h"
#include "base/NativeDisk.h"
#include "base/RunTimeError.h"
#include "base/Utf8Path.h"
#include "insight/Export.h"

namespace logbook::cli {
namespace {

namespace fs = std::filesystem;

using insight::Exporter;
using insight::ExportFormat;
using insight::ExportShape;
using insight::RootColumn;

struct ExportRequest {
  LogRootOptions roots;
  std::string format;
  std::string shape;  // empty: wide for a workbook, else long
  std::string where;
  std::string file;
};

// What the verb was asked for, in terms of the library.
struct Job {
  Catalogues catalogues;
  ExportFormat format = ExportFormat::kCsv;
  ExportShape shape = ExportShape::kLong;
  RootColumn root = RootColumn::kWithout;
  std::vector<std::string> roots;
  insight::Query where;
};

std::shared_ptr<const Job> MakeJob(Call& call, const ExportRequest& request) {
  const auto job = std::make_shared<Job>();
  FillCatalogues(job->catalogues);
  job->format = static_cast<ExportFormat>(
      std::find(insight::kExportFormats.begin(), insight::kExportFormats.end(), request.format) -
      insight::kExportFormats.begin());
  const bool wide =
      request.shape.empty() ? job->format == ExportFormat::kXlsx : request.shape == "wide";
  job->shape = wide ? ExportShape::kWide : ExportShape::kLong;
  job->where = QueryOf(job->catalogues, request.where);
  job->roots = FindLogRoots(call, request.roots);
  job->root = job->roots.size() > 1 ? RootColumn::kWith : RootColumn::kWithout;
  return job;
}

// The folders of a root that answer the query.
std::vector<std::string> FoldersOf(Call& call, const Job& job, const std::string& root) {
  if (job.where.What == insight::Query::Kind::kEverything) {
    return insight::ScanLogRoot(call.machine, PathText(root));
  }
  insight::LogIndex index(*call.machine.code_page, job.catalogues, root, IndexSettingsFor(call));
  std::vector<std::string> folders;
  for (const insight::FoundLog& log : index.Find({.What = job.where}).Logs) {
    folders.push_back(log.Folder);
  }
  std::sort(folders.begin(), folders.end());
  return folders;
}

void ExportAll(Call& call, const Job& job, Exporter& exporter) {
  for (const std::string& root : job.roots) {
    for (const std::string& folder : FoldersOf(call, job, root)) {
      exporter.Add(ReadLogAt(call, job.catalogues, {root, folder}));
    }
  }
  exporter.Finish();
}

bool IsText(const Job& job) {
  return job.format == ExportFormat::kCsv || job.format == ExportFormat::kJsonLines;
}

void ExportText(Call& call, const Job& job, std::ostream& out) {
  const auto exporter = job.format == ExportFormat::kCsv
                            ? MakeCsvExporter(out, job.catalogues, job.shape, job.root)
                            : MakeJsonLinesExporter(out, job.catalogues, job.shape, job.root);
  ExportAll(call, job, *exporter);
}

void ExportToFile(Call& call, const Job& job, const std::string& native_path) {
  if (IsText(job)) {
    std::ofstream out(Utf8Path(native_path), std::ios::binary);
    if (!out) throw insight::ExportError("the file cannot be made");
    return ExportText(call, job, out);
  }
  const auto exporter = job.format == ExportFormat::kXlsx
                            ? MakeXlsxExporter(native_path, job.catalogues, job.shape, job.root)
                            : MakeSqliteExporter(native_path, job.catalogues, job.shape);
  ExportAll(call, job, *exporter);
}

// Held by the one export of this user that is at work on a file, so that what bears the name of an
// unfinished one is a killed one's; nothing where no folder can hold the lock.
std::unique_ptr<FileLock> LockExports(const Call& call) {
  const std::string folder = UserCacheFolder();
  if (folder.empty()) return nullptr;
  try {
    const fs::path place = Utf8Path(folder) / "quorex-logbook";
    std::error_code ignored;
    fs::create_directories(place, ignored);
    const std::string path = (place / "export.lock").string();
    auto lock = std::make_unique<FileLock>(path, FileLock::Patience::kTry);
    if (lock->IsHeld()) return lock;
    call.Tell("waits for another export to end");
    return std::make_unique<FileLock>(path, FileLock::Patience::kWait);
  } catch (const RunTimeError&) {
    return nullptr;
  }
}

// A file that takes its name only when it is complete and on the disk, and goes if it never is: by
// itself, or, where the program was killed, with the next export to the same name.
class Unfinished {
 public:
  Unfinished(const Call& call, const std::string& target)
      : target_(target), lock_(LockExports(call)), path_(target + ".part~") {
    std::error_code ignored;
    if (lock_ != nullptr) {
      fs::remove(Utf8Path(path_), ignored);
    } else {
      // Nobody can tell whose the plain name is.
      path_ = target + "." + std::to_string(std::random_device()()) + ".part~";
    }
    int number = 0;
    while (fs::exists(fs::symlink_status(Utf8Path(path_))))
      path_ = target + "." + std::to_string(++number) + ".part~";
  }
  ~Unfinished() {
    try {
      std::error_code error;
      fs::remove(Utf8Path(path_), error);
    } catch (const std::bad_alloc&) {
      // It goes with the next export to the same name.
    }
  }
  Unfinished(const Unfinished&) = delete;
  Unfinished& operator=(const Unfinished&) = delete;

  const std::string& Path() const { return path_; }
  void Complete() const {
    Require(native::Sync(path_));
    Require(native::Rename(path_, target_));
    // The new file stands already; where the folder cannot be synced it may be the old one again
    // after a power cut.
    native::Sync(Utf8Path(target_).parent_path().string());
  }

 private:
  void Require(const std::error_code& error) const {
    if (error) native::RaiseFileError(error, target_);
  }

  std::string target_;
  std::unique_ptr<FileLock> lock_;
  std::string path_;
};

// The file that is to be replaced: that behind links, and nothing but a file.
std::string TargetOf(const Call& call, const std::string& typed) {
  const fs::path path = Utf8Path(NativePath(call.machine, TypedPathText(typed)));
  if (!fs::exists(path)) {
    if (fs::is_symlink(path)) throw UserError("that is a link to nothing");
    return path.string();
  }
  if (fs::is_directory(path)) throw UserError("that is a folder");
  if (!fs::is_regular_file(path)) throw UserError("that is no file");
  return fs::canonical(path).string();
}

int Export(Call& call, const ExportRequest& request) {
  const std::shared_ptr<const Job> job = MakeJob(call, request);
  if (request.file == "-") {
    if (!IsText(*job)) throw WrongUse("a " + request.format + " is a file: name one");
    ExportText(call, *job, call.out);
    return kSuccess;
  }
  RefuseBelowRoots(call, request.file, job->roots);
  call.subject += " " + request.file;
  const Unfinished unfinished(call, TargetOf(call, request.file));
  ExportToFile(call, *job, unfinished.Path());
  unfinished.Complete();
  return kSuccess;
}

}  // namespace

void AddExport(Frame& frame) {
  const auto request = std::make_shared<ExportRequest>();
  CLI::App& verb = frame.AddVerb(
      "export", "Write the values of logs for other programs: every value, or every log, an entry",
      [request](Call& call) { return Export(call, *request); });
  AddLogRootOption(verb, request->roots);
  verb.add_option("FILE", request->file, "The file to write; - is standard output")->required();
  verb.add_option("--format", request->format, "Which format")
      ->required()
      ->check(CLI::IsMember(std::vector<std::string>(insight::kExportFormats.begin(),
                                                     insight::kExportFormats.end())));
  verb.add_option("--shape", request->shape,
                  "An entry a value (long) or a log (wide); long unless it is a workbook")
      ->check(CLI::IsMember({"long", "wide"}));
  verb.add_option("--where", request->where, "Only the logs that answer this query, as find has it")
      ->type_name("QUERY");
}

}  // namespace logbook::cli
