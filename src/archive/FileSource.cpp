// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "archive/FileSource.h"

#include <cerrno>
#include <utility>

#include "archive/ZipCommands.h"

namespace logbook {

namespace {

struct FileSource {
  std::shared_ptr<const SourceTree> tree;
  SourceTree::Child child;
  SourceFile file;
  zip_error_t error;

  zip_int64_t Fail(int code) {
    zip_error_set(&error, code, errno);
    return -1;
  }

  zip_int64_t Open() {
    file = tree->Open(child.place);
    FileFacts facts;
    if (!file.IsOpen() || !file.Look(facts)) return Fail(ZIP_ER_OPEN);
    errno = EISDIR;
    return facts.kind == FileFacts::Kind::kFile ? 0 : Fail(ZIP_ER_OPEN);
  }

  zip_int64_t Read(void* data, zip_uint64_t length) {
    const std::int64_t count = file.Read(data, length);
    return count >= 0 ? count : Fail(ZIP_ER_READ);
  }

  zip_int64_t Stat(void* data, zip_uint64_t length) {
    auto* status = ZIP_SOURCE_GET_ARGS(zip_stat_t, data, length, &error);
    if (status == nullptr) return -1;
    zip_stat_init(status);
    status->size = child.facts.size;
    status->mtime = child.facts.modified;
    status->valid = ZIP_STAT_SIZE | ZIP_STAT_MTIME;
    return sizeof(zip_stat_t);
  }
};

zip_int64_t Command(void* object, void* data, zip_uint64_t length, zip_source_cmd_t command) {
  auto* source = static_cast<FileSource*>(object);
  switch (command) {
    case ZIP_SOURCE_OPEN:
      return source->Open();
    case ZIP_SOURCE_READ:
      return source->Read(data, length);
    case ZIP_SOURCE_CLOSE:
      source->file.Close();
      return 0;
    case ZIP_SOURCE_STAT:
      return source->Stat(data, length);
    case ZIP_SOURCE_ERROR:
      return zip_error_to_data(&source->error, data, length);
    case ZIP_SOURCE_FREE:
      delete source;
      return 0;
    case ZIP_SOURCE_SUPPORTS:
      return ZipCommands({ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE, ZIP_SOURCE_STAT,
                          ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE, ZIP_SOURCE_SUPPORTS});
    default:
      zip_error_set(&source->error, ZIP_ER_OPNOTSUPP, 0);
      return -1;
  }
}

}  // namespace

zip_source_t* MakeFileSource(zip_t* archive, std::shared_ptr<const SourceTree> tree,
                             const SourceTree::Child& file) {
  auto source = std::make_unique<FileSource>();
  source->tree = std::move(tree);
  source->child = file;
  zip_error_init(&source->error);
  zip_source_t* made = zip_source_function(archive, &Command, source.get());
  if (made != nullptr) static_cast<void>(source.release());  // the library frees it
  return made;
}

}  // namespace logbook
