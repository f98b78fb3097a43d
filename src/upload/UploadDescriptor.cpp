// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/UploadDescriptor.h"

#include <algorithm>
#include <iterator>
#include <pugixml.hpp>
#include <sstream>

#include "base/Files.h"
#include "base/NativeFile.h"
#include "base/PrivateFile.h"
#include "base/RunTimeError.h"
#include "base/UpperCase.h"
#include "base/Utf8.h"
#include "resources/ResourceText.h"

namespace logbook {

namespace {

// In the string table.
constexpr int kOneElement = 1478, kNoElement = 1479;

bool IsXmlCharacter(char32_t character) {
  if (character < 0x20) return character == '\t' || character == '\n' || character == '\r';
  const bool is_half_a_pair = character >= 0xD800 && character <= 0xDFFF;
  return !is_half_a_pair && character != 0xFFFE && character != 0xFFFF && character != kNotUtf8;
}

// The text without what has no place in XML 1.0.
std::string XmlText(std::string_view text) {
  std::string result;
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t start = i;
    if (IsXmlCharacter(NextCharacter(text, i))) result += text.substr(start, i - start);
  }
  return result;
}

void AddChild(pugi::xml_node parent, const char* name, const std::string& text) {
  pugi::xml_node child = parent.append_child(name);
  if (!text.empty()) child.text().set(XmlText(text).c_str());
}

void AddDeclaration(pugi::xml_document& document) {
  pugi::xml_node declaration = document.prepend_child(pugi::node_declaration);
  declaration.append_attribute("version") = "1.0";
  declaration.append_attribute("encoding") = "UTF-8";
}

pugi::xml_document Parse(const std::string& bytes) {
  pugi::xml_document document;
  const pugi::xml_parse_result result =
      document.load_buffer(bytes.data(), bytes.size(), pugi::parse_full | pugi::parse_ws_pcdata);
  if (!result) throw RunTimeError(ErrorNumber::kInternalError, result.description());
  return document;
}

std::vector<pugi::xml_node> FilesOf(pugi::xml_node upload) {
  std::vector<pugi::xml_node> files;
  std::ranges::copy(upload.children("file"), std::back_inserter(files));
  return files;
}

}  // namespace

void AddToUploadDescriptor(const Machine& machine, std::string_view descriptor,
                           const UploadFile& file) {
  const std::string native = NativePath(machine, descriptor);
  pugi::xml_document document;
  if (Exists(machine, descriptor)) {
    document = Parse(ReadNativeFile(native));
  } else {
    AddDeclaration(document);
  }
  pugi::xml_node upload = document.child("Upload");
  if (!upload) {
    if (document.document_element())
      throw RunTimeError(ErrorNumber::kInternalError, ResourceText(kOneElement));
    upload = document.append_child("Upload");
  }
  const std::vector<pugi::xml_node> files = FilesOf(upload);
  if (files.size() == 1 && EqualIgnoringCase(files[0].attribute("name").value(), file.Name)) return;

  pugi::xml_node entry = upload.append_child("file");
  entry.append_attribute("name") = XmlText(file.Name).c_str();
  AddChild(entry, "Source", file.Source);
  AddChild(entry, "Destination", file.Destination);
  AddChild(entry, "Reason", file.Reason);
  AddChild(entry, "Owner", file.Owner);

  std::ostringstream out;
  document.save(out, "", pugi::format_raw, pugi::encoding_utf8);
  // A stream keeps to itself that it had no memory.
  if (!out) throw RunTimeError(ErrorNumber::kOutOfMemory);
  ReplacePrivateFile(native, out.str());
}

std::vector<UploadFile> ReadUploadDescriptor(const Machine& machine, std::string_view descriptor) {
  const std::string native = NativePath(machine, descriptor);
  const pugi::xml_document document = Parse(ReadNativeFile(native));
  const pugi::xml_node upload = document.child("Upload");
  if (!upload) throw RunTimeError(ErrorNumber::kInternalError, ResourceText(kNoElement));
  std::vector<UploadFile> files;
  for (const pugi::xml_node entry : FilesOf(upload)) {
    files.push_back({.Name = entry.attribute("name").value(),
                     .Source = entry.child_value("Source"),
                     .Destination = entry.child_value("Destination"),
                     .Reason = entry.child_value("Reason"),
                     .Owner = entry.child_value("Owner")});
  }
  return files;
}

}  // namespace logbook
