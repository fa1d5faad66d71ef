#include "script/File.h"

#include "ScratchDirectory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

namespace {

class FileTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(scratch.isReady()); }

    std::string pathOf(const std::string& name) const { return scratch.pathOf(name); }

    std::string createFile(const std::string& name, const std::string& contents) const {
        return scratch.createFile(name, contents);
    }

    static std::string contentsOf(const std::string& path) {
        return ScratchDirectory::contentsOf(path);
    }

    static std::string bytes(std::initializer_list<unsigned char> values) {
        return std::string(values.begin(), values.end());
    }

    ScratchDirectory scratch;
};

TEST_F(FileTest, ZeroLengthFileExistsWithSizeZeroAndOneEmptyLine) {
    File file(createFile("empty.txt", ""), 0);
    EXPECT_TRUE(file.exists());
    EXPECT_EQ(0u, file.getFileSize());
    std::vector<std::string> lines = file.getAsLines();
    ASSERT_EQ(1u, lines.size());
    EXPECT_EQ("", lines[0]);
}

TEST_F(FileTest, MissingFileDoesNotExistAndIsEmpty) {
    File file(pathOf("missing.txt"), 0);
    EXPECT_FALSE(file.exists());
    EXPECT_EQ(0u, file.getFileSize());
    EXPECT_EQ("", file.getAsString());
    EXPECT_TRUE(file.get().empty());
}

TEST_F(FileTest, DirectoryIsNoFile) {
    std::filesystem::create_directory(pathOf("folder"));
    File file(pathOf("folder"), 0);
    EXPECT_FALSE(file.exists());
    EXPECT_EQ(0u, file.getFileSize());
    File unloaded(pathOf("folder"), 7);
    EXPECT_FALSE(unloaded.exists());
}

TEST_F(FileTest, KeepsThePathItWasGiven) {
    std::string path = createFile("name.txt", "x");
    File fromString(path, 0);
    File fromChars(path.c_str(), 0);
    EXPECT_EQ(path, fromString.getFilename());
    EXPECT_EQ(path, fromChars.getFilename());
    EXPECT_TRUE(fromChars.exists());
}

TEST_F(FileTest, LoadsEveryByteIncludingZerosAndLineEnds) {
    std::string contents = bytes({'a', 0, '\r', '\n', 0xff, 'z'});
    File file(createFile("bytes.bin", contents), 0);
    ASSERT_TRUE(file.exists());
    EXPECT_EQ(contents.size(), file.getFileSize());
    EXPECT_EQ(contents, file.getAsString());
    EXPECT_EQ(std::vector<char>(contents.begin(), contents.end()), file.get());
    std::vector<unsigned char> expected(contents.begin(), contents.end());
    EXPECT_EQ(expected, file.getUnsigned());
    EXPECT_EQ(0xff, file.getUnsigned()[4]);
}

TEST_F(FileTest, LinesEndAtCrLfAndAtLf) {
    File file(createFile("lines.txt", "a\r\nb\nc"), 0);
    std::vector<std::string> expected = {"a", "b", "c"};
    EXPECT_EQ(expected, file.getAsLines());
}

TEST_F(FileTest, LoneCarriageReturnIsPlainText) {
    File file(createFile("cr.txt", "a\rb"), 0);
    std::vector<std::string> lines = file.getAsLines();
    ASSERT_EQ(1u, lines.size());
    EXPECT_EQ(3u, lines[0].size());
    EXPECT_EQ("a\rb", lines[0]);
}

TEST_F(FileTest, CarriageReturnAsLastByteStaysInTheLine) {
    File file(createFile("crlast.txt", "a\r"), 0);
    std::vector<std::string> expected = {"a\r"};
    EXPECT_EQ(expected, file.getAsLines());
}

TEST_F(FileTest, FileEndingInLineEndGivesEmptyLastLine) {
    File file(createFile("trailing.txt", "a\n"), 0);
    std::vector<std::string> expected = {"a", ""};
    EXPECT_EQ(expected, file.getAsLines());
}

TEST_F(FileTest, EmptyLinesBetweenLineEndsAreKept) {
    File file(createFile("blank.txt", "a\n\r\n\nb"), 0);
    std::vector<std::string> expected = {"a", "", "", "b"};
    EXPECT_EQ(expected, file.getAsLines());
}

TEST_F(FileTest, UnnamedStringReadsAsObjectAndConsumesTheZero) {
    File file(createFile("noname.bin", bytes({0, 'x'})), 0);
    EXPECT_EQ("Object", file.readString());
    EXPECT_EQ('x', file.readChar());
}

TEST_F(FileTest, ZeroTerminatedStringIsReadWithoutItsZero) {
    File file(createFile("name.bin", bytes({'a', 'b', 0, 'c'})), 0);
    EXPECT_EQ("ab", file.readString());
    EXPECT_EQ('c', file.readChar());
}

TEST_F(FileTest, FixedLengthStringKeepsZeroBytes) {
    File file(createFile("fixed.bin", bytes({'a', 0, 'b', 'c'})), 0);
    std::string text = file.readString(3);
    EXPECT_EQ(bytes({'a', 0, 'b'}), text);
    EXPECT_EQ('c', file.readChar());
}

