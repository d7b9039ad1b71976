// The file's text moves through a small window while it is read: a record longer than many windows keeps
// every tag it was given, and a file read piece by piece gives the records of its whole text.
#include "common/TempFolder.h"
#include "drawing/dxf/DxfFileText.h"
#include "drawing/dxf/DxfLoader.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

namespace {

// Every record as "section/type:code=value;..." lines, so that two loads compare as one text.
std::string recordsText(DxfLoader& loader) {
    std::string text;
    DxfRecord record;
    while (loader.next(record)) {
        text += std::string(record.section) + "/" + std::string(record.type) + ":";
        for (const DxfTag& tag : record.tags) text += std::to_string(tag.code) + "=" + std::string(tag.value) + ";";
        text += "\n";
    }
    return text + "status " + std::to_string(static_cast<int>(loader.status())) + "\n";
}

} // namespace

TEST(DxfFileTextTest, RecordsLongerThanTheWindowKeepEveryTag) {
    std::string text = "0\nSECTION\n2\nENTITIES\n";
    // 300,000 xdata items of one object (some 5 MB), between records of a few tags each.
    for (int record = 0; record < 3; ++record) {
        text += "0\nTEXT\n1\nbefore " + std::to_string(record) + "\n0\nMTEXT\n1001\nQX_APP\n";
        for (int i = 0; i < 100000; ++i) text += "1000\nitem " + std::to_string(record * 100000 + i) + "\r\n";
    }
    text += "0\nLINE\n0\nENDSEC\n0\nEOF\n";
    TempFolder folder;
    folder.writeFile("long.dxf", text);

    const auto file = DxfFileText::open(folder.native() + "/long.dxf");
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->size(), text.size());
    DxfLoader pieces(file->text(), file.get());
    DxfLoader whole(text);
    const std::string expected = recordsText(whole);
    EXPECT_EQ(recordsText(pieces), expected);
    EXPECT_NE(expected.find("1000=item 299999;\nENTITIES/LINE:\n"), std::string::npos) << "the last item is read";
    EXPECT_FALSE(file->failed());
}

TEST(DxfFileTextTest, AFileIsReadAsFarAsItWasWhenOpened) {
    TempFolder folder;
    const std::string path = folder.native() + "/growing.dxf";
    // Longer than the first piece read, so that the rest is read after the file grew.
    std::string first = "0\nSECTION\n2\nENTITIES\n";
    for (int i = 0; i < 20000; ++i) first += "999\na comment line of some length\n";
    folder.writeFile("growing.dxf", first + "0\nLINE\n");
    const auto file = DxfFileText::open(path);
    ASSERT_NE(file, nullptr);
    std::ofstream(path, std::ios::app) << "0\nCIRCLE\n0\nENDSEC\n0\nEOF\n";
    DxfLoader loader(file->text(), file.get());
    EXPECT_EQ(recordsText(loader), "status " + std::to_string(static_cast<int>(DxfLoadStatus::Truncated)) + "\n");
    EXPECT_EQ(DxfFileText::open(folder.native()), nullptr) << "a folder is no file";
}
