#include "bench/crc/Checksum.h"
#include "bench/support/Areas.h"
#include "bench/support/Random.h"
#include "stream/Crc32.h"

#include <kelcore/stream.h>

#include <cstring>

namespace kel::bench {
namespace {

constexpr std::size_t kBlock = 4088;
constexpr std::size_t kLarge = 64 << 20;
constexpr std::size_t kStreamed = 16 << 20;

const Enter<Checksum> entered{{"kelcore", &Crc32}};

// The same 64 MiB for all jobs.
const std::string& Bytes() {
    static const std::string bytes = [] {
        Random random(1);
        std::string text(kLarge, '\0');
        for (char& byte : text)
            byte = static_cast<char>(random.Below(256));
        return text;
    }();
    return bytes;
}

Call ChecksumOf(std::size_t count, const Checksum& checksum) {
    const char* const data = Bytes().data();
    return {[=, compute = checksum.compute] { benchmark::DoNotOptimize(compute(data, count)); },
            [=, compute = checksum.compute] { return std::to_string(compute(data, count)); }};
}

Call ReadOnce(std::size_t count) {
    // The byte looked for is behind the end, so that every byte is read.
    const auto text = std::make_shared<std::string>(count, 'a');
    return {[text] { benchmark::DoNotOptimize(std::memchr(text->data(), 'b', text->size())); }};
}

Call CopyOnce(std::size_t count) {
    const auto target = std::make_shared<std::string>(count, '\0');
    return {[target] {
        std::memcpy(target->data(), Bytes().data(), target->size());
        benchmark::ClobberMemory();
    }};
}

void WriteInPieces(OutputStream& stream, std::size_t piece) {
    for (std::size_t done = 0; done < kStreamed; done += piece)
        stream.Write(Bytes().data() + done, static_cast<int>(std::min(piece, kStreamed - done)));
}

Call WriteBlocks(std::size_t piece) {
    return {[piece] {
        MemoryOutputStream memory;
        CRCOutputStream blocks(memory);
        WriteInPieces(blocks, piece);
        blocks.Flush();
        benchmark::DoNotOptimize(memory);
    }};
}

// What writing blocks cannot do without: a copy of every byte into memory that grows, and its checksum.
Call CopyAndChecksum() {
    return {[] {
        std::string sink;
        for (std::size_t done = 0; done < kStreamed; done += kBlock) {
            const std::size_t count = std::min(kBlock, kStreamed - done);
            benchmark::DoNotOptimize(Crc32(Bytes().data() + done, count));
            sink.append(Bytes(), done, count);
        }
        benchmark::DoNotOptimize(sink);
    }};
}

std::string Stored() {
    MemoryOutputStream memory;
    CRCOutputStream blocks(memory);
    WriteInPieces(blocks, kStreamed);
    blocks.Flush();
    return memory.GetContent();
}

Call ReadBlocks(std::size_t piece) {
    const auto stored = std::make_shared<const std::string>(Stored());
    const auto target = std::make_shared<std::string>(kStreamed, '\0');
    const auto run = [=] {
        MemoryInputStream memory(*stored);
        CRCInputStream blocks(memory);
        for (std::size_t done = 0; done < kStreamed; done += piece)
            blocks.Read(target->data() + done, static_cast<int>(std::min(piece, kStreamed - done)));
        benchmark::ClobberMemory();
    };
    const auto result = [=] {
        run();
        return *target;
    };
    return {run, result};
}

Call CopyOutAndChecksum() {
    const auto target = std::make_shared<std::string>(kStreamed, '\0');
    const auto run = [=] {
        for (std::size_t done = 0; done < kStreamed; done += kBlock) {
            const std::size_t count = std::min(kBlock, kStreamed - done);
            std::memcpy(target->data() + done, Bytes().data() + done, count);
            benchmark::DoNotOptimize(Crc32(target->data() + done, count));
        }
    };
    const auto result = [=] {
        run();
        return *target;
    };
    return {run, result};
}

void AddStreamLayer(const std::string& suffix, std::size_t piece) {
    AddJob("crc", "kelcore", "output stream, " + suffix, [piece] { return WriteBlocks(piece); });
    AddJob("crc", "limit-copy&checksum", "output stream, " + suffix, CopyAndChecksum);
    AddJob("crc", "kelcore", "input stream, " + suffix, [piece] { return ReadBlocks(piece); });
    AddJob("crc", "limit-copy&checksum", "input stream, " + suffix, CopyOutAndChecksum);
}

} // namespace

void AddCrcJobs() {
    const std::pair<const char*, std::size_t> sizes[] = {{"block 4088 B", kBlock}, {"64 MiB", kLarge}};
    for (const auto& [work, size] : sizes) {
        for (const Checksum& checksum : Contenders<Checksum>())
            AddJob("crc", checksum.who, work, [=, count = size] { return ChecksumOf(count, checksum); });
        AddJob("crc", "limit-memchr", work, [count = size] { return ReadOnce(count); });
        AddJob("crc", "limit-memcpy", work, [count = size] { return CopyOnce(count); });
    }
    AddStreamLayer("16 MiB at once", kStreamed);
    AddStreamLayer("16 MiB in pieces of 1000", 1000);
}

} // namespace kel::bench
