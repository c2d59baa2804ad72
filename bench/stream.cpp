#include "bench/stream/Values.h"
#include "bench/support/Areas.h"
#include "bench/support/Random.h"

#include <kelcore/stream.h>

#include <cstring>
#include <memory>

namespace kel::bench {
namespace {

// GetContent copies, which is work that no other store does; a write that is timed has nothing to give.
void WriteKelCore(const Values& values, const Taker& take) {
    MemoryOutputStream stream;
    for (std::size_t i = 0; i < kRounds; ++i)
        stream << values.ints[i] << values.doubles[i] << values.shorts[i] << values.texts[i];
    benchmark::DoNotOptimize(stream);
    if (take)
        take(stream.GetContent());
}

void ReadKelCore(const std::string& block, Values& values) {
    MemoryInputStream stream(block);
    for (std::size_t i = 0; i < kRounds; ++i)
        stream >> values.ints[i] >> values.doubles[i] >> values.shorts[i] >> values.texts[i];
}

template <class Value>
void Append(std::string& sink, Value value) {
    sink.append(reinterpret_cast<const char*>(&value), sizeof value);
}

void AppendAll(const Values& values, const Taker& take) {
    std::string sink;
    for (std::size_t i = 0; i < kRounds; ++i) {
        Append(sink, values.ints[i]);
        Append(sink, values.doubles[i]);
        Append(sink, values.shorts[i]);
        Append(sink, static_cast<int>(values.texts[i].size()));
        sink += values.texts[i];
    }
    Finish(sink, take);
}

template <class Value>
void Take(const char*& cursor, Value& value) {
    std::memcpy(&value, cursor, sizeof value);
    cursor += sizeof value;
}

void TakeAll(const std::string& block, Values& values) {
    const char* cursor = block.data();
    for (std::size_t i = 0; i < kRounds; ++i) {
        int length = 0;
        Take(cursor, values.ints[i]);
        Take(cursor, values.doubles[i]);
        Take(cursor, values.shorts[i]);
        Take(cursor, length);
        values.texts[i].assign(cursor, static_cast<std::size_t>(length));
        cursor += length;
    }
}

std::string WrittenBy(const ValueStore& store, const Values& values) {
    std::string content;
    store.write(values, [&content](std::string_view written) { content = written; });
    return content;
}

const Enter<ValueStore> kelcore{{"kelcore", &WriteKelCore, &ReadKelCore}};
const ValueStore kLimit{"limit-append&memcpy", &AppendAll, &TakeAll};
const Enter<ValueStore> limit{kLimit};

std::string ReadBack(const ValueStore& store, const std::string& block) {
    Values values;
    store.read(block, values);
    return WrittenBy(kLimit, values);
}

Call Writing(const ValueStore& store) {
    return {[=] { store.write(GivenValues(), Taker()); },
            [=] { return ReadBack(store, WrittenBy(store, GivenValues())); }};
}

Call Reading(const ValueStore& store) {
    const auto block = std::make_shared<const std::string>(WrittenBy(store, GivenValues()));
    const auto values = std::make_shared<Values>();
    const auto run = [=] {
        store.read(*block, *values);
        benchmark::ClobberMemory();
    };
    return {run, [=] { return ReadBack(store, *block); }};
}

} // namespace

const Values& GivenValues() {
    static const Values given = [] {
        Random random(2);
        Values values;
        for (std::size_t i = 0; i < kRounds; ++i) {
            values.ints[i] = static_cast<int>(random.Below(0x7FFFFFFF));
            values.doubles[i] = random.Below(1'000'000) / 64.0;
            values.shorts[i] = static_cast<short>(random.Below(0x7FFF));
            values.texts[i] = random.Letters(12);
        }
        return values;
    }();
    return given;
}

void AddStreamJobs() {
    for (const ValueStore& store : Contenders<ValueStore>()) {
        AddJob("stream", store.who, "write 1M values", [store] { return Writing(store); });
        AddJob("stream", store.who, "read 1M values", [store] { return Reading(store); });
    }
}

} // namespace kel::bench
