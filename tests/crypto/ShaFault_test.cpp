// SPDX-License-Identifier: MIT
// What the SHA and SHAKE engines do when memory runs out, and what they leave in memory when it does not.
#include "platform/File.h"
#include "tests/fakes/FaultRecorder.h"
#include "tests/helpers/FailingNew.h"
#include "tests/helpers/ScratchFiles.h"
#include "tests/helpers/ShaRows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <new>

namespace {

using helpers::Bytes;
using Shake = CCrypto_Shake;

std::string SourceLine(const std::string& file, int number) {
    std::ifstream source(FYRN_SOURCE_DIR "/" + file);
    std::string line;
    while (number-- > 0)
        std::getline(source, line);
    return line;
}

std::string SignatureOf(const helpers::ShaRow& row) {
    if (row.rate != 0)
        return "bool __cdecl CCrypto_Sha::GetSha3_FromFile(const wchar_t *,unsigned short,unsigned char "
               "*,bool)";
    std::string name = row.name;
    if (const std::size_t dash = name.find('-'); dash != name.npos)
        name[dash] = '_';
    name[1] = 'h';
    name[2] = 'a';
    return "bool __cdecl CCrypto_Sha::Get" + name + "_FromFile(const wchar_t *,unsigned char [])";
}

// The one record since the last call.
fakes::FaultRecord TheRecord() {
    const std::vector<fakes::FaultRecord> records = fakes::TakeFaultRecords();
    EXPECT_EQ(records.size(), 1u);
    return records.empty() ? fakes::FaultRecord{} : records[0];
}

class ShaFault : public testing::Test {
  protected:
    helpers::ScratchFiles files_;
    std::wstring path_ = files_.Write("file", std::string_view("some bytes"));
    CCrypto_Sha sha_{nullptr};
    CCrypto_Shake shake_{nullptr};
};

TEST_F(ShaFault, ReadBufferThatCannotBeAllocatedIsReportedAndGivesFalse) {
    for (const helpers::ShaRow& row : helpers::ShaRows()) {
        char text[129] = "as it was";
        {
            const auto fails = helpers::FailingNew::OfSize(row.readBufferSize);
            EXPECT_FALSE(row.getFromFileAsString(sha_, path_.c_str(), text)) << row.name;
        }
        EXPECT_STREQ(text, "as it was") << row.name;
        const fakes::FaultRecord record = TheRecord();
        EXPECT_EQ(record.sourceFile, "crypto/CCrypto_Sha.cpp");
        EXPECT_EQ(record.signature, SignatureOf(row));
        EXPECT_EQ(record.timeStamp.size(), 24u);
        EXPECT_FALSE(record.hasInfo);
        if (row.rate != 0)
            EXPECT_EQ(record.line, 1560);
        else
            EXPECT_NE(SourceLine(record.sourceFile, record.line).find("CATCH_SITE("), std::string::npos);
        EXPECT_FALSE(platform::RemoveFile(path_.c_str())) << "a file whose reading was interrupted is kept";
        const std::wstring other = files_.Write("other", std::string_view("abc"));
        EXPECT_EQ(helpers::ShaText(row, sha_, other.c_str()),
                  helpers::ExpectedText(row, helpers::BytesOf("abc")));
    }
}

TEST_F(ShaFault, ReadBufferOfShakeIsReportedAtLine349) {
    char text[33] = "as it was";
    {
        const auto fails = helpers::FailingNew::OfSize(1'000'000);
        EXPECT_FALSE(
            shake_.Shake_GetFromFileAsString(path_.c_str(), 16, text, 33, Shake::ShakeBufferLen_128));
    }
    EXPECT_STREQ(text, "as it was");
    const fakes::FaultRecord record = TheRecord();
    EXPECT_EQ(record.sourceFile, "crypto/CCrypto_Shake.cpp");
    EXPECT_EQ(record.line, 349);
    EXPECT_EQ(record.signature,
              "bool __cdecl CCrypto_Shake::Shake_GetFromFile(const wchar_t *,unsigned char *,"
              "unsigned __int64,enum CCrypto_Shake::EnumShakeModeBufferLen)");
    EXPECT_TRUE(shake_.Shake_GetFromFileAsString(path_.c_str(), 16, text, 33, Shake::ShakeBufferLen_128));
}

TEST_F(ShaFault, DigestBufferOfShakeIsReportedAtLine414) {
    char text[16] = "as it was";
    {
        const auto fails = helpers::FailingNew::OfSize(12'345);
        EXPECT_FALSE(
            shake_.Shake_GetFromFileAsString(path_.c_str(), 12'345, text, 16, Shake::ShakeBufferLen_128));
    }
    EXPECT_STREQ(text, "as it was");
    const fakes::FaultRecord record = TheRecord();
    EXPECT_EQ(record.sourceFile, "crypto/CCrypto_Shake.cpp");
    EXPECT_EQ(record.line, 414);
    EXPECT_EQ(record.signature,
              "bool __cdecl CCrypto_Shake::Shake_GetFromFileAsString(const wchar_t *,unsigned __int64,char *,"
              "unsigned int,enum CCrypto_Shake::EnumShakeModeBufferLen)");
}

TEST_F(ShaFault, NothingIsReportedWithoutAFault) {
    for (const helpers::ShaRow& row : helpers::ShaRows()) {
        helpers::ShaText(row, sha_, path_.c_str());
        helpers::ShaText(row, sha_, files_.Path("missing").c_str());
    }
    for (const helpers::ShakeRow& row : helpers::ShakeRows()) {
        helpers::ShakeText(row, shake_, path_.c_str());
        helpers::ShakeText(row, shake_, files_.Path("missing").c_str());
    }
    EXPECT_TRUE(fakes::TakeFaultRecords().empty());
}

class ShakeWipes : public ShaFault {
  protected:
    const Bytes bytes_ = Bytes(5000, 0xff);
    const std::wstring message_ = files_.Write("message", bytes_);
};

TEST_F(ShakeWipes, ReadBufferHoldsNothingOfTheFileWhenItIsFreed) {
    helpers::WatchedNew buffer(1'000'000);
    unsigned char output[16];
    ASSERT_TRUE(shake_.Shake_GetFromFile(message_.c_str(), output, 16, Shake::ShakeBufferLen_128));
    ASSERT_TRUE(buffer.ZerosWhenFreed().has_value());
    EXPECT_GE(*buffer.ZerosWhenFreed(), bytes_.size());
}

// The last of the file's bytes in the memory of an engine, 128 behind the last whole block.
std::size_t BytesOfTheFile(const unsigned char* memory, std::size_t size) {
    std::size_t longest = 0;
    std::size_t run = 0;
    for (std::size_t i = 0; i < size; ++i) {
        run = memory[i] == 0xff ? run + 1 : 0;
        longest = std::max(longest, run);
    }
    return longest;
}

TEST_F(ShakeWipes, BlockBufferIsClearedForTheNextFileAndAtTheEnd) {
    alignas(Shake) unsigned char memory[sizeof(Shake)] = {};
    unsigned char output[16];
    Shake* const engine = new (memory) Shake(nullptr);
    for (const auto clear : {0, 1}) {
        ASSERT_TRUE(engine->Shake_GetFromFile(message_.c_str(), output, 16, Shake::ShakeBufferLen_128));
        ASSERT_GE(BytesOfTheFile(memory, sizeof memory), 128u) << "it stays with the engine";
        if (clear == 0)
            engine->Shake_GetFromFile(files_.Path("missing").c_str(), output, 16, Shake::ShakeBufferLen_256);
        else
            engine->~Shake();
        EXPECT_LT(BytesOfTheFile(memory, sizeof memory), 8u);
    }
}

TEST_F(ShakeWipes, DigestBufferOfTheTextIsZeroWhenItIsFreed) {
    helpers::WatchedNew buffer(500);
    char text[1024];
    ASSERT_TRUE(
        shake_.Shake_GetFromFileAsString(message_.c_str(), 500, text, 1024, Shake::ShakeBufferLen_128));
    EXPECT_EQ(buffer.ZerosWhenFreed(), 500u);
}

} // namespace
