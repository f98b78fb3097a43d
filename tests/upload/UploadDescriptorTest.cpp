// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/UploadDescriptor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/RunTimeError.h"
#include "support/RunProgram.h"
#include "support/TestMachine.h"

namespace logbook::test {
namespace {

constexpr const char* kPath = "C:\\d.xml";

// The document as the outside may rely on it.
constexpr const char* kType = TEST_DATA_DIR "/upload.dtd";

TEST(UploadDescriptor, ADescriptorIsWrittenWithoutBlanksBetweenItsElements) {
  TestMachine disk;
  AddToUploadDescriptor(disk, kPath, {"a.txt", "C:\\a", "a", "why", ""});
  EXPECT_EQ(disk.Get(kPath),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?><Upload><file name=\"a.txt\">"
            "<Source>C:\\a</Source><Destination>a</Destination><Reason>why</Reason>"
            "<Owner/></file></Upload>");
}

TEST(UploadDescriptor, WhatIsWrittenIsValidAndComesBack) {
  TestMachine disk;
  const UploadFile first{"Bericht <1> & \"2\".pdf", "C:\\Ölpumpe\\測定", "測定", "it's", "Ümit"};
  const UploadFile second{"listlog.csv", "C:\\", "ROOT", "", ""};
  AddToUploadDescriptor(disk, kPath, first);
  AddToUploadDescriptor(disk, kPath, second);
  EXPECT_THAT(ReadUploadDescriptor(disk, kPath), testing::ElementsAre(first, second));
  const ProgramResult judged =
      RunProgram("xmllint --noout --dtdvalid " + Quoted(kType) + " " + Quoted(disk.Native(kPath)));
  EXPECT_EQ(judged.status, 0) << judged.output;
  EXPECT_EQ(
      RunProgram("xmllint --xpath 'string(/Upload/file[1]/@name)' " + Quoted(disk.Native(kPath)))
          .output,
      first.Name + "\n");
}

TEST(UploadDescriptor, CharactersThatXmlCannotHoldAreLeftOut) {
  TestMachine disk;
  AddToUploadDescriptor(disk, kPath, {"a.txt", "C:\\a", "a", "x\x01y\x1Fz\xEF\xBF\xBF.", ""});
  EXPECT_EQ(ReadUploadDescriptor(disk, kPath).at(0).Reason, "xyz.");
  EXPECT_EQ(RunProgram("xmllint --noout " + Quoted(disk.Native(kPath))).status, 0);
}

TEST(UploadDescriptor, BytesThatAreNoUtf8AreLeftOut) {
  TestMachine disk;
  AddToUploadDescriptor(disk, kPath, {"gr\xFC\xDF.txt", "C:\\\xED\xA0\x80x", "a", "\xC3", "Ümit"});
  const UploadFile written = ReadUploadDescriptor(disk, kPath).at(0);
  EXPECT_EQ(written, (UploadFile{"gr.txt", "C:\\x", "a", "", "Ümit"}));
  EXPECT_EQ(RunProgram("xmllint --noout " + Quoted(disk.Native(kPath))).status, 0);
}

TEST(UploadDescriptor, BlanksInATextAreKept) {
  TestMachine disk;
  AddToUploadDescriptor(disk, kPath, {"a.txt", "C:\\a", " ", "  why  ", ""});
  AddToUploadDescriptor(disk, kPath, {"b.txt", "C:\\a", "a", "", ""});
  EXPECT_EQ(ReadUploadDescriptor(disk, kPath).at(0).Destination, " ");
  EXPECT_EQ(ReadUploadDescriptor(disk, kPath).at(0).Reason, "  why  ");
}

TEST(UploadDescriptor, TheOnlyNameIsNotAddedTwiceWhateverItsCase) {
  TestMachine disk;
  AddToUploadDescriptor(disk, kPath, {"Ä.txt", "C:\\a", "a", "why", ""});
  AddToUploadDescriptor(disk, kPath, {"ä.TXT", "C:\\b", "b", "other", ""});
  EXPECT_EQ(ReadUploadDescriptor(disk, kPath).size(), 1u);
}

TEST(UploadDescriptor, ADocumentThatIsNoDescriptorRaisesAndStays) {
  TestMachine disk;
  for (const char* bytes : {"", "<", "<Upload>", "<Other/>", "plain text"}) {
    disk.Put(kPath, bytes);
    EXPECT_THROW(AddToUploadDescriptor(disk, kPath, {"a", "b", "c", "d", "e"}), RunTimeError)
        << bytes;
    EXPECT_THROW(ReadUploadDescriptor(disk, kPath), RunTimeError) << bytes;
    EXPECT_EQ(disk.Get(kPath), bytes);
  }
}

TEST(UploadDescriptor, EveryPrefixOfADescriptorIsRefused) {
  TestMachine disk;
  AddToUploadDescriptor(disk, kPath, {"a.txt", "C:\\a", "a", "why", "me"});
  const std::string whole = disk.Get(kPath);
  for (std::size_t size = 0; size < whole.size(); ++size) {
    disk.Put(kPath, whole.substr(0, size));
    EXPECT_THROW(ReadUploadDescriptor(disk, kPath), RunTimeError) << whole.substr(0, size);
  }
}

TEST(UploadDescriptor, AMissingDescriptorIsAFileNotFound) {
  TestMachine disk;
  try {
    ReadUploadDescriptor(disk, kPath);
    FAIL();
  } catch (const RunTimeError& error) {
    EXPECT_EQ(error.Number(), ErrorNumber::kFileNotFound);
  }
}

}  // namespace
}  // namespace logbook::test
