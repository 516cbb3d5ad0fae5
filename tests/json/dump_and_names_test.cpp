// Hex dumps of packets the reader cannot produce, and name look-ups.
#include <gtest/gtest.h>

#include "json/envelope.h"
#include "json/names.h"
#include "json/output.h"
#include "stream/stream_file.h"
#include "tool_runner.h"

namespace {

// Writes through a StreamFile whose output is a string.
struct MemoryFile {
    MemoryFile() { file.out.attachString(&text); }
    StreamFile file;
    std::string text;
};

Packet view(Bytes& bytes)
{
    bytes.resize(bytes.size() + 8, 0); // the reader's zero padding
    return Packet(bytes.data(), static_cast<std::uint32_t>(bytes.size() - 8));
}

TEST(HexDump, RowsOfSixteenAndALastRowOfWhatRemains)
{
    MemoryFile forty;
    Bytes bytes = PacketBuilder(typeWord(1)).ordinal(0x01020304).timer(0x1122334455667788).u32(0xAABBCCDD).u32(0x99).build();
    bytes.resize(40, 0xEE);
    writeHexDump(&forty.file, view(bytes));
    EXPECT_EQ(maskAddresses(forty.text), "    {\n      \"size\": 32,\n"
                                         "      \"ADDR\": \"42 4e 59 5a  20 00 00 00  01 00 00 00  04 03 02 01\",\n"
                                         "      \"ADDR\": \"88 77 66 55  44 33 22 11  dd cc bb aa  99 00 00 00\"\n    }");

    MemoryFile seventeen;
    Bytes odd = PacketBuilder(typeWord(1)).sizeWord(17).build();
    writeHexDump(&seventeen.file, view(odd));
    EXPECT_EQ(maskAddresses(seventeen.text), "    {\n      \"size\": 17,\n"
                                             "      \"ADDR\": \"42 4e 59 5a  11 00 00 00  01 00 00 00  00 00 00 00\",\n"
                                             "      \"ADDR\": \"00\"\n    }");

    MemoryFile fortyBytes;
    Bytes full = PacketBuilder(typeWord(1)).u32s({1, 2, 3, 4}).build();
    writeHexDump(&fortyBytes.file, view(full));
    EXPECT_EQ(maskAddresses(fortyBytes.text), "    {\n      \"size\": 40,\n"
                                              "      \"ADDR\": \"42 4e 59 5a  28 00 00 00  01 00 00 00  00 00 00 00\",\n"
                                              "      \"ADDR\": \"00 00 00 00  00 00 00 00  01 00 00 00  02 00 00 00\",\n"
                                              "      \"ADDR\": \"03 00 00 00  04 00 00 00\"\n    }");
}

TEST(HexDump, DumpsOnlyTheBytesThatExist)
{
    MemoryFile memory;
    Bytes bytes = PacketBuilder(typeWord(1)).sizeWord(200).build(); // claims 200, holds 24
    writeHexDump(&memory.file, view(bytes));
    EXPECT_EQ(maskAddresses(memory.text), "    {\n      \"size\": 200,\n"
                                          "      \"ADDR\": \"42 4e 59 5a  c8 00 00 00  01 00 00 00  00 00 00 00\",\n"
                                          "      \"ADDR\": \"00 00 00 00  00 00 00 00\"\n    }");
}

TEST(HexDump, RefusesPacketsWithoutASignature)
{
    MemoryFile memory;
    std::string errors;
    Output err;
    err.attachString(&errors);
    redirectConsole(nullptr, &err);
    Bytes bytes = PacketBuilder(typeWord(1), 0x12345678).build();
    writeHexDump(&memory.file, view(bytes));
    Bytes widened = PacketBuilder(typeWord(1), kSigV2a + 2).build();
    writeHexDump(&memory.file, view(widened));
    redirectConsole(nullptr, nullptr);
    EXPECT_EQ(errors, "error: Packet not recognised as V2 format\n");
    EXPECT_TRUE(memory.text.starts_with("    {\n      \"size\": 24,\n"));
}

TEST(Names, LookUpWarnsAndSubstitutesPastTheLastValidRow)
{
    static const char* const rows[] = {"00_Invalid", "01_One", "undef_02", "LAST"};
    NameTable table = makeNameTable(rows, 2, "test kind");
    std::string out;
    Output console;
    console.attachString(&out);
    redirectConsole(&console, nullptr);
    EXPECT_STREQ(lookupName(table, 1), "01_One");
    EXPECT_STREQ(lookupName(table, 2), "undef_02");
    EXPECT_STREQ(lookupName(table, 3), "OUT_OF_BOUNDS");
    EXPECT_STREQ(lookupName(table, 0xFFFFFFFF), "OUT_OF_BOUNDS");
    redirectConsole(nullptr, nullptr);
    EXPECT_EQ(out, "Warning: Zyntel packet unknown test kind (3)!\n"
                   "Warning: Zyntel packet unknown test kind (-1)!\n");
}

} // namespace
