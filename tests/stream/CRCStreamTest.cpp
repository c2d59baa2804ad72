#include "stream/Crc32.h"
#include "tests/stream/Probes.h"

namespace {

constexpr std::size_t kBlock = 4088;

std::string Block(const std::string& payload) {
    const std::uint32_t crc = ~kel::UpdateByTables(~0u, payload.data(), payload.size());
    return Word(static_cast<std::uint32_t>(payload.size())) + payload + Word(crc);
}

// What a stream of @p bytes looks like.
std::string Blocks(const std::string& bytes) {
    std::string blocks;
    for (std::size_t at = 0; at < bytes.size(); at += kBlock)
        blocks += Block(bytes.substr(at, kBlock));
    return blocks;
}

// Reads as many bytes as @p bytes has.
std::string ReadAll(const std::string& stored, std::string& bytes) {
    MemoryInputStream memory(stored);
    CRCInputStream stream(memory);
    return Failure([&] { stream.Read(bytes.data(), static_cast<int>(bytes.size())); });
}

} // namespace

TEST_CASE("every road to the checksum gives what the tables give") {
    CHECK(kel::Crc32("123456789", 9) == 0xCBF43926);
    CHECK(kel::Crc32("", 0) == 0);
    const std::string bytes = RandomBytes(70000);
    for (const kel::Crc32Update road : {kel::CarrylessRoad(), kel::WideCarrylessRoad()}) {
        for (std::size_t size = 0; road != nullptr && size < 69990; size += size < 700 ? 1 : size / 4) {
            const char* const data = bytes.data() + size % 5;
            const auto start = static_cast<std::uint32_t>(size * 0x9E3779B9);
            REQUIRE_MESSAGE(road(start, data, size) == kel::UpdateByTables(start, data, size), size);
        }
    }
}

TEST_CASE("a flushed block is three writes and a flush") {
    RecordingSink sink;
    CRCOutputStream stream(sink);
    for (const int size : {2, 0, -5})
        stream.Write("ab", size);
    stream.Write("c", 1);
    CHECK(sink.calls.empty());
    stream.Flush();
    stream.Flush();
    CHECK(sink.calls == std::vector<std::string>{Word(3), "abc", Word(0x352441C2), "flush", "flush"});
}

TEST_CASE("blocks are cut alike however the bytes come, the moment they are full") {
    const std::string bytes = RandomBytes(3 * kBlock + 100);
    for (const std::size_t piece : {1u, 1000u, 4087u, 4088u, 4089u, 8176u, 8177u, 12364u}) {
        CAPTURE(piece);
        RecordingSink sink;
        {
            CRCOutputStream stream(sink);
            for (std::size_t at = 0; at < bytes.size(); at += piece) {
                const std::size_t count = std::min(piece, bytes.size() - at);
                stream.Write(bytes.data() + at, static_cast<int>(count));
                REQUIRE(sink.calls.size() == 3 * ((at + count) / kBlock));
            }
        }
        CHECK(sink.Content() == Blocks(bytes));
        CHECK(sink.calls.size() == 12);
    }
}

TEST_CASE("reads of any size cross blocks in order and fetch none before it is needed") {
    const std::string bytes = RandomBytes(3 * kBlock + 100);
    const std::string stored = Blocks(bytes.substr(0, 10)) + Blocks(bytes.substr(10));
    for (const std::size_t piece : {1u, 11u, 4088u, 5000u, 12364u}) {
        CAPTURE(piece);
        RecordingSource source(stored);
        CRCInputStream stream(source);
        std::string back(bytes.size(), '\0');
        for (const int size : {0, -1, 10})
            stream.Read(back.data(), size);
        CHECK(source.sizes == std::vector<int>{4, 10, 4});
        for (std::size_t at = 10; at < bytes.size(); at += piece)
            stream.Read(back.data() + at, static_cast<int>(std::min(piece, bytes.size() - at)));
        CHECK(back == bytes);
        CHECK(Failure([&] { stream.Read(back.data(), 1); }) == kTooShort);
    }
}

TEST_CASE("any length but 1 to 4,088, any flipped bit and any missing byte is found") {
    std::string back(1, '?');
    CHECK(ReadAll(Block(std::string(kBlock, 'x')), back) == "");
    for (const std::uint32_t length : {0u, 4089u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu})
        CHECK(ReadAll(Word(length) + std::string(kBlock + 8, '\0'), back) == "3: Illegal CRC block size");
    const std::string bytes = RandomBytes(60);
    const std::string sound = Block(bytes.substr(0, 20)) + Block(bytes.substr(20));
    for (std::size_t bit = 0; bit < 8 * sound.size(); ++bit) {
        CAPTURE(bit);
        back.assign(60, '\0');
        const std::string failure = ReadAll(WithFlipped(sound, bit), back);
        CHECK((failure == "3: CRC checksum error" || failure == "3: Illegal CRC block size" || failure == kTooShort));
        CHECK((bit < 8 * 28 || back.substr(0, 20) == bytes.substr(0, 20)));
    }
    for (std::size_t size = 0; size < sound.size(); ++size)
        CHECK(ReadAll(sound.substr(0, size), back) == kTooShort);
}

TEST_CASE("a block that cannot be written stays pending, staged or not") {
    const std::string bytes = RandomBytes(2 * kBlock);
    for (const int staged : {0, 50})
        for (int failAt = 1; failAt <= 4; ++failAt) {
            INFO(staged, " ", failAt);
            RecordingSink sink;
            CRCOutputStream stream(sink);
            stream.Write(bytes.data(), staged);
            sink.failAt = failAt;
            CHECK(Failure([&] { stream.Write(bytes.data() + staged, 2 * int{kBlock} - staged); }) == "99: ");
            sink.calls.clear();
            stream.Flush();
            CHECK(sink.Content() == Block(bytes.substr(failAt == 4 ? kBlock : 0, kBlock)) + "flush");
        }
    RecordingSink sink;
    sink.failAt = 2;
    { CRCOutputStream(sink).Write("abc", 3); }
    CHECK(sink.calls == std::vector<std::string>{Word(3)});
}