TEST_F(FileTest, FixedLengthStringBelowOneIsEmptyAndMovesNothing) {
    File file(createFile("fixed.bin", "abc"), 0);
    EXPECT_EQ("", file.readString(0));
    EXPECT_EQ("", file.readString(-5));
    EXPECT_EQ('a', file.readChar());
}

TEST_F(FileTest, ReadIntTakesLeastSignificantByteFirst) {
    File file(createFile("int.bin", bytes({0x01, 0x00, 0x00, 0x80, 0x78, 0x56, 0x34, 0x12})), 0);
    int value = file.readInt();
    EXPECT_EQ(0x80000001u, static_cast<uint32_t>(value));
    EXPECT_EQ(0x12345678, file.readInt());
}

TEST_F(FileTest, ReadIntDoesNotSignExtendLowBytes) {
    File file(createFile("int.bin", bytes({0xff, 0x00, 0x00, 0x00})), 0);
    EXPECT_EQ(255, file.readInt());
}

TEST_F(FileTest, ReadFloatTakesTheBitsOfASingle) {
    float expected = -1.5f;
    uint32_t bits;
    std::memcpy(&bits, &expected, sizeof(bits));
    std::string contents;
    for (int i = 0; i < 4; i++) {
        contents += static_cast<char>((bits >> (8 * i)) & 0xff);
    }
    File file(createFile("float.bin", contents + "!"), 0);
    EXPECT_EQ(expected, file.readFloat());
    EXPECT_EQ('!', file.readChar());
}

TEST_F(FileTest, ReadCharReturnsUnsignedBytes) {
    File file(createFile("chars.bin", bytes({0xfe, 0x01})), 0);
    EXPECT_EQ(0xfe, file.readChar());
    EXPECT_EQ(0x01, file.readChar());
}

TEST_F(FileTest, ReadingPastTheEndGivesZerosAndStillAdvances) {
    File file(createFile("short.bin", bytes({0x01, 0x02})), 0);
    EXPECT_EQ(0x0201, file.readInt());
    EXPECT_EQ(0, file.readChar());
    EXPECT_EQ(0.0f, file.readFloat());
    EXPECT_EQ("Object", file.readString());
    EXPECT_EQ("", file.readString(100));
}

TEST_F(FileTest, ZeroTerminatedStringRunningIntoTheEndStopsThere) {
    File file(createFile("open.bin", "abc"), 0);
    EXPECT_EQ("abc", file.readString());
    EXPECT_EQ("Object", file.readString());
}

TEST_F(FileTest, FixedLengthStringCrossingTheEndIsCutShort) {
    File file(createFile("cut.bin", "abcd"), 0);
    EXPECT_EQ('a', file.readChar());
    EXPECT_EQ("bcd", file.readString(10));
    EXPECT_EQ(0, file.readChar());
}

TEST_F(FileTest, GetAsIntFillsOnlyTheFirstQuarterOfTheElements) {
    File file(createFile("five.bin", bytes({0x01, 0x02, 0x03, 0x04, 0x05})), 0);
    std::vector<int> expected = {0x04030201, 0, 0, 0, 0};
    EXPECT_EQ(expected, file.getAsInt());
}

TEST_F(FileTest, GetAsIntWindowMovesOneBytePerElement) {
    File file(createFile("eight.bin", bytes({1, 2, 3, 4, 5, 6, 7, 8})), 0);
    std::vector<int> expected = {0x04030201, 0x05040302, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(expected, file.getAsInt());
}

TEST_F(FileTest, GetAsIntSignExtendsEveryByte) {
    File file(createFile("signed.bin", bytes({0x80, 0x00, 0x00, 0x00, 0x00, 0x80, 0x00, 0x00})), 0);
    std::vector<int> values = file.getAsInt();
    ASSERT_EQ(8u, values.size());
    EXPECT_EQ(0xffffff80u, static_cast<uint32_t>(values[0]));
    EXPECT_EQ(0x00000000u, static_cast<uint32_t>(values[1]));
    File second(createFile("signed2.bin", bytes({0x00, 0x80, 0x00, 0x00})), 0);
    EXPECT_EQ(0xffff8000u, static_cast<uint32_t>(second.getAsInt()[0]));
}

TEST_F(FileTest, GetAsIntOfFewerThanFourBytesIsAllZero) {
    File file(createFile("three.bin", bytes({0xff, 0xff, 0xff})), 0);
    std::vector<int> expected = {0, 0, 0};
    EXPECT_EQ(expected, file.getAsInt());
}

TEST_F(FileTest, ModeThreeTruncatesExactlyAsModeTwo) {
    std::string two = createFile("two.txt", "old contents");
    std::string three = createFile("three.txt", "old contents");
    File byTwo(two, 2);
    File byThree(three, 3);
    EXPECT_TRUE(byTwo.exists());
    EXPECT_TRUE(byThree.exists());
    EXPECT_EQ(0u, byTwo.getFileSize());
    EXPECT_EQ(0u, byThree.getFileSize());
    EXPECT_EQ("", contentsOf(two));
    EXPECT_EQ("", contentsOf(three));
    byTwo.put(std::string("new"));
    byThree.put(std::string("new"));
    EXPECT_TRUE(byTwo.write());
    EXPECT_TRUE(byThree.write());
    EXPECT_EQ("new", contentsOf(two));
    EXPECT_EQ("new", contentsOf(three));
}

TEST_F(FileTest, OutputModeCreatesAMissingFile) {
    std::string path = pathOf("created.txt");
    File file(path, 2);
    EXPECT_TRUE(file.exists());
    EXPECT_TRUE(std::filesystem::exists(path));
}

TEST_F(FileTest, UnknownModeOpensForInputAndLoadsNothing) {
    std::string path = createFile("seven.txt", "keep me");
    File file(path, 7);
    EXPECT_TRUE(file.exists());
    EXPECT_EQ(0u, file.getFileSize());
    EXPECT_EQ("", file.getAsString());
    EXPECT_EQ("keep me", contentsOf(path));
    File missing(pathOf("absent.txt"), 7);
    EXPECT_FALSE(missing.exists());
}

TEST_F(FileTest, AppendModeAddsBehindExistingBytes) {
    std::string path = createFile("log.txt", "abc");
    File file(path, 1);
    EXPECT_TRUE(file.exists());
    EXPECT_EQ(0u, file.getFileSize());
    file.put(std::string("de"));
    EXPECT_TRUE(file.write());
    EXPECT_EQ("abcde", contentsOf(path));
}

TEST_F(FileTest, PutBuffersLittleEndianBytesWithoutTerminator) {
    File file(pathOf("out.bin"), 2);
    file.put(std::string("ab"));
    file.put(0x11223344);
    file.put(1.0f);
    file.put(static_cast<unsigned char>(0xfe));
    std::string expected = std::string("ab") + bytes({0x44, 0x33, 0x22, 0x11}) +
                           bytes({0x00, 0x00, 0x80, 0x3f}) + bytes({0xfe});
    EXPECT_EQ(expected, file.getAsString());
    EXPECT_EQ(expected.size(), file.getFileSize());
}

TEST_F(FileTest, WriteAsAfterPutOnFreshOutputFileWritesNothingButWriteDoes) {
    std::string path = pathOf("out.bin");
    std::string copy = pathOf("copy.bin");
    File file(path, 2);
    file.put(std::string("hello"));
    EXPECT_TRUE(file.writeAs(copy.c_str()));
    EXPECT_TRUE(std::filesystem::exists(copy));
    EXPECT_EQ("", contentsOf(copy));
    EXPECT_EQ(copy, file.getFilename());
    EXPECT_TRUE(file.write());
    EXPECT_EQ("hello", contentsOf(path));
}

TEST_F(FileTest, WriteAsAfterWriteUsesTheWrittenLength) {
    std::string path = pathOf("out.bin");
    std::string copy = pathOf("copy.bin");
    File file(path, 2);
    file.put(std::string("hello"));
    ASSERT_TRUE(file.write());
    file.put(std::string(" world"));
    EXPECT_TRUE(file.writeAs(copy.c_str()));
    EXPECT_EQ("hello", contentsOf(copy));
}

TEST_F(FileTest, WriteAsOfALoadedFileLeavesOutLaterPuts) {
    std::string path = createFile("in.txt", "loaded");
    std::string copy = pathOf("copy.txt");
    File file(path, 0);
    file.put(std::string("+more"));
    EXPECT_TRUE(file.writeAs(copy.c_str()));
    EXPECT_EQ("loaded", contentsOf(copy));
}

TEST_F(FileTest, WriteAsTruncatesAnExistingFile) {
    std::string copy = createFile("copy.txt", "much longer old contents");
    File file(createFile("in.txt", "new"), 0);
    EXPECT_TRUE(file.writeAs(copy.c_str()));
    EXPECT_EQ("new", contentsOf(copy));
}

TEST_F(FileTest, WriteAsIntoMissingDirectoryFails) {
    File file(createFile("in.txt", "x"), 0);
    std::string target = pathOf("no/such/dir/out.txt");
    EXPECT_FALSE(file.writeAs(target.c_str()));
    EXPECT_EQ(target, file.getFilename());
}

TEST_F(FileTest, SecondWriteFailsBecauseTheStreamIsClosed) {
    std::string path = pathOf("once.bin");
    File file(path, 2);
    file.put(std::string("one"));
    EXPECT_TRUE(file.write());
    file.put(std::string("two"));
    EXPECT_FALSE(file.write());
    EXPECT_EQ("one", contentsOf(path));
}

TEST_F(FileTest, WriteOnAFileThatFailedToOpenFails) {
    File file(pathOf("missing.txt"), 0);
    file.put(std::string("x"));
    EXPECT_FALSE(file.write());
}

TEST_F(FileTest, DestructorClosesAnUnwrittenOutputFile) {
    std::string path = pathOf("closed.txt");
    {
        File file(path, 2);
        file.put(std::string("never written"));
    }
    EXPECT_TRUE(std::filesystem::exists(path));
    EXPECT_EQ("", contentsOf(path));
}

} // namespace
